#include "platform/x11/TilingManagers.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace kova::x11 {

namespace {

/// "wlroots wm" is the name that X11 programs see for all wlroots compositors; the common ones place windows
/// themselves.
constexpr std::array<std::string_view, 14> kNames = {
    "awesome", "bspwm", "dwm",       "herbstluftwm", "hyprland", "i3",         "leftwm",
    "notion",  "qtile", "ratpoison", "spectrwm",     "stumpwm",  "wlroots wm", "xmonad",
};

bool isSameName(std::string_view a, std::string_view b) {
    return std::ranges::equal(a, b,
                              [](unsigned char x, unsigned char y) { return std::tolower(x) == std::tolower(y); });
}

} // namespace

bool isTilingManager(std::string_view name) {
    return std::ranges::any_of(kNames, [&](std::string_view known) { return isSameName(known, name); });
}

} // namespace kova::x11
