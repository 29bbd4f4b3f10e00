#include "layout/BranchLengths.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace kova {

namespace {

/// Each pass divides the remaining length among the branches that are not pinned. A branch whose share is less than its
/// minimum is pinned: its length is its minimum. The first pass that pins no branch is the last one.
void shareOutAroundMinimums(std::span<const double> weights, std::span<const double> minimums, double available,
                            double totalWeight, std::span<double> lengths, BranchLengthsScratch& scratch) {
    const std::size_t count = weights.size();
    auto& pinned = scratch.pinned;
    std::fill_n(pinned.begin(), count, static_cast<unsigned char>(0));
    double remaining = available;
    double activeWeight = totalWeight;
    for (std::size_t active = count; active > 0;) {
        double remainingAfterPass = remaining;
        double activeWeightAfterPass = 0;
        std::size_t activeAfterPass = 0;
        for (std::size_t i = 0; i < count; ++i) {
            if (pinned[i]) continue;
            const double share = remaining * weights[i] / activeWeight;
            if (share < minimums[i]) {
                pinned[i] = 1;
                lengths[i] = minimums[i];
                remainingAfterPass -= minimums[i];
            } else {
                lengths[i] = share;
                activeWeightAfterPass += weights[i];
                ++activeAfterPass;
            }
        }
        if (activeAfterPass == active) return;
        remaining = remainingAfterPass;
        activeWeight = activeWeightAfterPass;
        active = activeAfterPass;
    }
    const double surplus = available - std::accumulate(minimums.begin(), minimums.end(), 0.0);
    if (surplus <= 0) return;
    for (std::size_t i = 0; i < count; ++i) lengths[i] += surplus * (weights[i] / totalWeight);
}

/// Larger fractions first. Successive fractions that differ by at most the tolerance form a tie, in which the branch
/// with the lower index comes first. This needs a second step, since a comparison with a tolerance would not be
/// transitive.
void putInRoundingOrder(std::vector<RoundingCandidate>& candidates) {
    std::sort(candidates.begin(), candidates.end(), [](const RoundingCandidate& a, const RoundingCandidate& b) {
        return a.fraction != b.fraction ? a.fraction > b.fraction : a.branch < b.branch;
    });
    const auto byBranch = [](const RoundingCandidate& a, const RoundingCandidate& b) { return a.branch < b.branch; };
    for (auto tie = candidates.begin(); tie != candidates.end();) {
        auto end = tie + 1;
        while (end != candidates.end() && (end - 1)->fraction - end->fraction <= kFractionalTieTolerance) ++end;
        std::sort(tie, end, byBranch);
        tie = end;
    }
}

/// Rounds the lengths of a split of two branches, the most frequent case, without sorting. If more than one point is
/// missing, returns false and does not change the lengths.
bool roundPair(double& first, double& second, double target) {
    const double a = std::max(first, 0.0), b = std::max(second, 0.0);
    const double wholeA = wholePart(a), wholeB = wholePart(b);
    const double missing = target - (wholeA + wholeB);
    if (missing > 1) return false;
    const double extra = std::max(missing, 0.0);
    const bool toSecond = (b - wholeB) - (a - wholeA) > kFractionalTieTolerance;
    first = wholeA + (toSecond ? 0 : extra);
    second = wholeB + (toSecond ? extra : 0);
    return true;
}

} // namespace

double gapBetweenBranches(LayoutAxis axis, double columnGutter) {
    const double gutter = usableLength(columnGutter);
    return std::round(axis == LayoutAxis::horizontal ? gutter : gutter + kFooterHeight);
}

void distribute(std::span<const double> weights, std::span<const double> minimums, double available,
                std::span<double> lengths, BranchLengthsScratch& scratch) {
    const std::size_t count = weights.size();
    if (scratch.pinned.size() < count) scratch.pinned.resize(count);
    double totalWeight = 0;
    double totalMinimum = 0;
    for (std::size_t i = 0; i < count; ++i) {
        totalWeight += weights[i];
        totalMinimum += minimums[i];
    }
    if (totalMinimum > available) {
        for (std::size_t i = 0; i < count; ++i) lengths[i] = weights[i] / totalWeight * available;
        return;
    }
    bool satisfied = true;
    for (std::size_t i = 0; i < count; ++i) {
        lengths[i] = available * weights[i] / totalWeight;
        satisfied = satisfied && lengths[i] >= minimums[i];
    }
    if (!satisfied) shareOutAroundMinimums(weights, minimums, available, totalWeight, lengths, scratch);
}

void roundToWholePoints(std::span<double> lengths, double available, BranchLengthsScratch& scratch) {
    const double target = roundedLength(available);
    if (lengths.size() == 2 && roundPair(lengths[0], lengths[1], target)) return;
    auto& order = scratch.rounding;
    order.clear();
    double total = 0;
    for (std::size_t i = 0; i < lengths.size(); ++i) {
        const double length = std::max(lengths[i], 0.0);
        lengths[i] = wholePart(length);
        total += lengths[i];
        order.push_back({length - lengths[i], static_cast<std::uint32_t>(i)});
    }
    const double missing = target - total;
    if (missing <= 0 || lengths.empty()) return;
    putInRoundingOrder(order);
    const double rounds = std::floor(missing / static_cast<double>(lengths.size()));
    auto extra = static_cast<std::size_t>(missing - rounds * static_cast<double>(lengths.size()));
    for (const auto& candidate : order) {
        lengths[candidate.branch] += rounds;
        if (extra > 0) {
            lengths[candidate.branch] += 1;
            --extra;
        }
    }
}

} // namespace kova
