#include "control/DividerMethods.h"

#include "control/ControlRecords.h"
#include "control/MethodTable.h"
#include "control/NameLookup.h"
#include "control/Refusal.h"
#include "control/client/ControlCodes.h"
#include "workspace/WorkspaceController.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

namespace kova {

namespace {

using nlohmann::json;

constexpr double kFarthest = 100'000; // points, more than any display has

struct WantedDivider {
    DisplayID displayID;
    std::string splitID;
    std::int64_t boundary = 0;

    std::optional<DisplayLayoutDivider> among(const std::vector<DisplayLayoutDivider>& dividers) const {
        const auto found = std::find_if(dividers.begin(), dividers.end(), [&](const DisplayLayoutDivider& candidate) {
            return candidate.divider.splitID == splitID && candidate.divider.boundaryIndex == boundary;
        });
        return found == dividers.end() ? std::nullopt : std::optional(*found);
    }
};

ControlFailure unknown(const WantedDivider& wanted, const std::vector<DisplayLayoutDivider>& dividers) {
    std::string message = "There is no divider “" + textForMessage(wanted.splitID) + " " +
                          std::to_string(wanted.boundary) + "” on this display" +
                          (dividers.empty() ? "; its layout has none" : ". There is:");
    json choices = json::array();
    for (const auto& [display, layout, divider] : dividers) {
        const std::string name = divider.splitID + " " + std::to_string(divider.boundaryIndex);
        message += "\n  " + name;
        choices.push_back(name);
    }
    return {controlCode::refused, std::move(message), {{"choices", std::move(choices)}}};
}

/// Adds the names of the tiles that the divider separates: “before” it (left or above) and “after” it (right or below).
void addNeighbors(json& divider, const json& tiles) {
    const bool isUpright = divider.at("axis") == "horizontal";
    const char* position = isUpright ? "x" : "y";
    const char* length = isUpright ? "width" : "height";
    const char* crossPosition = isUpright ? "y" : "x";
    const char* crossLength = isUpright ? "height" : "width";
    const auto low = [](const json& rect, const char* key) { return rect.at(key).get<double>(); };
    const auto high = [&](const json& rect, const char* key, const char* size) {
        return low(rect, key) + low(rect, size);
    };
    const auto isSame = [](double a, double b) { return std::abs(a - b) < 1; }; // points
    const json gap = divider.at("frame");
    json before = json::array(), after = json::array();
    for (const json& tile : tiles) {
        const json& cell = tile.at("cell");
        if (tile.at("display") != divider.at("display")) continue;
        if (low(cell, crossPosition) >= high(gap, crossPosition, crossLength)) continue;
        if (high(cell, crossPosition, crossLength) <= low(gap, crossPosition)) continue;
        if (isSame(high(cell, position, length), low(gap, position))) before.push_back(tile.at("name"));
        if (isSame(low(cell, position), high(gap, position, length))) after.push_back(tile.at("name"));
    }
    divider["before"] = std::move(before);
    divider["after"] = std::move(after);
}

/// The divider that the parameters “split”, “boundary” and “display” name.
ControlResult<DisplayLayoutDivider> wantedDivider(const WorkspaceController& controller, const JsonCursor& parameters) {
    WantedDivider wanted{{}, parameters.required("split").string(), parameters.required("boundary").integer()};
    auto display = wantedDisplay(controller, parameters);
    if (!display) return display.error();
    wanted.displayID = *std::move(display);
    const auto known = controller.dividersOn(wanted.displayID);
    const auto found = wanted.among(known);
    if (!found) return unknown(wanted, known);
    if (auto failure = permissionFailure(controller)) return *failure;
    return *found;
}

json recordOf(const DisplayLayoutDivider& divider, const WorkspaceController& controller) {
    return {{"display", divider.displayID},
            {"split", divider.divider.splitID},
            {"boundary", divider.divider.boundaryIndex},
            {"canUndo", *controller.state().canUndo}};
}

/// The dividers of the display that the parameters name, else of all displays.
ControlReply listDividers(const WorkspaceController& controller, const JsonCursor& parameters) {
    json dividers = controlRecord::dividers(controller);
    const json tiles = controlRecord::tiles(controller);
    for (json& divider : dividers) addNeighbors(divider, tiles);
    if (const auto named = parameters.optional("display")) {
        const auto display = lookUpDisplay(controller, named->string());
        if (!display) return display.error();
        std::erase_if(dividers.get_ref<json::array_t&>(),
                      [&](const json& divider) { return divider.at("display") != *display; });
    }
    return json{{"dividers", std::move(dividers)}, {"names", controlRecord::names(controller)}};
}

/// Moves a divider as dragging it with the pointer does: within the minimum sizes of its neighbors, and as one undo
/// step.
ControlReply dragDivider(WorkspaceController& controller, const JsonCursor& parameters) {
    const JsonCursor givenPoints = parameters.required("points");
    const double points = givenPoints.number();
    if (!(std::abs(points) <= kFarthest)) givenPoints.fail("expected a number of points from -100000 to 100000");
    const auto divider = wantedDivider(controller, parameters);
    if (!divider) return divider.error();
    const auto moved = controller.perform(action::MoveDivider{*divider, points});
    const auto* movement = moved.details<DividerMovement>();
    if (!movement) return failureOf(moved);
    json result = recordOf(*divider, controller);
    result["points"] = controlRecord::number(movement->points);
    return result;
}

/// Moves all dividers of the split back to their places in the layout, as one undo step. Refused if no divider was
/// moved.
ControlReply resetDivider(WorkspaceController& controller, const JsonCursor& parameters) {
    const auto divider = wantedDivider(controller, parameters);
    if (!divider) return divider.error();
    const auto outcome = controller.perform(action::ResetDivider{*divider});
    if (!outcome) return failureOf(outcome);
    return recordOf(*divider, controller);
}

} // namespace

void addDividerMethods(MethodTable& methods, WorkspaceController& controller) {
    methods.add("divider.list", {"display"},
                [&controller](const MethodCall& call) { return listDividers(controller, call.parameters); });
    methods.add("divider.drag", {"split", "boundary", "points", "display"},
                [&controller](const MethodCall& call) { return dragDivider(controller, call.parameters); });
    methods.add("divider.reset", {"split", "boundary", "display"},
                [&controller](const MethodCall& call) { return resetDivider(controller, call.parameters); });
}

} // namespace kova
