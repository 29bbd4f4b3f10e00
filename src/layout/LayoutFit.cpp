#include "layout/LayoutFit.h"

#include <algorithm>
#include <limits>

namespace kova {

CGSize shortfallFor(const LayoutDefinition& layout, CGSize minimumSize, CGSize areaSize, double tileInset) {
    const SolvedLayout plain = solveDefinition(layout, {}, areaSize, tileInset);
    const auto holds = [&](const CGRect& frame) { return holdsWindow(frame, minimumSize, tileInset); };
    if (std::ranges::any_of(plain.frames, holds)) return {};
    CGSize least{};
    double leastSum = std::numeric_limits<double>::max();
    for (std::size_t i = 0; i < plain.slots.size(); ++i) {
        const SolvedLayout grown = solveDefinition(layout, {{plain.slots[i].id, minimumSize}}, areaSize, tileInset);
        if (i >= grown.frames.size()) continue;
        if (holds(grown.frames[i])) return {};
        const CGSize room = insetBy(grown.frames[i], tileInset).size;
        const CGSize lacking{std::max(0.0, minimumSize.width - room.width),
                             std::max(0.0, minimumSize.height - room.height)};
        if (lacking.width + lacking.height >= leastSum) continue;
        leastSum = lacking.width + lacking.height;
        least = lacking;
    }
    return least;
}

} // namespace kova
