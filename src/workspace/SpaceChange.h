// Whether another Space (virtual desktop) may have come into sight.
#pragma once

namespace kova {

/// Where Spaces have no numbers, a window that appears without a change of Spaces was sent to the Space that is shown.
enum class SpaceChange { none, possible };

} // namespace kova
