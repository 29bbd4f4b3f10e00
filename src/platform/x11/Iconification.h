// State machine of one window between shown and iconified: the last request, and the events since. A busy window
// manager carries out requests late, so requests can overlap; the last one counts.
#pragma once

#include "support/MainQueue.h"

#include <cstdint>
#include <optional>

namespace kova::x11 {

class Iconification {
  public:
    enum class Stage {
        atRest,          // nothing was requested
        leaveDue,        // will be unmapped at the next flush; only without a window manager
        leaving,         // iconification requested, perhaps done already
        leavingToReturn, // as `leaving`, and restoring was requested before the iconification was seen; only under a
                         // window manager
        back, // restoring requested, perhaps done already
    };
    /// What a map or unmap event means beyond the mapping itself.
    enum class News {
        none,
        left,      // as requested
        returns,   // as requested, and restoring is requested now
        cameBack,  // restored without a request
        withdrawn, // by its own program: the window was closed
    };

    Stage stage() const { return stage_; }

    // Requests; `now` in uptime
    /// The window manager got the request to minimize it.
    void leave(Seconds now);
    /// The window will be unmapped at the next flush; `unmapSent` follows. False if that is due already.
    bool leaveWithNextRequests(Seconds now);
    bool isUnmapDue() const { return stage_ == Stage::leaveDue; }
    void unmapSent(std::uint32_t request);
    /// The window was already off the screen, and stays there.
    void adoptAway() { stage_ = Stage::leaving; }
    /// Restoring is requested while the iconification may not be done yet: the window is mapped once it is.
    void returnOnceGone() { stage_ = Stage::leavingToReturn; }
    /// The window was not iconified in time, so it need not be restored.
    void stopReturning();
    /// Restoring is requested. `isUnmapped`: the top level is not mapped, so an event will report when it is.
    void comeBack(Seconds now, bool isUnmapped);
    /// The window manager has changed or ended: requests to the former one have no effect any more.
    void forgetRequests();

    // Events
    /// Under a window manager.
    News mappedByManager(bool isMapped);
    /// Without one; `sequence` is the event's sequence number.
    News mappedByServer(bool isMapped, std::uint32_t sequence);

    /// Without a window manager: unmapped, or about to be, at our request.
    bool isPutAway() const { return stage_ == Stage::leaveDue || stage_ == Stage::leaving; }
    /// The last request to the window manager was to minimize it.
    bool isAskedToLeave() const { return stage_ == Stage::leaving || stage_ == Stage::leavingToReturn; }
    bool isAskedToLeaveWithin(Seconds duration, Seconds now) const {
        return isAskedToLeave() && now - asked_ < duration;
    }
    /// False after some seconds: a window manager that has not minimized the window by then never will.
    bool mayStillLeave(Seconds now) const;
    bool isToReturnOnceGone(Seconds now) const { return stage_ == Stage::leavingToReturn && mayStillLeave(now); }
    /// Restoring was requested; a state "minimized" that is read now may be older than that request.
    bool mayComeBack() const { return stage_ == Stage::back; }
    bool isAskedBackWithin(Seconds duration, Seconds now) const { return mayComeBack() && now - asked_ < duration; }
    /// Restoring was requested so recently that the window counts as restored.
    bool isBelievedBack(Seconds now) const;
    /// The window was unmapped since the last request to iconify it; it may be mapped again.
    bool hasLeft() const { return hasLeft_; }
    /// Restoring was requested while the window was unmapped, and no event has reported it as mapped.
    bool isMapAwaited() const { return isMapAwaited_; }

  private:
    void noteMapping(bool isMapped);

    Stage stage_ = Stage::atRest;
    Seconds asked_{};                       // uptime of the request that led to the stage
    std::optional<std::uint32_t> ownUnmap_; // sequence number of our unmap request, until its event arrives
    bool hasLeft_ = false;
    bool isMapAwaited_ = false;
};

} // namespace kova::x11
