#include "workspace/RuleMatches.h"

#include "workspace/RuleMatching.h"

#include <algorithm>

namespace kova {

std::vector<std::vector<RuleMatch>> matchesOf(std::span<const WorkspaceRule> rules,
                                              const std::vector<ManagedWindow>& windows) {
    std::vector<std::vector<RuleMatch>> matches(std::min(rules.size(), kMostRulesMatched));
    for (const ManagedWindow& window : windows) {
        bool isDecided = false;
        for (std::size_t i = 0; i < matches.size(); ++i) {
            if (verdictOf(rules[i], window) != RuleVerdict::matches) continue;
            matches[i].push_back({window.id, !isDecided});
            isDecided = true;
        }
    }
    return matches;
}

} // namespace kova
