// Places windows and verifies their frames, because applications limit, delay or refuse requested frames.
#include "support/SameFrame.h"
#include "windowing/AccessibilityWindowService.h"

#include <cassert>
#include <cmath>
#include <utility>

namespace kova {

namespace {

/// Whether the window kept its size since the previous pass. If not, it may still be shrinking, so it has not refused
/// the frame.
bool isSameSize(const std::optional<CGSize>& before, const CGSize& now) {
    return before && std::abs(before->width - now.width) <= kFrameTolerancePoints &&
           std::abs(before->height - now.height) <= kFrameTolerancePoints;
}

} // namespace

struct AccessibilityWindowService::Placement {
    AccessibilityElement element;
    WindowID windowID;
    CGRect target{};
    BringToFront bringToFront = BringToFront::no;
    std::function<void(CGRect)> onMinimumSizeObserved;
    std::uint64_t number = 0;        // of the request
    bool endsMaximize = false;       // the window was maximized when the request was made
    std::optional<CGSize> refusedAt; // the window's size, if the previous pass found it too large
};

struct AccessibilityWindowService::VerificationRound {
    Seconds begun{};                   // uptime
    std::vector<Placement> placements; // in the order of the requests
    int pass = 0;
    Subscription change; // while the next pass waits for a change
};

void AccessibilityWindowService::writeFrame(const AccessibilityElement& element, const CGRect& frame,
                                            FrameWriteOrder order) {
    // Position and size are written twice. Applications that limit the size depending on the position, or the position
    // depending on the size, need the second pair.
    const AttributeWrite position{AccessibilityAttribute::position, frame.origin};
    const AttributeWrite size{AccessibilityAttribute::size, frame.size};
    const auto writes = order == FrameWriteOrder::positionFirst ? std::array{position, size, size, position}
                                                                : std::array{size, position, size, position};
    animations_.write(element, writes);
}

void AccessibilityWindowService::setFrame(const ManagedWindow& window, const CGRect& frame, BringToFront bringToFront,
                                          std::function<void(CGRect)> onMinimumSizeObserved) {
    assert(isFinite(frame));
    endVerification(window.id);
    const std::uint64_t number = ++lastPlacementNumber_;
    pendingFrames_[window.id] = {frame, number, std::nullopt};
    writeFrame(window.element, frame, writeOrder(0));
    if (bringToFront == BringToFront::yes) {
        applications_.unhide(window.processIdentifier);
        // `window` is as of the last poll; the window may have been minimized since.
        if (window.isMinimized || readBoolean(AccessibilityAttribute::minimized, window.element)) unminimize(window);
        raise(window);
        applications_.activate(window.processIdentifier);
    }

    verifyLater({window.element, window.id, frame, bringToFront, std::move(onMinimumSizeObserved), number,
                 window.isMaximized, std::nullopt});
}

/// Requests of one operation are verified together: a layout of a hundred windows wakes the main thread as often as one
/// window does.
void AccessibilityWindowService::verifyLater(Placement placement) {
    const Seconds now = queue_.uptime();
    if (!newestRound_ || now - newestRound_->begun > Seconds(kVerificationBatch)) {
        newestRound_ = std::make_shared<VerificationRound>(VerificationRound{now, {}, 0, {}});
        scheduleVerification(newestRound_);
    }
    newestRound_->placements.push_back(std::move(placement));
}

void AccessibilityWindowService::scheduleVerification(const std::shared_ptr<VerificationRound>& round) {
    const Seconds due = round->begun + Seconds(kVerificationDelays[static_cast<std::size_t>(round->pass)]);
    queue_.after(due - queue_.uptime(), lifetime_.guard([this, round] { verify(round); }));
}

void AccessibilityWindowService::verify(const std::shared_ptr<VerificationRound>& round) {
    if (newestRound_ == round) newestRound_.reset(); // no further placement joins the round
    std::erase_if(round->placements, [this](const Placement& placement) { return !pendingFrameOf(placement); });
    if (round->placements.empty()) return;
    const auto changeCount = changes_->reliableCount();
    bool isOnTarget = true;
    for (Placement& placement : round->placements) {
        if (verify(placement, round->pass) == PassResult::mustRepeat) isOnTarget = false;
    }
    if (round->pass++ >= kLastVerificationPass) return;
    isOnTarget&& changeCount ? verifyAfterChange(round, *changeCount) : scheduleVerification(round);
}

/// Until the desktop changes, the next pass would have the same result as this one. So the next pass waits for a
/// change, and most placements need only one pass.
void AccessibilityWindowService::verifyAfterChange(const std::shared_ptr<VerificationRound>& round,
                                                   std::uint64_t changeCount) {
    const Seconds end = round->begun + Seconds(kVerificationDelays.back());
    for (const Placement& placement : round->placements) {
        if (PendingFrame* pending = pendingFrameOf(placement)) pending->end = end;
    }
    waitingRounds_.push_back(round);
    round->change = changes_->notifyWhenChanged(changeCount, lifetime_.guard([this, weak = std::weak_ptr(round)] {
        if (const auto changed = weak.lock()) resumeVerification(changed);
    }));
}

/// Skips the passes that were due before the change: the desktop was unchanged then, so they had nothing to correct.
void AccessibilityWindowService::resumeVerification(const std::shared_ptr<VerificationRound>& round) {
    std::erase(waitingRounds_, round);
    round->change = {};
    const Seconds passed = queue_.uptime() - round->begun;
    while (round->pass <= kLastVerificationPass &&
           Seconds(kVerificationDelays[static_cast<std::size_t>(round->pass)]) < passed) {
        ++round->pass;
    }
    const bool hasEnded = round->pass > kLastVerificationPass;
    for (const Placement& placement : round->placements) {
        PendingFrame* pending = pendingFrameOf(placement);
        if (!pending) continue;
        if (hasEnded) {
            pendingFrames_.erase(placement.windowID);
        } else {
            pending->end.reset();
        }
    }
    if (!hasEnded) scheduleVerification(round);
}

/// Null if the placement has ended, or if a later request has replaced it.
AccessibilityWindowService::PendingFrame* AccessibilityWindowService::pendingFrameOf(const Placement& placement) {
    const auto pending = pendingFrames_.find(placement.windowID);
    const bool isCurrent = pending != pendingFrames_.end() && pending->second.placementNumber == placement.number;
    return isCurrent ? &pending->second : nullptr;
}

/// Ends the passes of the window's present placement.
void AccessibilityWindowService::endVerification(const WindowID& windowID) {
    pendingFrames_.erase(windowID);
    for (const auto& round : waitingRounds_) {
        std::erase_if(round->placements, [&](const Placement& placement) { return placement.windowID == windowID; });
    }
    std::erase_if(waitingRounds_, [](const auto& round) { return round->placements.empty(); });
}

void AccessibilityWindowService::cancelPlacement(const WindowID& windowID) {
    endVerification(windowID);
}

void AccessibilityWindowService::cancelPlacements(const std::function<bool(const CGRect&)>& isChosen) {
    std::vector<WindowID> chosen;
    for (const auto& [windowID, pending] : pendingFrames_) {
        if (isChosen(pending.frame)) chosen.push_back(windowID);
    }
    for (const WindowID& windowID : chosen) cancelPlacement(windowID);
}

std::optional<CGRect> AccessibilityWindowService::pendingFrame(const WindowID& windowID) const {
    const auto pending = pendingFrames_.find(windowID);
    if (pending == pendingFrames_.end() || (pending->second.end && queue_.uptime() >= *pending->second.end)) {
        return std::nullopt;
    }
    return pending->second.frame;
}

AccessibilityWindowService::PassResult AccessibilityWindowService::verify(Placement& placement, int pass) {
    if (!pendingFrameOf(placement)) return PassResult::onTarget;
    // The pending frame is erased first: `onMinimumSizeObserved` may request a new frame, which is then pending.
    if (pass == kLastVerificationPass) pendingFrames_.erase(placement.windowID);

    const auto frame = readFrame(placement.element);
    const FrameVerdict verdict = verdictOnFrame(frame, placement.target);
    // A window that the user made full screen or maximized meanwhile is left alone, and its size says nothing about a
    // minimum. But until the last pass, it may be maximized only because the placement has not yet ended the maximize.
    if (verdict != FrameVerdict::onTarget) {
        if (readBoolean(AccessibilityAttribute::fullScreen, placement.element)) return PassResult::mustRepeat;
        const bool mayBeEnding = placement.endsMaximize && pass != kLastVerificationPass;
        if (!mayBeEnding && readBoolean(AccessibilityAttribute::maximized, placement.element)) {
            return PassResult::mustRepeat;
        }
    }
    const auto refusedBefore = std::exchange(placement.refusedAt, std::nullopt);
    switch (verdict) {
    case FrameVerdict::onTarget:
        return PassResult::onTarget;
    case FrameVerdict::offTarget:
        correct(placement, pass);
        return PassResult::mustRepeat;
    case FrameVerdict::refusesToShrink:
        placement.refusedAt = frame->size;
        if (pass < kLastVerificationPass) {
            writeFrame(placement.element, placement.target, writeOrder(pass + 1));
            flush();
        } else if (placement.onMinimumSizeObserved && isSameSize(refusedBefore, frame->size) &&
                   accessibility_.areSizesReliable(placement.element)) {
            placement.onMinimumSizeObserved(*frame);
        }
    }
    return PassResult::mustRepeat;
}

void AccessibilityWindowService::correct(const Placement& placement, int pass) {
    writeFrame(placement.element, placement.target, writeOrder(pass + 1));
    if (pass == kLastVerificationPass) {
        // A window that cannot fill its target is at least moved inside the target.
        const auto frame = readFrame(placement.element);
        const auto moved = frame ? movedInside(*frame, placement.target) : std::nullopt;
        if (moved) writeFrame(placement.element, *moved, writeOrder(pass + 2));
        if (placement.bringToFront == BringToFront::yes) {
            accessibility_.performAction(placement.element, AccessibilityAction::raise);
        }
    }
    flush();
}

} // namespace kova
