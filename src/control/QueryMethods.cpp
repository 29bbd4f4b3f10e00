#include "control/QueryMethods.h"

#include "control/ControlRecords.h"
#include "control/MethodTable.h"
#include "control/Refusal.h"
#include "workspace/WorkspaceController.h"

namespace kova {

namespace {

using nlohmann::json;

/// The focused window. “last” is the same window or, if no window has the focus, the window that was focused last on
/// the current display.
ControlReply describeFocus(const WorkspaceController& controller) {
    json result = controlRecord::focus(controller);
    result["last"] = result["window"];
    const auto display = controller.currentDisplayID();
    if (!result["last"].is_null() || !display) return result;
    const auto last = controller.windowLastFocusedOn(*display);
    if (last) result["last"] = controlRecord::briefWindow(controller, *last);
    return result;
}

/// The managed window at a point, for example where the user clicks to pick a window.
ControlReply findWindowAt(const WorkspaceController& controller, const JsonCursor& parameters) {
    const CGPoint point{parameters.required("x").number(), parameters.required("y").number()};
    if (auto failure = permissionFailure(controller)) return *failure;
    const auto& screens = *controller.state().screens;
    if (screens.empty()) return refusal("No display is connected");
    const auto found = controller.managedWindowUnder(flipped(point, maxY(screens.front().frame)));
    return json{{"window", found ? controlRecord::briefWindow(controller, *found) : json(nullptr)}};
}

} // namespace

void addQueryMethods(MethodTable& methods, const WorkspaceController& controller) {
    methods.add("query.displays", {}, [&controller](const MethodCall&) -> ControlReply {
        return json{{"displays", controlRecord::displays(controller)},
                    {"current", orNull(controller.currentDisplayID())}};
    });
    methods.add("query.windows", {}, [&controller](const MethodCall&) -> ControlReply {
        return json{{"windows", controlRecord::windows(controller)}, {"names", controlRecord::names(controller)}};
    });
    methods.add("query.tiles", {}, [&controller](const MethodCall&) -> ControlReply {
        return json{{"tiles", controlRecord::tiles(controller)}, {"names", controlRecord::names(controller)}};
    });
    methods.add("query.focus", {}, [&controller](const MethodCall&) { return describeFocus(controller); });
    methods.add("query.windowAt", {"x", "y"},
                [&controller](const MethodCall& call) { return findWindowAt(controller, call.parameters); });
}

} // namespace kova
