// How the branches of one split share its length: the arithmetic of the solver, in memory of the caller. The results
// are finite for any input.
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

/// Not less than the weight floor; NaN counts as the floor.
inline double raisedToFloor(double weight) {
    return weight > kWeightFloor ? weight : kWeightFloor;
}

/// A usable weight has an upper limit, too, so that sums and products of weights and lengths stay finite. An infinite
/// weight remains larger than every ordinary weight.
inline double usableWeight(double weight) {
    return std::min(raisedToFloor(weight), kHeaviestWeight);
}

/// A signed length in points; a length that is not finite counts as 0, a huge one is limited.
inline double usableLength(double points) {
    return std::isfinite(points) ? std::clamp(points, -kLongestLength, kLongestLength) : 0;
}

/// A minimum length that is not a number counts as 0; an infinite one stays and never fits.
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

/// The gap between neighboring branches, in whole points: the gutter, and in a column also the upper branch's footers.
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

/// Fills `lengths`. The three spans have the same size; weights and minimums are usable ones, `available` a usable
/// length.
void distribute(std::span<const double> weights, std::span<const double> minimums, double available,
                std::span<double> lengths, BranchLengthsScratch& scratch);
/// Rounds usable lengths to whole points in place.
void roundToWholePoints(std::span<double> lengths, double available, BranchLengthsScratch& scratch);

} // namespace kova
