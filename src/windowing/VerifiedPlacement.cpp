// Placing a window and verifying its frame: applications clamp, delay and refuse requests.
#include "support/SameFrame.h"
#include "windowing/AccessibilityWindowService.h"

#include <cassert>
#include <cmath>
#include <utility>

namespace kova {

namespace {

/// Whether the window kept its size since the previous pass: a window that is still shrinking has not refused the
/// frame.
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
    int generation = 0;
    bool endsMaximize = false;       // the window was maximized when the request was made
    std::optional<CGSize> refusedAt; // the window's size, if the previous pass found it too large
};

struct AccessibilityWindowService::VerificationRound {
    Seconds begun{};                   // uptime
    std::vector<Placement> placements; // in the order of the requests
    int pass = 0;
};

void AccessibilityWindowService::writeFrame(const AccessibilityElement& element, const CGRect& frame,
                                            FrameWriteOrder order) {
    // Written twice: applications that clamp size against position, or position against size, need the second pair.
    const AttributeWrite position{AccessibilityAttribute::position, frame.origin};
    const AttributeWrite size{AccessibilityAttribute::size, frame.size};
    const auto writes = order == FrameWriteOrder::positionFirst ? std::array{position, size, size, position}
                                                                : std::array{size, position, size, position};
    animations_.write(element, writes);
}

void AccessibilityWindowService::setFrame(const ManagedWindow& window, const CGRect& frame, BringToFront bringToFront,
                                          std::function<void(CGRect)> onMinimumSizeObserved) {
    assert(isFinite(frame));
    const int generation = ++placementGenerations_[window.id];
    pendingFrames_[window.id] = frame;
    writeFrame(window.element, frame, writeOrder(0));
    if (bringToFront == BringToFront::yes) {
        applications_.unhide(window.processIdentifier);
        // `window` is as of the last poll; the window may have been minimized since.
        if (window.isMinimized || readFlag(AccessibilityAttribute::minimized, window.element)) unminimize(window);
        raise(window);
        applications_.activate(window.processIdentifier);
    }

    verifyLater({window.element, window.id, frame, bringToFront, std::move(onMinimumSizeObserved), generation,
                 window.isMaximized, std::nullopt});
}

/// Requests of one operation are verified together: a layout of a hundred windows wakes the main thread as often as one
/// window does.
void AccessibilityWindowService::verifyLater(Placement placement) {
    const Seconds now = queue_.uptime();
    if (!newestRound_ || now - newestRound_->begun > Seconds(kVerificationBatch)) {
        newestRound_ = std::make_shared<VerificationRound>(VerificationRound{now, {}, 0});
        scheduleVerification(newestRound_);
    }
    newestRound_->placements.push_back(std::move(placement));
}

void AccessibilityWindowService::scheduleVerification(const std::shared_ptr<VerificationRound>& round) {
    const Seconds due = round->begun + Seconds(kVerificationDelays[static_cast<std::size_t>(round->pass)]);
    queue_.after(due - queue_.uptime(), lifetime_.guard([this, round] { verify(round); }));
}

void AccessibilityWindowService::verify(const std::shared_ptr<VerificationRound>& round) {
    if (newestRound_ == round) newestRound_.reset(); // no placement joins it any more
    std::erase_if(round->placements, [this](const Placement& placement) {
        return placementGenerations_[placement.windowID] != placement.generation;
    });
    if (round->placements.empty()) return;
    for (Placement& placement : round->placements) verify(placement, round->pass);
    if (round->pass++ < kLastVerificationPass) scheduleVerification(round);
}

void AccessibilityWindowService::cancelPlacement(const WindowID& windowID) {
    placementGenerations_[windowID] += 1;
    pendingFrames_.erase(windowID);
}

void AccessibilityWindowService::cancelPlacements(const std::function<bool(const CGRect&)>& isChosen) {
    std::erase_if(pendingFrames_, [&](const auto& pending) {
        if (!isChosen(pending.second)) return false;
        placementGenerations_[pending.first] += 1;
        return true;
    });
}

std::optional<CGRect> AccessibilityWindowService::pendingFrame(const WindowID& windowID) const {
    const auto pending = pendingFrames_.find(windowID);
    if (pending == pendingFrames_.end()) return std::nullopt;
    return pending->second;
}

void AccessibilityWindowService::verify(Placement& placement, int pass) {
    if (placementGenerations_[placement.windowID] != placement.generation) return;
    // Must come first: `onMinimumSizeObserved` may request a new frame, which is then pending.
    if (pass == kLastVerificationPass) pendingFrames_.erase(placement.windowID);

    const auto frame = readFrame(placement.element);
    const FrameVerdict verdict = verdictOnFrame(frame, placement.target);
    // A window that the user made full screen or maximized meanwhile is left alone, and its size says nothing about a
    // minimum. But until the last pass, it may be maximized only because the placement has not yet ended the maximize.
    if (verdict != FrameVerdict::onTarget) {
        if (readFlag(AccessibilityAttribute::fullScreen, placement.element)) return;
        const bool mayBeEnding = placement.endsMaximize && pass != kLastVerificationPass;
        if (!mayBeEnding && readFlag(AccessibilityAttribute::maximized, placement.element)) return;
    }
    const auto refusedBefore = std::exchange(placement.refusedAt, std::nullopt);
    switch (verdict) {
    case FrameVerdict::onTarget:
        return;
    case FrameVerdict::off:
        return correct(placement, pass);
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
}

void AccessibilityWindowService::correct(const Placement& placement, int pass) {
    writeFrame(placement.element, placement.target, writeOrder(pass + 1));
    if (pass == kLastVerificationPass) {
        // A window that cannot fill its target is at least moved inside it.
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
