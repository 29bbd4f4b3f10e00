// What is known of the least size of each window: what it announces, what it has shown by refusing to shrink, and,
// where neither is known, what was learned of its application. Always true: what a window has shown is forgotten as
// soon as the window is seen smaller; a size that contradicts the window's announced minimum counts only until the next
// arrangement, and permanently once that arrangement confirms it.
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
    /// The desktop itself may go on resizing a window that was just let go, for example at an edge of the screen.
    static constexpr Seconds kSettlesAfterPointer{1};
    /// A size that the window showed a moment ago is not asked about again.
    static constexpr Seconds kRetryAfter{10};

    enum class Purpose { present, nextArrangement };
    /// Points, 0 where nothing is known. `ofApplication` is what was learned of the window's application: a first
    /// guess, which the size of the window itself corrects.
    CGSize minimumOf(const ManagedWindow& window, const std::optional<CGSize>& ofApplication,
                     Purpose purpose = Purpose::present) const;
    /// What windows have shown and what counts now, by window id.
    std::map<std::string, CGSize> shown() const;
    /// The part of it that a later session may rely on.
    std::map<std::string, CGSize> confirmed() const;

    /// The pointer took hold of a window or let it go.
    void notePointer(Seconds uptime) { pointerMovedAt_ = uptime; }
    /// Windows that are to confirm what they have shown are asked for their plain tiles by this arrangement.
    void beginArrangement();

    enum class Refusal { unreliable, known, changed };
    /// The window was asked for `wanted` and stays at `actual`. A change counts once it is applied.
    Refusal noteRefusal(const ManagedWindow& window, CGSize wanted, CGSize actual, Seconds uptime);
    bool hasPendingChange(const std::string& windowID) const;
    /// Gives whether it is certain enough to be remembered for the application.
    bool applyChange(const std::string& windowID);

    struct Disproof {
        bool ofWindow = false;
        bool ofApplication = false;
    };
    /// The window rests at the size.
    Disproof noteSeen(const ManagedWindow& window, CGSize size, const std::optional<CGSize>& ofApplication);

    /// Whether an arrangement should ask the window once for less than it is said to need.
    bool isRetryDue(const ManagedWindow& window, const std::optional<CGSize>& ofApplication, Seconds uptime) const;
    void beginRetry(const std::string& windowID);
    void endRetry(const std::string& windowID);
    bool isBeingRetried(const std::string& windowID) const;

    void forget(const std::string& windowID) { known_.erase(windowID); }
    void keepOnly(const std::function<bool(const std::string& windowID)>& isLive);
    void rename(const std::string& windowID, const std::string& newID);
    /// What `confirmed` gave in a former session.
    void restore(const std::string& windowID, CGSize size);

  private:
    struct Known {
        CGSize shown{};                 // 0 in a direction in which it refused nothing
        std::optional<CGSize> pending;  // not applied yet
        std::optional<CGSize> smallest; // at rest
        bool contradictsAnnouncement = false;
        int arrangements = 0; // in how many it was shown
        std::int64_t lastArrangement = -1;
        Seconds shownAt{0};
        bool wasRetried = false; // by the present arrangement
        bool isBeingRetried = false;
        bool isConfirmed() const;
    };
    const Known* find(const std::string& windowID) const;

    std::map<std::string, Known> known_; // by window id
    std::optional<Seconds> pointerMovedAt_;
    std::int64_t arrangement_ = 0;
};

} // namespace kova
