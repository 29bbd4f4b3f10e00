#include "platform/x11/KeyboardKeeper.h"

#include <algorithm>

namespace kova::x11 {

namespace {

/// After this time a change of focus is the user's choice.
constexpr Seconds kTimeToReturn{1};
/// After this many times a window keeps the focus that it takes.
constexpr int kMostTimesGivenBack = 6;

} // namespace

void KeyboardKeeper::noteReturning(xcb_window_t window, xcb_window_t active, Seconds now) {
    if (!isKeeping(now)) {
        returning_.clear();
        kept_ = active;
    }
    returning_.try_emplace(window, 0);
    until_ = now + kTimeToReturn;
}

void KeyboardKeeper::noteGiven(xcb_window_t window, Seconds now) {
    if (!returning_.empty()) kept_ = window;
    expect(window, now + kTimeToFocus, now);
}

void KeyboardKeeper::noteGivenBack(xcb_window_t window, xcb_window_t active, Seconds now) {
    reported_ = active;
    expect(window, now + kTimeToReturn, now);
}

/// The window manager may still report each window that was focused shortly before.
void KeyboardKeeper::expect(xcb_window_t window, Seconds until, Seconds now) {
    if (now >= givenUntil_) forgetGiven();
    isReportOld_ = window == reported_ && given_ != kNoWindow && (isReportOld_ || given_ != window);
    former_.insert({reported_, given_});
    former_.erase(window);
    given_ = window;
    givenUntil_ = std::max(givenUntil_, until);
}

void KeyboardKeeper::forgetGiven() {
    given_ = kNoWindow;
    former_.clear();
    isReportOld_ = false;
}

xcb_window_t KeyboardKeeper::focused(xcb_window_t reported, Seconds now) {
    reported_ = reported;
    isReportOld_ = isReportOld_ && reported == given_;
    if ((reported == given_ && !isReportOld_) || now >= givenUntil_) forgetGiven();
    const bool isPassing = reported == kNoWindow || former_.contains(reported);
    return given_ != kNoWindow && isPassing ? given_ : reported;
}

std::optional<xcb_window_t> KeyboardKeeper::toGiveBack(xcb_window_t active, xcb_window_t owner, Seconds now) {
    if (!isKeeping(now) || active == kNoWindow || active == kept_) return std::nullopt;
    auto taker = returning_.find(active);
    if (taker == returning_.end()) taker = returning_.find(owner);
    if (taker == returning_.end()) {
        returning_.clear(); // the user or the window manager has focused another window
        return std::nullopt;
    }
    if (kept_ == kNoWindow || taker->second >= kMostTimesGivenBack) return std::nullopt;
    ++taker->second;
    return kept_;
}

std::optional<xcb_window_t> KeyboardKeeper::kept(Seconds now) const {
    if (!isKeeping(now) || kept_ == kNoWindow) return std::nullopt;
    return kept_;
}

} // namespace kova::x11
