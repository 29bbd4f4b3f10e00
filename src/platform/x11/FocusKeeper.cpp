#include "platform/x11/FocusKeeper.h"

#include <algorithm>

namespace kova::x11 {

namespace {

/// A change of focus later than this after a request to restore a window is the user's choice.
constexpr Seconds kTimeToRestore{1};
/// A restored window that takes the focus more often than this keeps it.
constexpr int kMostRefocuses = 6;

} // namespace

void FocusKeeper::noteRestoreRequested(xcb_window_t window, xcb_window_t active, Seconds now) {
    if (!isKeeping(now)) {
        restored_.clear();
        kept_ = active;
    }
    restored_.try_emplace(window, 0);
    until_ = now + kTimeToRestore;
}

void FocusKeeper::noteFocusRequested(xcb_window_t window, Seconds now) {
    if (!restored_.empty()) kept_ = window;
    expect(window, now + kTimeToFocus, now);
}

void FocusKeeper::noteRequestOfAnotherProgram(xcb_window_t window) {
    if (!restored_.empty()) kept_ = window;
    if (requested_ != window) forgetRequest();
}

void FocusKeeper::noteRefocused(xcb_window_t window, xcb_window_t active, Seconds now) {
    reported_ = active;
    expect(window, now + kTimeToRestore, now);
}

/// Expects a report that `window` is focused. Until then the window manager may still report windows that were focused
/// shortly before.
void FocusKeeper::expect(xcb_window_t window, Seconds until, Seconds now) {
    if (now >= requestedUntil_) forgetRequest();
    isReportOutdated_ = window == reported_ && requested_ != kNoWindow && (isReportOutdated_ || requested_ != window);
    formerFocus_.insert({reported_, requested_});
    formerFocus_.erase(window);
    requested_ = window;
    requestedUntil_ = std::max(requestedUntil_, until);
}

void FocusKeeper::forgetRequest() {
    requested_ = kNoWindow;
    formerFocus_.clear();
    isReportOutdated_ = false;
}

xcb_window_t FocusKeeper::effectiveFocus(xcb_window_t reported, Seconds now) {
    reported_ = reported;
    isReportOutdated_ = isReportOutdated_ && reported == requested_;
    if ((reported == requested_ && !isReportOutdated_) || now >= requestedUntil_) forgetRequest();
    const bool isPassing = reported == kNoWindow || formerFocus_.contains(reported);
    return requested_ != kNoWindow && isPassing ? requested_ : reported;
}

std::optional<xcb_window_t> FocusKeeper::windowToRefocus(xcb_window_t active, xcb_window_t owner, Seconds now) {
    if (!isKeeping(now) || active == kNoWindow || active == kept_) return std::nullopt;
    auto focused = restored_.find(active);
    if (focused == restored_.end()) focused = restored_.find(owner);
    if (focused == restored_.end()) {
        restored_.clear(); // the user or the window manager has focused another window
        return std::nullopt;
    }
    if (kept_ == kNoWindow || focused->second >= kMostRefocuses) return std::nullopt;
    ++focused->second;
    return kept_;
}

std::optional<xcb_window_t> FocusKeeper::kept(Seconds now) const {
    if (!isKeeping(now) || kept_ == kNoWindow) return std::nullopt;
    return kept_;
}

} // namespace kova::x11
