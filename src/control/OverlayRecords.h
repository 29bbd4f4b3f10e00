// Writes the overlay's contents as JSON for the socket, section by section.
#pragma once

#include "control/OverlayContents.h"

#include <string>

namespace kova::overlayRecord {

/// The version of the format. It is increased when a client written for the previous version would misread the
/// contents.
inline constexpr int kContract = 2;

/// An object with every section by its name, the version of the agent, and `kContract`.
std::string whole(const OverlayContents& contents);
/// An object with the sections in which `now` differs from `before`. Of a list it contains only the changed elements,
/// and of such an element only the id and the changed members. Empty text if nothing differs.
std::string changes(const OverlayContents& before, const OverlayContents& now);

} // namespace kova::overlayRecord
