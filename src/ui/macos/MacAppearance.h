// Light or dark, and whether animations are allowed, from the Mac's own settings. Main thread only.
#pragma once

#include "ui/style/Palette.h"

#include <functional>
#include <memory>

namespace kova::ui {

/// Calls back at once, and whenever the user changes one of the settings, until the result is destroyed.
[[nodiscard]] std::shared_ptr<const void>
followAppearance(std::function<void(Brightness, bool areAnimationsEnabled)> follower);

} // namespace kova::ui
