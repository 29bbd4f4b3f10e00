// The objects that carry out the operations of the workspace. Each of them gets references to objects that are
// declared above it.
#pragma once

#include "workspace/ApplicationActions.h"
#include "workspace/Arrangement.h"
#include "workspace/DisplayChanges.h"
#include "workspace/DocumentStore.h"
#include "workspace/LayoutChoice.h"
#include "workspace/LayoutFollower.h"
#include "workspace/PlacementReport.h"
#include "workspace/PointerActions.h"
#include "workspace/RuleActions.h"
#include "workspace/SceneActions.h"
#include "workspace/SessionRecorder.h"
#include "workspace/Snapshots.h"
#include "workspace/TileGeometry.h"
#include "workspace/TileKeeper.h"
#include "workspace/UndoSteps.h"
#include "workspace/WindowCommands.h"
#include "workspace/WindowFinder.h"
#include "workspace/WindowPresenter.h"
#include "workspace/WorkspaceAccess.h"
#include "workspace/WorkspaceSettings.h"

namespace kova {

struct WorkspaceOperations {
    WorkspaceOperations(WorkspaceParts& parts, RefreshCycle& refreshCycle);
    WorkspaceOperations(const WorkspaceOperations&) = delete;
    WorkspaceOperations& operator=(const WorkspaceOperations&) = delete;

    WorkspaceAccess access;
    TileGeometry geometry;
    WindowFinder finder;
    WindowPresenter presenter;
    TileKeeper keeper;
    DocumentStore documents;
    WorkspaceSettings settings;
    LayoutFollower follower;
    Snapshots snapshots;
    UndoSteps steps;
    DisplayChanges displayChanges;
    LayoutChoice layoutChoice;
    Arrangement arrangement;
    PointerActions pointerActions;
    WindowCommands commands;
    PlacementReport report;
    ApplicationActions applications;
    SceneActions scenes;
    RuleActions rules;
    SessionRecorder sessionRecorder;
};

} // namespace kova
