// The one door: what must hold before an action is checked, then the action is carried out, then all that it asked of
// windows is sent.
#include "workspace/WorkspaceController.h"

#include "support/Overloaded.h"

namespace kova {

namespace {

/// For operations that cannot be refused.
template <class Operation>
Outcome unrefused(Operation operation) {
    operation();
    return Outcome::done();
}

} // namespace

Outcome WorkspaceController::perform(const WorkspaceAction& action) {
    const ActionTraits traits = traitsOf(action);
    if (traits.needs == ActionTraits::Needs::windowAccess) {
        if (const auto access = requireWindowAccess(); !access) return access;
    } else if (traits.needs == ActionTraits::Needs::visibleScreen) {
        if (const auto seen = requireVisibleScreen(); !seen) return seen;
    }
    if (traits.focusMode == ActionTraits::FocusMode::closes) closeFocusMode();
    Outcome outcome = carryOut(action);
    services_.accessibility.flush();
    return outcome;
}

Outcome WorkspaceController::carryOut(const WorkspaceAction& wanted) {
    using namespace action;
    return std::visit(
        Overloaded{
            [&](const WindowCommand& command) { return carryOut(command); },
            [&](const Focus& focus) { return focusWindow(focus.direction, focus.windowID); },
            [&](const Move& move) { return moveWindow(move.direction, move.windowID); },
            [&](const action::CycleStack& cycle) { return cycleStack(cycle); },
            [&](const ToggleFocusZoom& zoom) { return toggleFocusMode(zoom.windowID); },
            [&](const Arrange&) { return arrange(); },
            [&](const Undo&) { return undoLastAction(); },
            [&](const RepairPlacements&) { return repairPlacements(); },
            [&](const SelectLayout& layout) { return selectLayout(layout.displayID, layout.selection); },
            [&](const CycleLayout& layout) { return cycleLayout(layout.step); },
            [&](const ResetLayoutSizes& sizes) { return resetLayoutSizes(sizes.displayID); },
            [&](const SetTileInset& inset) { return setTileInset(inset.points); },
            [&](const BeginDividerDrag& drag) { return beginDividerDrag(drag.divider); },
            [&](const UpdateDividerDrag& drag) {
                return unrefused([&] { updateDividerDrag(drag.divider, drag.translationPoints); });
            },
            [&](const EndDividerDrag& drag) { return unrefused([&] { endDividerDrag(drag.divider); }); },
            [&](const CancelDividerDrag&) { return unrefused([&] { cancelDividerDrag(); }); },
            [&](const MoveDivider& move) { return moveDivider(move.divider, move.translationPoints); },
            [&](const ResetDivider& reset) { return resetDivider(reset.divider); },
            [&](const PressWindow& press) { return unrefused([&] { pressWindow(press.windowID); }); },
            [&](const ReleaseWindow&) { return unrefused([&] { releaseWindow(); }); },
            [&](const BeginWindowDrag& drag) { return beginWindowDrag(drag.windowID, drag.frameBefore); },
            [&](const UpdateWindowDrag& drag) { return unrefused([&] { updateWindowDrag(drag.pointer, drag.kind); }); },
            [&](const EndWindowDrag& drag) {
                return unrefused([&] { endWindowDrag(drag.pointer, drag.kind, drag.mode); });
            },
            [&](const CancelWindowDrag&) { return unrefused([&] { cancelWindowDrag(); }); },
            [&](const LaunchApplication& launch) { return launchApplication(launch); },
            [&](const QuitApplication& quit) { return quitApplication(quit.windowID); },
            [&](const ForceQuitApplication& quit) { return forceQuitApplication(quit.windowID); },
            [&](const ForceQuitAll&) { return unrefused([&] { forceQuitAllApplications(); }); },
            [&](const ForceQuit& quit) { return forceQuit(quit.confirmed); },
            [&](const ForgetApplication& forget) { return forgetApplication(forget.name); },
            [&](const CaptureScene& scene) { return captureScene(scene.name); },
            [&](const ActivateScene& scene) { return activateScene(scene.id); },
            [&](const RenameScene& scene) { return renameScene(scene.id, scene.name); },
            [&](const DeleteScene& scene) { return deleteScene(scene.id); },
            [&](const InsertScene& scene) { return insertScene(scene.scene, scene.index); },
            [&](const AddRule& rule) { return addRule(rule.rule); },
            [&](const AddRuleForWindow& rule) { return addRuleForWindow(rule); },
            [&](const ChangeRule& change) { return changeRule(change); },
            [&](const DeleteRule& rule) { return deleteRule(rule.id); },
            [&](const MoveRule& rule) { return moveRule(rule.id, rule.index); },
            [&](const ImportDocument& document) { return importWorkspaceDocument(document.data); },
            [&](const Switch& change) { return unrefused([&] { setSetting(change.setting, change.isOn); }); },
            [&](const SelectTheme& theme) { return selectTheme(theme.id); },
            [&](const SelectAccentColor& accent) { return unrefused([&] { selectAccentColor(accent.id); }); },
            [&](const PreferApplication& preferred) {
                return unrefused([&] { setPreferredApplication(preferred.slotID, preferred.applicationKey); });
            },
            [&](const ShowMessage& message) { return unrefused([&] { showStatusMessage(message.text); }); },
        },
        wanted);
}

/// What an arrangement, a launch or a scene still had to do. Focus mode closes first: what it restores later would take
/// the tiles away again.
void WorkspaceController::changeLater(const std::function<void()>& change) {
    closeFocusMode();
    change();
    services_.accessibility.flush();
}

} // namespace kova
