#include "control/SettingsBroadcast.h"

#include "control/JsonRpc.h"

#include <algorithm>
#include <utility>

namespace kova {

SettingsBroadcast::SettingsBroadcast(std::vector<Section> sections, Observe observe, MainQueue& queue) :
    sections_(std::move(sections)), observe_(std::move(observe)), queue_(queue) {}

nlohmann::json SettingsBroadcast::subscribe(std::shared_ptr<ControlPeer> peer) {
    sendChanges(); // brings `sent_` up to date, since the new subscriber gets it
    if (peers_.empty()) {
        subscriptions_ = observe_([this] { noteChange(); });
        sent_ = nlohmann::json::object();
        for (const Section& section : sections_) sent_[section.name] = section.value();
    }
    if (std::find(peers_.begin(), peers_.end(), peer) == peers_.end()) peers_.push_back(std::move(peer));
    return {{"topic", "settings"}, {"sequence", sequence_}, {"state", sent_}};
}

void SettingsBroadcast::noteChange() {
    if (peers_.empty() || std::exchange(isComparisonPosted_, true)) return;
    queue_.post(lifetime_.guard([this] { sendChanges(); }));
}

void SettingsBroadcast::sendChanges() {
    isComparisonPosted_ = false;
    std::erase_if(peers_, [](const auto& peer) { return !peer->isConnected(); });
    if (peers_.empty()) {
        subscriptions_.clear();
        sent_ = nullptr;
        return;
    }
    nlohmann::json changes = nlohmann::json::object();
    for (const Section& section : sections_) {
        nlohmann::json now = section.value();
        if (now != sent_[section.name]) changes[section.name] = sent_[section.name] = std::move(now);
    }
    if (changes.empty()) return;
    const std::string line = jsonrpc::line(jsonrpc::notification(
        "changed", {{"topic", "settings"}, {"sequence", ++sequence_}, {"changes", std::move(changes)}}));
    for (const auto& peer : peers_) peer->send(line);
}

} // namespace kova
