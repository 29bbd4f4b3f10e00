#include "workspace/WindowMatching.h"

#include "support/text/Text.h"

#include <algorithm>
#include <numeric>

namespace kova {

namespace {

/// The texts are case-folded and not empty.
bool containOneAnother(const std::string& title, const std::string& hint) {
    return title.find(hint) != std::string::npos || hint.find(title) != std::string::npos;
}

} // namespace

WindowMatcher::WindowMatcher(const std::vector<ManagedWindow>& windows, const std::set<WindowID>& used) {
    candidates_.reserve(windows.size());
    for (const auto& window : windows) {
        if (window.bundleIdentifier)
            byBundleIdentifier_[*window.bundleIdentifier].members.push_back(candidates_.size());
        candidates_.push_back({&window, std::nullopt, used.contains(window.id)});
    }
}

void WindowMatcher::groupByName() {
    std::vector<std::size_t> sorted(candidates_.size());
    std::iota(sorted.begin(), sorted.end(), std::size_t{0});
    const auto nameOf = [this](std::size_t candidate) { return candidates_[candidate].window->applicationName; };
    std::stable_sort(sorted.begin(), sorted.end(), [&](std::size_t a, std::size_t b) {
        return localizedCaseInsensitiveCompare(nameOf(a), nameOf(b)) < 0;
    });
    byName_.emplace();
    for (const std::size_t candidate : sorted) {
        if (byName_->empty() || localizedCaseInsensitiveCompare(byName_->back().name, nameOf(candidate)) != 0) {
            byName_->push_back({nameOf(candidate), {}});
        }
        byName_->back().group.members.push_back(candidate);
    }
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
    return takeFrom(group->group, reference.titleHint);
}

const ManagedWindow* WindowMatcher::takeFrom(Group& group, const std::optional<std::string>& titleHint) {
    const auto isUsed = [this](std::size_t candidate) { return candidates_[candidate].isUsed; };
    while (group.firstUnused < group.members.size() && isUsed(group.members[group.firstUnused])) ++group.firstUnused;
    const auto first = group.members.begin() + static_cast<std::ptrdiff_t>(group.firstUnused);
    auto chosen = first;
    if (titleHint && !titleHint->empty()) {
        const std::string hint = caseFolded(*titleHint);
        chosen = std::find_if(first, group.members.end(), [&](std::size_t index) {
            Candidate& candidate = candidates_[index];
            if (candidate.isUsed) return false;
            if (!candidate.foldedTitle) candidate.foldedTitle = caseFolded(candidate.window->title);
            return !candidate.foldedTitle->empty() && containOneAnother(*candidate.foldedTitle, hint);
        });
        if (chosen == group.members.end()) chosen = first;
    }
    if (chosen == group.members.end()) return nullptr;
    candidates_[*chosen].isUsed = true;
    return candidates_[*chosen].window;
}

} // namespace kova
