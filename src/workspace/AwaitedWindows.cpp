#include "workspace/AwaitedWindows.h"

#include "layout/TileTarget.h"
#include "workspace/Renaming.h"

#include <algorithm>

namespace kova {

void AwaitedWindows::awaitLaunch(const LaunchableApplication& application, const DisplayID& displayID,
                                 const SlotID& slotID, Seconds now) {
    const TileTarget tile{displayID, slotID};
    launches_[tile] = {.application = application,
                       .displayID = displayID,
                       .slotID = slotID,
                       .requestedTile = tile,
                       .expiresAt = now + PendingApplicationPlacement::kLifetime,
                       .processIdentifier = std::nullopt};
    publish();
    if (application.bundleIdentifier) expected_.expect(*application.bundleIdentifier, now);
}

void AwaitedWindows::noteLaunched(const TileTarget& requestedTile, const std::string& identifier,
                                  const LaunchResult& result) {
    const auto launch = std::ranges::find_if(launches_, [&](const auto& entry) {
        return entry.second.requestedTile == requestedTile && entry.second.application.identifier == identifier;
    });
    if (launch == launches_.end()) return;
    if (result.error) {
        launches_.erase(launch);
        publish();
    } else {
        launch->second.processIdentifier = result.processIdentifier;
    }
}

void AwaitedWindows::dropExpired(Seconds now) {
    const auto expired = std::erase_if(launches_, [&](const auto& entry) { return entry.second.expiresAt <= now; });
    if (expired > 0) publish();
}

void AwaitedWindows::dropLaunch(const TileTarget& tile) {
    launches_.erase(tile);
    publish();
}

void AwaitedWindows::dropLaunches() {
    launches_.clear();
    publish();
}

void AwaitedWindows::noteMovedByUser(const WindowID& windowID) {
    if (!scene_.pending.empty()) scene_.movedByUser.insert(windowID);
}

void AwaitedWindows::postpone(Seconds duration) {
    for (auto& [tile, placement] : launches_) placement.expiresAt += duration;
    for (auto& placement : scene_.pending) placement.expiresAt += duration;
    expected_.postpone(duration);
}

void AwaitedWindows::rename(const WindowID& windowID, const WindowID& newID) {
    renameKey(scene_.stackIndexByID, windowID, newID);
    renameIn(scene_.movedByUser, windowID, newID);
}

void AwaitedWindows::renameDisplay(const DisplayID& displayID, const DisplayID& newID) {
    for (auto& placement : scene_.pending) {
        if (placement.displayID == displayID) placement.displayID = newID;
    }
    kova::renameDisplay(launches_, displayID, newID);
    publish();
}

} // namespace kova
