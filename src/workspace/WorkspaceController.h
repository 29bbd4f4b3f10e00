// The single engine: the live picture of every managed window, which window is in which tile, and every operation of
// the user. The only object that moves other applications' windows. Main thread only.
//
// Each concern has its own file; this header reads as the list of what a user can do.
#pragma once

#include "persistence/PreferencesStore.h"
#include "support/MainQueue.h"
#include "themes/ThemeRegistry.h"
#include "windowing/AccessibilityWindowService.h"
#include "workspace/ArrangementPlan.h"
#include "workspace/TileAssignments.h"
#include "workspace/WorkspaceAction.h"
#include "workspace/WorkspaceState.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

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
};

/// A tile as it stands on a display.
struct WorkspaceTile {
    std::string targetID;
    std::string displayID;
    TileSlot slot;
    CGRect frameOnScreen{};           // screen space, the tile's cell
    CGRect frameForWindowService{};   // window-service space, where a window of this tile is put (inset applied)
    std::optional<std::string> windowID;
    std::vector<std::string> stack;   // front first
};

enum class LayoutSelectionResult { done, unknownDisplay, unknownLayout };

class WorkspaceController {
  public:
    explicit WorkspaceController(const WorkspaceServices& services);
    ~WorkspaceController();
    WorkspaceController(const WorkspaceController&) = delete;
    WorkspaceController& operator=(const WorkspaceController&) = delete;

    const WorkspaceState& state() const;
    /// The last enumeration, unfiltered.
    const std::vector<ManagedWindow>& liveWindows() const;
    const TileAssignments& assignments() const;
    const ThemeRegistry& registry() const;

    // Lifecycle
    void start(bool promptForPermission);
    /// Ends management; focus mode is closed and what it changed is restored.
    void stop();
    /// Asks for one poll now; ignored while one is in flight.
    void refresh();
    void recheckAccessibility();
    bool isRunning() const;

    /// The one door for actions; false when the action was not carried out (the status message then says why, if there
    /// is anything to say).
    bool perform(const WorkspaceAction& action);
    /// Shows the text for 4 seconds, or until the next one.
    void showStatusMessage(const std::string& text);

    // Arrangement
    /// What `arrange` would do now, without doing it.
    ArrangementPlan planArrangement() const;
    void arrangeWindows();

    // Layouts
    const std::vector<LayoutDefinition>& catalogue() const;
    /// The definition in force on the display, weights applied; null for a display that is not connected.
    const LayoutDefinition* resolvedLayout(const std::string& displayID) const;
    /// The display of the focused window, else the one under the pointer, else the first; absent without displays.
    std::optional<std::string> currentDisplayID() const;
    LayoutSelectionResult selectLayout(const std::string& displayID, const DisplayLayoutSelection& selection);
    /// Through the whole catalogue in its order, with wrap-around, on the current display.
    bool selectNextLayout();
    bool selectPreviousLayout();
    /// Drops the weights of the display's layout; of the current display when none is named.
    bool resetLayoutSizes(const std::optional<std::string>& displayID = std::nullopt);
    /// Sets the gap on each side between tiles and windows, in points (0 to 100).
    bool setTileInset(double points);

    /// The tiles of every display, in the platform's order and the layouts' order.
    std::vector<WorkspaceTile> tiles() const;

  private:
    class Engine;
    std::unique_ptr<Engine> engine_;
};

} // namespace kova
