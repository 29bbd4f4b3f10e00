#include "platform/x11/Iconification.h"

#include "platform/x11/XConnection.h"

namespace kova::x11 {

void Iconification::noteMinimizeRequest(Seconds now) {
    stage_ = Stage::minimizing;
    requestedAt_ = now;
    wasUnmapped_ = false;
}

bool Iconification::scheduleUnmap(Seconds now) {
    const bool isNew = stage_ != Stage::unmapDue;
    stage_ = Stage::unmapDue;
    requestedAt_ = now;
    wasUnmapped_ = false;
    return isNew;
}

void Iconification::unmapSent(std::uint32_t request) {
    stage_ = Stage::minimizing;
    unmapRequest_ = request;
}

void Iconification::cancelRestore() {
    if (stage_ == Stage::minimizingThenRestoring) stage_ = Stage::minimizing;
}

void Iconification::noteRestoreRequest(Seconds now, bool isUnmapped) {
    stage_ = Stage::restoring;
    requestedAt_ = now;
    isMapAwaited_ = isUnmapped;
}

void Iconification::forgetRequests() {
    stage_ = Stage::idle;
    unmapRequest_.reset();
}

void Iconification::noteMapping(bool isMapped) {
    // While a map event for an earlier request of KOVA is still to come, an unmap event is older than the last request.
    if (!isMapped) wasUnmapped_ = !isMapAwaited_;
    if (isMapped) isMapAwaited_ = false;
}

Iconification::MappingChange Iconification::mappingChangedUnderManager(bool isMapped) {
    noteMapping(isMapped);
    // A map event may result from an earlier request. A later request to minimize still counts.
    if (isMapped || !isMinimizeRequested()) return MappingChange::none;
    return stage_ == Stage::minimizingThenRestoring ? MappingChange::restoreDue : MappingChange::minimized;
}

Iconification::MappingChange Iconification::mappingChangedWithoutManager(bool isMapped, std::uint32_t sequence) {
    noteMapping(isMapped);
    // Events from before KOVA's own unmap request are out of date.
    const bool isUnmapAwaited = unmapRequest_.has_value();
    const bool isLater = !isUnmapAwaited || isAtOrAfter(sequence, *unmapRequest_);
    if (isLater) unmapRequest_.reset();
    if (isMapped) {
        if (!isLater || stage_ != Stage::minimizing) return MappingChange::none;
        stage_ = Stage::idle;
        return MappingChange::restored;
    }
    return isUnmapAwaited || isUnmapRequested() ? MappingChange::none : MappingChange::withdrawn;
}

bool Iconification::mayStillMinimize(Seconds now) const {
    constexpr Seconds kTimeToMinimize{5};
    return isMinimizeRequestedWithin(kTimeToMinimize, now);
}

bool Iconification::countsAsRestored(Seconds now) const {
    constexpr Seconds kAssumedRestoreTime{0.05};
    return isRestoreRequestedWithin(kAssumedRestoreTime, now);
}

} // namespace kova::x11
