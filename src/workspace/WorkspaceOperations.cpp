#include "workspace/WorkspaceOperations.h"

#include "workspace/WorkspaceParts.h"

namespace kova {

WorkspaceOperations::WorkspaceOperations(WorkspaceParts& parts, RefreshCycle& refreshCycle) :
    access(parts, refreshCycle), geometry(parts), finder(parts, geometry),
    presenter(parts, refreshCycle, geometry, finder,
              [this](const WindowID& windowID, const CGRect& wanted, const CGRect& actual) {
                  keeper.minimumSizeObserved(windowID, wanted, actual);
              }),
    keeper(parts, access, geometry, presenter), documents(parts), settings(parts, refreshCycle, geometry, keeper),
    follower(parts, geometry, presenter), snapshots(parts, refreshCycle, geometry, presenter, documents, follower),
    steps(parts, refreshCycle, access, geometry, finder, presenter, keeper, snapshots),
    displayChanges(
        parts, refreshCycle, access, geometry, presenter, keeper, follower, steps,
        [&parts](const DisplayID& formerID, const DisplayID& newID) { parts.renameDisplay(formerID, newID); }),
    layoutChoice(parts, access, geometry, finder, keeper, follower, steps),
    arrangement(parts, access, geometry, finder, presenter, keeper, snapshots, steps),
    pointerActions(parts, access, geometry, finder, presenter, keeper, snapshots, steps, arrangement),
    commands(parts, access, geometry, finder, presenter, keeper, snapshots, steps, arrangement),
    report(parts, access, geometry, presenter, arrangement),
    applications(parts, refreshCycle, access, geometry, presenter, keeper, steps),
    scenes(parts, refreshCycle, access, geometry, finder, presenter, keeper, documents, steps, applications,
           [&parts] { parts.forgetPlaces(); }),
    rules(parts, access, geometry, finder, keeper, documents),
    sessionRecorder(parts, geometry, finder, presenter, keeper, follower, steps, displayChanges) {}

} // namespace kova
