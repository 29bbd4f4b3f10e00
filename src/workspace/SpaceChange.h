// Whether another Space (virtual desktop) may be shown now.
#pragma once

namespace kova {

/// Needed where Spaces have no numbers: a window that appears without a change of Spaces was sent to the shown Space.
enum class SpaceChange { none, possible };

} // namespace kova
