// The names of window managers that place all windows themselves.
#pragma once

#include <string_view>

namespace kova::x11 {

/// `name`: the window manager's name (_NET_WM_NAME), in any case.
bool isTilingManager(std::string_view name);

} // namespace kova::x11
