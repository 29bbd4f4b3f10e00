#include "control/AgentStatus.h"

#include "control/ControlRecords.h"
#include "control/Doctor.h"
#include "persistence/PreferencesStore.h"
#include "support/Version.h"
#include "workspace/WorkspaceController.h"

#include <unistd.h>

#include <algorithm>

namespace kova {

nlohmann::json agentStatus(const ControlContext& context, const ShortcutMethods& shortcuts) {
    const WorkspaceController& controller = context.controller;
    const WorkspaceState& state = controller.state();
    const auto tiles = controller.tiles();
    const auto& live = controller.liveWindows();
    const auto isInTile = [&](const auto& window) { return controlRecord::isInOneOf(tiles, window.id); };
    return {{"version", KOVA_VERSION},
            {"process", getpid()},
            {"permission", describe(*state.permissionState)},
            {"isRunning", controller.isRunning()},
            {"isSuspended", *state.isSuspended},
            {"isPaused", *state.isPaused},
            {"problem", orNull(controller.whyWindowsAreUnavailable())},
            {"limitation", orNull(limitationOf(context))},
            {"displays", state.screens->size()},
            {"windows", live.size()},
            {"windowsInTiles", std::count_if(live.begin(), live.end(), isInTile)},
            {"focusMode", controlRecord::focusMode(controller)},
            {"canUndo", *state.canUndo},
            {"shortcutsHeldByOthers", shortcuts.heldByOthers()},
            {"shortcutHolder", shortcuts.possibleHolder()},
            {"preferenceProblems", context.preferences.problems()},
            {"message", orNull(*state.lastActionMessage)},
            {"firstSteps", orNull(context.firstSteps ? context.firstSteps() : std::nullopt)}};
}

} // namespace kova
