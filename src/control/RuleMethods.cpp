#include "control/RuleMethods.h"

#include "control/ControlRecords.h"
#include "control/MethodTable.h"
#include "control/NameLookup.h"
#include "control/Refusal.h"
#include "layout/SlotNames.h"
#include "workspace/RuleMatches.h"
#include "workspace/WorkspaceController.h"

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <utility>

namespace kova {

namespace {

using nlohmann::json;

constexpr std::int64_t kLargestPlace = 1'000'000; // the largest number that the method “rule.move” accepts

/// The name of the slot; its id if no layout has such a slot.
std::string slotNameOrID(const SlotID& slotID, const std::vector<SlotName>& slots) {
    const auto found = std::ranges::find(slots, slotID, &SlotName::id);
    return found == slots.end() ? slotID.text() : found->name;
}

/// The rule's name as the user sees it. A rule's name can end with an arrow and the id of a slot; the label has the
/// slot's name in place of the id.
std::string label(const WorkspaceRule& rule, const std::vector<SlotName>& slots) {
    static constexpr std::string_view kArrow = " → ";
    const auto arrow = rule.name.rfind(kArrow);
    if (arrow == std::string::npos) return rule.name;
    const SlotID slotID(rule.name.substr(arrow + kArrow.size()));
    return rule.name.substr(0, arrow) + std::string(kArrow) + slotNameOrID(slotID, slots);
}

json record(const WorkspaceRule& rule, std::size_t number, const std::vector<SlotName>& slots) {
    const auto* tile = std::get_if<disposition::Tile>(&rule.disposition);
    const bool floats = std::holds_alternative<disposition::Float>(rule.disposition);
    return {{"number", number},
            {"id", rule.id.string()},
            {"name", rule.name},
            {"label", label(rule, slots)},
            {"isEnabled", rule.isEnabled},
            {"bundleIdentifier", orNull(rule.bundleIdentifier)},
            {"applicationName", orNull(rule.applicationName)},
            {"title", orNull(rule.titleContains)},
            {"disposition", tile     ? "tile"
                            : floats ? "float"
                                     : "ignore"},
            {"slot", tile ? json(tile->slotID) : json(nullptr)},
            {"slotName", tile ? json(slotNameOrID(tile->slotID, slots)) : json(nullptr)}};
}

json record(const WorkspaceController& controller, std::size_t index) {
    return record((*controller.state().rules)[index], index + 1, slotNames(controller.catalogue()));
}

json windowsOf(const std::vector<RuleMatch>& matches, const WorkspaceController& controller) {
    json windows = json::array();
    for (const RuleMatch& match : matches) {
        json window = controlRecord::briefWindow(controller, match.windowID);
        window["decides"] = match.decides;
        windows.push_back(std::move(window));
    }
    return windows;
}

json ruleAndCount(const WorkspaceController& controller, json rule) {
    return {{"rule", std::move(rule)}, {"rules", controller.state().rules->size()}};
}

ControlResult<std::size_t> wantedRule(const WorkspaceController& controller, const JsonCursor& parameters) {
    return lookUpRule(controller, parameters.required("rule").string());
}

ControlResult<WorkspaceRuleDisposition> wantedDisposition(const WorkspaceController& controller,
                                                          const JsonCursor& parameters) {
    const JsonCursor given = parameters.required("disposition");
    const std::string word = given.string();
    const auto slot = parameters.optional("slot");
    if (word == "tile") {
        auto found = lookUpSlotOfAnyLayout(controller, parameters.required("slot").string());
        if (!found) return found.error();
        return disposition::Tile{*std::move(found)};
    }
    if (slot) slot->fail("only “tile” takes a slot");
    if (word == "float") return disposition::Float{};
    if (word == "ignore") return disposition::Ignore{};
    given.fail("expected tile, float or ignore");
}

/// Sets the application of the rule, and the name of the rule. Returns the error if there is no such application.
std::optional<ControlFailure> setApplication(WorkspaceRule& rule, const WorkspaceController& controller,
                                             const std::string& wanted) {
    const auto application = lookUpApplicationForRule(controller, wanted);
    if (!application) return application.error();
    const auto& [name, bundleIdentifier] = *application;
    rule.bundleIdentifier = bundleIdentifier;
    if (!rule.bundleIdentifier) rule.applicationName = name;
    rule.name = ruleName(name, rule.disposition);
    return std::nullopt;
}

std::string_view word(RuleVerdict verdict) {
    switch (verdict) {
    case RuleVerdict::matches:
        return "matches";
    case RuleVerdict::disabled:
        return "disabled";
    case RuleVerdict::withoutCriterion:
        return "withoutCriterion";
    case RuleVerdict::otherApplication:
        return "otherApplication";
    case RuleVerdict::otherTitle:
        return "otherTitle";
    case RuleVerdict::titleAwaited:
        return "titleAwaited";
    case RuleVerdict::notConsulted:
        return "notConsulted";
    }
    return "";
}

/// Lists the rules in their order, each with the windows that it matches. The first rule that matches a window decides.
ControlReply listRules(const WorkspaceController& controller) {
    const auto matches = matchesOf(*controller.state().rules, controller.liveWindows());
    const auto slots = slotNames(controller.catalogue());
    json rules = json::array();
    for (std::size_t i = 0; i < controller.state().rules->size(); ++i) {
        json rule = record((*controller.state().rules)[i], i + 1, slots);
        rule["windows"] =
            i < matches.size() ? windowsOf(matches[i], controller) : json(nullptr); // null: too many rules
        rules.push_back(std::move(rule));
    }
    return json{{"isOn", *controller.state().continuousManagementEnabled}, {"rules", std::move(rules)}};
}

ControlReply addRule(WorkspaceController& controller, const JsonCursor& parameters) {
    const auto application = parameters.optional("application");
    const auto focused = parameters.optional("focused");
    const bool isForFocused = focused && focused->boolean();
    const auto windowGiven = parameters.optional("window");
    const auto title = parameters.optional("title");
    const std::string titleText = title ? title->string() : "";
    if (int(application.has_value()) + int(windowGiven.has_value()) + int(isForFocused) > 1) {
        parameters.fail("only one of “application”, “window” and “focused” can be given");
    }
    if (!application && !windowGiven && !isForFocused) (void)parameters.required("application");
    const auto found = wantedDisposition(controller, parameters);
    if (!found) return found.error();
    const auto& disposition = *found;

    std::optional<std::string> message;
    if (isForFocused || windowGiven) {
        action::AddRuleForWindow rule{.disposition = disposition};
        if (windowGiven) {
            const auto named = lookUpWindow(controller, windowGiven->string());
            if (!named) return named.error();
            rule.windowID = named->id;
        }
        const auto outcome = controller.perform(rule);
        if (!outcome) return failureOf(outcome);
        message = outcome.message();
        if (title)
            (void)controller.perform(
                action::ChangeRule{.id = controller.state().rules->back().id, .titleContains = titleText});
    } else {
        WorkspaceRule rule;
        rule.disposition = disposition;
        rule.titleContains = titleText;
        if (auto failure = setApplication(rule, controller, application->string())) return *std::move(failure);
        const auto outcome = controller.perform(action::AddRule{std::move(rule)});
        if (!outcome) return failureOf(outcome);
        message = outcome.message();
    }
    return json{{"rule", record(controller, controller.state().rules->size() - 1)},
                {"isOn", *controller.state().continuousManagementEnabled},
                {"message", orNull(message)}};
}

/// Changes a rule's disposition, its title text, or both. The rule keeps its name, its place and its application.
ControlReply changeRule(WorkspaceController& controller, const JsonCursor& parameters) {
    const auto title = parameters.optional("title");
    const std::string titleText = title ? title->string() : "";
    std::optional<WorkspaceRuleDisposition> disposition;
    if (parameters.optional("disposition") || !title) {
        auto wanted = wantedDisposition(controller, parameters);
        if (!wanted) return wanted.error();
        disposition = *std::move(wanted);
    } else if (const auto slot = parameters.optional("slot")) {
        slot->fail("only “tile” takes a slot");
    }
    const auto found = wantedRule(controller, parameters);
    if (!found) return found.error();
    const auto index = *found;
    const auto id = (*controller.state().rules)[index].id;
    action::ChangeRule change{.id = id, .disposition = std::move(disposition)};
    if (title) change.titleContains = titleText;
    if (const auto outcome = controller.perform(change); !outcome) return failureOf(outcome);
    return ruleAndCount(controller, record(controller, index));
}

enum class RuleSwitch { disable, enable };

ControlReply switchRule(WorkspaceController& controller, const JsonCursor& parameters, RuleSwitch direction) {
    const auto found = wantedRule(controller, parameters);
    if (!found) return found.error();
    const auto index = *found;
    controller.perform(
        action::ChangeRule{.id = (*controller.state().rules)[index].id, .isEnabled = direction == RuleSwitch::enable});
    return ruleAndCount(controller, record(controller, index));
}

ControlReply deleteRule(WorkspaceController& controller, const JsonCursor& parameters) {
    const auto found = wantedRule(controller, parameters);
    if (!found) return found.error();
    const auto index = *found;
    json deleted = record(controller, index);
    controller.perform(action::DeleteRule{(*controller.state().rules)[index].id});
    return ruleAndCount(controller, std::move(deleted));
}

ControlReply moveRule(WorkspaceController& controller, const JsonCursor& parameters) {
    const JsonCursor given = parameters.required("to");
    const std::int64_t to = given.integer();
    if (to < 1 || to > kLargestPlace) given.fail("expected a place in the list, from 1 on");
    const auto found = wantedRule(controller, parameters);
    if (!found) return found.error();
    const auto place = std::min(static_cast<std::size_t>(to), controller.state().rules->size()) - 1;
    controller.perform(action::MoveRule{(*controller.state().rules)[*found].id, place});
    return ruleAndCount(controller, record(controller, place));
}

enum class RulesSwitch { off, on };

ControlReply switchRules(WorkspaceController& controller, RulesSwitch direction) {
    controller.perform(action::Switch{action::Setting::continuousManagement, direction == RulesSwitch::on});
    return json{{"isOn", *controller.state().continuousManagementEnabled}};
}

/// Returns which rule decides for a window, and the verdict of every rule.
ControlReply testRules(const WorkspaceController& controller, const JsonCursor& parameters) {
    if (auto failure = permissionFailure(controller)) return *failure;
    const auto found = lookUpWindow(controller, parameters.required("window").string());
    if (!found) return found.error();
    const auto& window = *found;
    const auto explanation = controller.explainRules(window.id);
    if (!explanation) return refusal("The window no longer exists");
    json reasons = json::array();
    for (const auto& reason : explanation->reasons) {
        reasons.push_back({{"rule", reason.ruleID.string()},
                           {"name", reason.name},
                           {"verdict", word(reason.verdict)},
                           {"text", reason.text}});
    }
    return json{{"window", controlRecord::window(window, controller)},
                {"rule", explanation->deciding ? record(controller, *explanation->deciding) : json(nullptr)},
                {"summary", explanation->summary},
                {"reasons", std::move(reasons)}};
}

} // namespace

void addRuleMethods(MethodTable& methods, WorkspaceController& controller) {
    methods.add("rule.list", {}, [&controller](const MethodCall&) { return listRules(controller); });
    methods.addSaved("rule.add", {"application", "window", "focused", "title", "disposition", "slot"},
                     [&controller](const MethodCall& call) { return addRule(controller, call.parameters); });
    methods.addSaved("rule.change", {"rule", "title", "disposition", "slot"},
                     [&controller](const MethodCall& call) { return changeRule(controller, call.parameters); });
    methods.addSaved("rule.enable", {"rule"}, [&controller](const MethodCall& call) {
        return switchRule(controller, call.parameters, RuleSwitch::enable);
    });
    methods.addSaved("rule.disable", {"rule"}, [&controller](const MethodCall& call) {
        return switchRule(controller, call.parameters, RuleSwitch::disable);
    });
    methods.addSaved("rule.delete", {"rule"},
                     [&controller](const MethodCall& call) { return deleteRule(controller, call.parameters); });
    methods.addSaved("rule.move", {"rule", "to"},
                     [&controller](const MethodCall& call) { return moveRule(controller, call.parameters); });
    methods.add("rule.test", {"window"},
                [&controller](const MethodCall& call) { return testRules(controller, call.parameters); });
    methods.addSaved("rules.on", {},
                     [&controller](const MethodCall&) { return switchRules(controller, RulesSwitch::on); });
    methods.addSaved("rules.off", {},
                     [&controller](const MethodCall&) { return switchRules(controller, RulesSwitch::off); });
}

} // namespace kova
