// Caches the layout in force on each display and the frames of its tiles, until their inputs change.
#pragma once

#include "layout/LayoutCatalogue.h"
#include "layout/WorkspaceProfile.h"
#include "windowing/ScreenServicing.h"

#include <map>
#include <string>
#include <vector>

namespace kova {

/// The id of the layout that is selected for the display: the chosen layout or, if the selection is `automatic`, the
/// layout for the display's class. Without a selection, and for a display of the standard class, it is the layout that
/// the profile has for all displays.
const std::string& resolveLayoutID(const WorkspaceProfile& profile, const DisplayID& displayID, const Screen& screen);

class DisplayLayouts {
  public:
    /// The layout in force with the weights in force. If the catalogue lacks the selected layout, its first layout is
    /// used.
    const LayoutDefinition& resolve(const Screen& screen, const WorkspaceProfile& profile,
                                    const std::vector<LayoutDefinition>& catalogue);
    /// The id of the layout in force.
    const std::string& layoutID(const Screen& screen, const WorkspaceProfile& profile,
                                const std::vector<LayoutDefinition>& catalogue);
    /// The tiles on the screen's visible frame, in layout space.
    const SolvedLayout& solve(const Screen& screen, const WorkspaceProfile& profile,
                              const std::vector<LayoutDefinition>& catalogue, const TileMinimumSizes& minimumSizes);
    /// Sets weights that replace the profile's weights while a divider is dragged.
    void setTransientWeights(const DisplayID& displayID, const std::string& layoutID, LayoutWeightOverrides weights);
    void clearTransientWeights(const DisplayID& displayID);
    void clearAllTransientWeights();
    void invalidate(const DisplayID& displayID);
    void invalidateAll();

  private:
    struct ResolvedKey {
        std::string layoutID;
        LayoutWeightOverrides weights;
    };
    struct SolvedKey {
        CGSize visibleSize{};
        double tileInset = 0;
        TileMinimumSizes minimumSizes;
    };
    struct Entry {
        ResolvedKey resolvedKey;
        LayoutDefinition definition;
        bool hasFormerSlots = false; // true if the slots of `definition` were computed for other weights
        SolvedKey solvedKey;
        bool isSolved = false;
        LayoutSolver solver;
        SolvedLayout solved;
    };
    Entry& entry(const Screen& screen, const WorkspaceProfile& profile, const std::vector<LayoutDefinition>& catalogue);

    struct TransientWeights {
        std::string layoutID;
        LayoutWeightOverrides overrides;
    };

    std::map<DisplayID, Entry> entries_;
    std::map<DisplayID, TransientWeights> transientWeights_;
};

} // namespace kova
