// Compares the requested frame of each window with its actual frame. Decides which requests are repeated and how often.
// Derives minimum sizes from refused requests. Always true: a window that keeps the same wrong frame gets `kAttempts`
// requests for the same frame, and then none until something changes.
#pragma once

#include "layout/TileTarget.h"
#include "windowing/ManagedWindow.h"
#include "workspace/PollContext.h"
#include "workspace/ReflowPolicy.h"
#include "workspace/RefusedFrame.h"
#include "workspace/WindowSizes.h"

#include <functional>
#include <map>
#include <optional>
#include <string>

namespace kova {

class FrameKeeper {
  public:
    static constexpr int kAttempts = 3;

    /// The drift at which a window gets a request: `noticeable` is more than `kFrameTolerancePoints`, `any` more than
    /// rounding, so that a change of the layout by one point takes effect.
    enum class CorrectedDrift { noticeable, any };
    enum class Decision { noRequest, request, repeatRequest };
    /// Whether to request the frame now; `pending` is a requested frame that is still being verified. Frames are in
    /// window-service space.
    [[nodiscard]] Decision decide(const ManagedWindow& window, const CGRect& wanted, CorrectedDrift correctedDrift,
                                  const std::optional<CGRect>& pending);
    /// Call after a `repeatRequest`. Do not call while the window manager is being replaced: a window that does not
    /// move during that time has not refused the request.
    void noteAttempt(const WindowID& windowID) { ++refusals_[windowID].attempts; }
    /// Call after a request. Polls continue until one has seen the outcome of the request.
    void noteRequest(const WindowID& windowID) { refusals_[windowID].isUnseen = true; }
    /// Call at the start of the agent: the window keeps the frame `actual` although its tile has the frame `wanted`. It
    /// gets no request until one of these frames changes.
    void accept(const WindowID& windowID, const CGRect& wanted, const CGRect& actual);
    /// Forgets the refusal, so that all attempts are made again.
    void forgetRefusal(const WindowID& windowID) { refusals_.erase(windowID); }
    void forgetRefusals() { refusals_.clear(); }
    /// Call for a window that has no tile or is left alone: drops its refusal. A window elsewhere keeps its refusal, so
    /// that the request is not repeated each time its Space is shown.
    void noteNotPlaced(const ManagedWindow& window);
    /// The request that the window refused `kAttempts` times and the frame that it kept, or the frames given to
    /// `accept`. Null otherwise.
    const RefusedFrame* refusal(const WindowID& windowID) const;

    // Minimum sizes; documented at `WindowSizes`. Times are uptimes.
    const WindowSizes& sizes() const { return sizes_; }
    void beginArrangement() { sizes_.beginArrangement(); }
    void notePointer(Seconds now) { sizes_.notePointer(now); }
    [[nodiscard]] WindowSizes::Refusal noteRefusedSize(const ManagedWindow& window, CGSize wanted, CGSize actual,
                                                       Seconds now) {
        return sizes_.noteRefusal(window, wanted, actual, now);
    }
    [[nodiscard]] bool applyMinimum(const WindowID& windowID) { return sizes_.applyChange(windowID); }
    [[nodiscard]] WindowSizes::Disproof noteSeen(const ManagedWindow& window, CGSize size,
                                                 const std::optional<CGSize>& ofApplication) {
        return sizes_.noteSeen(window, size, ofApplication);
    }
    void beginRetry(const WindowID& windowID) { sizes_.beginRetry(windowID); }
    void endRetry(const WindowID& windowID) { sizes_.endRetry(windowID); }
    void restoreMinimum(const WindowID& windowID, CGSize size) { sizes_.restore(windowID, size); }
    /// Forgets the window's observed minimum size and its refusal.
    void forget(const WindowID& windowID) {
        sizes_.forget(windowID);
        forgetRefusal(windowID);
    }

    // Limits how often the tiles of a display are laid out again; documented at `ReflowPolicy`.
    const ReflowPolicy& reflow() const { return reflow_; }
    void resetLimits() { reflow_.resetCounts(); }
    void noteReflow(const DisplayID& displayID, const WindowID& windowID, Seconds now) {
        reflow_.noteReflow(displayID, windowID, now);
    }
    void noteSpanGivenBack(const WindowID& windowID) { reflow_.noteSpanGivenBack(windowID); }

    /// Returns windows that span several tiles and need less room than at the last call. `anchors` has the anchor of
    /// each spanning window, by window id. `minimumOf` returns the minimum size of a window.
    std::vector<WindowID> takeShrunken(const std::map<WindowID, TileTarget>& anchors,
                                       const std::function<std::optional<CGSize>(const WindowID&)>& minimumOf);

    /// Forgets closed windows. A request whose placement is no longer being verified counts as seen by this poll.
    void onPoll(const PollContext& poll);
    /// Whether polls must continue: a window may get a further request, or no poll has seen the outcome of its last
    /// one.
    bool isWaiting() const;
    void rename(const WindowID& windowID, const WindowID& newID);
    void renameDisplay(const DisplayID& displayID, const DisplayID& newID) { reflow_.renameDisplay(displayID, newID); }

  private:
    std::map<WindowID, RefusedFrame> refusals_; // by window id
    ReflowPolicy reflow_;
    WindowSizes sizes_;
    std::map<WindowID, CGSize> minimumsOfSpanning_; // at the last call of `takeShrunken`, by window id
};

} // namespace kova
