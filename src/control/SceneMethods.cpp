#include "control/SceneMethods.h"

#include "control/ControlRecords.h"
#include "control/DeletedScenes.h"
#include "control/MethodTable.h"
#include "control/NameLookup.h"
#include "control/Refusal.h"
#include "control/SceneListeners.h"
#include "workspace/WorkspaceController.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace kova {

namespace {

using nlohmann::json;

json idAndName(const WorkspaceScene& scene) {
    return {{"id", scene.id.string()}, {"name", scene.name}};
}

json sceneRecord(const WorkspaceScene& scene, const std::optional<Uuid>& activeID) {
    return {{"id", scene.id.string()},
            {"name", scene.name},
            {"createdAt", iso8601(scene.createdAt)},
            {"updatedAt", iso8601(scene.updatedAt)},
            {"displays", scene.displays.size()},
            {"windows", scene.placements.size()},
            {"isActive", scene.id == activeID}};
}

/// The display's aspect ratio, limited so that it can be drawn: an imported file may contain any number.
double drawableRatio(const WorkspaceSceneDisplay& display) {
    constexpr double kLeast = 0.1, kMost = 10;
    return display.aspectRatio > kLeast ? std::min(display.aspectRatio, kMost) : kLeast;
}

/// The tiles that the display would have after the scene was opened; none if the layout is unknown.
json tilesOf(const WorkspaceSceneDisplay& display, const std::vector<LayoutDefinition>& catalogue) {
    json out = json::array();
    const LayoutDefinition* layout = findLayout(catalogue, display.layoutID);
    if (!layout) return out;
    constexpr double kAreaHeight = 1000; // points, about as on a display, so that gaps are as thin as there
    const CGSize area{kAreaHeight * drawableRatio(display), kAreaHeight};
    const SolvedLayout solved = solveDefinition(applying(*layout, display.layoutWeights), {}, area, 0);
    for (std::size_t i = 0; i < solved.slots.size(); ++i) {
        const CGRect& cell = solved.frames[i];
        out.push_back(
            {{"slot", solved.slots[i].id},
             {"name", solved.slots[i].name},
             {"frame", controlRecord::rect(makeRect(minX(cell) / area.width, minY(cell) / area.height,
                                                    cell.size.width / area.width, cell.size.height / area.height))}});
    }
    return out;
}

json displaysOf(const WorkspaceScene& scene, const std::vector<LayoutDefinition>& catalogue) {
    json out = json::array();
    for (const auto& display : scene.displays) {
        out.push_back({{"number", countedFromOne(display.ordinal)},
                       {"name", display.name},
                       {"layout", display.layoutID},
                       {"weights", display.layoutWeights.splits},
                       {"aspectRatio", drawableRatio(display)},
                       {"tiles", tilesOf(display, catalogue)}});
    }
    return out;
}

json placementsOf(const WorkspaceScene& scene) {
    json out = json::array();
    for (const auto& placement : scene.placements) {
        out.push_back({{"application", placement.window.applicationName},
                       {"bundleIdentifier", orNull(placement.window.bundleIdentifier)},
                       {"title", orNull(placement.window.titleHint)},
                       {"display", countedFromOne(placement.displayOrdinal)},
                       {"slot", placement.slotID},
                       {"covers", placement.claimedSlotIDs.value_or(std::vector{placement.slotID})},
                       {"stackIndex", placement.stackIndex},
                       {"isFront", frontsItsTile(placement.stackIndex, placement.isActive)}});
    }
    return out;
}

ControlResult<WorkspaceScene> wantedScene(const WorkspaceController& controller, const JsonCursor& parameters) {
    return lookUpScene(controller, parameters.required("scene").string());
}

ControlReply captureScene(WorkspaceController& controller, const JsonCursor& parameters) {
    const auto named = parameters.optional("name");
    const std::optional<std::string> name = named ? std::optional(named->string()) : std::nullopt;
    const auto outcome = controller.perform(action::CaptureScene{name});
    if (!outcome) return failureOf(outcome);
    const WorkspaceScene& scene = controller.state().scenes->back();
    return json{{"scene", sceneRecord(scene, *controller.state().activeSceneID)},
                {"message", orNull(outcome.message())}};
}

/// Lists the scenes, the newest last.
ControlReply listScenes(const WorkspaceController& controller) {
    json scenes = json::array();
    for (const auto& scene : *controller.state().scenes) {
        scenes.push_back(sceneRecord(scene, *controller.state().activeSceneID));
    }
    return json{{"scenes", std::move(scenes)}};
}

ControlReply showScene(const WorkspaceController& controller, const JsonCursor& parameters) {
    const auto found = wantedScene(controller, parameters);
    if (!found) return found.error();
    const auto& scene = *found;
    return json{{"scene", sceneRecord(scene, *controller.state().activeSceneID)},
                {"theme", scene.themeID},
                {"accentColor", scene.accentColorID},
                {"tileInset", controlRecord::number(scene.tileInset)},
                {"displays", displaysOf(scene, controller.catalogue())},
                {"placements", placementsOf(scene)}};
}

/// Opens the scene and responds before launched applications show their windows. With “wait”, the client also gets the
/// final report later, as a notification.
ControlReply openScene(WorkspaceController& controller, SceneListeners& listeners, const JsonCursor& parameters,
                       const std::shared_ptr<ControlPeer>& peer) {
    const auto waits = parameters.optional("wait");
    const bool isAwaited = waits && waits->boolean();
    const auto found = wantedScene(controller, parameters);
    if (!found) return found.error();
    const auto& scene = *found;
    const auto outcome = controller.perform(action::ActivateScene{scene.id});
    if (!outcome) return failureOf(outcome);
    const SceneReport report = **controller.state().sceneReport;
    if (isAwaited && report.state == SceneReport::State::waiting) listeners.add(report.opening, peer);
    return json{{"scene", idAndName(scene)},
                {"awaited", controller.pendingSceneWindowPlacements().size()},
                {"report", record(report)},
                {"message", orNull(outcome.message())},
                {"canUndo", *controller.state().canUndo}};
}

ControlReply renameScene(WorkspaceController& controller, const JsonCursor& parameters) {
    const std::string newName = parameters.required("newName").string();
    const auto found = wantedScene(controller, parameters);
    if (!found) return found.error();
    const Uuid id = found->id;
    const auto outcome = controller.perform(action::RenameScene{id, newName});
    if (!outcome) return failureOf(outcome);
    const auto renamed = lookUpScene(controller, id.string());
    if (!renamed) return renamed.error();
    return json{{"scene", idAndName(*renamed)}, {"message", orNull(outcome.message())}};
}

ControlReply diffScene(const WorkspaceController& controller, const JsonCursor& parameters) {
    if (auto failure = permissionFailure(controller)) return *failure; // no window is known without the permission
    const auto found = wantedScene(controller, parameters);
    if (!found) return found.error();
    const auto& scene = *found;
    json differences = json::array();
    const auto all = controller.diffScene(scene.id);
    for (const auto& difference : all.value_or(std::vector<SceneDifference>{})) {
        differences.push_back({{"what", difference.what}, {"inScene", difference.inScene}, {"now", difference.now}});
    }
    return json{{"scene", idAndName(scene)}, {"differences", std::move(differences)}};
}

} // namespace

void addSceneMethods(MethodTable& methods, WorkspaceController& controller, SceneListeners& listeners,
                     DeletedScenes& deleted) {
    using Needs = MethodTable::Needs;
    methods.addSaved(
        "scene.capture", {"name"},
        [&controller](const MethodCall& call) { return captureScene(controller, call.parameters); },
        Needs::currentWindows);
    methods.add("scene.list", {}, [&controller](const MethodCall&) { return listScenes(controller); });
    methods.add("scene.show", {"scene"},
                [&controller](const MethodCall& call) { return showScene(controller, call.parameters); });
    methods.addSaved(
        "scene.open", {"scene", "wait"},
        [&controller, &listeners](const MethodCall& call) {
            return openScene(controller, listeners, call.parameters, call.peer);
        },
        Needs::currentWindows);
    methods.addSaved("scene.rename", {"scene", "newName"},
                     [&controller](const MethodCall& call) { return renameScene(controller, call.parameters); });
    methods.addSaved("scene.delete", {"scene"},
                     [&deleted](const MethodCall& call) { return deleted.deleteScene(call.parameters); });
    methods.addSaved("scene.undelete", {}, [&deleted](const MethodCall&) { return deleted.undelete(); });
    methods.add(
        "scene.diff", {"scene"},
        [&controller](const MethodCall& call) { return diffScene(controller, call.parameters); },
        Needs::currentWindows);
}

} // namespace kova
