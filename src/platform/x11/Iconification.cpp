#include "platform/x11/Iconification.h"

#include "platform/x11/XConnection.h"

namespace kova::x11 {

void Iconification::leave(Seconds now) {
    stage_ = Stage::leaving;
    asked_ = now;
    hasLeft_ = false;
}

bool Iconification::leaveWithNextRequests(Seconds now) {
    const bool isNew = stage_ != Stage::leaveDue;
    stage_ = Stage::leaveDue;
    asked_ = now;
    hasLeft_ = false;
    return isNew;
}

void Iconification::unmapSent(std::uint32_t request) {
    stage_ = Stage::leaving;
    ownUnmap_ = request;
}

void Iconification::stopReturning() {
    if (stage_ == Stage::leavingToReturn) stage_ = Stage::leaving;
}

void Iconification::comeBack(Seconds now, bool isUnmapped) {
    stage_ = Stage::back;
    asked_ = now;
    isMapAwaited_ = isUnmapped;
}

void Iconification::forgetRequests() {
    stage_ = Stage::atRest;
    ownUnmap_.reset();
}

void Iconification::noteMapping(bool isMapped) {
    // This map event belongs to an earlier request of ours; the user has not restored the window.
    if (!isMapped) hasLeft_ = !isMapAwaited_;
    if (isMapped) isMapAwaited_ = false;
}

Iconification::News Iconification::mappedByManager(bool isMapped) {
    noteMapping(isMapped);
    // A map event may result from an earlier request; the later request to leave still counts.
    if (isMapped || !isAskedToLeave()) return News::none;
    return stage_ == Stage::leavingToReturn ? News::returns : News::left;
}

Iconification::News Iconification::mappedByServer(bool isMapped, std::uint32_t sequence) {
    noteMapping(isMapped);
    // Events from before our own unmap request are out of date.
    const bool isOwn = ownUnmap_.has_value();
    const bool isLater = !isOwn || isAtOrAfter(sequence, *ownUnmap_);
    if (isLater) ownUnmap_.reset();
    if (isMapped) {
        if (!isLater || stage_ != Stage::leaving) return News::none;
        stage_ = Stage::atRest;
        return News::cameBack;
    }
    return isOwn || isPutAway() ? News::none : News::withdrawn;
}

bool Iconification::mayStillLeave(Seconds now) const {
    constexpr Seconds kTimeToMinimize{5};
    return isAskedToLeaveWithin(kTimeToMinimize, now);
}

bool Iconification::isBelievedBack(Seconds now) const {
    constexpr Seconds kBenefitOfDoubt{0.05};
    return isAskedBackWithin(kBenefitOfDoubt, now);
}

} // namespace kova::x11
