#include "control/ControllerMethods.h"

#include "control/ControlRecords.h"
#include "control/LayoutFitMethod.h"
#include "control/LayoutMethods.h"
#include "control/MethodTable.h"
#include "control/RuleMethods.h"
#include "control/WindowCommandMethods.h"
#include "layout/SlotNames.h"

namespace kova {

namespace {

using nlohmann::json;
using Call = MethodTable::Call;

void addWindowCommands(MethodTable& methods, WorkspaceController& controller) {
    const auto addCommand = [&](const char* name, std::vector<std::string_view> parameters,
                                ControlReply (*run)(WorkspaceController&, const JsonCursor&)) {
        methods.add(name, std::move(parameters),
                    [&controller, run](const Call& call) { return run(controller, call.parameters); });
    };
    addCommand("place", {"window", "tile", "display", "dryRun"}, placeWindow);
    addCommand("swap", {"with", "window", "display", "dryRun"}, swapWindows);
    addCommand("focus.window", {"window", "dryRun"}, focusWindow);
    addCommand("focus.display", {"to", "dryRun"}, focusDisplay);
    addCommand("move.display", {"to", "window", "display", "dryRun"}, moveToDisplay);
    addCommand("float", {"window", "display", "dryRun"}, floatWindow);
    addCommand("tile", {"window", "display", "dryRun"}, tileWindow);
    addCommand("stack", {"step", "tile", "window", "display", "dryRun"}, stepStack);
    addCommand("verify", {"repair", "dryRun"}, verifyPlacements);
    methods.add("windows", {}, [&controller](const Call&) { return listWindows(controller); });
    methods.add("pause", {"dryRun"},
                [&controller](const Call& call) { return setPaused(controller, call.parameters, Pausing::pause); });
    methods.add("resume", {"dryRun"},
                [&controller](const Call& call) { return setPaused(controller, call.parameters, Pausing::resume); });
}

void addLayouts(MethodTable& methods, WorkspaceController& controller) {
    methods.add("layout.list", {}, [&controller](const Call&) -> ControlReply {
        json slots = json::array();
        for (const SlotName& slot : slotNames(controller.catalogue()))
            slots.push_back({{"id", slot.id}, {"name", slot.name}});
        return json{{"layouts", controlRecord::layouts(controller)}, {"slots", std::move(slots)}};
    });
    methods.add("layout.show", {"layout", "display"},
                [&controller](const Call& call) { return showLayout(controller, call.parameters); });
    methods.add("layout.fit", {"display"},
                [&controller](const Call& call) { return fitLayouts(controller, call.parameters); });
    methods.add("layout.next", {"window", "display"},
                [&controller](const Call& call) { return stepLayout(controller, call.parameters, LayoutStep::next); });
    methods.add("layout.previous", {"window", "display"}, [&controller](const Call& call) {
        return stepLayout(controller, call.parameters, LayoutStep::previous);
    });
    methods.add("layout.select", {"layout", "display"},
                [&controller](const Call& call) { return selectLayout(controller, call.parameters); });
    methods.add("layout.resetSizes", {"display"},
                [&controller](const Call& call) { return resetLayoutSizes(controller, call.parameters); });
    methods.addSaved("layout.prefer", {"tile", "application"},
                     [&controller](const Call& call) { return preferApplication(controller, call.parameters); });
    methods.addSaved("layout.setInset", {"points"},
                     [&controller](const Call& call) { return setTileInset(controller, call.parameters); });
}

void addRules(MethodTable& methods, WorkspaceController& controller) {
    methods.add("rule.list", {}, [&controller](const Call&) { return listRules(controller); });
    methods.addSaved("rule.add", {"application", "window", "focused", "title", "disposition", "slot"},
                     [&controller](const Call& call) { return addRule(controller, call.parameters); });
    methods.addSaved("rule.change", {"rule", "title", "disposition", "slot"},
                     [&controller](const Call& call) { return changeRule(controller, call.parameters); });
    methods.addSaved("rule.enable", {"rule"}, [&controller](const Call& call) {
        return switchRule(controller, call.parameters, RuleSwitch::enable);
    });
    methods.addSaved("rule.disable", {"rule"}, [&controller](const Call& call) {
        return switchRule(controller, call.parameters, RuleSwitch::disable);
    });
    methods.addSaved("rule.delete", {"rule"},
                     [&controller](const Call& call) { return deleteRule(controller, call.parameters); });
    methods.addSaved("rule.move", {"rule", "to"},
                     [&controller](const Call& call) { return moveRule(controller, call.parameters); });
    methods.add("rule.test", {"window"},
                [&controller](const Call& call) { return testRules(controller, call.parameters); });
    methods.addSaved("rules.on", {}, [&controller](const Call&) { return switchRules(controller, RulesSwitch::on); });
    methods.addSaved("rules.off", {}, [&controller](const Call&) { return switchRules(controller, RulesSwitch::off); });
}

} // namespace

void addControllerMethods(MethodTable& methods, WorkspaceController& controller) {
    addWindowCommands(methods, controller);
    addLayouts(methods, controller);
    addRules(methods, controller);
}

} // namespace kova
