#include "workspace/WorkspaceController.h"

#include "support/Overloaded.h"

namespace kova {

namespace {

/// Runs an operation that cannot be refused.
template <class Operation>
Outcome unrefused(Operation operation) {
    operation();
    return Outcome::done();
}

} // namespace

Outcome WorkspaceController::perform(const WorkspaceAction& action) {
    const RequestBatch::Scope batch(parts_.requests);
    const StatusMessages::Action scope(parts_.messages);
    const ActionTraits traits = traitsOf(action);
    if (traits.needs == ActionTraits::Needs::windowAccess) {
        if (const auto access = ops_.access.requireWindowAccess(); !access) return access;
    } else if (traits.needs == ActionTraits::Needs::visibleScreen) {
        if (const auto visible = ops_.access.requireVisibleScreen(); !visible) return visible;
    }
    if (traits.focusMode == ActionTraits::FocusMode::closes) ops_.steps.closeFocusMode();
    Outcome outcome = carryOut(action);
    if (outcome && outcome.message()) parts_.messages.show(*outcome.message());
    return outcome;
}

Outcome WorkspaceController::carryOut(const WorkspaceAction& wanted) {
    using namespace action;
    return std::visit(
        Overloaded{
            [&](const WindowCommand& command) { return ops_.commands.runCommand(command); },
            [&](const Focus& focus) { return ops_.commands.focusWindow(focus.direction, focus.windowID); },
            [&](const Move& move) { return ops_.commands.moveWindow(move.direction, move.windowID); },
            [&](const action::CycleStack& cycle) { return ops_.commands.cycleStack(cycle); },
            [&](const ToggleFocusZoom& zoom) { return ops_.steps.toggleFocusMode(zoom.windowID); },
            [&](const Arrange&) { return ops_.arrangement.arrange(); },
            [&](const Undo&) { return undoLastAction(); },
            [&](const RepairPlacements&) { return ops_.report.repairPlacements(); },
            [&](const SelectLayout& layout) {
                return ops_.layoutChoice.selectLayout(layout.displayID, layout.selection);
            },
            [&](const CycleLayout& layout) { return ops_.layoutChoice.cycleLayout(layout); },
            [&](const ResetLayoutSizes& sizes) { return ops_.layoutChoice.resetLayoutSizes(sizes.displayID); },
            [&](const SetTileInset& inset) { return ops_.layoutChoice.setTileInset(inset.points); },
            [&](const BeginDividerDrag& drag) { return ops_.pointerActions.beginDividerDrag(drag.divider); },
            [&](const UpdateDividerDrag& drag) {
                return unrefused([&] { ops_.pointerActions.updateDividerDrag(drag.divider, drag.translationPoints); });
            },
            [&](const EndDividerDrag& drag) {
                return unrefused([&] { ops_.pointerActions.endDividerDrag(drag.divider); });
            },
            [&](const CancelDividerDrag&) { return unrefused([&] { ops_.pointerActions.cancelDividerDrag(); }); },
            [&](const MoveDivider& move) {
                return ops_.pointerActions.moveDivider(move.divider, move.translationPoints);
            },
            [&](const ResetDivider& reset) { return ops_.pointerActions.resetDivider(reset.divider); },
            [&](const PressWindow& press) { return ops_.pointerActions.pressWindow(press.windowID); },
            [&](const ReleaseWindow&) {
                return unrefused([&] {
                    ops_.pointerActions.releaseWindow();
                    if (ops_.rules.takePostponed()) refresh();
                });
            },
            [&](const BeginWindowDrag& drag) {
                return ops_.pointerActions.beginWindowDrag(drag.windowID, drag.frameBefore);
            },
            [&](const UpdateWindowDrag& drag) {
                return unrefused([&] { ops_.pointerActions.updateWindowDrag(drag.pointer, drag.kind, drag.mode); });
            },
            [&](const EndWindowDrag& drag) {
                return unrefused([&] { ops_.pointerActions.endWindowDrag(drag.pointer, drag.kind, drag.mode); });
            },
            [&](const CancelWindowDrag&) { return unrefused([&] { ops_.pointerActions.cancelWindowDrag(); }); },
            [&](const LaunchApplication& launch) { return ops_.applications.launchApplication(launch); },
            [&](const QuitApplication& quit) { return ops_.applications.quitApplication(quit.windowID); },
            [&](const ForceQuitApplication& quit) { return ops_.applications.forceQuitApplication(quit.windowID); },
            [&](const ForceQuitAll&) { return unrefused([&] { ops_.applications.forceQuitAllApplications(); }); },
            [&](const ForceQuit& quit) { return ops_.applications.forceQuit(quit.confirmed); },
            [&](const ForgetApplication& forget) { return ops_.applications.forgetApplication(forget.name); },
            [&](const CaptureScene& scene) { return ops_.scenes.captureScene(scene.name); },
            [&](const ActivateScene& scene) { return ops_.scenes.activateScene(scene.id); },
            [&](const RenameScene& scene) { return ops_.documents.renameScene(scene.id, scene.name); },
            [&](const DeleteScene& scene) { return ops_.documents.deleteScene(scene.id); },
            [&](const InsertScene& scene) { return ops_.documents.insertScene(scene.scene, scene.index); },
            [&](const AddRule& rule) { return ops_.documents.addRule(rule.rule); },
            [&](const AddRuleForWindow& rule) { return ops_.rules.addRuleForWindow(rule); },
            [&](const ChangeRule& change) { return ops_.documents.changeRule(change); },
            [&](const DeleteRule& rule) { return ops_.documents.deleteRule(rule.id); },
            [&](const MoveRule& rule) { return ops_.documents.moveRule(rule.id, rule.index); },
            [&](const ImportDocument& document) { return ops_.documents.importWorkspaceDocument(document.data); },
            [&](const Switch& change) {
                return unrefused([&] { ops_.settings.setSetting(change.setting, change.isOn); });
            },
            [&](const SelectTheme& theme) { return ops_.settings.selectTheme(theme.id); },
            [&](const SelectAccentColor& accent) {
                return unrefused([&] { ops_.settings.selectAccentColor(accent.id); });
            },
            [&](const PreferApplication& preferred) {
                return unrefused(
                    [&] { ops_.settings.setPreferredApplication(preferred.slotID, preferred.applicationKey); });
            },
            [&](const ShowMessage& message) { return unrefused([&] { parts_.messages.show(message.text); }); },
        },
        wanted);
}

Outcome WorkspaceController::undoLastAction() {
    if (parts_.undo.isEmpty()) return ops_.access.refuseSilently("There is nothing to undo");
    if (const auto access = ops_.access.requireWindowAccess(); !access) return access;
    ops_.steps.endDrags();
    const auto entry = parts_.undo.takeNewest();
    // Changes on other displays during focus mode were written into the snapshot of focus mode, but not into the newest
    // entry. So in focus mode that snapshot is restored.
    auto beforeFocusMode = parts_.focusMode.leave();
    if (beforeFocusMode) ops_.snapshots.keepAppearance(beforeFocusMode->snapshot);
    const WorkspaceUndoSnapshot& snapshot = beforeFocusMode ? beforeFocusMode->snapshot : entry->snapshot;
    if (beforeFocusMode) parts_.undo.restore(beforeFocusMode->history);
    // Undoing a scene also cancels its pending placements.
    if (entry->label.action == action::ActivateScene::kTraits.undoLabel) parts_.awaited.abandonScene();
    ops_.snapshots.restore(snapshot);
    ops_.follower.migrateFromMissingTiles(); // the size of a display may have changed since the snapshot
    if (!parts_.displays.isSettling()) ops_.displayChanges.placeWindowsOfDisconnectedDisplays();
    Transaction changes{.hasMovedTiles = true, .resetsLimits = true, .endsArrangement = true};
    const bool isAsBefore = parts_.assignments.assignedWindowIDs == snapshot.tiles.assignedWindowIDs;
    if (isAsBefore) changes.correctedDrift = kNoCorrection; // the snapshot's frames were restored
    ops_.keeper.commit(changes);
    parts_.state.canUndo.set(!parts_.undo.isEmpty());
    return Outcome::done("Last window action undone");
}

} // namespace kova
