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

bool OverlayBroadcast::hasSubscribers() {
    std::erase_if(subscribers_, [](const auto& peer) { return !peer->isConnected(); });
    if (subscribers_.empty()) overlay_.watch({});
    return !subscribers_.empty();
}

bool OverlayBroadcast::isSubscriber(const std::shared_ptr<ControlPeer>& client) const {
    return std::find(subscribers_.begin(), subscribers_.end(), client) != subscribers_.end();
}

void OverlayBroadcast::add(std::shared_ptr<ControlPeer> peer) {
    subscribers_.push_back(peer);
    const auto disconnected = lifetime_.guard([this] {
        (void)hasSubscribers();
        clientDisconnected_();
    });
    peer->whenDisconnected([&queue = queue_, disconnected] { queue.post(disconnected); });
}

json OverlayBroadcast::subscribe(std::shared_ptr<ControlPeer> peer) {
    if (hasSubscribers()) {
        // Brings `sent_` up to date, since the new subscriber gets it; the other subscribers get the changes.
        touched_ = kEveryOverlaySection;
        sendChanges();
    } else {
        overlay_.watch([this](OverlaySections sections) { noteChange(sections); });
        update(sent_, kEveryOverlaySection);
        touched_ = 0;
    }
    if (!isSubscriber(peer)) add(std::move(peer));
    return {{"topic", "overlay"}, {"sequence", sequence_}, {"state", json::parse(overlayRecord::whole(sent_))}};
}

bool OverlayBroadcast::show(const std::string& what, json parameters) {
    if (!hasSubscribers()) return false;
    parameters["what"] = what;
    send(jsonrpc::line(jsonrpc::notification("show", std::move(parameters))));
    return true;
}

void OverlayBroadcast::update(OverlayContents& contents, OverlaySections sections) {
    overlay_.update(contents, sections);
    if (amend_) amend_(contents);
}

void OverlayBroadcast::noteChange(OverlaySections sections) {
    if (touched_ == 0) {
        queue_.post(lifetime_.guard([this] {
            if (touched_ != 0) sendChanges();
        }));
    }
    touched_ |= sections;
}

void OverlayBroadcast::sendChanges() {
    OverlaySections sections = std::exchange(touched_, 0);
    if (!hasSubscribers()) return;
    if ((sections & kWindowSections) != 0) sections |= kWindowSections; // both windows are sent as one member
    OverlayContents before, now; // contain only the touched sections, so that the other sections are not copied
    swapSections(before, sent_, sections);
    update(now, sections);
    const std::string changes = overlayRecord::changes(before, now);
    swapSections(now, sent_, sections);
    if (changes.empty()) return;
    send(R"({"jsonrpc":"2.0","method":"changed","params":{"topic":"overlay","sequence":)" +
         std::to_string(++sequence_) + R"(,"changes":)" + changes + "}}");
}

void OverlayBroadcast::send(const std::string& line) {
    for (const auto& peer : subscribers_) peer->send(line);
}

} // namespace kova
