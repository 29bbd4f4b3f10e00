#include "workspace/DisplayLayouts.h"

#include <utility>

namespace kova {

const std::string& resolveLayoutID(const WorkspaceProfile& profile, const DisplayID& displayID, const Screen& screen) {
    static const std::string kForUltraWide = "jarvis.super-ultrawide-5120x1440", kForCompact = "jarvis.compact-16-by-9";
    const auto selection = profile.layoutSelectionsByDisplay.find(displayID);
    if (selection == profile.layoutSelectionsByDisplay.end()) return profile.layoutID;
    if (selection->second.layoutID) return *selection->second.layoutID;
    switch (classifyDisplay(screen.frame.size, screen.visibleFrame.size)) {
    case LayoutDisplayClass::superUltraWide5120x1440:
        return kForUltraWide;
    case LayoutDisplayClass::compact16By9:
        return kForCompact;
    case LayoutDisplayClass::standard:
        break;
    }
    return profile.layoutID;
}

DisplayLayouts::Entry& DisplayLayouts::entry(const Screen& screen, const WorkspaceProfile& profile,
                                             const std::vector<LayoutDefinition>& catalogue) {
    const DisplayID derivedID = screen.knownID.empty() ? displayID(screen) : DisplayID();
    const DisplayID& id = screen.knownID.empty() ? derivedID : screen.knownID;
    const LayoutDefinition* wanted = findLayout(catalogue, resolveLayoutID(profile, id, screen));
    if (!wanted) wanted = &catalogue.front();
    const auto dragged = transientWeights_.find(id);
    const bool isDragged = dragged != transientWeights_.end() && dragged->second.layoutID == wanted->id;
    const LayoutWeightOverrides& weights = isDragged ? dragged->second.overrides : profile.weights(id, wanted->id);
    const auto found = entries_.find(id);
    const bool isSameLayout = found != entries_.end() && found->second.resolvedKey.layoutID == wanted->id;
    if (isSameLayout && found->second.resolvedKey.weights == weights) return found->second;
    Entry& changed = found != entries_.end() ? found->second : entries_[id];
    if (isSameLayout && wanted->tree && !weights.splits.empty()) {
        replaceWeights(*changed.definition.tree, *wanted->tree, weights);
        changed.hasFormerSlots = true;
    } else {
        changed.definition = applying(*wanted, weights);
        changed.hasFormerSlots = false;
    }
    changed.resolvedKey.layoutID = wanted->id;
    changed.resolvedKey.weights = weights;
    changed.isSolved = false;
    return changed;
}

const LayoutDefinition& DisplayLayouts::resolve(const Screen& screen, const WorkspaceProfile& profile,
                                                const std::vector<LayoutDefinition>& catalogue) {
    Entry& kept = entry(screen, profile, catalogue);
    if (std::exchange(kept.hasFormerSlots, false)) kept.definition.slots = slotsAtReferenceSize(kept.definition);
    return kept.definition;
}

const std::string& DisplayLayouts::layoutID(const Screen& screen, const WorkspaceProfile& profile,
                                            const std::vector<LayoutDefinition>& catalogue) {
    return entry(screen, profile, catalogue).definition.id;
}

const SolvedLayout& DisplayLayouts::solve(const Screen& screen, const WorkspaceProfile& profile,
                                          const std::vector<LayoutDefinition>& catalogue,
                                          const TileMinimumSizes& minimumSizes) {
    Entry& kept = entry(screen, profile, catalogue);
    SolvedKey& key = kept.solvedKey;
    const bool hasSameMinimums = areEqual(key.minimumSizes, minimumSizes);
    const bool isCurrent = kept.isSolved && hasSameMinimums && key.visibleSize == screen.visibleFrame.size &&
                           key.tileInset == profile.tileInset;
    if (isCurrent) return kept.solved;
    solveDefinition(kept.definition, minimumSizes, screen.visibleFrame.size, profile.tileInset, kept.solver,
                    kept.solved);
    key.visibleSize = screen.visibleFrame.size;
    key.tileInset = profile.tileInset;
    if (!hasSameMinimums) key.minimumSizes = minimumSizes;
    kept.isSolved = true;
    return kept.solved;
}

void DisplayLayouts::setTransientWeights(const DisplayID& displayID, const std::string& layoutID,
                                         LayoutWeightOverrides weights) {
    transientWeights_[displayID] = {layoutID, std::move(weights)};
}

void DisplayLayouts::clearTransientWeights(const DisplayID& displayID) {
    transientWeights_.erase(displayID);
}

void DisplayLayouts::clearAllTransientWeights() {
    transientWeights_.clear();
}

void DisplayLayouts::invalidate(const DisplayID& displayID) {
    entries_.erase(displayID);
}

void DisplayLayouts::invalidateAll() {
    entries_.clear();
}

} // namespace kova
