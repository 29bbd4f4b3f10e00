// State machine for minimizing and restoring one window: the last request of KOVA, and the events since. A busy window
// manager carries out requests late, so requests can overlap; the last one counts.
#pragma once

#include "support/MainQueue.h"

#include <cstdint>
#include <optional>

namespace kova::x11 {

class Iconification {
  public:
    enum class Stage {
        idle,                    // KOVA has requested nothing
        unmapDue,                // to be unmapped at the next flush; only without a window manager
        minimizing,              // minimizing was requested, and may be done by now
        minimizingThenRestoring, // restoring was requested before an event showed the window as minimized; only under
                                 // a window manager
        restoring,               // restoring was requested, and may be done by now
    };
    /// What a map or unmap event means, beyond the fact that the window was mapped or unmapped.
    enum class MappingChange {
        none,
        minimized,  // the window was minimized, as KOVA had requested
        restoreDue, // as `minimized`, but KOVA has requested to restore the window since: the window must be mapped
        restored,   // the window was restored, although KOVA had not requested that
        withdrawn,  // the window's own program unmapped the window, in order to close it
    };

    Stage stage() const { return stage_; }

    // Requests; `now` is the uptime
    /// A request to minimize the window was sent to the window manager.
    void noteMinimizeRequest(Seconds now);
    /// The window is to be unmapped at the next flush; then call `unmapSent`. False if that was scheduled already.
    bool scheduleUnmap(Seconds now);
    bool isUnmapDue() const { return stage_ == Stage::unmapDue; }
    void unmapSent(std::uint32_t request);
    /// The window was unmapped by a former agent, and stays unmapped.
    void adoptUnmapped() { stage_ = Stage::minimizing; }
    /// Restoring is requested while the window manager may not have minimized the window yet: the window is to be
    /// mapped once it has been unmapped.
    void restoreOnceMinimized() { stage_ = Stage::minimizingThenRestoring; }
    /// Revokes `restoreOnceMinimized`: the window need not be restored after it has been minimized.
    void cancelRestore();
    /// A request to restore the window was sent. `isUnmapped`: its top level is not mapped, so a map event will follow.
    void noteRestoreRequest(Seconds now, bool isUnmapped);
    /// The window manager has changed or ended: requests to the former window manager have no effect any more.
    void forgetRequests();

    // Events
    /// Handles a map or unmap event under a window manager.
    MappingChange mappingChangedUnderManager(bool isMapped);
    /// Handles a map or unmap event without a window manager; `sequence`: the event's sequence number.
    MappingChange mappingChangedWithoutManager(bool isMapped, std::uint32_t sequence);

    /// Without a window manager: KOVA has unmapped the window, or will do so at the next flush.
    bool isUnmapRequested() const { return stage_ == Stage::unmapDue || stage_ == Stage::minimizing; }
    /// KOVA has requested to minimize the window, and may have requested to restore it after that.
    bool isMinimizeRequested() const { return stage_ == Stage::minimizing || stage_ == Stage::minimizingThenRestoring; }
    bool isMinimizeRequestedWithin(Seconds duration, Seconds now) const {
        return isMinimizeRequested() && now - requestedAt_ < duration;
    }
    /// False some seconds after the request: a window manager that has not minimized the window by then never will.
    bool mayStillMinimize(Seconds now) const;
    bool isRestoreDueAfterMinimize(Seconds now) const {
        return stage_ == Stage::minimizingThenRestoring && mayStillMinimize(now);
    }
    /// Restoring was requested, so a property that says "minimized" may be older than the request.
    bool isRestoreRequested() const { return stage_ == Stage::restoring; }
    bool isRestoreRequestedWithin(Seconds duration, Seconds now) const {
        return isRestoreRequested() && now - requestedAt_ < duration;
    }
    /// Restoring was requested so recently that the window counts as restored.
    bool countsAsRestored(Seconds now) const;
    /// The window was unmapped since the last request to minimize it; it may be mapped again.
    bool wasUnmapped() const { return wasUnmapped_; }
    /// Restoring was requested while the window was unmapped, and no map event has arrived since.
    bool isMapAwaited() const { return isMapAwaited_; }

  private:
    void noteMapping(bool isMapped);

    Stage stage_ = Stage::idle;
    Seconds requestedAt_{};                     // uptime of the request that led to the stage
    std::optional<std::uint32_t> unmapRequest_; // sequence number of KOVA's unmap request, until its event arrives
    bool wasUnmapped_ = false;
    bool isMapAwaited_ = false;
};

} // namespace kova::x11
