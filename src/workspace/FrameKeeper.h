// The frame that each window was asked for against the one that it has: which windows to ask again, how often, and what
// their refusals say about their smallest sizes. Always true: a window that rests at the same wrong frame is asked
// `kAttempts` times for the same right one, and then left as it is until something changes.
#pragma once

#include "windowing/ManagedWindow.h"
#include "workspace/PollContext.h"
#include "workspace/ReflowPolicy.h"
#include "workspace/WindowSizes.h"

#include <functional>
#include <map>
#include <optional>
#include <string>

namespace kova {

class FrameKeeper {
  public:
    static constexpr int kAttempts = 3;

    /// How far a window may be off its tile: `noticeable` from `kFrameTolerancePoints` on, `any` from `kRoundingPoints`
    /// on, so that a change of the layout by one point takes effect.
    enum class Straying { noticeable, any };
    enum class Decision { leave, ask, askAgain };
    /// Whether the window is to be asked for the frame now; `pending` is what it was asked for and is still verified.
    /// Frames are in window-service space.
    [[nodiscard]] Decision decide(const ManagedWindow& window, const CGRect& wanted, Straying straying,
                                  const std::optional<CGRect>& pending);
    /// `askAgain` counts as an attempt. Not to be called while a window manager is replaced: a window that stays where
    /// it is refuses nothing then.
    void noteAttempt(const std::string& windowID) { ++refusals_[windowID].attempts; }
    /// The window was asked for a frame; the next poll may not have seen the outcome yet.
    void noteAsked(const std::string& windowID) { refusals_[windowID].isUnseen = true; }
    /// The window is where it was when the agent started, which is as good as its tile.
    void accept(const std::string& windowID, const CGRect& wanted, const CGRect& actual);
    /// The window is asked as often as at first.
    void forgetRefusal(const std::string& windowID) { refusals_.erase(windowID); }
    void forgetRefusals() { refusals_.clear(); }
    /// Drops the refusal of a window without a tile frame. That of a window elsewhere is kept, so that a fixed size is
    /// not requested again whenever its Space is shown.
    void noteWithoutTarget(const ManagedWindow& window);
    /// The window's final frame after `kAttempts` refused requests; null otherwise.
    const Refusal* refusal(const std::string& windowID) const;

    WindowSizes& sizes() { return sizes_; }
    const WindowSizes& sizes() const { return sizes_; }
    ReflowPolicy& reflow() { return reflow_; }
    const ReflowPolicy& reflow() const { return reflow_; }

    /// Windows that span several tiles and need less room than at the last call. `anchors` by the id of the window.
    std::vector<std::string> takeShrunken(const std::map<std::string, std::string>& anchors,
                                          const std::function<std::optional<CGSize>(const std::string&)>& minimumOf);

    /// Windows that are gone are forgotten; requests without a pending frame were seen by this poll.
    void onPoll(const PollContext& poll);
    /// Some window is still to be asked or to be seen.
    bool isWaiting() const;
    void rename(const std::string& windowID, const std::string& newID);

  private:
    std::map<std::string, Refusal> refusals_; // by window id
    ReflowPolicy reflow_;
    WindowSizes sizes_;
    std::map<std::string, CGSize> minimumsOfSpanning_; // at the last call, by window id
};

} // namespace kova
