// The overlay's contents as JSON of the socket, section by section.
#pragma once

#include "control/OverlayContents.h"

#include <string>

namespace kova::overlayRecord {

/// Version of the format: increased when a client written for the version before would misread the contents.
inline constexpr int kContract = 2;

/// An object: every section by its name, and the version of agent and contract.
std::string whole(const OverlayContents& contents);
/// An object with the sections in which `now` differs from `before`; a list contains only the elements that
/// changed, and such an element only its id and the members that changed. Empty text if nothing differs.
std::string changes(const OverlayContents& before, const OverlayContents& now);

} // namespace kova::overlayRecord
