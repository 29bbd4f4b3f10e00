// Decides which window goes to which tile. A plan consists of values only: the same plan is carried out, explained and
// printed by a dry run.
#pragma once

#include "layout/AutoArrangeLearning.h"
#include "layout/LayoutCatalogue.h"
#include "layout/TileSpans.h"
#include "support/Limits.h"
#include "windowing/ManagedWindow.h"

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace kova {

/// The data of a display that the planner needs.
struct ArrangementDisplay {
    DisplayID displayID;
    std::string name;
    CGRect visibleFrame{};            // screen space
    LayoutDefinition layout;          // the layout in force, with the user's weights
    SolvedLayout solved;              // the layout on the visible frame, without regard to minimum sizes
    std::set<SlotID> reservedSlotIDs; // the tiles of full-screen windows, which an arrangement does not move
};

/// The tile that the deciding rule of a window names.
struct RuleTile {
    SlotID slotID;
    std::string name; // the rule's name
};

/// A window that the arrangement may move.
struct ArrangementCandidate {
    ManagedWindow window;
    std::string applicationKey;
    AutoArrangeAppRole role = AutoArrangeAppRole::other;
    CGRect frameOnScreen{};                  // screen space; empty when unknown
    std::optional<DisplayID> displayID;      // the display that shows the window, else the display of its tile
    std::optional<TileTarget> currentTarget; // the tile in which the window is the front window
    std::optional<TileTarget> stackTarget;   // the tile in which it is stacked
    CGSize minimumSize{};                    // points; 0 if unknown
    std::optional<RuleTile> rule;            // absent while rules are not applied
    bool isDeferred = false;                 // minimized or hidden, so that showing the window takes time
    bool isShowRequested = false;            // not visible yet, but KOVA has requested to show it; ranks as visible
    std::optional<std::size_t> useRank;      // 0 for the window focused last; absent if never focused
    bool isFixedSize = false;
};

/// A window that the arrangement does not move although the user may expect a move.
struct ArrangementLeftAloneWindow {
    ManagedWindow window;
    std::string explanation; // one line in plain words
};

struct ArrangementInput {
    std::vector<ArrangementDisplay> displays;     // in the platform's order
    std::vector<ArrangementCandidate> candidates; // in the order of the window list
    std::vector<ArrangementLeftAloneWindow> leftAlone;
    AutoArrangeLearningModel learning;
    std::map<SlotID, std::string> preferredApplications; // application keys by slot id
    double tileInset = kDefaultTileInset;                // points
};

/// One window in one tile.
struct AutoArrangePlacement {
    ManagedWindow window;
    DisplayTileTarget target;
    bool isPrimary = true;                         // true for a front window, false for a stacked window
    std::vector<DisplayTileTarget> claimedTargets; // the covered tiles, the anchor first; empty for a stacked window
    std::optional<WindowID> behindID;              // the front window of a stacked window, unless it is full-screen
    bool isDeferred = false;                       // true if the window is shown first and gets its frame later
    std::string explanation;                       // one line in plain words
};

struct ArrangementSurplusWindow {
    ManagedWindow window;
    std::string explanation;
};

struct ArrangementPlan {
    std::vector<AutoArrangePlacement> placements;  // front windows by display and slot, then stacked windows
    std::vector<ArrangementSurplusWindow> surplus; // to be minimized
    std::vector<ArrangementLeftAloneWindow> leftAlone;

    /// One line for each placement, each surplus window and each window left alone, in this order. If there are surplus
    /// windows, a last line says how many.
    std::vector<std::string> explanation() const;
    /// Renames the window everywhere in the plan.
    void rename(const WindowID& windowID, const WindowID& newID);
    void renameDisplay(const DisplayID& displayID, const DisplayID& newID);
};

/// Deterministic: the same input gives the same plan.
ArrangementPlan planArrangement(const ArrangementInput& input);

} // namespace kova
