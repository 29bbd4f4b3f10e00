#include "control/StateBroadcast.h"

#include "control/ControlRecords.h"
#include "control/JsonRpc.h"

#include <algorithm>
#include <array>
#include <utility>

namespace kova {

namespace {

using nlohmann::json;

enum Section : std::uint32_t {
    permission = 1U << 0,
    displays = 1U << 1,
    windows = 1U << 2,
    tiles = 1U << 3,
    focusMode = 1U << 4,
    canUndo = 1U << 5,
    message = 1U << 6,
    explanation = 1U << 7,
    notice = 1U << 8,
    settings = 1U << 9,
    isSuspended = 1U << 10,
    focus = 1U << 11,
    isPaused = 1U << 12,
    pendingLaunches = 1U << 13,
};

constexpr std::uint32_t kEverySection = (pendingLaunches << 1) - 1;

struct SectionRecord {
    Section section;
    const char* name;
    json (*record)(const WorkspaceController&);
};

json messageRecord(const WorkspaceController& controller) {
    const auto& text = *controller.state().lastActionMessage;
    return text ? json(*text) : json(nullptr);
}

constexpr std::array<SectionRecord, 14> kSections = {{
    {permission, "permission",
     [](const WorkspaceController& c) -> json { return describe(*c.state().permissionState); }},
    {displays, "displays", controlRecord::displays},
    {windows, "windows", controlRecord::windows},
    {tiles, "tiles", controlRecord::tiles},
    {focusMode, "focusMode", controlRecord::focusMode},
    {canUndo, "canUndo", [](const WorkspaceController& c) -> json { return *c.state().canUndo; }},
    {message, "message", messageRecord},
    {explanation, "explanation",
     [](const WorkspaceController& c) -> json { return *c.state().lastArrangeExplanation; }},
    {notice, "notice", controlRecord::notice},
    {settings, "settings", controlRecord::settings},
    {isSuspended, "isSuspended", [](const WorkspaceController& c) -> json { return *c.state().isSuspended; }},
    {focus, "focus", controlRecord::focus},
    {pendingLaunches, "pendingLaunches", controlRecord::pendingLaunches},
    {isPaused, "isPaused", [](const WorkspaceController& c) -> json { return *c.state().isPaused; }},
}};

} // namespace

StateBroadcast::StateBroadcast(const WorkspaceController& controller, MainQueue& queue) :
    controller_(controller), queue_(queue) {}

json StateBroadcast::state() const {
    json out = json::object();
    for (const auto& section : kSections) out[section.name] = section.record(controller_);
    return out;
}

json StateBroadcast::subscribe(std::shared_ptr<ControlPeer> peer) {
    if (!subscriptions_.empty()) {
        // Brings `sent_` up to date, since the new subscriber gets it; the other subscribers get the changes.
        touched_ = kEverySection;
        sendChanges();
    }
    if (subscriptions_.empty()) {
        observe();
        sent_ = state();
    }
    if (std::find(peers_.begin(), peers_.end(), peer) == peers_.end()) peers_.push_back(std::move(peer));
    return {{"sequence", sequence_}, {"state", sent_}};
}

void StateBroadcast::observe() {
    const WorkspaceState& observed = controller_.state();
    const auto watch = [this](const auto& published, std::uint32_t sections) {
        subscriptions_.push_back(published.observe([this, sections](const auto&) { noteChange(sections); }));
    };
    watch(observed.permissionState, permission);
    watch(observed.isSuspended, isSuspended);
    watch(observed.screens, displays | tiles);
    watch(observed.windows, windows);
    watch(observed.titleRevision, windows);
    watch(observed.focusedWindowID, windows | focus);
    watch(observed.floatingWindowIDs, windows);
    watch(observed.isPaused, isPaused);
    watch(observed.assignedWindowIDs, windows | tiles | focus);
    watch(observed.stackWindowIDsByTarget, windows | tiles);
    watch(observed.layoutRevision, displays | tiles);
    watch(observed.profile, displays | tiles | settings);
    watch(observed.focusMode, focusMode);
    watch(observed.canUndo, canUndo);
    watch(observed.lastActionMessage, message);
    watch(observed.lastArrangeExplanation, explanation);
    watch(observed.placementNotice, notice);
    watch(observed.pendingLaunches, pendingLaunches);
    watch(observed.accentColorID, settings);
    watch(observed.continuousManagementEnabled, settings);
    watch(observed.bringsNextForward, settings);
    watch(observed.useThemeBackground, settings);
    watch(observed.showBrain, settings);
    watch(observed.showTileBackgrounds, settings);
}

void StateBroadcast::noteChange(std::uint32_t sections) {
    if (touched_ == 0) {
        queue_.post(lifetime_.guard([this] {
            if (touched_ != 0) sendChanges();
        }));
    }
    touched_ |= sections;
}

void StateBroadcast::sendChanges() {
    const auto sections = std::exchange(touched_, 0);
    std::erase_if(peers_, [](const auto& peer) { return !peer->isConnected(); });
    if (peers_.empty()) {
        subscriptions_.clear();
        sent_ = nullptr;
        return;
    }
    json changes = json::object();
    for (const auto& section : kSections) {
        if ((sections & section.section) == 0) continue;
        json now = section.record(controller_);
        if (now == sent_[section.name]) continue;
        changes[section.name] = sent_[section.name] = std::move(now);
    }
    if (changes.empty()) return;
    const std::string line =
        jsonrpc::line(jsonrpc::notification("changed", {{"sequence", ++sequence_}, {"changes", std::move(changes)}}));
    for (const auto& peer : peers_) peer->send(line);
}

} // namespace kova
