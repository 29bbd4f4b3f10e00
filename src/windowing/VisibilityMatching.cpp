#include "windowing/VisibilityMatching.h"

#include <algorithm>
#include <cmath>

namespace kova {

namespace {

/// Sizes count double: a window of the same size at another place is a better match than a near one of another size.
double dissimilarity(const CGRect& frame, const CGRect& onScreen) {
    return std::abs(minX(frame) - minX(onScreen)) + std::abs(minY(frame) - minY(onScreen)) +
           2 * std::abs(frame.size.width - onScreen.size.width) +
           2 * std::abs(frame.size.height - onScreen.size.height);
}

} // namespace

std::vector<std::size_t> visibleWindows(std::vector<VisibilityCandidate> candidates, std::span<const CGRect> onScreen) {
    std::vector<std::size_t> visible;
    for (const auto& rectangle : onScreen) {
        if (candidates.empty()) break;
        const auto best = std::min_element(candidates.begin(), candidates.end(), [&](const auto& a, const auto& b) {
            return dissimilarity(a.frame, rectangle) < dissimilarity(b.frame, rectangle);
        });
        visible.push_back(best->index);
        candidates.erase(best);
    }
    return visible;
}

} // namespace kova
