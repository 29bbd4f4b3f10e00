#include "control/ActionMethods.h"

#include "commands/URLHandler.h"
#include "control/ControlRecords.h"
#include "control/MethodTable.h"
#include "control/Refusal.h"
#include "control/WindowCommandMethods.h"

namespace kova {

using nlohmann::json;

namespace {

json arrangementResult(const ArrangementPlan& plan, bool isDryRun, const std::optional<std::string>& message) {
    json result = controlRecord::plan(plan);
    result["dryRun"] = isDryRun;
    result["message"] = orNull(message);
    return result;
}

} // namespace

json actionResult(const WorkspaceController& controller, const std::optional<std::string>& message) {
    return {{"message", message ? json(*message) : json(nullptr)},
            {"canUndo", *controller.state().canUndo},
            {"focusMode", controlRecord::focusMode(controller)}};
}

ControlReply performAction(WorkspaceController& controller, const WorkspaceAction& action) {
    const auto outcome = controller.perform(action);
    if (!outcome) return failureOf(outcome);
    return actionResult(controller, outcome.message());
}

namespace {

/// Performs the action on the window that the parameters name.
template <class Action, class... Argument>
ControlReply performOn(WorkspaceController& controller, const JsonCursor& parameters, Argument... argument) {
    auto window = wantedWindow(controller, parameters);
    if (!window) return window.error();
    return performAction(controller, Action{argument..., *std::move(window)});
}

/// Arranges all windows. With "dryRun", returns the plan and moves no window.
ControlReply arrange(WorkspaceController& controller, const JsonCursor& parameters) {
    const auto dryRun = parameters.optional("dryRun");
    const bool isDryRun = dryRun && dryRun->boolean();
    if (isDryRun) {
        if (auto failure = permissionFailure(controller)) return *failure;
        if (!controller.hasWindowToArrange()) return refusal(std::string(kNothingToArrange));
        return arrangementResult(controller.planArrangement(), isDryRun, std::nullopt);
    }
    const auto outcome = controller.perform(action::Arrange{});
    if (!outcome) return failureOf(outcome);
    return arrangementResult(controller.lastArrangement(), isDryRun, outcome.message());
}

/// Carries out the action that the parameter "url" names. Only the client learns of an error: the workspace shows no
/// message for an unknown URL.
ControlReply openURL(WorkspaceController& controller, URLHandler& urls, const JsonCursor& parameters) {
    const std::string url = parameters.required("url").string();
    const auto outcome = urls.handle(url);
    switch (outcome.verdict) {
    case URLHandler::Verdict::done:
        return actionResult(controller, outcome.message.empty() ? std::nullopt : std::optional(outcome.message));
    case URLHandler::Verdict::refused:
        return refusal(controller, outcome.message);
    case URLHandler::Verdict::notUnderstood:
    case URLHandler::Verdict::dropped:
        break;
    }
    return refusal(outcome.message);
}

/// Returns the parameter "direction". Throws `DecodingError` if the direction is invalid.
WorkspaceDirection wantedDirection(const JsonCursor& parameters) {
    const JsonCursor given = parameters.required("direction");
    const std::string word = given.string();
    using enum WorkspaceDirection;
    for (const auto direction : {left, right, up, down}) {
        if (word == describe(direction)) return direction;
    }
    given.fail("expected left, right, up or down");
}

/// The actions that can be undone, newest first.
ControlReply listHistory(const WorkspaceController& controller) {
    json entries = json::array();
    const auto& history = controller.undoHistory().entries();
    for (auto entry = history.rbegin(); entry != history.rend(); ++entry) {
        entries.push_back({{"time", controlRecord::time(entry->time)},
                           {"action", entry->label.action},
                           {"windows", entry->label.windows}});
    }
    return json{{"entries", std::move(entries)}};
}

} // namespace

void addActionMethods(MethodTable& methods, WorkspaceController& controller, URLHandler& urls) {
    using Needs = MethodTable::Needs;
    methods.add(
        "arrange", {"dryRun"}, [&controller](const MethodCall& call) { return arrange(controller, call.parameters); },
        Needs::currentWindows);
    methods.add("focus", {"direction", "window", "display"}, [&controller](const MethodCall& call) {
        return performOn<action::Focus>(controller, call.parameters, wantedDirection(call.parameters));
    });
    methods.add("move", {"direction", "window", "display"}, [&controller](const MethodCall& call) {
        return performOn<action::Move>(controller, call.parameters, wantedDirection(call.parameters));
    });
    methods.add("zoom", {"window", "display"}, [&controller](const MethodCall& call) {
        return performOn<action::ToggleFocusZoom>(controller, call.parameters);
    });
    methods.add("undo", {}, [&controller](const MethodCall&) { return performAction(controller, action::Undo{}); });
    methods.add(
        "openURL", {"url"},
        [&controller, &urls](const MethodCall& call) { return openURL(controller, urls, call.parameters); },
        Needs::currentWindows);
    methods.add("history", {}, [&controller](const MethodCall&) { return listHistory(controller); });
}

} // namespace kova
