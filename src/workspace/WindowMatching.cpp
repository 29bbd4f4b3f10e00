#include "workspace/WindowMatching.h"

#include "support/text/Text.h"

#include <algorithm>

namespace kova {

namespace {

/// Both in lower case, neither empty.
bool containOneAnother(const std::string& title, const std::string& hint) {
    return title.find(hint) != std::string::npos || hint.find(title) != std::string::npos;
}

} // namespace

WindowMatcher::WindowMatcher(const std::vector<ManagedWindow>& windows, const std::set<std::string>& used) :
    windows_(windows), used_(used) {
    for (const auto& window : windows) {
        if (!window.bundleIdentifier || used_.contains(window.id)) continue;
        byBundleIdentifier_[*window.bundleIdentifier].push_back({&window, std::nullopt});
    }
}

void WindowMatcher::groupByName() {
    byName_.emplace();
    for (const auto& window : windows_) byName_->push_back({window.applicationName, {{&window, std::nullopt}}});
    std::stable_sort(byName_->begin(), byName_->end(), [](const NameGroup& a, const NameGroup& b) {
        return localizedCaseInsensitiveCompare(a.name, b.name) < 0;
    });
    std::vector<NameGroup> joined;
    for (auto& group : *byName_) {
        if (joined.empty() || localizedCaseInsensitiveCompare(joined.back().name, group.name) != 0) {
            joined.push_back(std::move(group));
        } else {
            joined.back().candidates.push_back(std::move(group.candidates.front()));
        }
    }
    *byName_ = std::move(joined);
}

const ManagedWindow* WindowMatcher::take(const WorkspaceWindowReference& reference) {
    if (reference.bundleIdentifier) {
        const auto group = byBundleIdentifier_.find(*reference.bundleIdentifier);
        return group == byBundleIdentifier_.end() ? nullptr : takeFrom(group->second, reference.titleHint);
    }
    if (!byName_) groupByName();
    const auto group = std::lower_bound(byName_->begin(), byName_->end(), reference.applicationName,
                                        [](const NameGroup& candidate, const std::string& name) {
                                            return localizedCaseInsensitiveCompare(candidate.name, name) < 0;
                                        });
    if (group == byName_->end() || localizedCaseInsensitiveCompare(group->name, reference.applicationName) != 0) {
        return nullptr;
    }
    return takeFrom(group->candidates, reference.titleHint);
}

const ManagedWindow* WindowMatcher::takeFrom(Candidates& candidates, const std::optional<std::string>& titleHint) {
    // The window may have been given under its other mark.
    std::erase_if(candidates, [&](const Candidate& candidate) { return used_.contains(candidate.window->id); });
    auto chosen = candidates.begin();
    if (titleHint && !titleHint->empty()) {
        const std::string hint = lowercased(*titleHint);
        chosen = std::find_if(candidates.begin(), candidates.end(), [&](Candidate& candidate) {
            if (!candidate.foldedTitle) candidate.foldedTitle = lowercased(candidate.window->title);
            return !candidate.foldedTitle->empty() && containOneAnother(*candidate.foldedTitle, hint);
        });
        if (chosen == candidates.end()) chosen = candidates.begin();
    }
    if (chosen == candidates.end()) return nullptr;
    const ManagedWindow* window = chosen->window;
    used_.insert(window->id);
    return window;
}

} // namespace kova
