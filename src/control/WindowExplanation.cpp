#include "control/WindowExplanation.h"

#include "control/ControlRecords.h"
#include "control/MethodTable.h"
#include "control/NameLookup.h"
#include "control/Refusal.h"
#include "layout/AutoArrangeLearning.h"
#include "layout/SlotNames.h"
#include "workspace/WindowNames.h"
#include "workspace/WorkspaceController.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

namespace kova {

namespace {

using nlohmann::json;

/// The plan's explanation for the window; absent if the plan neither places the window nor finds it surplus.
std::optional<std::string> decisionIn(const ArrangementPlan& plan, const WindowID& windowID) {
    for (const auto& placement : plan.placements) {
        if (placement.window.id == windowID) return placement.explanation;
    }
    for (const auto& left : plan.surplus) {
        if (left.window.id == windowID) return left.explanation;
    }
    return std::nullopt;
}

const ManagedWindow* liveWindow(const WorkspaceController& controller, const WindowID& windowID) {
    const auto& live = controller.liveWindows();
    const auto window = std::find_if(live.begin(), live.end(), [&](const auto& each) { return each.id == windowID; });
    return window == live.end() ? nullptr : &*window;
}

/// The front window of the tile; null if the tile has none.
const ManagedWindow* frontOf(const WorkspaceController& controller, const TileTarget& target) {
    const auto& fronts = controller.assignments().assignedWindowIDs;
    const auto front = fronts.find(target);
    return front == fronts.end() ? nullptr : liveWindow(controller, front->second);
}

/// Like "behind Mail “Inbox” in Primary on A".
std::string placeBehind(const WorkspaceController& controller, const TileTarget& target) {
    const ManagedWindow* front = frontOf(controller, target);
    return "behind " + (front ? nameOf(*front) : "another window") + " in " +
           controlRecord::tileName(controller, target);
}

std::string whereItIs(const WorkspaceController& controller, const ManagedWindow& window) {
    const TileAssignments& assignments = controller.assignments();
    const auto& mode = *controller.state().focusMode;
    if (mode && mode->windowID == window.id) return nameOf(window) + " has the whole display to itself (focus mode).";
    const std::string returning = window.isMaximized
                                      ? " It was maximized by hand and returns to this tile when it is restored."
                                  : window.isFullScreen ? " It is in full screen and returns to this tile afterwards."
                                                        : "";
    if (const auto front = assignments.targetOf(window.id)) {
        const std::size_t more = assignments.targetsOf(window.id).size() - 1;
        const std::string span = more == 0
                                     ? ""
                                     : ", and in " + std::to_string(more) + (more == 1 ? " more tile" : " more tiles") +
                                           ", because it does not fit one tile";
        return nameOf(window) + " is in " + controlRecord::tileName(controller, *front) + span + "." + returning;
    }
    if (const auto stacked = assignments.stackTargetOf(window.id)) {
        return nameOf(window) + " is " + placeBehind(controller, *stacked) + ".";
    }
    return nameOf(window) + " is in no tile.";
}

/// A text that says where the window is now, for use after "no longer: ". The window may have been closed.
std::string presentPlace(const WorkspaceController& controller, const WindowID& windowID) {
    const ManagedWindow* window = liveWindow(controller, windowID);
    if (!window) return "it is closed";
    const TileAssignments& assignments = controller.assignments();
    const auto front = assignments.targetOf(windowID);
    if (front && !window->isMinimized) return "it is in " + controlRecord::tileName(controller, *front);
    if (const auto stacked = assignments.stackTargetOf(windowID); stacked && !front) {
        return "it is " + placeBehind(controller, *stacked);
    }
    if (window->isElsewhere) return "it is on another desktop, or too small to be managed";
    return window->isMinimized ? "it is minimized" : "it is in no tile";
}

/// True if the window is still where the placement put it.
bool stillHolds(const WorkspaceController& controller, const AutoArrangePlacement& placement) {
    const TileAssignments& assignments = controller.assignments();
    const WindowID& id = placement.window.id;
    if (placement.isPrimary) {
        const ManagedWindow* window = liveWindow(controller, id);
        return window && !window->isMinimized && assignments.targetOf(id) == placement.target.id();
    }
    if (assignments.isAssigned(id) || assignments.stackTargetOf(id) != placement.target.id()) return false;
    const ManagedWindow* front = frontOf(controller, placement.target.id());
    return front && (placement.behindID ? front->id == *placement.behindID : front->isFullScreen);
}

/// The rule that keeps the window out of arrangements; null if there is no such rule.
const WorkspaceRule* excludingRule(const WorkspaceController& controller, const ManagedWindow& window) {
    const auto& rules = *controller.state().rules;
    if (!*controller.state().continuousManagementEnabled || !isExcluded(rules, window)) return nullptr;
    return &rules[*decidingRule(rules, window)];
}

/// The name of the application that has this key in the preferences; the key itself if the application has no window.
std::string applicationWith(const WorkspaceController& controller, const std::string& key) {
    for (const ManagedWindow& window : controller.liveWindows()) {
        if (applicationKey(window.applicationName, window.bundleIdentifier) == key) return window.applicationName;
    }
    return key;
}

/// A decision of the last arrangement, and whether it still holds.
struct ExplainedDecision {
    std::string text;
    std::string now; // where the window is now; empty if the decision still holds
};

/// The decisions of the last arrangement, in its order; none before the first arrangement.
std::vector<ExplainedDecision> explainLastArrangement(const WorkspaceController& controller) {
    const ArrangementPlan& plan = controller.lastArrangement();
    std::vector<ExplainedDecision> decisions;
    for (const auto& placement : plan.placements) {
        const bool holds = stillHolds(controller, placement);
        decisions.push_back({placement.explanation, holds ? "" : presentPlace(controller, placement.window.id)});
    }
    for (const auto& surplus : plan.surplus) {
        const std::string now = presentPlace(controller, surplus.window.id);
        decisions.push_back({surplus.explanation, now == "it is minimized" ? "" : now});
    }
    for (const auto& left : plan.leftAlone) {
        const std::string now = presentPlace(controller, left.window.id);
        decisions.push_back({left.explanation, now == "it is in no tile" ? "" : now});
    }
    return decisions;
}

/// Choices that later arrangements will respect: preferred applications, and rules that leave windows out.
std::vector<std::string> explainStandingChoices(const WorkspaceController& controller) {
    std::vector<std::string> lines;
    for (const auto& [slotID, application] : controller.state().profile->preferredApplications) {
        lines.push_back("The tile " + slotName(controller.catalogue(), slotID) + " is offered to " +
                        applicationWith(controller, application) + " first.");
    }
    if (!controller.state().rules->empty() && !*controller.state().continuousManagementEnabled) {
        lines.emplace_back("Rules are off; “kova rules on” lets them act.");
    }
    for (const ManagedWindow& window : controller.liveWindows()) {
        const auto* rule = excludingRule(controller, window);
        if (!rule) continue;
        lines.push_back(nameOf(window) + " is left alone: the rule “" + rule->name + "” says " +
                        describe(rule->disposition, controller.catalogue()) + ".");
    }
    return lines;
}

/// Where the window is, which rule decides for it, what the last arrangement decided and what another arrangement
/// would decide.
std::vector<std::string> explainWindow(const WorkspaceController& controller, const ManagedWindow& window) {
    if (const ManagedWindow* owner = controller.windowOfDialog(window)) {
        return {nameOf(window) + " is a dialog of " + nameOf(*owner) +
                ": it takes no tile of its own and moves along with that window."};
    }
    std::vector<std::string> lines{whereItIs(controller, window)};
    const auto rules = controller.explainRules(window.id);
    if (rules && rules->deciding) lines.push_back(rules->summary + ".");
    const auto last = decisionIn(controller.lastArrangement(), window.id);
    if (last) lines.push_back("The last arrangement decided: " + *last);
    const auto next = decisionIn(controller.planArrangement(), window.id);
    const auto causes = controller.whyItStays(window);
    lines.insert(lines.end(), causes.begin(), causes.end());
    if (next)
        lines.push_back(next == last ? "Arranging now would decide the same." : "Arranging now would decide: " + *next);
    return lines;
}

ControlReply explain(const WorkspaceController& controller, const JsonCursor& parameters) {
    const auto named = parameters.optional("window");
    if (!named) {
        json lines = json::array(), decisions = json::array();
        for (const auto& decision : explainLastArrangement(controller)) {
            const bool holds = decision.now.empty();
            lines.push_back(holds ? decision.text : decision.text + " (no longer: " + decision.now + ")");
            decisions.push_back(
                {{"text", decision.text}, {"holds", holds}, {"now", holds ? json() : json(decision.now)}});
        }
        for (auto& line : explainStandingChoices(controller)) lines.push_back(std::move(line));
        return json{{"window", nullptr}, {"lines", std::move(lines)}, {"decisions", std::move(decisions)}};
    }
    if (auto failure = permissionFailure(controller)) return *failure;
    const auto found = lookUpWindowOrDialog(controller, named->string());
    if (!found) {
        const UnmanagedWindow* unmanaged = findUnmanagedWindow(controller, named->string());
        if (!unmanaged) return found.error();
        const std::string line =
            unmanaged->applicationName + " " + quoted(unmanaged->title) + " is not managed: " + unmanaged->reason + ".";
        return json{{"window", nullptr}, {"lines", {line}}, {"decisions", json::array()}};
    }
    const auto& window = *found;
    return json{{"window", controlRecord::window(window, controller)},
                {"lines", explainWindow(controller, window)},
                {"decisions", json::array()}};
}

} // namespace

void addExplanationMethods(MethodTable& methods, const WorkspaceController& controller) {
    methods.add("explain", {"window"},
                [&controller](const MethodCall& call) { return explain(controller, call.parameters); });
}

} // namespace kova
