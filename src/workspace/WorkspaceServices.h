// What the workspace works with: the desktop behind its seams, preferences, queues.
#pragma once

#include "persistence/PreferencesStore.h"
#include "support/MainQueue.h"
#include "windowing/AccessibilityServicing.h"
#include "windowing/AlertServicing.h"
#include "windowing/ApplicationServicing.h"
#include "windowing/ScreenServicing.h"

namespace kova {

/// What the controller works with. All of it outlives the controller.
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
