// Remembers tiles that windows do not have now but may get again: tiles on Spaces that are not shown, tiles in layouts
// that the user has replaced, and tiles that a window lost to another window. Also remembers which windows rules have
// already handled. Always true: closed windows are forgotten.
#pragma once

#include "workspace/PartDefaults.h"
#include "workspace/RememberedLayouts.h"
#include "workspace/SpaceMemory.h"
#include "workspace/StackPromotion.h"

#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <utility>
#include <vector>

namespace kova {

class TileMemory : public PartWithoutPolls {
  public:
    // Tiles on other Spaces
    const SpaceMemory& spaces() const { return spaces_; }
    /// The same as `SpaceMemory::store`, `storeFrom` and `restore`.
    void storeElsewhere(const std::vector<ManagedWindow>& windows, TileAssignments& assignments) {
        spaces_.store(windows, assignments);
    }
    void storeElsewhereFrom(const std::vector<TileTarget>& targets, const std::vector<ManagedWindow>& windows,
                            TileAssignments& assignments) {
        spaces_.storeFrom(targets, windows, assignments);
    }
    bool restoreFromSpaces(const std::vector<ManagedWindow>& windows, std::uint64_t shownSpace, SpaceChange change,
                           TileAssignments& assignments) {
        return spaces_.restore(windows, shownSpace, change, assignments);
    }
    /// Replaces the tiles remembered for other Spaces by those that a former agent stored in its session.
    void setPlacesOnSpaces(std::vector<SpaceMemory::Places> places) { spaces_.setPlaces(std::move(places)); }
    /// Restores the value from a snapshot, which may have been taken while another Space was shown.
    void setSpaces(SpaceMemory spaces) { spaces_ = std::move(spaces); }
    void forgetSpaces() { spaces_ = {}; }
    /// The same as `SpaceMemory::setPendingFrame` and `takeAppliableFrames`.
    void setPendingFrame(const WindowID& windowID, const CGRect& frame) { spaces_.setPendingFrame(windowID, frame); }
    std::map<WindowID, CGRect> takeAppliableFrames(const std::vector<ManagedWindow>& windows) {
        return spaces_.takeAppliableFrames(windows);
    }

    // Tiles in layouts that were replaced
    const RememberedLayouts& rememberedLayouts() const { return rememberedLayouts_; }
    /// Call before the display's layout is replaced.
    void noteLayoutReplaced(const DisplayID& displayID, const ShownLayout& layout, const TileAssignments& assignments) {
        rememberedLayouts_.leave(displayID, layout, assignments);
    }
    /// Call after an arrangement: forgets the tiles of all windows that are not stacked.
    void noteArranged(const TileAssignments& assignments) { rememberedLayouts_.keepOnlyWaiting(assignments); }
    void noteMovedByUser(const WindowID& windowID) { rememberedLayouts_.forget(windowID); }
    /// Restores the value from a snapshot.
    void setRememberedLayouts(RememberedLayouts layouts) { rememberedLayouts_ = std::move(layouts); }
    void forgetRememberedLayouts() { rememberedLayouts_.forgetAll(); }
    void forgetRememberedLayoutsOn(const DisplayID& displayID) { rememberedLayouts_.forgetDisplay(displayID); }

    // Tiles that windows lost to others
    const StackPromotion& stackPromotion() const { return stackPromotion_; }
    /// The same as `StackPromotion::noteDisplaced` and `forget`. `stackTarget` is the tile where the window is stacked.
    void noteDisplaced(const WindowID& windowID, const TileTarget& lostTarget, const TileTarget& stackTarget) {
        stackPromotion_.noteDisplaced(windowID, lostTarget, stackTarget);
    }
    void noteInFront(const WindowID& windowID) { stackPromotion_.forget(windowID); }

    /// True if rules do not move the window any more: they were evaluated for it, or another operation placed it.
    bool isHandledByRules(const WindowID& windowID) const { return handledByRules_.contains(windowID); }
    void noteHandledByRules(const WindowID& windowID) { handledByRules_.insert(windowID); }
    /// Forgets the handled windows for which `isLive` returns false.
    void keepHandledByRules(const std::function<bool(const WindowID& windowID)>& isLive);

    void keepOnly(const std::set<WindowID>& windowIDs);
    void rename(const WindowID& windowID, const WindowID& newID);
    void renameDisplay(const DisplayID& displayID, const DisplayID& newID);

  private:
    SpaceMemory spaces_;
    RememberedLayouts rememberedLayouts_;
    StackPromotion stackPromotion_;
    std::set<WindowID> handledByRules_;
};

} // namespace kova
