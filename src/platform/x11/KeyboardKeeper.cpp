#include "platform/x11/KeyboardKeeper.h"

#include <algorithm>
#include <utility>

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
    if (std::exchange(given_, window) != window) takenBy_ = kNoWindow;
    givenUntil_ = std::max(givenUntil_, now + kTimeToFocus);
}

void KeyboardKeeper::noteGivenBack(xcb_window_t window, xcb_window_t active, Seconds now) {
    given_ = window;
    takenBy_ = active;
    givenUntil_ = now + kTimeToReturn;
}

xcb_window_t KeyboardKeeper::focused(xcb_window_t reported, Seconds now) {
    if (reported == given_ || now >= givenUntil_) given_ = takenBy_ = kNoWindow;
    const bool isPassing = reported == kNoWindow || reported == takenBy_;
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
