// Finds the open window that matches a saved reference.
#pragma once

#include "persistence/WorkspaceProductDocument.h"
#include "support/Identifiers.h"
#include "windowing/ManagedWindow.h"

#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace kova {

/// Returns each window at most once. The windows must outlive it unchanged.
class WindowMatcher {
  public:
    /// `windows` in the order in which they were enumerated; those in `used` match nothing.
    WindowMatcher(const std::vector<ManagedWindow>& windows, const std::set<WindowID>& used);

    /// The first window of the application whose title and the reference's hint contain one another, else the first of
    /// the application; null when there is none. An application is known by its bundle identifier, to the letter, or
    /// else by its name as people read it.
    const ManagedWindow* take(const WorkspaceWindowReference& reference);

  private:
    struct Candidate {
        const ManagedWindow* window;
        std::optional<std::string> foldedTitle; // once it was needed
        bool isUsed = false;
    };
    /// The windows of one application, in the order of enumeration.
    struct Group {
        std::vector<std::size_t> members; // indices of candidates
        std::size_t firstUnused = 0;      // all before it are used
    };
    struct NameGroup {
        std::string name;
        Group group;
    };

    const ManagedWindow* takeFrom(Group& group, const std::optional<std::string>& titleHint);
    void groupByName();

    std::vector<Candidate> candidates_;
    std::map<BundleID, Group> byBundleIdentifier_;
    std::optional<std::vector<NameGroup>> byName_; // in the order of names; made when the first reference needs it
};

} // namespace kova
