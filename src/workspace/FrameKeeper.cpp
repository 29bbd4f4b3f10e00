#include "workspace/FrameKeeper.h"

#include "support/SameFrame.h"
#include "workspace/Renaming.h"

#include <algorithm>
#include <utility>

namespace kova {

FrameKeeper::Decision FrameKeeper::decide(const ManagedWindow& window, const CGRect& wanted,
                                          CorrectedDrift correctedDrift, const std::optional<CGRect>& pending) {
    if (sizes_.isBeingRetried(window.id)) {
        if (pending) return Decision::noRequest;
        sizes_.endRetry(window.id);
    }
    const double tolerance = correctedDrift == CorrectedDrift::any ? kRoundingPoints : kFrameTolerancePoints;
    // While a placement of the same frame is being verified, no further request is made. The first poll after the last
    // pass decides again.
    if (pending) noteRequest(window.id);
    if (pending) return nearlyEqual(*pending, wanted, tolerance) ? Decision::noRequest : Decision::request;
    if (!window.frame || nearlyEqual(*window.frame, wanted, tolerance)) {
        refusals_.erase(window.id);
        return Decision::noRequest;
    }
    RefusedFrame& refusal = refusals_[window.id];
    const bool isSameAsBefore = nearlyEqual(refusal.wanted, wanted, kRoundingPoints) &&
                                nearlyEqual(refusal.actual, *window.frame, kRoundingPoints);
    if (!isSameAsBefore) refusal = {wanted, *window.frame, 0, refusal.isUnseen};
    return refusal.attempts < kAttempts ? Decision::repeatRequest : Decision::noRequest;
}

void FrameKeeper::accept(const WindowID& windowID, const CGRect& wanted, const CGRect& actual) {
    refusals_[windowID] = {wanted, actual, kAttempts, false, true};
}

void FrameKeeper::noteNotPlaced(const ManagedWindow& window) {
    if (!window.isElsewhere || !refusal(window.id)) refusals_.erase(window.id);
}

const RefusedFrame* FrameKeeper::refusal(const WindowID& windowID) const {
    const auto found = refusals_.find(windowID);
    return found == refusals_.end() || found->second.attempts < kAttempts ? nullptr : &found->second;
}

std::vector<WindowID>
FrameKeeper::takeShrunken(const std::map<WindowID, TileTarget>& anchors,
                          const std::function<std::optional<CGSize>(const WindowID&)>& minimumOf) {
    std::erase_if(minimumsOfSpanning_, [&](const auto& entry) { return !anchors.contains(entry.first); });
    std::vector<WindowID> shrunken;
    for (const auto& [windowID, anchor] : anchors) {
        const auto now = minimumOf(windowID);
        if (!now) continue;
        const CGSize before = std::exchange(minimumsOfSpanning_.try_emplace(windowID, *now).first->second, *now);
        const bool needsLess = now->width < before.width || now->height < before.height;
        if (needsLess && reflow_.mayGiveBackSpan(windowID)) shrunken.push_back(windowID);
    }
    return shrunken;
}

void FrameKeeper::onPoll(const PollContext& poll) {
    sizes_.keepOnly(poll.isLive);
    reflow_.keepOnly(poll.isLive);
    std::erase_if(refusals_, [&](const auto& entry) { return !poll.isLive(entry.first); });
    for (auto& [windowID, refusal] : refusals_) {
        if (!poll.hasPendingFrame(windowID)) refusal.isUnseen = false;
    }
}

bool FrameKeeper::isWaiting() const {
    return std::ranges::any_of(
        refusals_, [](const auto& entry) { return entry.second.isUnseen || entry.second.attempts < kAttempts; });
}

void FrameKeeper::rename(const WindowID& windowID, const WindowID& newID) {
    // The new id may belong to another tab of the window. That tab may take the frame, so the refusal is dropped.
    const auto found = refusals_.find(windowID);
    if (found != refusals_.end() && !found->second.isAccepted) refusals_.erase(found);
    renameKey(refusals_, windowID, newID);
    sizes_.rename(windowID, newID);
    reflow_.rename(windowID, newID);
    renameKey(minimumsOfSpanning_, windowID, newID);
}

} // namespace kova
