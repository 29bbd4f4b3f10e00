// The minimum size of each window: announced by the window, observed when it refused to shrink or, if neither is known,
// learned for its application. Always true: an observed minimum size is forgotten as soon as the window is seen
// smaller. An observed minimum size that contradicts the announced one counts only until the next arrangement, unless
// that arrangement confirms it.
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
    /// A refusal within this time after the pointer pressed or released a window is not counted: the desktop may still
    /// resize the window, for example at an edge of the screen.
    static constexpr Seconds kUnreliableAfterPointer{1};
    /// A minimum size that was observed within this time is not retried.
    static constexpr Seconds kRetryAfter{10};

    enum class Purpose { present, nextArrangement };
    /// In points, 0 if unknown. `ofApplication` is the minimum size learned for the window's application, a first guess
    /// that the window's real size corrects.
    CGSize minimumOf(const ManagedWindow& window, const std::optional<CGSize>& ofApplication,
                     Purpose purpose = Purpose::present) const;
    /// The observed minimum sizes that count now, by window id.
    std::map<WindowID, CGSize> observed() const;
    /// The observed minimum sizes that a later session may use.
    std::map<WindowID, CGSize> confirmed() const;

    /// Records that the pointer has pressed or released a window.
    void notePointer(Seconds uptime) { pointerUsedAt_ = uptime; }
    /// Begins an arrangement: forgets observed minimum sizes that are not confirmed, so that the windows get requests
    /// for their tiles again.
    void beginArrangement();

    enum class Refusal { unreliable, known, changed };
    /// Records that the window kept `actual` after a request for `wanted`. A change counts after `applyChange`.
    Refusal noteRefusal(const ManagedWindow& window, CGSize wanted, CGSize actual, Seconds uptime);
    bool hasPendingChange(const WindowID& windowID) const;
    /// Applies the pending change. True if the minimum size is certain enough to be learned for the application.
    bool applyChange(const WindowID& windowID);

    struct Disproof {
        bool ofWindow = false;
        bool ofApplication = false;
    };
    /// Records a size that the window has without a pending request.
    Disproof noteSeen(const ManagedWindow& window, CGSize size, const std::optional<CGSize>& ofApplication);

    /// Whether an arrangement should request a size below the learned minimum once.
    bool isRetryDue(const ManagedWindow& window, const std::optional<CGSize>& ofApplication, Seconds uptime) const;
    void beginRetry(const WindowID& windowID);
    void endRetry(const WindowID& windowID);
    bool isBeingRetried(const WindowID& windowID) const;

    void forget(const WindowID& windowID) { known_.erase(windowID); }
    void keepOnly(const std::function<bool(const WindowID& windowID)>& isLive);
    void rename(const WindowID& windowID, const WindowID& newID);
    /// Restores what `confirmed` returned in a former session.
    void restore(const WindowID& windowID, CGSize size);

  private:
    struct Known {
        CGSize observed{};              // 0 in a direction without a refusal
        std::optional<CGSize> pending;  // not applied yet
        std::optional<CGSize> smallest; // without a pending request
        bool contradictsAnnouncement = false;
        int arrangements = 0; // the number of arrangements in which the minimum was observed
        std::int64_t lastArrangement = -1;
        Seconds observedAt{0};
        bool wasRetried = false; // by the present arrangement
        bool isBeingRetried = false;
        bool isConfirmed() const;
    };
    const Known* find(const WindowID& windowID) const;

    std::map<WindowID, Known> known_; // by window id
    std::optional<Seconds> pointerUsedAt_;
    std::int64_t arrangement_ = 0;
};

} // namespace kova
