// How the branches of one split share its length: the arithmetic below the solver, on memory that its caller keeps.
// Whatever goes in, what comes out is finite.
#pragma once

#include "layout/LayoutTree.h"

#include <cstdint>
#include <span>
#include <vector>

namespace kova {

/// Not less than the weight floor; what is not a number counts as the floor.
double raisedToFloor(double weight);
/// The same, and small enough that sums and products of weights and lengths stay finite: an infinite weight outweighs
/// every ordinary one.
double usableWeight(double weight);
/// A length in points, signed; what is not finite counts as 0, and nothing is longer than 1e15 points, up to which
/// whole points are exact.
double usableLength(double points);
/// A minimum length that is not a number counts as 0; an infinite one stays and never fits.
double usableMinimum(double points);
/// The nearest whole number, halves away from zero, of a usable length.
double roundedLength(double points);

/// Whole points between neighbouring branches: the gutter, and under each branch of a column the tiles' footers.
double gapBetweenBranches(LayoutAxis axis, double columnGutter);
/// What a tile needs along an axis to hold a window of the observed minimum length.
double minimumLengthOfTile(double observedMinimum, double minimumTileLength, double tileInset);

struct RoundingCandidate {
    double fraction;
    std::uint32_t branch;
};

/// Memory of one caller, used again from split to split.
struct BranchLengthsScratch {
    std::vector<unsigned char> pinned;
    std::vector<RoundingCandidate> rounding;
    std::size_t visits = 0;    // branches looked at so far
};

/// Fills `lengths`. The three spans are of one size; weights and minimums are usable ones, `available` a usable length.
void distribute(std::span<const double> weights, std::span<const double> minimums, double available,
                std::span<double> lengths, BranchLengthsScratch& scratch);
/// Rounds usable lengths to whole points in place.
void roundToWholePoints(std::span<double> lengths, double available, BranchLengthsScratch& scratch);

} // namespace kova
