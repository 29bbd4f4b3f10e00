// Finds the open window to which a stored reference, for example that of a scene, refers.
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

/// Returns each window at most once. The windows must outlive the matcher and must not change.
class WindowMatcher {
  public:
    /// `windows` are in the order of the window list. Windows in `used` are never returned.
    WindowMatcher(const std::vector<ManagedWindow>& windows, const std::set<WindowID>& used);

    /// The first window of the reference's application whose title contains the reference's title hint or is contained
    /// in it, else the application's first window. Null if there is none. The application is found by its exact bundle
    /// identifier. If the reference has no bundle identifier, the application is found by its name, regardless of case.
    const ManagedWindow* take(const WorkspaceWindowReference& reference);

  private:
    struct Candidate {
        const ManagedWindow* window;
        std::optional<std::string> foldedTitle; // absent until first needed
        bool isUsed = false;
    };
    /// The windows of one application, in the order of the window list.
    struct Group {
        std::vector<std::size_t> members; // indices in `candidates_`
        std::size_t firstUnused = 0;      // index in `members`; all members before it are used
    };
    struct NameGroup {
        std::string name;
        Group group;
    };

    const ManagedWindow* takeFrom(Group& group, const std::optional<std::string>& titleHint);
    void groupByName();

    std::vector<Candidate> candidates_;
    std::map<BundleID, Group> byBundleIdentifier_;
    std::optional<std::vector<NameGroup>> byName_; // sorted by name; absent until first needed
};

} // namespace kova
