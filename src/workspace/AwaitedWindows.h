// Windows that are awaited: of applications launched into a tile, of an opened scene, and of other launched
// applications. Each kind has a timeout of its own, which stands still during a suspension.
#pragma once

#include "layout/TileTarget.h"
#include "support/Published.h"
#include "workspace/ExpectedApplications.h"
#include "workspace/PendingApplicationPlacement.h"
#include "workspace/PollContext.h"
#include "workspace/SceneRestoration.h"

#include <map>
#include <string>

namespace kova {

class AwaitedWindows {
  public:
    using Launches = std::map<TileTarget, PendingApplicationPlacement>;

    using PublishedLaunches = Published<std::map<TileTarget, LaunchableApplication>>;

    explicit AwaitedWindows(PublishedLaunches& published) : published_(published) {}

    // Launches into tiles
    const Launches& launches() const { return launches_; }
    /// Replaces the launch for which the tile waits. `now` is an uptime.
    void awaitLaunch(const LaunchableApplication& application, const DisplayID& displayID, const SlotID& slotID,
                     Seconds now);
    /// Reports the result of the launch into the tile (its id at the launch). Ignored if another launch into that tile
    /// has begun since.
    void noteLaunched(const TileTarget& requestedTile, const std::string& identifier, const LaunchResult& result);
    void dropLaunch(const TileTarget& tile);
    void dropLaunches();
    void dropExpired(Seconds now);
    void onPoll(const PollContext& poll) {
        dropExpired(poll.now);
        expected_.forgetThoseWithWindows(poll.windows);
    }

    // A scene
    SceneRestoration& scene() { return scene_; }
    const SceneRestoration& scene() const { return scene_; }
    /// The user has put the window somewhere: the scene does not move it any more.
    void noteMovedByUser(const WindowID& windowID);

    // Applications that may still show a window by themselves
    ExpectedApplications& expected() { return expected_; }
    const ExpectedApplications& expected() const { return expected_; }

    /// Extends all deadlines by the time in which no window could be placed.
    void postpone(Seconds duration);
    /// Something is awaited until a deadline.
    bool isWaiting() const { return !launches_.empty() || !scene_.pending.empty(); }
    void rename(const WindowID& windowID, const WindowID& newID);
    void renameDisplay(const DisplayID& displayID, const DisplayID& newID);

  private:
    void publish() { published_.set(applicationsOf(launches_)); }

    PublishedLaunches& published_;
    Launches launches_;
    SceneRestoration scene_;
    ExpectedApplications expected_;
};

} // namespace kova
