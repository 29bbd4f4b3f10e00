#include "workspace/AwaitedWindows.h"

#include "layout/TileTarget.h"
#include "workspace/Renaming.h"
#include "workspace/WindowNames.h"

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

void AwaitedWindows::beginScene(std::uint64_t undoNumber) {
    abandonScene();
    scene_.undoNumber = undoNumber;
}

/// Publishes the report only if the scene still waits for windows. Otherwise its final report is already published.
void AwaitedWindows::abandonScene() {
    if (!scene_.pending.empty()) {
        scene_.report.state = SceneReport::State::abandoned;
        report_.set(scene_.report);
    }
    scene_ = {};
}

void AwaitedWindows::noteWithoutTile(const WorkspaceWindowReference& window) {
    scene_.report.withoutTile.push_back(nameOf(window));
}

void AwaitedWindows::noteAdopted(const ManagedWindow& window) {
    scene_.report.adopted.push_back(nameOf(window));
}

void AwaitedWindows::awaitForScene(PendingSceneWindowPlacement placement) {
    scene_.pending.push_back(std::move(placement));
}

bool AwaitedWindows::noteSceneLaunch(const BundleID& bundleID, const std::string& name, Seconds now) {
    if (!scene_.launchedBundleIDs.insert(bundleID).second) return false;
    scene_.report.launched.push_back(name);
    expected_.expect(bundleID, now);
    return true;
}

void AwaitedWindows::noteRestored(const std::vector<RestoredPlacement>& placements) {
    for (const auto& placement : placements) scene_.stackIndexByID[placement.windowID] = placement.stackIndex;
}

AwaitedWindows::TakenForScene AwaitedWindows::takeForScene(Seconds now, const FindForScene& find) {
    auto pending = std::exchange(scene_.pending, {});
    std::ranges::stable_sort(pending, {}, &PendingSceneWindowPlacement::stackIndex);
    TakenForScene taken;
    for (auto& placement : pending) {
        if (placement.expiresAt <= now) {
            ++taken.expired;
            scene_.report.missing.push_back(nameOf(placement.window));
        } else if (const auto found = find(placement)) {
            scene_.report.placed.push_back(nameOf(*found->window));
            taken.found.push_back({found->window->id, found->targets, placement.stackIndex,
                                   frontsItsTile(placement.stackIndex, placement.isActive)});
        } else {
            scene_.pending.push_back(std::move(placement));
        }
    }
    return taken;
}

void AwaitedWindows::publishReport() {
    using enum SceneReport::State;
    scene_.report.state = scene_.pending.empty() ? finished : waiting;
    report_.set(scene_.report);
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
