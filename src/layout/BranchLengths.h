// Divides the length of one split among its branches. This is the arithmetic of the layout solver. The caller provides
// the memory. The results are finite for any input.
#pragma once

#include "layout/LayoutSolver.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <span>
#include <vector>

namespace kova {

inline constexpr double kHeaviestWeight = 1e200;
inline constexpr double kLongestLength = 1e15; // points; up to here whole points are exact

/// The weight, or the weight floor if the weight is smaller or NaN.
inline double raisedToFloor(double weight) {
    return weight > kWeightFloor ? weight : kWeightFloor;
}

/// The weight, limited to the range from the weight floor to `kHeaviestWeight`. With these limits, sums and products of
/// weights and lengths are finite. The upper limit is far above every ordinary weight.
inline double usableWeight(double weight) {
    return std::min(raisedToFloor(weight), kHeaviestWeight);
}

/// A signed length in points, limited to `kLongestLength`; 0 if the length is not finite.
inline double usableLength(double points) {
    return std::isfinite(points) ? std::clamp(points, -kLongestLength, kLongestLength) : 0;
}

/// A minimum length in points; 0 if it is not a number. An infinite minimum remains infinite and never fits.
inline double usableMinimum(double points) {
    return std::isnan(points) ? 0 : std::max(points, -kLongestLength);
}

/// A usable length rounded towards zero, without the function call that some processors need for rounding.
inline double wholePart(double points) {
    return static_cast<double>(static_cast<std::int64_t>(points));
}

/// The nearest whole number of a usable length, halves away from zero.
inline double roundedLength(double points) {
    const double whole = wholePart(points);
    return whole == points ? points : std::round(points);
}

/// The gap between neighboring branches, in whole points: the gutter, and in a column also the height of the footers
/// above it.
double gapBetweenBranches(LayoutAxis axis, double columnGutter);

struct RoundingCandidate {
    double fraction;
    std::uint32_t branch;
};

/// Memory of one caller, reused from split to split.
struct BranchLengthsScratch {
    std::vector<unsigned char> pinned;
    std::vector<RoundingCandidate> rounding;
};

/// Divides `available` points among the branches by weight, with regard to their minimums, and writes the result into
/// `lengths`. The three spans have the same size. The numbers are results of `usableWeight`, `usableMinimum` and
/// `usableLength`.
void distribute(std::span<const double> weights, std::span<const double> minimums, double available,
                std::span<double> lengths, BranchLengthsScratch& scratch);
/// Rounds usable lengths down to whole points in place. If their sum is then less than `available`, the missing points
/// go to the lengths that lost the largest fractions.
void roundToWholePoints(std::span<double> lengths, double available, BranchLengthsScratch& scratch);

} // namespace kova
