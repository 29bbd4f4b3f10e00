// Where one window is on its way off the screen and back: what was asked for last, and what the server has told since.
// Requests overtake each other, and a busy window manager carries them out late; the last one holds.
#pragma once

#include "support/MainQueue.h"

#include <cstdint>
#include <optional>

namespace kova::x11 {

class Iconification {
  public:
    enum class Stage {
        atRest,          // nothing was asked for
        leaveDue,        // to be unmapped with the next requests that are sent; only without a window manager
        leaving,         // asked to leave; it may have left by now
        leavingToReturn, // the same, and asked back before it was seen to have left; only under a window manager
        back,            // asked back; it may be on the screen by now
    };
    /// What a mapping that the server has told means beside itself.
    enum class News {
        none,
        left,      // as it was asked to
        returns,   // it has left as asked and is wanted back by now
        cameBack,  // though it was asked to leave and not asked back
        withdrawn, // by its own program: the window is gone
    };

    Stage stage() const { return stage_; }

    // Requests, with their uptime
    /// The window manager was asked to minimize it.
    void leave(Seconds now);
    /// It is to be unmapped with the next requests; `unmapSent` follows. False when that is due already.
    bool leaveWithNextRequests(Seconds now);
    bool isUnmapDue() const { return stage_ == Stage::leaveDue; }
    void unmapSent(std::uint32_t request);
    /// It was off the screen before, and stays there.
    void adoptAway() { stage_ = Stage::leaving; }
    /// Asked back while it may still be about to leave: it returns once it has left.
    void returnOnceGone() { stage_ = Stage::leavingToReturn; }
    /// It has not left in time, and does not have to return.
    void stopReturning();
    /// Asked back. `isUnmapped`: its top level is not mapped, so that an event will tell when it is.
    void comeBack(Seconds now, bool isUnmapped);
    /// Another window manager, or none any more: what was asked for under the one before means nothing.
    void forgetRequests();

    // Events
    /// Under a window manager.
    News mappedByManager(bool isMapped);
    /// Without one; `sequence` numbers the event as its request was numbered.
    News mappedByServer(bool isMapped, std::uint32_t sequence);

    /// Without a window manager: it is off the screen, or about to be, at our request.
    bool isPutAway() const { return stage_ == Stage::leaveDue || stage_ == Stage::leaving; }
    /// The window manager was asked to minimize it, and not to bring it back since.
    bool isAskedToLeave() const { return stage_ == Stage::leaving || stage_ == Stage::leavingToReturn; }
    bool isAskedToLeaveWithin(Seconds duration, Seconds now) const {
        return isAskedToLeave() && now - asked_ < duration;
    }
    /// A busy window manager takes its time; one that has not minimized the window within seconds never will.
    bool mayStillLeave(Seconds now) const;
    bool isToReturnOnceGone(Seconds now) const { return stage_ == Stage::leavingToReturn && mayStillLeave(now); }
    /// Asked back, so that reading it as minimized may only mean that this has not been done or not been read yet.
    bool mayComeBack() const { return stage_ == Stage::back; }
    bool isAskedBackWithin(Seconds duration, Seconds now) const { return mayComeBack() && now - asked_ < duration; }
    /// Asked back so recently that it is taken to be back already.
    bool isBelievedBack(Seconds now) const;
    /// It was unmapped since it was last asked to go; it may be back.
    bool hasLeft() const { return hasLeft_; }
    /// It was asked back while it was unmapped, and no event has told that it is mapped.
    bool isMapAwaited() const { return isMapAwaited_; }

  private:
    void noteMapping(bool isMapped);

    Stage stage_ = Stage::atRest;
    Seconds asked_{};                       // uptime of the request that led to the stage
    std::optional<std::uint32_t> ownUnmap_; // the request by which it was unmapped, until its event has come
    bool hasLeft_ = false;
    bool isMapAwaited_ = false;
};

} // namespace kova::x11
