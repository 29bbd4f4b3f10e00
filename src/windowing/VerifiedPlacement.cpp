// Placing a window and seeing to it that it arrives: applications clamp, delay and refuse what they are told.
#include "windowing/AccessibilityWindowService.h"

#include <cassert>

namespace kova {

struct AccessibilityWindowService::Placement {
    AccessibilityElement element;
    std::string windowID;
    CGRect target{};
    BringToFront bringToFront = BringToFront::no;
    std::function<void(CGRect)> onMinimumSizeObserved;
    int generation = 0;
};

void AccessibilityWindowService::writeFrame(const AccessibilityElement& element, const CGRect& frame,
                                            FrameWriteOrder order) {
    // Written twice over: applications that clamp a size against their place on the screen, or a position against their
    // size, settle only after the second pair.
    const AttributeWrite position{AccessibilityAttribute::position, frame.origin};
    const AttributeWrite size{AccessibilityAttribute::size, frame.size};
    const auto writes = order == FrameWriteOrder::positionFirst ? std::array{position, size, size, position}
                                                                : std::array{size, position, size, position};
    accessibility_.writeAttributes(element, writes);
}

void AccessibilityWindowService::setFrame(const ManagedWindow& window, const CGRect& frame, BringToFront bringToFront,
                                          std::function<void(CGRect)> onMinimumSizeObserved) {
    assert(isFinite(frame));
    const int generation = ++placementGenerations_[window.id];
    pendingFrames_[window.id] = frame;
    writeFrame(window.element, frame, writeOrder(0));
    if (bringToFront == BringToFront::yes) {
        applications_.unhide(window.processIdentifier);
        // The snapshot may be older than the last time the window was put away.
        if (window.isMinimized || readsAsMinimized(window.element)) unminimize(window);
        raise(window);
        applications_.activate(window.processIdentifier);
    }

    const auto placement = std::make_shared<const Placement>(
        Placement{window.element, window.id, frame, bringToFront, std::move(onMinimumSizeObserved), generation});
    for (int pass = 0; pass <= kLastVerificationPass; ++pass) {
        queue_.after(Seconds(kVerificationDelays[static_cast<std::size_t>(pass)]),
                     lifetime_.guard([this, placement, pass] { verify(*placement, pass); }));
    }
}

void AccessibilityWindowService::cancelPlacement(const std::string& windowID) {
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

std::optional<CGRect> AccessibilityWindowService::pendingFrame(const std::string& windowID) const {
    const auto pending = pendingFrames_.find(windowID);
    if (pending == pendingFrames_.end()) return std::nullopt;
    return pending->second;
}

void AccessibilityWindowService::verify(const Placement& placement, int pass) {
    if (placementGenerations_[placement.windowID] != placement.generation) return;
    // Before anything is told: who hears of a minimum size may ask for a new frame at once.
    if (pass == kLastVerificationPass) pendingFrames_.erase(placement.windowID);

    const auto frame = readFrame(placement.element);
    const FrameVerdict verdict = verdictOnFrame(frame, placement.target);
    // One that has gone full screen meanwhile says nothing of its sizes, and is to be left alone.
    if (verdict != FrameVerdict::onTarget && readsAsFullScreen(placement.element)) return;
    switch (verdict) {
    case FrameVerdict::onTarget:
        return;
    case FrameVerdict::off:
        return correct(placement, pass);
    case FrameVerdict::refusesToShrink:
        if (pass < kLastVerificationPass) {
            writeFrame(placement.element, placement.target, writeOrder(pass + 1));
            flush();
        } else if (placement.onMinimumSizeObserved) {
            placement.onMinimumSizeObserved(*frame);
        }
    }
}

void AccessibilityWindowService::correct(const Placement& placement, int pass) {
    writeFrame(placement.element, placement.target, writeOrder(pass + 1));
    if (pass == kLastVerificationPass) {
        // A window that cannot fill its target rests inside it at least.
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
