#include "control/ActionMethods.h"

#include "control/ControlRecords.h"
#include "control/Refusal.h"
#include "support/Overloaded.h"

#include <utility>

namespace kova {

namespace {

using nlohmann::json;

/// Why an action that begins at the focused window did nothing, where the workspace kept silent.
std::string silentReason(const WorkspaceController& controller, std::string otherwise) {
    const ManagedWindow* focused = controller.focusedWindow();
    if (!focused) return "No window that is managed has the focus";
    if (!controller.assignments().isAssigned(focused->id)) return focused->applicationName + " is in no tile";
    return otherwise;
}

std::string silentReason(const WorkspaceController& controller, const WorkspaceAction& action) {
    return std::visit(
        Overloaded{
            [&](const action::Focus&) { return silentReason(controller, "The window there could not be focused"); },
            [&](const action::Move&) { return silentReason(controller, "The window was not moved"); },
            [](const action::ActivateScene&) { return std::string("There is no such scene"); },
            [&](const action::CycleStack&) {
                return silentReason(controller, "No other window waits behind the focused one");
            },
            [&](const action::ToggleFocusZoom&) {
                return std::string(controller.focusedWindow() ? "The focused window lies on no display"
                                                              : "No window that is managed has the focus");
            },
            [](const action::Arrange&) { return std::string("There is nothing to arrange"); },
            [](const action::Undo&) { return std::string("There is nothing to undo"); },
        },
        action);
}

json performed(const WorkspaceController& controller, const Listening& listening) {
    const auto said = listening.heard();
    return {{"message", said ? json(*said) : json(nullptr)},
            {"canUndo", *controller.state().canUndo},
            {"focusMode", controlRecord::focusMode(controller)}};
}

} // namespace

ControlReply performAction(WorkspaceController& controller, const WorkspaceAction& action) {
    const Listening listening(controller);
    if (!controller.perform(action)) return listening.refusalOr(silentReason(controller, action));
    return performed(controller, listening);
}

ControlReply openURL(WorkspaceController& controller, URLHandler& urls, const JsonCursor& parameters) {
    const std::string url = parameters.required("url").string();
    const Listening listening(controller);
    switch (urls.handle(url)) {
    case URLHandler::Outcome::done:
        return performed(controller, listening);
    case URLHandler::Outcome::notUnderstood:
        return refusal("Nothing is to be done for this URL");
    case URLHandler::Outcome::dropped:
        return refusal("Too many URLs came within a second, this one was dropped");
    case URLHandler::Outcome::refused:
        break;
    }
    const auto asked = parseURLAction(url);
    const auto* action = asked ? std::get_if<WorkspaceAction>(&*asked) : nullptr;
    return listening.refusalOr(action ? silentReason(controller, *action) : "There is no such scene");
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

ControlReply tellHistory(const WorkspaceController& controller) {
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
