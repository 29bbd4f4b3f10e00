#include "control/ActionMethods.h"

#include "control/ControlRecords.h"
#include "control/Refusal.h"

namespace kova {

using nlohmann::json;

namespace {

json planned(const ArrangementPlan& plan, bool isDryRun, const std::optional<std::string>& message) {
    json result = controlRecord::plan(plan);
    result["dryRun"] = isDryRun;
    result["message"] = orNull(message);
    return result;
}

} // namespace

json performed(const WorkspaceController& controller, const std::optional<std::string>& message) {
    return {{"message", message ? json(*message) : json(nullptr)},
            {"canUndo", *controller.state().canUndo},
            {"focusMode", controlRecord::focusMode(controller)}};
}

ControlReply performAction(WorkspaceController& controller, const WorkspaceAction& action) {
    const auto outcome = controller.perform(action);
    if (!outcome) return failureOf(outcome);
    return performed(controller, outcome.message());
}

ControlReply arrange(WorkspaceController& controller, const JsonCursor& parameters) {
    const auto dryRun = parameters.optional("dryRun");
    const bool isDryRun = dryRun && dryRun->boolean();
    if (isDryRun) {
        if (auto failure = withoutPermission(controller)) return *failure;
        if (!controller.hasWindowToArrange()) return refusal(std::string(kNothingToArrange));
        return planned(controller.planArrangement(), isDryRun, std::nullopt);
    }
    const auto outcome = controller.perform(action::Arrange{});
    if (!outcome) return failureOf(outcome);
    return planned(controller.lastArrangement(), isDryRun, outcome.message());
}

ControlReply openURL(WorkspaceController& controller, URLHandler& urls, const JsonCursor& parameters) {
    const std::string url = parameters.required("url").string();
    const auto outcome = urls.handle(url);
    switch (outcome.verdict) {
    case URLHandler::Verdict::done:
        return performed(controller, outcome.message.empty() ? std::nullopt : std::optional(outcome.message));
    case URLHandler::Verdict::refused:
        return refusal(controller, outcome.message);
    case URLHandler::Verdict::notUnderstood:
    case URLHandler::Verdict::dropped:
        break;
    }
    return refusal(outcome.message);
}

WorkspaceDirection wantedDirection(const JsonCursor& parameters) {
    const JsonCursor given = parameters.required("direction");
    const std::string word = given.string();
    using enum WorkspaceDirection;
    for (const auto direction : {left, right, up, down}) {
        if (word == describe(direction)) return direction;
    }
    given.fail("expected left, right, up or down");
}

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

} // namespace kova
