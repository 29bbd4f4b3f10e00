#include "workspace/DividerDrag.h"

#include <algorithm>
#include <utility>

namespace kova {

bool isSameDivider(const DisplayLayoutDivider& a, const DisplayLayoutDivider& b) {
    return a.displayID == b.displayID && a.layoutID == b.layoutID && a.divider.splitID == b.divider.splitID &&
           a.divider.boundaryIndex == b.divider.boundaryIndex;
}

DividerDrag::DividerDrag(MainQueue& queue, std::function<void()> apply) : queue_(queue), apply_(std::move(apply)) {}

bool DividerDrag::isDragging(const DisplayLayoutDivider& divider) const {
    return active_ && isSameDivider(active_->target, divider);
}

void DividerDrag::cancelScheduledUpdate() {
    if (scheduledUpdate_) scheduledUpdate_->cancel();
    scheduledUpdate_.reset();
}

void DividerDrag::begin(const DisplayLayoutDivider& target, const LayoutWeightOverrides& weightsInForce) {
    cancelScheduledUpdate();
    pendingTranslation_.reset();
    active_ = ActiveDividerDrag{target, weightsInForce, weightsInForce};
    lastUpdateUptime_ = queue_.uptime() - kUpdateInterval; // the first update is applied at once
}

void DividerDrag::renameDisplay(const DisplayID& displayID, const DisplayID& newID) {
    if (active_ && active_->target.displayID == displayID) active_->target.displayID = newID;
}

void DividerDrag::update(double translationPoints) {
    if (!active_) return;
    pendingTranslation_ = translationPoints;
    if (scheduledUpdate_) return;
    constexpr Seconds kRoundingError{1e-9};
    const Seconds delay = lastUpdateUptime_ - queue_.uptime() + kUpdateInterval;
    if (delay < kRoundingError) return apply_();
    scheduledUpdate_ = queue_.after(delay, lifetime_.guard([this] {
        scheduledUpdate_.reset();
        apply_();
    }));
}

bool DividerDrag::takePendingTranslation() {
    if (!active_ || !pendingTranslation_) return false;
    const LayoutDivider& divider = active_->target.divider;
    const auto weights = draggedWeights(divider, *std::exchange(pendingTranslation_, std::nullopt));
    if (!weights) return true;
    lastUpdateUptime_ = queue_.uptime();
    active_->overrides = active_->startingOverrides;
    const bool isAtStart =
        std::equal(weights->begin(), weights->end(), divider.branchLengths.begin(), divider.branchLengths.end(),
                   [](double weight, double length) { return weight == std::max(length, kWeightFloor); });
    if (!isAtStart) active_->overrides.splits[divider.splitID] = *weights;
    return true;
}

std::optional<ActiveDividerDrag> DividerDrag::end() {
    cancelScheduledUpdate();
    pendingTranslation_.reset();
    return std::exchange(active_, std::nullopt);
}

} // namespace kova
