// Window managers that place all windows themselves.
#pragma once

#include <string_view>

namespace kova::x11 {

/// By the name that the window manager gives itself; upper and lower case are the same.
bool isTilingManager(std::string_view name);

} // namespace kova::x11
