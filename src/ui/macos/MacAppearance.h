// Follows the Mac's settings for the light or dark appearance and for animations. Main thread only.
#pragma once

#include "ui/style/Palette.h"

#include <functional>
#include <memory>

namespace kova::ui {

/// Calls `follower` now, and whenever the user changes one of the settings, until the returned object is destroyed.
[[nodiscard]] std::shared_ptr<const void>
followAppearance(std::function<void(Brightness, bool areAnimationsEnabled)> follower);

} // namespace kova::ui
