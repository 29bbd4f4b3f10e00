#include "control/DeletedScenes.h"

#include "control/NameLookup.h"
#include "control/Refusal.h"
#include "workspace/WorkspaceController.h"

#include <algorithm>
#include <utility>

namespace kova {

namespace {

using nlohmann::json;

json idAndName(const WorkspaceScene& scene) {
    return {{"id", scene.id.string()}, {"name", scene.name}};
}

} // namespace

ControlReply DeletedScenes::deleteScene(const JsonCursor& parameters) {
    auto found = lookUpScene(controller_, parameters.required("scene").string());
    if (!found) return found.error();
    WorkspaceScene& scene = *found;
    const auto& scenes = *controller_.state().scenes;
    const auto index =
        static_cast<std::size_t>(std::ranges::find(scenes, scene.id, &WorkspaceScene::id) - scenes.begin());
    const auto outcome = controller_.perform(action::DeleteScene{scene.id});
    if (!outcome) return failureOf(outcome);
    json result{{"scene", idAndName(scene)}, {"message", orNull(outcome.message())}};
    messageNumber_ = controller_.messagesShown();
    deleted_.push_back({std::move(scene), index});
    if (deleted_.size() > kMaximumCount) deleted_.pop_front();
    return result;
}

bool DeletedScenes::isShownByStatusMessage() const {
    return !deleted_.empty() && messageNumber_ == controller_.messagesShown();
}

ControlReply DeletedScenes::undelete() {
    const auto& scenes = *controller_.state().scenes;
    std::erase_if(deleted_, [&](const Deleted& each) { // an import may have restored a deleted scene
        return std::ranges::find(scenes, each.scene.id, &WorkspaceScene::id) != scenes.end();
    });
    if (deleted_.empty()) return refusal("No scene was deleted since the agent started");
    const Deleted& last = deleted_.back();
    const auto outcome = controller_.perform(action::InsertScene{last.scene, last.index});
    if (!outcome) return failureOf(outcome);
    json result{{"scene", idAndName(last.scene)}, {"message", orNull(outcome.message())}};
    deleted_.pop_back();
    return result;
}

} // namespace kova
