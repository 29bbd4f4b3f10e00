// The layout in force on each display, and the frames of its tiles. Resolved and solved again only when their inputs
// have changed.
#pragma once

#include "layout/LayoutCatalogue.h"
#include "layout/WorkspaceProfile.h"
#include "windowing/ScreenServicing.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace kova {

/// The layout id of the display's selection on its screen: an explicit choice as it is, `automatic` by the display's
/// class, and without a selection the profile's own layout.
std::string resolveLayoutID(const WorkspaceProfile& profile, const DisplayID& displayID, const Screen& screen);

class DisplayLayouts {
  public:
    /// The definition in force, weights applied. An id that is not in the catalogue falls back to the catalogue's
    /// first.
    const LayoutDefinition& resolve(const Screen& screen, const WorkspaceProfile& profile,
                                    const std::vector<LayoutDefinition>& catalogue);
    /// The tiles on the screen's visible frame, in layout space.
    const SolvedLayout& solve(const Screen& screen, const WorkspaceProfile& profile,
                              const std::vector<LayoutDefinition>& catalogue, const TileMinimumSizes& minimumSizes);
    /// Weights in force while a divider is dragged, instead of the profile's.
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
        std::optional<SolvedKey> solvedKey;
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
