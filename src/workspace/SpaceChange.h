// Whether another Space (virtual desktop) may be shown now.
#pragma once

namespace kova {

/// Where Spaces have no numbers, this shows why a window appears: without a change of Spaces, the window was sent to
/// the shown Space.
enum class SpaceChange { none, possible };

} // namespace kova
