// Finds the rule that decides for a window, and explains the decision.
#pragma once

#include "layout/LayoutCatalogue.h"
#include "persistence/WorkspaceProductDocument.h"
#include "windowing/ManagedWindow.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kova {

/// Why a rule matches a window or not.
enum class RuleVerdict {
    matches,
    disabled,
    withoutCriterion,
    otherApplication,
    otherTitle,
    titleAwaited, // the rule needs a title, and the window has none yet
    notConsulted, // an earlier rule decides
};

/// The verdict on this rule, without regard to other rules. Never `notConsulted`.
RuleVerdict verdictOf(const WorkspaceRule& rule, const ManagedWindow& window);

/// The first rule in the list that matches; absent when none does.
std::optional<std::size_t> decidingRule(const std::vector<WorkspaceRule>& rules, const ManagedWindow& window);

/// True if the rules must wait for the window's title: a rule that needs the title precedes every rule that matches
/// now.
bool awaitsTitle(const std::vector<WorkspaceRule>& rules, const ManagedWindow& window);

/// Whether the rules keep the window out of arrangements.
bool isExcluded(const std::vector<WorkspaceRule>& rules, const ManagedWindow& window);

struct RuleReason {
    Uuid ruleID;
    std::string name;
    RuleVerdict verdict = RuleVerdict::notConsulted;
    std::string text; // in plain words
};

struct RuleExplanation {
    std::optional<std::size_t> deciding; // index of the rule that decides; absent when none does
    std::vector<RuleReason> reasons;     // one for each rule, in the order of the rules
    std::string summary;                 // one line in plain words
};

/// `remarks` are sentences about the present state, for example that rules are switched off; the summary ends with
/// them. `catalogue` supplies the names of tiles.
RuleExplanation explainRules(const std::vector<WorkspaceRule>& rules, const ManagedWindow& window,
                             const std::vector<std::string>& remarks, const std::vector<LayoutDefinition>& catalogue);

/// "tile Secondary 1", "float", "ignore".
std::string describe(const WorkspaceRuleDisposition& disposition, const std::vector<LayoutDefinition>& catalogue);
/// The name of a new rule: "Mail → focus-main", "Mail floats", "Mail ignored".
std::string ruleName(std::string_view applicationName, const WorkspaceRuleDisposition& disposition);

} // namespace kova
