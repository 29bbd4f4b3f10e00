// Keeps the minimum size of each window. It is announced by the window, or observed when the window refused a smaller
// size. If neither is known, the minimum size learned for the application counts. Always true: an observed minimum size
// is forgotten as soon as the window is smaller. An observed minimum size that contradicts the announced one counts
// only until the next arrangement, unless that arrangement observes it again.
#pragma once

#include "support/MainQueue.h"
#include "windowing/ManagedWindow.h"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>

namespace kova {

class WindowSizes {
  public:
    /// A refusal does not count if the pointer pressed or released a window less than this time before: the desktop may
    /// still be resizing the window, for example at an edge of the screen.
    static constexpr Seconds kUnreliableAfterPointer{1};
    /// A minimum size is not retried if it was observed less than this time before.
    static constexpr Seconds kRetryAfter{10};

    /// `present`: all observed sizes count. `nextArrangement`: observed sizes that are not confirmed do not count.
    enum class Purpose { present, nextArrangement };
    /// In points; 0 if unknown. `ofApplication` is the minimum size learned for the window's application. It is limited
    /// to the smallest size that the window has had.
    CGSize minimumOf(const ManagedWindow& window, const std::optional<CGSize>& ofApplication,
                     Purpose purpose = Purpose::present) const;
    /// The observed minimum sizes that count now, by window id.
    std::map<WindowID, CGSize> observed() const;
    /// The observed minimum sizes that a later session may use.
    std::map<WindowID, CGSize> confirmed() const;

    /// Records that the pointer has pressed or released a window.
    void notePointer(Seconds uptime) { pointerUsedAt_ = uptime; }
    /// Call when an arrangement begins. Forgets observed minimum sizes that are not confirmed, so that these windows
    /// get requests for smaller tiles again.
    void beginArrangement();

    /// `unreliable`: nothing was recorded. `known`: the same minimum size was observed before. `changed`: another
    /// minimum size is recorded, which counts only after `applyChange`.
    enum class Refusal { unreliable, known, changed };
    /// Records that the window has the size `actual` after a request for `wanted`.
    Refusal noteRefusal(const ManagedWindow& window, CGSize wanted, CGSize actual, Seconds uptime);
    bool hasPendingChange(const WindowID& windowID) const;
    /// Applies the pending change. True if the minimum size is certain enough to be learned for the application.
    bool applyChange(const WindowID& windowID);

    /// Which minimum sizes were disproved by a smaller size of the window.
    struct Disproof {
        bool ofWindow = false;
        bool ofApplication = false;
    };
    /// Records the size of a window for which no request is pending. Forgets minimum sizes that this size disproves.
    Disproof noteSeen(const ManagedWindow& window, CGSize size, const std::optional<CGSize>& ofApplication);

    /// Whether an arrangement should once request a size that is smaller than the learned minimum size.
    bool isRetryDue(const ManagedWindow& window, const std::optional<CGSize>& ofApplication, Seconds uptime) const;
    void beginRetry(const WindowID& windowID);
    void endRetry(const WindowID& windowID);
    bool isBeingRetried(const WindowID& windowID) const;

    void forget(const WindowID& windowID) { known_.erase(windowID); }
    void keepOnly(const std::function<bool(const WindowID& windowID)>& isLive);
    void rename(const WindowID& windowID, const WindowID& newID);
    /// Restores a minimum size that `confirmed` returned in a former session.
    void restore(const WindowID& windowID, CGSize size);

  private:
    struct Known {
        CGSize observed{};              // 0 for a width or height that was not refused
        std::optional<CGSize> pending;  // observed, but not applied yet
        std::optional<CGSize> smallest; // the smallest size recorded by `noteSeen`
        bool contradictsAnnouncement = false;
        int arrangements = 0;              // the number of arrangements in which the minimum was observed
        std::int64_t lastArrangement = -1; // the last of these arrangements
        Seconds observedAt{0};
        bool wasRetried = false; // since the last arrangement began
        bool isBeingRetried = false;
        bool isConfirmed() const;
    };
    const Known* find(const WindowID& windowID) const;

    std::map<WindowID, Known> known_;
    std::optional<Seconds> pointerUsedAt_;
    std::int64_t arrangement_ = 0; // the number of arrangements that have begun
};

} // namespace kova
