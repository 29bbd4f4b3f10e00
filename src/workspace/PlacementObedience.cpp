#include "workspace/PlacementObedience.h"

#include "support/SameFrame.h"

#include <algorithm>
#include <cmath>

namespace kova {

namespace {

constexpr std::size_t kFewestWindows = 2;

bool hasRefusedToMove(const PlacedWindow& window) {
    const bool isAtOrigin = std::abs(minX(window.wanted) - minX(window.actual)) <= kFrameTolerancePoints &&
                            std::abs(minY(window.wanted) - minY(window.actual)) <= kFrameTolerancePoints;
    return window.hasRefusedAllAttempts && !isAtOrigin;
}

} // namespace

bool isPlacingIgnored(const std::vector<PlacedWindow>& windows) {
    return windows.size() >= kFewestWindows && std::ranges::all_of(windows, hasRefusedToMove);
}

} // namespace kova
