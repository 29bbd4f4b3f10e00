#include "control/SceneListeners.h"

#include "control/JsonRpc.h"

namespace kova {

using nlohmann::json;

SceneListeners::SceneListeners(const WorkspaceController& controller) :
    subscription_(controller.state().sceneReport.observe([this](const auto& report) {
        if (report && report->state != SceneReport::State::waiting) notify(*report);
    })) {}

void SceneListeners::add(const Uuid& opening, const std::shared_ptr<ControlPeer>& peer) {
    listeners_.emplace_back(opening, peer);
}

void SceneListeners::notify(const SceneReport& report) {
    for (const auto& [opening, listener] : listeners_) {
        if (opening != report.opening) continue;
        if (const auto peer = listener.lock()) {
            peer->send(jsonrpc::line(jsonrpc::notification("sceneOpened", {{"report", record(report)}})));
        }
    }
    // No other opening can be under way, since a new opening ends the previous one.
    listeners_.clear();
}

json record(const SceneReport& report) {
    return {{"state", describe(report.state)}, {"adopted", report.adopted}, {"launched", report.launched},
            {"placed", report.placed},         {"missing", report.missing}, {"withoutTile", report.withoutTile}};
}

} // namespace kova
