// Whether another Space (virtual desktop) may be shown now.
#pragma once

namespace kova {

/// Where Spaces have no numbers, a window that appears without a change of Spaces was sent to the Space that is shown.
enum class SpaceChange { none, possible };

} // namespace kova
