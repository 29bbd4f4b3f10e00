// Deciding which window goes to which tile. A plan is made of values only: the same plan is carried out, explained and
// printed by a dry run.
#pragma once

#include "layout/AutoArrangeLearning.h"
#include "layout/LayoutCatalogue.h"
#include "layout/TileSpans.h"
#include "windowing/ManagedWindow.h"

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace kova {

/// A display as the planner sees it.
struct ArrangementDisplay {
    std::string displayID;
    std::string name;
    CGRect visibleFrame{};            // screen space
    LayoutDefinition layout;          // in force, weights applied
    SolvedLayout solved;              // on the visible frame, with no minimum sizes
    std::map<std::string, CGSize> tileMinimumSizes;
};

/// A window that takes part.
struct ArrangementCandidate {
    ManagedWindow window;
    CGRect frameOnScreen{};                        // screen space; empty when unknown
    std::optional<std::string> displayID;          // the display that holds it
    std::optional<std::string> currentTargetID;    // the tile that it fronts now
    CGSize minimumSize{};                          // points, 0 where none is known
    bool isDeferred = false;                       // minimised or hidden: needs time to come back
};

struct ArrangementInput {
    std::vector<ArrangementDisplay> displays;        // the platform's order
    std::vector<ArrangementCandidate> candidates;    // the order of the window list
    AutoArrangeLearningModel learning;
    double tileInset = 5;
};

/// One window in one tile; `claimedTargets` are all the tiles that it covers, its anchor first.
struct AutoArrangePlacement {
    ManagedWindow window;
    DisplayTileTarget target;
    bool isPrimary = true;    // in front, as opposed to stacked behind
    std::vector<DisplayTileTarget> claimedTargets;
    bool isDeferred = false;
    std::string reason;       // one sentence in plain words
};

struct ArrangementPlan {
    std::vector<AutoArrangePlacement> placements;    // in the order in which they are carried out
    std::vector<ManagedWindow> surplus;              // to be minimised
    std::vector<std::string> surplusReasons;         // one per surplus window
    std::vector<std::string> explanation() const;    // a line per decision, then the surplus line when there is surplus
};

/// Deterministic: the same input gives the same plan.
ArrangementPlan planArrangement(const ArrangementInput& input);

} // namespace kova
