#include "workspace/WindowSizes.h"

#include "support/SameFrame.h"
#include "workspace/Renaming.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace kova {

namespace {

/// A minimum size that contradicts the announced one is confirmed when it was observed in this number of arrangements.
constexpr int kArrangementsToConfirm = 2;

bool hasKnownSide(CGSize size) {
    return size.width > 0 || size.height > 0;
}

bool isSmaller(double length, double least) {
    return least > 0 && length < least - kFrameTolerancePoints;
}

CGSize larger(CGSize a, CGSize b) {
    return {std::max(a.width, b.width), std::max(a.height, b.height)};
}

CGSize smaller(CGSize a, CGSize b) {
    return {std::min(a.width, b.width), std::min(a.height, b.height)};
}

} // namespace

bool WindowSizes::Known::isConfirmed() const {
    return !contradictsAnnouncement || arrangements >= kArrangementsToConfirm;
}

const WindowSizes::Known* WindowSizes::find(const WindowID& windowID) const {
    const auto found = known_.find(windowID);
    return found == known_.end() ? nullptr : &found->second;
}

CGSize WindowSizes::minimumOf(const ManagedWindow& window, const std::optional<CGSize>& ofApplication,
                              Purpose purpose) const {
    const Known* known = find(window.id);
    const CGSize announced = window.minimumSize.value_or(CGSize{});
    const bool counts = known && hasKnownSide(known->observed) && (purpose == Purpose::present || known->isConfirmed());
    if (counts) return larger(announced, known->observed);
    if (window.minimumSize || !ofApplication) return announced;
    return known && known->smallest ? smaller(*ofApplication, *known->smallest) : *ofApplication;
}

std::map<WindowID, CGSize> WindowSizes::observed() const {
    std::map<WindowID, CGSize> sizes;
    for (const auto& [id, known] : known_) {
        if (hasKnownSide(known.observed)) sizes[id] = known.observed;
    }
    return sizes;
}

std::map<WindowID, CGSize> WindowSizes::confirmed() const {
    std::map<WindowID, CGSize> sizes;
    for (const auto& [id, known] : known_) {
        if (hasKnownSide(known.observed) && known.isConfirmed()) sizes[id] = known.observed;
    }
    return sizes;
}

void WindowSizes::beginArrangement() {
    ++arrangement_;
    for (auto& [id, known] : known_) {
        known.wasRetried = known.isBeingRetried = false;
        if (known.isConfirmed()) continue;
        known.observed = {};
        known.pending.reset();
    }
}

WindowSizes::Refusal WindowSizes::noteRefusal(const ManagedWindow& window, CGSize wanted, CGSize actual,
                                              Seconds uptime) {
    if (pointerUsedAt_ && uptime - *pointerUsedAt_ < kUnreliableAfterPointer) return Refusal::unreliable;
    Known& known = known_[window.id];
    CGSize observed = known.observed;
    if (actual.width > wanted.width + kFrameTolerancePoints) observed.width = actual.width;
    if (actual.height > wanted.height + kFrameTolerancePoints) observed.height = actual.height;
    if (!hasKnownSide(observed)) return Refusal::unreliable;
    const CGSize announced = window.minimumSize.value_or(observed);
    known.contradictsAnnouncement = observed.width > announced.width + kFrameTolerancePoints ||
                                    observed.height > announced.height + kFrameTolerancePoints;
    if (std::exchange(known.lastArrangement, arrangement_) != arrangement_) ++known.arrangements;
    known.observedAt = uptime;
    const bool isSame = std::abs(observed.width - known.observed.width) <= kRoundingPoints &&
                        std::abs(observed.height - known.observed.height) <= kRoundingPoints;
    if (isSame) return Refusal::known;
    known.pending = observed;
    return Refusal::changed;
}

bool WindowSizes::hasPendingChange(const WindowID& windowID) const {
    const Known* known = find(windowID);
    return known && known->pending;
}

bool WindowSizes::applyChange(const WindowID& windowID) {
    Known& known = known_[windowID];
    if (known.pending) known.observed = *std::exchange(known.pending, std::nullopt);
    return known.isConfirmed();
}

WindowSizes::Disproof WindowSizes::noteSeen(const ManagedWindow& window, CGSize size,
                                            const std::optional<CGSize>& ofApplication) {
    Known& known = known_[window.id];
    known.smallest = known.smallest ? smaller(*known.smallest, size) : size;
    if (known.pending &&
        (isSmaller(size.width, known.pending->width) || isSmaller(size.height, known.pending->height))) {
        known.pending.reset();
    }
    Disproof disproof;
    if (isSmaller(size.width, known.observed.width)) {
        known.observed.width = 0;
        disproof.ofWindow = true;
    }
    if (isSmaller(size.height, known.observed.height)) {
        known.observed.height = 0;
        disproof.ofWindow = true;
    }
    if (disproof.ofWindow) {
        known.arrangements = 0;
        known.lastArrangement = -1;
    }
    // The minimum size learned for the application may still be right for its other windows. A smaller window disproves
    // it only if this window also disproved its own minimum size, or was retried.
    disproof.ofApplication =
        ofApplication && (disproof.ofWindow || known.wasRetried) &&
        (isSmaller(size.width, ofApplication->width) || isSmaller(size.height, ofApplication->height));
    return disproof;
}

bool WindowSizes::isRetryDue(const ManagedWindow& window, const std::optional<CGSize>& ofApplication,
                             Seconds uptime) const {
    const Known* known = find(window.id);
    if (known && known->wasRetried) return false;
    const CGSize announced = window.minimumSize.value_or(CGSize{});
    const CGSize least = minimumOf(window, ofApplication);
    const bool isRemembered = least.width > announced.width + kFrameTolerancePoints ||
                              least.height > announced.height + kFrameTolerancePoints;
    const bool wasObservedLately = known && hasKnownSide(known->observed) && uptime - known->observedAt < kRetryAfter;
    return isRemembered && !wasObservedLately;
}

void WindowSizes::beginRetry(const WindowID& windowID) {
    known_[windowID].wasRetried = known_[windowID].isBeingRetried = true;
}

void WindowSizes::endRetry(const WindowID& windowID) {
    if (const auto found = known_.find(windowID); found != known_.end()) found->second.isBeingRetried = false;
}

bool WindowSizes::isBeingRetried(const WindowID& windowID) const {
    const Known* known = find(windowID);
    return known && known->isBeingRetried;
}

void WindowSizes::keepOnly(const std::function<bool(const WindowID& windowID)>& isLive) {
    std::erase_if(known_, [&](const auto& entry) { return !isLive(entry.first); });
}

void WindowSizes::rename(const WindowID& windowID, const WindowID& newID) {
    renameKey(known_, windowID, newID);
}

void WindowSizes::restore(const WindowID& windowID, CGSize size) {
    Known& known = known_[windowID];
    known.observed = size;
    known.arrangements = kArrangementsToConfirm;
}

} // namespace kova
