#include "control/OverlayBroadcast.h"

#include "control/JsonRpc.h"
#include "control/OverlayRecords.h"

#include <algorithm>
#include <utility>

namespace kova {

using nlohmann::json;

namespace {
constexpr auto kWindowSections = static_cast<OverlaySections>(OverlaySection::settingsWindow) |
                                 static_cast<OverlaySections>(OverlaySection::onboardingWindow);
} // namespace

OverlayBroadcast::~OverlayBroadcast() {
    overlay_.watch({});
}

bool OverlayBroadcast::hasPeers() {
    std::erase_if(peers_, [](const auto& peer) { return !peer->isConnected(); });
    if (peers_.empty()) overlay_.watch({});
    return !peers_.empty();
}

bool OverlayBroadcast::isPeer(const std::shared_ptr<ControlPeer>& client) const {
    return std::find(peers_.begin(), peers_.end(), client) != peers_.end();
}

void OverlayBroadcast::add(std::shared_ptr<ControlPeer> peer) {
    peers_.push_back(peer);
    const auto disconnected = lifetime_.guard([this] {
        (void)hasPeers();
        clientDisconnected_();
    });
    peer->whenDisconnected([&queue = queue_, disconnected] { queue.post(disconnected); });
}

json OverlayBroadcast::subscribe(std::shared_ptr<ControlPeer> peer) {
    if (hasPeers()) {
        // The new client gets the whole contents, so the other clients get the pending changes first.
        touched_ = kEveryOverlaySection;
        sendChanges();
    } else {
        overlay_.watch([this](OverlaySections sections) { touched(sections); });
        update(sent_, kEveryOverlaySection);
        touched_ = 0;
    }
    if (!isPeer(peer)) add(std::move(peer));
    return {{"topic", "overlay"}, {"sequence", sequence_}, {"state", json::parse(overlayRecord::whole(sent_))}};
}

bool OverlayBroadcast::show(const std::string& what, json parameters) {
    if (!hasPeers()) return false;
    parameters["what"] = what;
    send(jsonrpc::line(jsonrpc::notification("show", std::move(parameters))));
    return true;
}

void OverlayBroadcast::update(OverlayContents& contents, OverlaySections sections) {
    overlay_.update(contents, sections);
    if (amend_) amend_(contents);
}

void OverlayBroadcast::touched(OverlaySections sections) {
    if (touched_ == 0) {
        queue_.post(lifetime_.guard([this] {
            if (touched_ != 0) sendChanges();
        }));
    }
    touched_ |= sections;
}

void OverlayBroadcast::sendChanges() {
    OverlaySections sections = std::exchange(touched_, 0);
    if (!hasPeers()) return;
    if ((sections & kWindowSections) != 0) sections |= kWindowSections; // these two are sent together
    OverlayContents before, now; // have only the touched sections, so that the others are not copied
    swapSections(before, sent_, sections);
    update(now, sections);
    const std::string changes = overlayRecord::changes(before, now);
    swapSections(now, sent_, sections);
    if (changes.empty()) return;
    send(R"({"jsonrpc":"2.0","method":"changed","params":{"topic":"overlay","sequence":)" +
         std::to_string(++sequence_) + R"(,"changes":)" + changes + "}}");
}

void OverlayBroadcast::send(const std::string& line) {
    for (const auto& peer : peers_) peer->send(line);
}

} // namespace kova
