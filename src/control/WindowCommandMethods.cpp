#include "control/WindowCommandMethods.h"

#include "control/ActionMethods.h"
#include "control/ControlRecords.h"
#include "control/MethodTable.h"
#include "control/NameLookup.h"
#include "control/Refusal.h"
#include "control/client/ControlCodes.h"
#include "support/Quoted.h"
#include "workspace/WindowNames.h"

#include <algorithm>
#include <utility>

namespace kova {

namespace {

using nlohmann::json;
using WindowChoice = ControlResult<std::optional<WindowID>>;

bool isTrue(const JsonCursor& parameters, std::string_view name) {
    const auto given = parameters.optional(name);
    return given && given->boolean();
}

json planRecord(const WorkspaceController& controller, bool isDryRun, const WindowPlan& plan) {
    json steps = json::array();
    for (const auto& step : plan.steps) {
        steps.push_back(
            {{"kind", describe(step.kind)},
             {"window", controlRecord::briefWindow(controller, step.windowID)},
             {"tile", orNull(step.target)},
             {"tileName", step.target ? json(controlRecord::tileName(controller, *step.target)) : json(nullptr)}});
    }
    return {{"dryRun", isDryRun},
            {"message", plan.message},
            {"steps", std::move(steps)},
            {"canUndo", *controller.state().canUndo},
            {"focusMode", controlRecord::focusMode(controller)}};
}

/// Carries out the command. With "dryRun", only returns the plan.
ControlReply carryOut(WorkspaceController& controller, const JsonCursor& parameters, const WindowCommand& command) {
    if (auto failure = permissionFailure(controller)) return *failure;
    const bool isDryRun = isTrue(parameters, "dryRun");
    const auto planned = controller.planCommand(command);
    if (const auto* refused = std::get_if<WindowRefusal>(&planned)) return refusal(refused->reason);
    if (!isDryRun) {
        const auto outcome = controller.perform(command);
        if (!outcome) return failureOf(outcome);
    }
    return planRecord(controller, isDryRun, std::get<WindowPlan>(planned));
}

/// The window that the parameter "window" names; absent without this parameter. The parameter "display" is ignored,
/// since it names the display of the tile.
WindowChoice namedWindow(const WorkspaceController& controller, const JsonCursor& parameters) {
    // Without the permission no window is known, so the error must not be that there is no such window.
    if (auto failure = permissionFailure(controller)) return *std::move(failure);
    const auto named = parameters.optional("window");
    if (!named) return std::nullopt;
    const auto found = lookUpWindow(controller, named->string());
    if (!found) return found.error();
    return found->id;
}

ControlResult<DisplayChoice> displayChoice(const WorkspaceController& controller, const JsonCursor& parameters) {
    const std::string word = parameters.required("to").string();
    if (word == "next") return DisplayStep::next;
    if (word == "previous") return DisplayStep::previous;
    auto found = lookUpDisplay(controller, word);
    if (!found) return found.error();
    return *std::move(found);
}

std::optional<WorkspaceDirection> directionNamed(std::string_view word) {
    using enum WorkspaceDirection;
    for (const auto direction : {left, right, up, down}) {
        if (word == describe(direction)) return direction;
    }
    return std::nullopt;
}

template <class Command>
ControlReply onWantedWindow(WorkspaceController& controller, const JsonCursor& parameters) {
    auto window = wantedWindow(controller, parameters);
    if (!window) return window.error();
    return carryOut(controller, parameters, Command{*std::move(window)});
}

const char* describe(PlacementVerdict verdict) {
    switch (verdict) {
    case PlacementVerdict::asRequested:
        return "asRequested";
    case PlacementVerdict::drifted:
        return "drifted";
    case PlacementVerdict::underWay:
        return "underWay";
    case PlacementVerdict::leftAlone:
        return "leftAlone";
    }
    return "";
}

} // namespace

WindowChoice wantedWindow(const WorkspaceController& controller, const JsonCursor& parameters) {
    const auto named = parameters.optional("display");
    if (parameters.optional("window") || !named) return namedWindow(controller, parameters);
    if (auto failure = permissionFailure(controller)) return *std::move(failure);
    const auto display = lookUpDisplay(controller, named->string());
    if (!display) return display.error();
    auto window = controller.windowLastFocusedOn(*display);
    if (!window) return refusal("No window is shown on this display");
    return window;
}

ControlResult<TileTarget> wantedTile(const WorkspaceController& controller, const JsonCursor& parameters,
                                     const std::string& wanted, const std::optional<WindowID>& windowID) {
    for (const WorkspaceTile& tile : controller.tiles()) {
        if (tile.target.text() == wanted) return tile.target;
    }
    std::optional<DisplayID> display;
    if (!parameters.optional("display") && windowID) display = controller.displayIDOfWindow(*windowID);
    if (!display) {
        auto named = wantedDisplay(controller, parameters);
        if (!named) return named.error();
        display = *std::move(named);
    }
    const auto slot = lookUpSlot(controller, *display, wanted);
    if (!slot) return slot.error();
    return TileTarget{*std::move(display), slot->id};
}

namespace {

ControlReply placeWindow(WorkspaceController& controller, const JsonCursor& parameters) {
    auto window = namedWindow(controller, parameters);
    if (!window) return window.error();
    auto& windowID = *window;
    auto tile = wantedTile(controller, parameters, parameters.required("tile").string(), windowID);
    if (!tile) return tile.error();
    return carryOut(controller, parameters, command::Place{std::move(windowID), *std::move(tile)});
}

ControlReply swapWindows(WorkspaceController& controller, const JsonCursor& parameters) {
    const std::string with = parameters.required("with").string();
    if (const auto direction = directionNamed(with)) {
        auto window = wantedWindow(controller, parameters);
        if (!window) return window.error();
        return carryOut(controller, parameters, command::Swap{*std::move(window), *direction});
    }
    auto window = namedWindow(controller, parameters);
    if (!window) return window.error();
    auto& windowID = *window;
    auto tile = wantedTile(controller, parameters, with, windowID);
    if (!tile) {
        const std::vector<std::string> directions = {"left", "right", "up", "down"};
        const std::string suggestion = suggestionFor(with, directions);
        if (suggestion.empty()) return tile.error();
        return ControlFailure{controlCode::refused,
                              "There is no direction or tile " + quoted(textForMessage(with)) + suggestion,
                              {{"choices", directions}}};
    }
    return carryOut(controller, parameters, command::Swap{std::move(windowID), *std::move(tile)});
}

ControlReply focusWindow(WorkspaceController& controller, const JsonCursor& parameters) {
    (void)parameters.required("window");
    auto window = namedWindow(controller, parameters);
    if (!window) return window.error();
    return carryOut(controller, parameters, command::FocusWindow{*std::move(window)});
}

ControlReply focusDisplay(WorkspaceController& controller, const JsonCursor& parameters) {
    auto display = displayChoice(controller, parameters);
    if (!display) return display.error();
    return carryOut(controller, parameters, command::FocusDisplay{*std::move(display)});
}

ControlReply moveToDisplay(WorkspaceController& controller, const JsonCursor& parameters) {
    auto window = wantedWindow(controller, parameters);
    if (!window) return window.error();
    auto display = displayChoice(controller, parameters);
    if (!display) return display.error();
    return carryOut(controller, parameters, command::MoveToDisplay{*std::move(window), *std::move(display)});
}

ControlReply stepStack(WorkspaceController& controller, const JsonCursor& parameters) {
    action::CycleStack cycle;
    if (const auto step = parameters.optional("step")) {
        const std::string word = step->string();
        if (word != "next" && word != "previous") step->fail("expected next or previous");
        cycle.step = word == "next" ? StackStep::next : StackStep::previous;
    }
    if (const auto tile = parameters.optional("tile")) {
        auto found = wantedTile(controller, parameters, tile->string(), std::nullopt);
        if (!found) return found.error();
        cycle.target = *std::move(found);
    } else {
        auto window = wantedWindow(controller, parameters);
        if (!window) return window.error();
        cycle.windowID = *std::move(window);
    }
    if (!isTrue(parameters, "dryRun")) return performAction(controller, cycle);
    if (auto failure = permissionFailure(controller)) return *failure;
    const auto next = controller.nextInStack(cycle);
    if (!next) return refusal(controller.whyNothingNext(cycle));
    json result = actionResult(controller, std::nullopt);
    const ManagedWindow* window = controller.windowOrFocused(*next);
    result["message"] = (window ? nameOf(*window) : std::string("A window")) + " would come to the front";
    return result;
}

/// Lists every tile with its windows, and then the windows that are in no tile.
ControlReply listWindows(const WorkspaceController& controller) {
    json displays = json::array();
    const auto tiles = controller.tiles();
    for (json& display : controlRecord::displays(controller)) {
        json tilesOfDisplay = json::array();
        for (const WorkspaceTile& tile : tiles) {
            if (display.at("id") != tile.displayID) continue;
            json waiting = json::array();
            for (const auto& id : tile.stack) {
                if (id != tile.windowID) waiting.push_back(controlRecord::briefWindowWithState(controller, id));
            }
            tilesOfDisplay.push_back(
                {{"id", tile.target},
                 {"number", tilesOfDisplay.size() + 1},
                 {"name", tile.slot.name},
                 {"window",
                  tile.windowID ? controlRecord::briefWindowWithState(controller, *tile.windowID) : json(nullptr)},
                 {"waiting", std::move(waiting)}});
        }
        displays.push_back({{"id", display.at("id")},
                            {"number", display.at("number")},
                            {"name", display.at("name")},
                            {"layout", display.at("layout")},
                            {"tiles", std::move(tilesOfDisplay)}});
    }
    json others = json::array();
    for (const ManagedWindow& window : controller.liveWindows()) {
        if (!controlRecord::isInOneOf(tiles, window.id)) {
            others.push_back(controlRecord::briefWindowWithState(controller, window.id));
        }
    }
    return json{{"displays", std::move(displays)}, {"others", std::move(others)}};
}

/// Compares the frames of the windows in tiles with the requested frames. With "repair", requests the frames of drifted
/// windows again.
ControlReply verifyPlacements(WorkspaceController& controller, const JsonCursor& parameters) {
    if (auto failure = permissionFailure(controller)) return *failure;
    const auto findings = controller.verifyPlacements();
    const bool repairs = isTrue(parameters, "repair") && !isTrue(parameters, "dryRun");
    if (repairs) {
        const auto outcome = controller.perform(action::RepairPlacements{});
        if (!outcome) return failureOf(outcome);
    }
    bool isAsRequested = true;
    json windows = json::array();
    for (const auto& finding : findings) {
        isAsRequested = isAsRequested && finding.verdict != PlacementVerdict::drifted;
        windows.push_back({{"window", controlRecord::briefWindow(controller, finding.windowID)},
                           {"tile", finding.target},
                           {"tileName", controlRecord::tileName(controller, finding.target)},
                           {"requested", controlRecord::rect(finding.requestedFrame)},
                           {"actual", finding.actualFrame ? controlRecord::rect(*finding.actualFrame) : json(nullptr)},
                           {"verdict", describe(finding.verdict)}});
    }
    return json{{"isAsRequested", isAsRequested}, {"isRepaired", repairs}, {"windows", std::move(windows)}};
}

enum class Pausing { pause, resume };

ControlReply setPaused(WorkspaceController& controller, const JsonCursor& parameters, Pausing pausing) {
    const bool pauses = pausing == Pausing::pause;
    const bool wasPaused = *controller.state().isPaused;
    const bool isDryRun = isTrue(parameters, "dryRun");
    std::string message;
    if (!isDryRun) {
        controller.perform(action::Switch{action::Setting::isPaused, pauses});
        message = pauses ? "KOVA is paused: it leaves all windows alone until “kova resume”" : "KOVA manages windows";
    } else if (pauses == wasPaused) {
        message = pauses ? "Nothing would change: KOVA is paused" : "Nothing would change: KOVA manages windows";
    } else {
        message = pauses ? "KOVA would leave all windows alone until “kova resume”"
                         : "KOVA would manage windows again and put them back into their tiles";
    }
    return json{{"isPaused", isDryRun ? wasPaused : pauses}, {"dryRun", isDryRun}, {"message", message}};
}

} // namespace

void addWindowCommandMethods(MethodTable& methods, WorkspaceController& controller) {
    const auto add = [&](const char* name, std::vector<std::string_view> parameters,
                         ControlReply (*run)(WorkspaceController&, const JsonCursor&),
                         MethodTable::Needs needs = MethodTable::Needs::nothing) {
        methods.add(
            name, std::move(parameters),
            [&controller, run](const MethodCall& call) { return run(controller, call.parameters); }, needs);
    };
    add("place", {"window", "tile", "display", "dryRun"}, placeWindow);
    add("swap", {"with", "window", "display", "dryRun"}, swapWindows);
    add("focus.window", {"window", "dryRun"}, focusWindow);
    add("focus.display", {"to", "dryRun"}, focusDisplay);
    add("move.display", {"to", "window", "display", "dryRun"}, moveToDisplay);
    add("float", {"window", "display", "dryRun"}, onWantedWindow<command::ToggleFloating>);
    add("tile", {"window", "display", "dryRun"}, onWantedWindow<command::Tile>);
    add("stack", {"step", "tile", "window", "display", "dryRun"}, stepStack);
    add("verify", {"repair", "dryRun"}, verifyPlacements, MethodTable::Needs::currentFrames);
    methods.add("windows", {}, [&controller](const MethodCall&) { return listWindows(controller); });
    methods.add("pause", {"dryRun"}, [&controller](const MethodCall& call) {
        return setPaused(controller, call.parameters, Pausing::pause);
    });
    methods.add("resume", {"dryRun"}, [&controller](const MethodCall& call) {
        return setPaused(controller, call.parameters, Pausing::resume);
    });
}

} // namespace kova
