#include "layout/LayoutFit.h"

#include <algorithm>
#include <numeric>
#include <optional>
#include <set>

namespace kova {

namespace {

CGSize shortfallIn(const CGRect& tileFrame, CGSize minimumSize, double tileInset) {
    if (holdsWindow(tileFrame, minimumSize, tileInset)) return {};
    const CGSize room = insetBy(tileFrame, tileInset).size;
    return {std::max(0.0, minimumSize.width - room.width), std::max(0.0, minimumSize.height - room.height)};
}

double sum(CGSize size) {
    return size.width + size.height;
}

/// The free tile with the smallest shortfall; of several such tiles the one with the smallest area.
std::optional<std::size_t> bestTile(const SolvedLayout& solved, const std::set<std::size_t>& taken, CGSize minimumSize,
                                    double tileInset) {
    std::optional<std::size_t> best;
    const auto rank = [&](std::size_t tile) {
        const CGRect& frame = solved.frames[tile];
        return std::pair(sum(shortfallIn(frame, minimumSize, tileInset)), frame.size.width * frame.size.height);
    };
    for (std::size_t tile = 0; tile < solved.frames.size(); ++tile) {
        if (!taken.contains(tile) && (!best || rank(tile) < rank(*best))) best = tile;
    }
    return best;
}

} // namespace

std::vector<CGSize> shortfalls(const LayoutDefinition& layout, const std::vector<CGSize>& minimumSizes, CGSize areaSize,
                               double tileInset) {
    const SolvedLayout plain = solveDefinition(layout, {}, areaSize, tileInset);
    std::vector<std::size_t> order(minimumSizes.size());
    std::iota(order.begin(), order.end(), std::size_t(0));
    const auto area = [&](std::size_t window) { return minimumSizes[window].width * minimumSizes[window].height; };
    std::ranges::stable_sort(order, std::greater{}, area);

    std::set<std::size_t> taken;
    std::vector<std::optional<std::size_t>> tileOf(minimumSizes.size());
    TileMinimumSizes needed;
    for (const std::size_t window : order) {
        tileOf[window] = bestTile(plain, taken, minimumSizes[window], tileInset);
        if (!tileOf[window]) break; // all tiles are taken
        taken.insert(*tileOf[window]);
        needed[plain.slots[*tileOf[window]].id] = minimumSizes[window];
    }
    const SolvedLayout grown = solveDefinition(layout, needed, areaSize, tileInset);
    std::vector<CGSize> lacking;
    for (std::size_t window = 0; window < minimumSizes.size(); ++window) {
        const auto tile = tileOf[window] ? tileOf[window] : bestTile(grown, {}, minimumSizes[window], tileInset);
        lacking.push_back(tile && *tile < grown.frames.size()
                              ? shortfallIn(grown.frames[*tile], minimumSizes[window], tileInset)
                              : minimumSizes[window]);
    }
    return lacking;
}

} // namespace kova
