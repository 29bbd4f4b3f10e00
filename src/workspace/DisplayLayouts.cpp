#include "workspace/DisplayLayouts.h"

namespace kova {

std::string resolveLayoutID(const WorkspaceProfile& profile, const DisplayID& displayID, const Screen& screen) {
    const auto selection = profile.layoutSelectionsByDisplay.find(displayID);
    if (selection == profile.layoutSelectionsByDisplay.end()) return profile.layoutID;
    if (selection->second.layoutID) return *selection->second.layoutID;
    switch (classifyDisplay(screen.frame.size, screen.visibleFrame.size)) {
    case LayoutDisplayClass::superUltraWide5120x1440:
        return "jarvis.super-ultrawide-5120x1440";
    case LayoutDisplayClass::compact16By9:
        return "jarvis.compact-16-by-9";
    case LayoutDisplayClass::standard:
        break;
    }
    return profile.layoutID;
}

DisplayLayouts::Entry& DisplayLayouts::entry(const Screen& screen, const WorkspaceProfile& profile,
                                             const std::vector<LayoutDefinition>& catalogue) {
    const DisplayID id = displayID(screen);
    const LayoutDefinition* wanted = findLayout(catalogue, resolveLayoutID(profile, id, screen));
    if (!wanted) wanted = &catalogue.front();
    const auto dragged = transientWeights_.find(id);
    const bool isDragged = dragged != transientWeights_.end() && dragged->second.layoutID == wanted->id;
    const LayoutWeightOverrides& weights = isDragged ? dragged->second.overrides : profile.weights(id, wanted->id);
    const auto found = entries_.find(id);
    const bool isCurrent = found != entries_.end() && found->second.resolvedKey.layoutID == wanted->id &&
                           found->second.resolvedKey.weights == weights;
    if (isCurrent) return found->second;
    Entry& changed = entries_[id];
    changed.resolvedKey = {wanted->id, weights};
    changed.definition = applying(*wanted, weights);
    changed.solvedKey.reset();
    return changed;
}

const LayoutDefinition& DisplayLayouts::resolve(const Screen& screen, const WorkspaceProfile& profile,
                                                const std::vector<LayoutDefinition>& catalogue) {
    return entry(screen, profile, catalogue).definition;
}

const SolvedLayout& DisplayLayouts::solve(const Screen& screen, const WorkspaceProfile& profile,
                                          const std::vector<LayoutDefinition>& catalogue,
                                          const TileMinimumSizes& minimumSizes) {
    Entry& kept = entry(screen, profile, catalogue);
    const auto& key = kept.solvedKey;
    const bool isCurrent = key && key->visibleSize == screen.visibleFrame.size && key->tileInset == profile.tileInset &&
                           key->minimumSizes == minimumSizes;
    if (!isCurrent) {
        solveDefinition(kept.definition, minimumSizes, screen.visibleFrame.size, profile.tileInset, kept.solver,
                        kept.solved);
        if (!kept.solvedKey) kept.solvedKey = SolvedKey{};
        kept.solvedKey->visibleSize = screen.visibleFrame.size;
        kept.solvedKey->tileInset = profile.tileInset;
        // Comparing is faster than copying, and usually only the size has changed.
        if (kept.solvedKey->minimumSizes != minimumSizes) kept.solvedKey->minimumSizes = minimumSizes;
    }
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
