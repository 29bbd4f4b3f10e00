// Scenes as a list: captured, named, compared with what is on the screen.
#include "workspace/WorkspaceController.h"

#include "support/Quoted.h"
#include "support/text/Text.h"
#include "workspace/WindowNames.h"

#include <algorithm>

namespace kova {

namespace {

double aspectRatio(const Screen& screen) {
    const CGSize size = screen.visibleFrame.size;
    return size.width / (size.height <= 1 ? 1 : size.height);
}

} // namespace

std::optional<WorkspaceScene> WorkspaceController::sceneWithID(const Uuid& id) const {
    const auto& scenes = *state_.scenes;
    const auto found = std::find_if(scenes.begin(), scenes.end(), [&](const auto& scene) { return scene.id == id; });
    if (found == scenes.end()) return std::nullopt;
    return *found;
}

std::optional<Uuid> WorkspaceController::findScene(const std::string& name) const {
    std::optional<Uuid> inAnotherCase;
    for (const auto& scene : *state_.scenes) {
        if (scene.name == name) return scene.id;
        if (!inAnotherCase && localizedCaseInsensitiveCompare(scene.name, name) == 0) inAnotherCase = scene.id;
    }
    return inAnotherCase;
}

std::vector<CapturedPlacement> WorkspaceController::capturedPlacements() const {
    std::vector<CapturedDisplay> displays;
    for (const auto& screen : *state_.screens) {
        CapturedDisplay display{displayID(screen), {}};
        for (const auto& slot : layouts_.resolve(screen, *state_.profile, catalogue()).slots) {
            display.slotIDs.push_back(slot.id);
        }
        displays.push_back(std::move(display));
    }
    return capturePlacements(displays, assignments_, [this](const std::string& id) {
        const ManagedWindow* window = findLive(id);
        return window && !window->isElsewhere ? window : nullptr;
    });
}

std::vector<WorkspaceSceneDisplay> WorkspaceController::capturedDisplays() const {
    std::vector<WorkspaceSceneDisplay> displays;
    for (const auto& screen : *state_.screens) {
        const std::string layoutID = layouts_.resolve(screen, *state_.profile, catalogue()).id;
        displays.push_back({.ordinal = static_cast<std::int64_t>(displays.size()),
                            .name = screen.localizedName,
                            .aspectRatio = aspectRatio(screen),
                            .layoutID = layoutID,
                            .layoutWeights = state_.profile->weights(displayID(screen), layoutID)});
    }
    return displays;
}

Outcome WorkspaceController::captureScene(const std::optional<std::string>& name) {
    const Date now = std::chrono::floor<std::chrono::microseconds>(services_.queue.now());
    WorkspaceScene scene;
    scene.name = trimmed(name.value_or(""));
    if (scene.name.empty()) scene.name = "Workspace " + localMonthDayTime(now);
    scene.createdAt = now;
    scene.updatedAt = now;
    scene.themeID = state_.profile->themeID;
    scene.accentColorID = *state_.accentColorID;
    scene.tileInset = state_.profile->tileInset;
    scene.displays = capturedDisplays();
    for (auto& captured : capturedPlacements()) scene.placements.push_back(std::move(captured.placement));

    const std::string message = "Scene " + quotedName(scene.name) + " captured";
    auto document = workspaceDocument();
    document.activeSceneID = scene.id;
    document.scenes.push_back(std::move(scene));
    const auto changed = changeDocument(std::move(document));
    return changed ? done(message) : changed;
}

Outcome WorkspaceController::renameScene(const Uuid& id, const std::string& name) {
    const std::string newName = trimmed(name);
    auto document = workspaceDocument();
    const auto scene = std::ranges::find(document.scenes, id, &WorkspaceScene::id);
    if (scene == document.scenes.end()) return Outcome::refused("The scene was not renamed");
    if (newName.empty()) {
        showStatusMessage("A scene needs a name");
        return Outcome::refused("A scene needs a name");
    }
    const std::string message = "Scene " + quotedName(scene->name) + " renamed to " + quotedName(newName);
    scene->name = newName;
    scene->updatedAt = std::chrono::floor<std::chrono::microseconds>(services_.queue.now());
    const auto changed = changeDocument(std::move(document));
    return changed ? done(message) : changed;
}

Outcome WorkspaceController::deleteScene(const Uuid& id) {
    const auto scene = sceneWithID(id);
    if (!scene) return Outcome::refused("The scene was not deleted");
    auto document = workspaceDocument();
    std::erase_if(document.scenes, [&](const auto& each) { return each.id == id; });
    if (document.activeSceneID == id) document.activeSceneID.reset();
    const auto changed = changeDocument(std::move(document));
    return changed ? done("Scene " + quotedName(scene->name) + " deleted") : changed;
}

Outcome WorkspaceController::insertScene(WorkspaceScene scene, std::size_t index) {
    const std::string message = "Scene " + quotedName(scene.name) + " restored to the list";
    auto document = workspaceDocument();
    const auto place = std::min(index, document.scenes.size());
    document.scenes.insert(document.scenes.begin() + static_cast<std::ptrdiff_t>(place), std::move(scene));
    const auto changed = changeDocument(std::move(document));
    return changed ? done(message) : changed;
}

std::optional<std::vector<SceneDifference>> WorkspaceController::diffScene(const Uuid& id) const {
    const auto scene = sceneWithID(id);
    if (!scene) return std::nullopt;
    const auto here = windowsHere();
    return sceneDifferences(*scene, {.themeID = state_.profile->themeID,
                                     .accentColorID = *state_.accentColorID,
                                     .tileInset = state_.profile->tileInset,
                                     .displays = capturedDisplays(),
                                     .placements = capturedPlacements(),
                                     .windows = here,
                                     .layouts = registry_.theme(scene->themeID).layouts});
}

} // namespace kova
