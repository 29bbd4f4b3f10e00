// The frame of a window in one or more tiles: all that they cover together. A span is a clean rectangle when it is
// claimed, but tiles move, with the user's dividers and with the windows in them, and other tiles may reach into it
// then.
#pragma once

#include "support/Geometry.h"

#include <span>

namespace kova {

/// The rectangle around the tiles of which there is one at least; where others reach into that, what their columns or
/// their rows have in common, else the largest of them. In the coordinates of the given rectangles.
CGRect frameOfSpan(std::span<const CGRect> own, std::span<const CGRect> others);

} // namespace kova
