// The overlay's contents as JSON of the socket, section by section.
#pragma once

#include "control/OverlayContents.h"

#include <nlohmann/json_fwd.hpp>

namespace kova::overlayRecord {

/// Version of the format: increased when a client written for the version before would misread the contents.
inline constexpr int kContract = 2;

/// Every section by its name, and the version of agent and contract.
nlohmann::json whole(const OverlayContents& contents);
/// The sections in which `now` differs from `before`; of lists only the elements that changed, and of those only the
/// members that did.
nlohmann::json changes(const OverlayContents& before, const OverlayContents& now);

} // namespace kova::overlayRecord
