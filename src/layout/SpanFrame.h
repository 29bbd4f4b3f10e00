// The frame of a window in one or more tiles. A span is a rectangle when it is claimed, but tiles move with dividers
// and minimum sizes, and then other tiles may reach into it.
#pragma once

#include "support/Geometry.h"

#include <span>

namespace kova {

/// The rectangle around the own tiles (at least one). If others reach into it: the part that the own tiles' columns or
/// rows have in common, else the largest own tile. In the coordinates of the given rectangles.
CGRect frameOfSpan(std::span<const CGRect> own, std::span<const CGRect> others);

} // namespace kova
