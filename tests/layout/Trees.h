// Trees in few words, solved layouts in one line, and random ones.
#pragma once

#include "layout/LayoutSolver.h"

#ifdef KOVA_HAS_RAPIDCHECK
#include <rapidcheck.h>
#endif

#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace kova::testing {

inline LayoutNode tile(std::string id) {
    return LayoutTile{id, "Name of " + id};
}
inline LayoutNode row(std::vector<LayoutBranch> branches) {
    return LayoutSplit{LayoutAxis::horizontal, branches};
}
inline LayoutNode column(std::vector<LayoutBranch> branches) {
    return LayoutSplit{LayoutAxis::vertical, branches};
}

inline std::string print(const CGRect& r) {
    std::ostringstream out;
    out << r.origin.x << ',' << r.origin.y << ' ' << r.size.width << 'x' << r.size.height;
    return out.str();
}

/// "a 10,10 1593x1392 | b 1615,10 935x1392"
inline std::string print(const SolvedLayout& layout) {
    std::string out;
    for (std::size_t i = 0; i < layout.slots.size(); ++i) {
        out += (i ? " | " : "") + layout.slots[i].id + " " + print(layout.frames[i]);
    }
    return out;
}

/// "root:0 1274,10 12x1392 lengths 1264 1264 minimums 320 320"
inline std::string print(const LayoutDivider& divider) {
    std::ostringstream out;
    out << divider.splitID << ':' << divider.boundaryIndex << ' ' << print(divider.frame) << " lengths";
    for (const double length : divider.branchLengths) out << ' ' << length;
    out << " minimums";
    for (const double length : divider.branchMinimumLengths) out << ' ' << length;
    return out.str();
}

#ifdef KOVA_HAS_RAPIDCHECK
/// A tree of `depth` levels at most, its tiles numbered from `nextTile` on; numbers from `distinctIDs` on begin anew.
/// Some of its splits have no branches.
inline LayoutNode randomTree(const rc::Gen<double>& weights, int depth, int& nextTile, int distinctIDs = 1000) {
    const int branchCount = depth > 0 ? *rc::gen::inRange(0, 5) : 0;
    if (branchCount == 0 && *rc::gen::inRange(0, 8) == 0) return row({});
    if (branchCount == 0) return tile("t" + std::to_string(nextTile++ % distinctIDs));
    LayoutSplit split{*rc::gen::element(LayoutAxis::horizontal, LayoutAxis::vertical), {}};
    for (int i = 0; i < branchCount; ++i) {
        split.branches.push_back({*weights, randomTree(weights, depth - 1, nextTile, distinctIDs)});
    }
    return split;
}
#endif

} // namespace kova::testing
