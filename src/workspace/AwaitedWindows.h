// Holds what is awaited: windows of applications that were launched into a tile, windows of an opened scene, and the
// first window of each launched application. Each kind has its own timeout, which a suspension extends. Always true: a
// tile waits for at most one launch. Launches are published. A scene launches an application at most once, and does not
// move a window that the user has moved since the scene was opened.
#pragma once

#include "layout/TileTarget.h"
#include "support/Published.h"
#include "workspace/ExpectedApplications.h"
#include "workspace/PendingApplicationPlacement.h"
#include "workspace/PollContext.h"
#include "workspace/SceneRestoration.h"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kova {

class AwaitedWindows {
  public:
    using Launches = std::map<TileTarget, PendingApplicationPlacement>;

    using PublishedLaunches = Published<std::map<TileTarget, LaunchableApplication>>;

    using PublishedReport = Published<std::optional<SceneReport>>;

    AwaitedWindows(PublishedLaunches& launches, PublishedReport& report) : published_(launches), report_(report) {}

    // Windows of applications launched into tiles
    const Launches& launches() const { return launches_; }
    /// The tile waits for a window of the application, and no longer for an earlier launch. `now` is an uptime.
    void awaitLaunch(const LaunchableApplication& application, const DisplayID& displayID, const SlotID& slotID,
                     Seconds now);
    /// Records the process of a launch, or drops the launch if it failed. `requestedTile` is the tile for which
    /// `awaitLaunch` was called; the id of its display may have changed since. No-op if the tile now waits for another
    /// application.
    void noteLaunched(const TileTarget& requestedTile, const std::string& identifier, const LaunchResult& result);
    void dropLaunch(const TileTarget& tile);
    void dropLaunches();
    void dropExpired(Seconds now);
    void onPoll(const PollContext& poll) {
        dropExpired(poll.now);
        expected_.forgetApplicationsWithWindows(poll.windows);
    }

    // Windows of the opened scene
    const SceneRestoration& scene() const { return scene_; }
    /// Abandons the former scene. `undoNumber` is the number of the new scene's entry in the undo history.
    void beginScene(std::uint64_t undoNumber);
    void abandonScene();
    /// Adds to the report a window whose tile is missing in the layout in force.
    void noteWithoutTile(const WorkspaceWindowReference& window);
    /// Adds to the report a window that was open before the scene.
    void noteAdopted(const ManagedWindow& window);
    void awaitForScene(PendingSceneWindowPlacement placement);
    /// Records that the scene launches the application. False if the scene has launched it already; then it must not be
    /// launched again. `now` is an uptime.
    [[nodiscard]] bool noteSceneLaunch(const BundleID& bundleID, const std::string& name, Seconds now);
    /// Records the stack positions of restored windows.
    void noteRestored(const std::vector<RestoredPlacement>& placements);
    struct FoundForScene {
        const ManagedWindow* window; // not null
        std::vector<TileTarget> targets;
    };
    using FindForScene = std::function<std::optional<FoundForScene>(const PendingSceneWindowPlacement&)>;
    struct TakenForScene {
        std::vector<RestoredPlacement> found; // in the order of the stacks
        std::size_t expired = 0;
    };
    /// Removes the pending placements for which `find` returns a window, and those that have expired by `now` (uptime).
    /// Returns the found windows and the number of expired placements.
    [[nodiscard]] TakenForScene takeForScene(Seconds now, const FindForScene& find);
    /// Publishes the report: finished if nothing is pending, else waiting.
    void publishReport();
    /// Forgets the scene and returns its number in the undo history.
    std::uint64_t endScene() { return std::exchange(scene_, {}).undoNumber; }
    /// The user has moved the window: the scene no longer moves it.
    void noteMovedByUser(const WindowID& windowID);

    // Launched applications that have no window yet
    const ExpectedApplications& expected() const { return expected_; }
    /// The launched application has started; see `ExpectedApplications::noteStarted`.
    void noteStarted(const BundleID& bundleID, pid_t process, std::optional<std::string> startIdentity) {
        expected_.noteStarted(bundleID, process, std::move(startIdentity));
    }
    /// The launch has failed.
    void noteNotStarted(const BundleID& bundleID) { expected_.forget(bundleID); }

    /// Extends all deadlines by the duration of a suspension.
    void postpone(Seconds duration);
    /// Whether a launch or a placement is pending, so that polls must continue until its deadline.
    bool isWaiting() const { return !launches_.empty() || !scene_.pending.empty(); }
    void rename(const WindowID& windowID, const WindowID& newID);
    void renameDisplay(const DisplayID& displayID, const DisplayID& newID);

  private:
    void publish() { published_.set(applicationsOf(launches_)); }

    PublishedLaunches& published_;
    PublishedReport& report_;
    Launches launches_;
    SceneRestoration scene_;
    ExpectedApplications expected_;
};

} // namespace kova
