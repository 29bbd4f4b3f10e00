#include "workspace/RuleMatching.h"

#include "layout/SlotNames.h"
#include "support/Overloaded.h"
#include "support/Quoted.h"
#include "support/text/Text.h"

#include <algorithm>

namespace kova {

namespace {

bool hasTitleCriterion(const WorkspaceRule& rule) {
    return rule.titleContains && !rule.titleContains->empty();
}

std::string reasonText(RuleVerdict verdict, const WorkspaceRule& rule, const ManagedWindow& window,
                       const std::vector<LayoutDefinition>& catalogue) {
    switch (verdict) {
    case RuleVerdict::matches:
        return "matches: " + describe(rule.disposition, catalogue);
    case RuleVerdict::disabled:
        return "is disabled";
    case RuleVerdict::withoutCriterion:
        return "has no criterion and never matches";
    case RuleVerdict::otherApplication:
        if (rule.bundleIdentifier && window.bundleIdentifier != rule.bundleIdentifier) {
            return "is for " + rule.bundleIdentifier->text() + ", the window belongs to " +
                   (window.bundleIdentifier ? window.bundleIdentifier->text() : window.applicationName);
        }
        return "is for " + rule.applicationName.value_or("") + ", the window belongs to " + window.applicationName;
    case RuleVerdict::otherTitle:
        return "asks for " + quoted(*rule.titleContains) + " in the title, which is " + quoted(window.title);
    case RuleVerdict::titleAwaited:
        return "asks for " + quoted(*rule.titleContains) + " in the title, and the window has none yet";
    case RuleVerdict::notConsulted:
        return "is not consulted, an earlier rule decides";
    }
    return "";
}

} // namespace

RuleVerdict verdictOf(const WorkspaceRule& rule, const ManagedWindow& window) {
    if (!rule.isEnabled) return RuleVerdict::disabled;
    if (!rule.bundleIdentifier && !rule.applicationName && !hasTitleCriterion(rule)) {
        return RuleVerdict::withoutCriterion;
    }
    if (rule.bundleIdentifier && window.bundleIdentifier != rule.bundleIdentifier) return RuleVerdict::otherApplication;
    if (rule.applicationName && localizedCaseInsensitiveCompare(*rule.applicationName, window.applicationName) != 0) {
        return RuleVerdict::otherApplication;
    }
    if (!hasTitleCriterion(rule)) return RuleVerdict::matches;
    if (window.title.empty()) return RuleVerdict::titleAwaited;
    return localizedCaseInsensitiveContains(window.title, *rule.titleContains) ? RuleVerdict::matches
                                                                               : RuleVerdict::otherTitle;
}

std::optional<std::size_t> decidingRule(const std::vector<WorkspaceRule>& rules, const ManagedWindow& window) {
    const auto found = std::find_if(rules.begin(), rules.end(), [&](const WorkspaceRule& rule) {
        return verdictOf(rule, window) == RuleVerdict::matches;
    });
    if (found == rules.end()) return std::nullopt;
    return static_cast<std::size_t>(found - rules.begin());
}

bool awaitsTitle(const std::vector<WorkspaceRule>& rules, const ManagedWindow& window) {
    for (const auto& rule : rules) {
        const RuleVerdict verdict = verdictOf(rule, window);
        if (verdict == RuleVerdict::matches || verdict == RuleVerdict::titleAwaited) {
            return verdict == RuleVerdict::titleAwaited;
        }
    }
    return false;
}

bool isExcluded(const std::vector<WorkspaceRule>& rules, const ManagedWindow& window) {
    const auto deciding = decidingRule(rules, window);
    return deciding && !std::holds_alternative<disposition::Tile>(rules[*deciding].disposition);
}

RuleExplanation explainRules(const std::vector<WorkspaceRule>& rules, const ManagedWindow& window,
                             const std::vector<std::string>& remarks, const std::vector<LayoutDefinition>& catalogue) {
    RuleExplanation explanation;
    for (std::size_t i = 0; i < rules.size(); ++i) {
        const RuleVerdict verdict = explanation.deciding ? RuleVerdict::notConsulted : verdictOf(rules[i], window);
        if (verdict == RuleVerdict::matches) explanation.deciding = i;
        explanation.reasons.push_back(
            {rules[i].id, rules[i].name, verdict, reasonText(verdict, rules[i], window, catalogue)});
    }
    explanation.summary = explanation.deciding
                              ? "Rule " + quoted(rules[*explanation.deciding].name) +
                                    " decides: " + describe(rules[*explanation.deciding].disposition, catalogue)
                              : "No rule matches";
    if (awaitsTitle(rules, window)) explanation.summary = "The window has no title yet, and a rule needs it";
    for (const auto& remark : remarks) explanation.summary += "; " + remark;
    return explanation;
}

std::string describe(const WorkspaceRuleDisposition& disposition, const std::vector<LayoutDefinition>& catalogue) {
    return std::visit(
        Overloaded{[&](const disposition::Tile& tile) { return "tile " + slotName(catalogue, tile.slotID); },
                   [](const disposition::Float&) { return std::string("float"); },
                   [](const disposition::Ignore&) { return std::string("ignore"); }},
        disposition);
}

std::string ruleName(std::string_view applicationName, const WorkspaceRuleDisposition& disposition) {
    return std::string(applicationName) + " " +
           std::visit(Overloaded{[](const disposition::Tile& tile) { return "→ " + tile.slotID.text(); },
                                 [](const disposition::Float&) { return std::string("floats"); },
                                 [](const disposition::Ignore&) { return std::string("ignored"); }},
                      disposition);
}

} // namespace kova
