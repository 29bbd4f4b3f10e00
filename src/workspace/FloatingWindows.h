// Holds the windows that a command made floating. A window floats until it is put into a tile or its process ends. The
// id of a closed window is kept, because the desktop may report an open window as closed around a sleep. Always true:
// the published set is the only copy of the ids.
#pragma once

#include "support/Identifiers.h"
#include "support/Published.h"
#include "workspace/PartDefaults.h"
#include "workspace/Renaming.h"

#include <algorithm>
#include <concepts>
#include <set>
#include <utility>

namespace kova {

class FloatingWindows : public PartWithoutPolls {
  public:
    using PublishedIDs = Published<std::set<WindowID>>;

    explicit FloatingWindows(PublishedIDs& published) : published_(published) {}

    const std::set<WindowID>& all() const { return *published_; }
    bool contains(const WindowID& windowID) const { return all().contains(windowID); }
    void add(const WindowID& windowID) {
        auto next = all();
        next.insert(windowID);
        published_.set(std::move(next));
    }
    /// Replaces the whole set, after an undo or a restart.
    void restore(std::set<WindowID> windowIDs) { published_.set(std::move(windowIDs)); }
    template <std::predicate<const WindowID&> Predicate>
    void dropIf(Predicate isDropped) {
        if (std::ranges::none_of(all(), isDropped)) return;
        auto next = all();
        std::erase_if(next, isDropped);
        published_.set(std::move(next));
    }

    void rename(const WindowID& windowID, const WindowID& newID) {
        auto next = all();
        renameIn(next, windowID, newID);
        published_.set(std::move(next));
    }
    void renameDisplay(const DisplayID&, const DisplayID&) {} // a floating window has no tile

  private:
    PublishedIDs& published_;
};

} // namespace kova
