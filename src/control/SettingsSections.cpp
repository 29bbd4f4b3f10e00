#include "control/SettingsSections.h"

#include "commands/KovaShortcutSettings.h"
#include "windowing/KeyMonitorServicing.h"
#include "workspace/WorkspaceController.h"

#include <iterator>
#include <utility>

namespace kova {

std::vector<Subscription> observeSettings(const ControlContext& context, const std::function<void()>& changed) {
    std::vector<Subscription> subscriptions;
    const auto watch = [&](const auto&... published) {
        (subscriptions.push_back(published.observe([changed](const auto&) { changed(); })), ...);
    };
    const WorkspaceState& state = context.controller.state();
    watch(state.profile, state.accentColorID, state.continuousManagementEnabled, state.bringsNextForward,
          state.useThemeBackground, state.showBrain, state.showTileBackgrounds);
    watch(state.screens, state.layoutRevision, state.windows, state.observedMinimumSizes);
    watch(state.scenes, state.rules, state.activeSceneID, state.titleRevision);
    watch(state.permissionState, context.controller.learning());
    watch(context.shortcuts.configuration, context.shortcuts.isRecording);
    if (context.keys) subscriptions.push_back(context.keys->observeHeldByOthers(changed));
    for (const auto& setting : {&context.startAtLogin, &context.dockAutoHide}) {
        if (!*setting || !(*setting)->observe) continue;
        auto more = (*setting)->observe(changed);
        std::ranges::move(more, std::back_inserter(subscriptions));
    }
    return subscriptions;
}

} // namespace kova
