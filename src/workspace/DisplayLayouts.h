// Caches the layout in force on each display and the frames of its tiles, until their inputs change.
#pragma once

#include "layout/LayoutCatalogue.h"
#include "layout/WorkspaceProfile.h"
#include "windowing/ScreenServicing.h"

#include <map>
#include <string>
#include <vector>

namespace kova {

/// The layout that is selected for the display: the chosen one, the one for the display's class if the selection is
/// `automatic`, or the profile's own layout without a selection.
const std::string& resolveLayoutID(const WorkspaceProfile& profile, const DisplayID& displayID, const Screen& screen);

class DisplayLayouts {
  public:
    /// The definition in force, weights applied. The catalogue's first layout replaces an id that is not in it.
    const LayoutDefinition& resolve(const Screen& screen, const WorkspaceProfile& profile,
                                    const std::vector<LayoutDefinition>& catalogue);
    /// The id of the definition in force.
    const std::string& layoutID(const Screen& screen, const WorkspaceProfile& profile,
                                const std::vector<LayoutDefinition>& catalogue);
    /// The tiles on the screen's visible frame, in layout space.
    const SolvedLayout& solve(const Screen& screen, const WorkspaceProfile& profile,
                              const std::vector<LayoutDefinition>& catalogue, const TileMinimumSizes& minimumSizes);
    /// Replaces the profile's weights while a divider is dragged.
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
        bool hasFormerSlots = false; // true if the definition's slots were computed for other weights
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
