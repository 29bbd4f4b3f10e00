#include "control/LayoutMethods.h"

#include "control/ControlRecords.h"
#include "control/LayoutFitMethod.h"
#include "control/MethodTable.h"
#include "control/NameLookup.h"
#include "control/Refusal.h"
#include "layout/SlotNames.h"
#include "support/Limits.h"
#include "workspace/WindowNames.h"
#include "workspace/WorkspaceController.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace kova {

namespace {

using nlohmann::json;

const Screen* findScreen(const WorkspaceController& controller, const DisplayID& id) {
    const auto& screens = *controller.state().screens;
    const auto found =
        std::find_if(screens.begin(), screens.end(), [&](const Screen& s) { return displayID(s) == id; });
    return found == screens.end() ? nullptr : &*found;
}

/// The display of the window that the parameters name; else the display that they name; else the current display.
ControlResult<DisplayID> displayOfWindow(const WorkspaceController& controller, const JsonCursor& parameters) {
    const auto named = parameters.optional("window");
    if (!named) return wantedDisplay(controller, parameters);
    if (auto failure = permissionFailure(controller)) return *std::move(failure);
    const auto window = lookUpWindow(controller, named->string());
    if (!window) return window.error();
    auto display = controller.displayIDOfWindow(window->id);
    if (!display) return refusal(nameOf(*window) + " is on no display");
    return *std::move(display);
}

/// The layout that is now in force on the display, and the status message.
json inForce(const WorkspaceController& controller, const DisplayID& display) {
    const LayoutDefinition* layout = controller.resolvedLayout(display);
    const auto& message = *controller.state().lastActionMessage;
    return {{"display", display},
            {"layout", layout ? json{{"id", layout->id}, {"name", layout->name}} : json(nullptr)},
            {"message", message ? json(*message) : json(nullptr)}};
}

json tileRecord(const TileSlot& slot, CGSize windowSize, json window, std::size_t stackSize) {
    return {{"slot", slot.id},
            {"name", slot.name},
            {"frame", controlRecord::rect(slot.normalizedFrame)},
            {"windowSize", controlRecord::size(windowSize)},
            {"window", std::move(window)},
            {"stackSize", stackSize}};
}

/// The tiles that the display has now, with the user's weights and the windows in them.
json tilesInForce(const WorkspaceController& controller, const DisplayID& display) {
    json out = json::array();
    for (const WorkspaceTile& tile : controller.tiles()) {
        if (tile.displayID != display) continue;
        const CGRect room = insetBy(tile.frameOnScreen, controller.state().profile->tileInset);
        out.push_back(tileRecord(tile.slot, room.size, controlRecord::applicationOf(controller, tile.windowID),
                                 tile.stack.size()));
    }
    return out;
}

/// The tiles that the layout would have in an area of this size (points).
json tilesProposed(const LayoutDefinition& layout, CGSize area, double inset) {
    const SolvedLayout solved = solveDefinition(layout, {}, area, inset);
    json out = json::array();
    for (std::size_t i = 0; i < solved.slots.size(); ++i) {
        out.push_back(tileRecord(solved.slots[i], insetBy(solved.frames[i], inset).size, nullptr, 0));
    }
    return out;
}

ControlReply listLayouts(const WorkspaceController& controller) {
    json slots = json::array();
    for (const SlotName& slot : slotNames(controller.catalogue()))
        slots.push_back({{"id", slot.id}, {"name", slot.name}});
    return json{{"layouts", controlRecord::layouts(controller)}, {"slots", std::move(slots)}};
}

ControlReply showLayout(const WorkspaceController& controller, const JsonCursor& parameters) {
    const auto display = wantedDisplay(controller, parameters);
    if (!display) return display.error();
    const DisplayID& displayID = *display;
    const Screen* screen = findScreen(controller, displayID);
    const LayoutDefinition* layout = controller.resolvedLayout(displayID);
    if (!screen || !layout) return refusal("No display is connected");

    bool isInForce = true;
    if (const auto named = parameters.optional("layout")) {
        const auto found = lookUpLayout(controller, named->string());
        if (!found) return found.error();
        isInForce = *found == layout->id;
        layout = findLayout(controller.catalogue(), *found);
    }
    const CGSize area = screen->visibleFrame.size;
    return json{
        {"display", {{"id", displayID}, {"name", screen->localizedName}}},
        {"layout", {{"id", layout->id}, {"name", layout->name}, {"displayClass", rawValue(layout->displayClass)}}},
        {"isInForce", isInForce},
        {"area", controlRecord::size(area)},
        {"tiles", isInForce ? tilesInForce(controller, displayID)
                            : tilesProposed(*layout, area, controller.state().profile->tileInset)}};
}

ControlReply selectLayout(WorkspaceController& controller, const JsonCursor& parameters) {
    const std::string wanted = parameters.required("layout").string();
    const auto display = wantedDisplay(controller, parameters);
    if (!display) return display.error();
    auto selection = DisplayLayoutSelection::automatic();
    if (wanted != "automatic") {
        const auto found = lookUpLayout(controller, wanted);
        if (!found) return found.error();
        selection = DisplayLayoutSelection::layout(*found);
    }
    const auto outcome = controller.perform(action::SelectLayout{*display, selection});
    return outcome ? inForce(controller, *display) : ControlReply(failureOf(outcome));
}

ControlReply stepLayout(WorkspaceController& controller, const JsonCursor& parameters, LayoutStep step) {
    const auto display = displayOfWindow(controller, parameters);
    if (!display) return display.error();
    const auto outcome = controller.perform(action::CycleLayout{step, *display});
    if (!outcome) return failureOf(outcome);
    return inForce(controller, *display);
}

ControlReply resetLayoutSizes(WorkspaceController& controller, const JsonCursor& parameters) {
    const auto display = wantedDisplay(controller, parameters);
    if (!display) return display.error();
    const auto outcome = controller.perform(action::ResetLayoutSizes{*display});
    if (!outcome) return failureOf(outcome);
    return inForce(controller, *display);
}

/// Sets the application whose windows arrangements prefer for the tiles of a slot; clears this preference if the
/// parameters name no application.
ControlReply preferApplication(WorkspaceController& controller, const JsonCursor& parameters) {
    const auto slot = lookUpSlotOfAnyLayout(controller, parameters.required("tile").string());
    if (!slot) return slot.error();
    const auto& slotID = *slot;
    const std::string shown = slotName(controller.catalogue(), slotID);
    const auto wanted = parameters.optional("application");
    if (!wanted) {
        controller.perform(action::PreferApplication{slotID, std::nullopt});
        return json{{"slot", slotID}, {"name", shown}, {"application", nullptr}};
    }
    const auto found = lookUpApplicationForRule(controller, wanted->string());
    if (!found) return found.error();
    const auto& [name, bundleIdentifier] = *found;
    controller.perform(action::PreferApplication{slotID, applicationKey(name, bundleIdentifier)});
    return json{{"slot", slotID}, {"name", shown}, {"application", name}};
}

/// Sets the inset if there is the parameter "points". Returns the inset that holds then.
ControlReply setTileInset(WorkspaceController& controller, const JsonCursor& parameters) {
    if (const auto given = parameters.optional("points")) {
        const double points = given->number();
        if (!(points >= 0 && points <= kLargestTileInset))
            given->fail("expected a number of points from 0 to " + std::to_string(static_cast<int>(kLargestTileInset)));
        if (const auto outcome = controller.perform(action::SetTileInset{points}); !outcome) return failureOf(outcome);
    }
    return json{{"points", controller.state().profile->tileInset}};
}

} // namespace

void addLayoutMethods(MethodTable& methods, WorkspaceController& controller) {
    methods.add("layout.list", {}, [&controller](const MethodCall&) { return listLayouts(controller); });
    methods.add("layout.show", {"layout", "display"},
                [&controller](const MethodCall& call) { return showLayout(controller, call.parameters); });
    methods.add("layout.fit", {"display"},
                [&controller](const MethodCall& call) { return fitLayouts(controller, call.parameters); });
    methods.add("layout.next", {"window", "display"}, [&controller](const MethodCall& call) {
        return stepLayout(controller, call.parameters, LayoutStep::next);
    });
    methods.add("layout.previous", {"window", "display"}, [&controller](const MethodCall& call) {
        return stepLayout(controller, call.parameters, LayoutStep::previous);
    });
    methods.add("layout.select", {"layout", "display"},
                [&controller](const MethodCall& call) { return selectLayout(controller, call.parameters); });
    methods.add("layout.resetSizes", {"display"},
                [&controller](const MethodCall& call) { return resetLayoutSizes(controller, call.parameters); });
    methods.addSaved("layout.prefer", {"tile", "application"},
                     [&controller](const MethodCall& call) { return preferApplication(controller, call.parameters); });
    methods.addSaved("layout.setInset", {"points"},
                     [&controller](const MethodCall& call) { return setTileInset(controller, call.parameters); });
}

} // namespace kova
