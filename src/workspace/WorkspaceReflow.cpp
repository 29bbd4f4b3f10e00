// Windows that refuse their tiles: what they show of their minimum sizes is remembered, given room within bounds, and
// forgotten when it proves to be no longer so.
#include "workspace/WorkspaceController.h"

#include <algorithm>
#include <utility>

namespace kova {

namespace {

constexpr double kRefusalPoints = 2;

} // namespace

/// A window that did not shrink tells its minimum in the directions in which it stayed larger than asked for.
void WorkspaceController::minimumSizeObserved(const std::string& windowID, const CGRect& wanted, const CGRect& actual) {
    const ManagedWindow* window = findLive(windowID);
    if (!window || window->isFullScreen) return;
    CGSize minimum = minimumSizeOf(*window);
    const CGSize before = minimum;
    if (actual.size.width > wanted.size.width + kRefusalPoints)
        minimum.width = std::max(minimum.width, actual.size.width);
    if (actual.size.height > wanted.size.height + kRefusalPoints) {
        minimum.height = std::max(minimum.height, actual.size.height);
    }
    if (minimum == before) return;
    minimumsToApply_[windowID] = minimum;
    reflow(windowID);
}

/// Now, or as soon as the display may be laid out again; not at all when the window has asked often enough.
void WorkspaceController::reflow(const std::string& windowID) {
    const auto minimum = minimumsToApply_.find(windowID);
    const ManagedWindow* window = findLive(windowID);
    const auto target = assignments_.targetOf(windowID);
    const Screen* screen = target ? screenOfTarget(*target) : nullptr;
    if (minimum == minimumsToApply_.end() || !window || !screen || !mayMoveWindows()) return;
    const Seconds now = services_.queue.uptime();
    const auto due = reflow_.nextReflow(displayID(*screen), windowID, now);
    if (!due) return;
    if (*due > now) {
        services_.queue.after(*due - now, lifetime_.guard([this, windowID] { reflow(windowID); }));
        return;
    }
    reflow_.noteReflow(displayID(*screen), windowID, now);
    auto observed = *state_.observedMinimumSizes;
    observed[windowID] = minimum->second;
    state_.observedMinimumSizes.set(std::move(observed));
    WorkspaceProfile profile = *state_.profile;
    profile.applicationMinimumSizes[applicationKey(window->applicationName, window->bundleIdentifier)] =
        minimum->second;
    setProfile(std::move(profile));
    minimumsToApply_.erase(minimum);
    makeRoomFor(ManagedWindow(*window));
}

/// The tiles are solved again with what was learnt; a window that still does not fit claims a span.
void WorkspaceController::makeRoomFor(const ManagedWindow& window) {
    const auto target = assignments_.targetOf(window.id);
    if (!target || (*state_.focusMode && (*state_.focusMode)->windowID == window.id)) return;
    state_.layoutRevision.set(*state_.layoutRevision + 1);
    const auto covering = coveringFor(window, *target);
    if (covering && covering->targets.size() > assignments_.targetsOf(window.id).size()) {
        place(window, *covering, AccessibilityWindowService::BringToFront::no);
        publishAssignments();
    }
    reapplyTileFrames();
    services_.accessibility.flush();
}

/// A window whose known minimum does not fit its tile under a new layout claims a span at once.
void WorkspaceController::claimRoomWhereNeeded() {
    std::vector<std::pair<ManagedWindow, Covering>> claims;
    for (const auto& screen : *state_.screens) {
        const std::set<std::string> unsatisfied = solvedTiles(screen).unsatisfiedTileIDs;
        for (const auto& slotID : unsatisfied) {
            const auto front = assignments_.assignedWindowIDs.find(tileTargetID(displayID(screen), slotID));
            const ManagedWindow* window =
                front == assignments_.assignedWindowIDs.end() ? nullptr : findLive(front->second);
            if (!window || isLeftAlone(*window)) continue;
            const auto covering = coveringFor(*window, front->first);
            if (covering && covering->targets.size() > 1) claims.emplace_back(*window, *covering);
        }
    }
    for (const auto& [window, covering] : claims) {
        // An earlier claim may have taken its tile.
        if (assignments_.isAssigned(window.id)) place(window, covering, AccessibilityWindowService::BringToFront::no);
    }
    if (!claims.empty()) publishAssignments();
}

/// A window that has stayed well below its remembered minimum does not need it any more.
void WorkspaceController::relaxMinimums() {
    auto observed = *state_.observedMinimumSizes;
    for (auto& [windowID, minimum] : observed) {
        const ManagedWindow* window = findLive(windowID);
        const bool isResting = window && window->frame && window->isVisible && !windowService_->pendingFrame(windowID);
        if (!isResting) continue;
        const auto relaxed = reflow_.relaxedMinimum(windowID, minimum, window->frame->size, services_.queue.uptime());
        if (!relaxed) continue;
        minimum = *relaxed;
        WorkspaceProfile profile = *state_.profile;
        profile.applicationMinimumSizes[applicationKey(window->applicationName, window->bundleIdentifier)] = *relaxed;
        setProfile(std::move(profile));
        reflow_.forgetPushes(windowID);
    }
    state_.observedMinimumSizes.set(std::move(observed));
}

/// A window that needs less than it did keeps only as many tiles as it now needs.
void WorkspaceController::giveBackSpans() {
    std::map<std::string, CGSize> before = std::exchange(minimumsOfSpanning_, {});
    std::vector<ManagedWindow> modest;
    for (const auto& [windowID, anchor] : assignments_.anchorTargetIDsByWindowID) {
        const ManagedWindow* window = findLive(windowID);
        if (!window) continue;
        const CGSize now = minimumSizeOf(*window);
        minimumsOfSpanning_[windowID] = now;
        const auto last = before.find(windowID);
        const bool needsLess =
            last != before.end() && (now.width < last->second.width || now.height < last->second.height);
        if (needsLess && reflow_.mayGiveBackSpan(windowID)) modest.push_back(*window);
    }
    for (const ManagedWindow& window : modest) {
        const auto covering = coveringFor(window, *assignments_.targetOf(window.id));
        const auto own = assignments_.targetsOf(window.id);
        if (!covering || covering->targets.size() >= own.size()) continue;
        std::vector<std::string> kept;
        for (const auto& target : covering->targets) kept.push_back(target.id());
        const bool isPart = std::all_of(kept.begin(), kept.end(), [&](const std::string& target) {
            return std::find(own.begin(), own.end(), target) != own.end();
        });
        if (!isPart) continue; // it would push others out of theirs
        reflow_.noteSpanGivenBack(window.id);
        (void)assignments_.assign(window.id, kept);
    }
    if (!modest.empty()) publishAssignments();
}

} // namespace kova
