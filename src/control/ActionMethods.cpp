#include "control/ActionMethods.h"

#include "control/ControlRecords.h"
#include "control/Refusal.h"
#include "support/Overloaded.h"

#include <utility>

namespace kova {

namespace {

using nlohmann::json;

/// Why an action that begins at a window, the focused one when none is named, did nothing.
std::string silentReason(const WorkspaceController& controller, const std::optional<std::string>& windowID,
                         std::string otherwise) {
    return controller.whyNoStartingPoint(windowID).value_or(std::move(otherwise));
}

} // namespace

std::string silentReason(const WorkspaceController& controller, const WorkspaceAction& action) {
    return std::visit(
        Overloaded{
            [&](const action::Focus& focus) {
                return silentReason(controller, focus.windowID, "The window there could not be focused");
            },
            [&](const action::Move& move) {
                return silentReason(controller, move.windowID, "The window was not moved");
            },
            [](const action::ActivateScene&) { return std::string("There is no such scene"); },
            [&](const action::CycleStack& cycle) {
                if (cycle.targetID) return std::string("No other window waits in that tile");
                return silentReason(controller, cycle.windowID, "No other window waits behind it in its tile");
            },
            [&](const action::ToggleFocusZoom& zoom) {
                return std::string(controller.actingWindow(zoom.windowID) ? "The window lies on no display"
                                                                          : "No managed window has the focus");
            },
            [](const action::Arrange&) { return std::string("There is nothing to arrange"); },
            [](const action::Undo&) { return std::string("There is nothing to undo"); },
        },
        action);
}

json performed(const WorkspaceController& controller, const std::optional<std::string>& message) {
    return {{"message", message ? json(*message) : json(nullptr)},
            {"canUndo", *controller.state().canUndo},
            {"focusMode", controlRecord::focusMode(controller)}};
}

ControlReply performAction(WorkspaceController& controller, const WorkspaceAction& action) {
    const Listening listening(controller);
    if (!controller.perform(action)) return listening.refusalOr(silentReason(controller, action));
    return performed(controller, listening.heard());
}

ControlReply openURL(WorkspaceController& controller, URLHandler& urls, const JsonCursor& parameters) {
    const std::string url = parameters.required("url").string();
    const Listening listening(controller);
    switch (urls.handle(url)) {
    case URLHandler::Outcome::done:
        return performed(controller, listening.heard());
    case URLHandler::Outcome::notUnderstood:
        return refusal("This URL asks for nothing that KOVA does");
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
