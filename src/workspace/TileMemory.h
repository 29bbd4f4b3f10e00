// Remembers placements that are not among the present assignments: on Spaces that are not shown, in layouts that the
// user has replaced, and of windows that others displaced; also the windows that rules have already handled. Always
// true: closed windows are forgotten.
#pragma once

#include "workspace/PartDefaults.h"
#include "workspace/RememberedLayouts.h"
#include "workspace/SpaceMemory.h"
#include "workspace/StackSuccession.h"

#include <functional>
#include <set>
#include <string>

namespace kova {

class TileMemory : public PartWithoutPolls {
  public:
    SpaceMemory& spaces() { return spaces_; }
    const SpaceMemory& spaces() const { return spaces_; }
    RememberedLayouts& homes() { return homes_; }
    const RememberedLayouts& homes() const { return homes_; }
    StackSuccession& succession() { return succession_; }

    /// Windows that rules do not move any more: the rules were evaluated for them, or another operation placed them.
    bool isHandledByRules(const WindowID& windowID) const { return handledByRules_.contains(windowID); }
    void noteHandledByRules(const WindowID& windowID) { handledByRules_.insert(windowID); }
    void keepHandledByRules(const std::function<bool(const WindowID& windowID)>& isLive);

    void keepOnly(const std::set<WindowID>& windowIDs);
    void rename(const WindowID& windowID, const WindowID& newID);
    void renameDisplay(const DisplayID& displayID, const DisplayID& newID);

  private:
    SpaceMemory spaces_;
    RememberedLayouts homes_;
    StackSuccession succession_;
    std::set<WindowID> handledByRules_;
};

} // namespace kova
