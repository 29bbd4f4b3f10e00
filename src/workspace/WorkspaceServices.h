// The services that the workspace uses: the platform interfaces to the desktop, the preferences and the queues.
#pragma once

#include "persistence/PreferencesStore.h"
#include "support/MainQueue.h"
#include "windowing/AccessibilityServicing.h"
#include "windowing/AlertServicing.h"
#include "windowing/ApplicationServicing.h"
#include "windowing/ScreenServicing.h"

namespace kova {

/// All services outlive the controller.
struct WorkspaceServices {
    AccessibilityServicing& accessibility;
    ApplicationServicing& applications;
    ScreenServicing& screens;
    SessionServicing& session;
    DesktopChangeServicing& changes;
    PreferencesStore& preferences;
    MainQueue& queue;
    WorkQueue& pollingQueue;
    AlertServicing& alerts;
};

} // namespace kova
