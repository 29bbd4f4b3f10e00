// The workspace's services, all provided by a simulated desktop.
#pragma once

#include "platform/simulated/SimulatedDesktop.h"
#include "workspace/WorkspaceController.h"

namespace kova {

/// The services refer to the desktop and the preferences, which must outlive every user of the services.
inline WorkspaceServices simulatedServices(SimulatedDesktop& desktop, PreferencesStore& preferences) {
    return {
        .accessibility = desktop,
        .applications = desktop,
        .screens = desktop,
        .session = desktop,
        .changes = desktop,
        .preferences = preferences,
        .queue = desktop.queue(),
        .pollingQueue = desktop.pollingQueue(),
        .alerts = desktop,
    };
}

} // namespace kova
