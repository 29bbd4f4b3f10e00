// Whether another Space (virtual desktop) may be shown now.
#pragma once

namespace kova {

/// Tells why a window has appeared, on desktops whose Spaces have no numbers. `none`: the window was sent to the shown
/// Space. `possible`: the window's Space may be shown now.
enum class SpaceChange { none, possible };

} // namespace kova
