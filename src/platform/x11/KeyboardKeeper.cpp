#include "platform/x11/KeyboardKeeper.h"

namespace kova::x11 {

namespace {

/// After this time a change of focus is the user's choice.
constexpr Seconds kTimeToReturn{1};
/// After this many times an application keeps the focus that it takes.
constexpr int kMostTimesGivenBack = 6;

} // namespace

void KeyboardKeeper::noteReturning(xcb_window_t window, xcb_window_t active, Seconds now) {
    if (!isKeeping(now)) {
        returning_.clear();
        kept_ = active;
        timesGivenBack_ = 0;
    }
    returning_.insert(window);
    until_ = now + kTimeToReturn;
}

void KeyboardKeeper::noteGiven(xcb_window_t window, Seconds now) {
    if (!returning_.empty()) kept_ = window;
    given_ = window;
    givenUntil_ = now + kTimeToFocus;
}

xcb_window_t KeyboardKeeper::focused(xcb_window_t reported, Seconds now) {
    if (reported == given_ || now >= givenUntil_) given_ = kNoWindow;
    return reported == kNoWindow ? given_ : reported;
}

std::optional<xcb_window_t> KeyboardKeeper::toGiveBack(xcb_window_t active, xcb_window_t owner, Seconds now) {
    if (!isKeeping(now) || active == kNoWindow || active == kept_) return std::nullopt;
    if (!returning_.contains(active) && !returning_.contains(owner)) {
        returning_.clear(); // the user or the window manager has focused another window
        return std::nullopt;
    }
    if (kept_ == kNoWindow || timesGivenBack_ >= kMostTimesGivenBack) return std::nullopt;
    ++timesGivenBack_;
    return kept_;
}

std::optional<xcb_window_t> KeyboardKeeper::kept(Seconds now) const {
    if (!isKeeping(now) || kept_ == kNoWindow) return std::nullopt;
    return kept_;
}

} // namespace kova::x11
