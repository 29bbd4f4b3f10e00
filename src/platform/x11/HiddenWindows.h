// The windows that KOVA hid and must show again: those of hidden applications, and, without a window manager, every
// window that it unmapped. Recorded in a file before they are unmapped, so that the next agent finds them if this one
// is killed. The file must survive the agent, not the machine, so it is replaced atomically but not synced.
#pragma once

#include "platform/x11/WindowModel.h"

#include <list>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace kova::x11 {

enum class TakenAway { byHiding, byUnmapping };

struct HiddenWindow {
    xcb_window_t window = kNoWindow;
    pid_t processIdentifier = 0;
    TakenAway how = TakenAway::byHiding;
    Seconds since{};
    bool hasLeftScreen = false; // it was seen off the screen
    bool isReturning = false;   // its return was requested at `since`; recorded until it is seen on the screen
    std::optional<Seconds> missingSince{};
};

class HiddenWindows {
  public:
    /// With an empty path the record is kept in memory only.
    explicit HiddenWindows(std::string path) : path_(std::move(path)) {}

    const std::list<HiddenWindow>& all() const { return windows_; }
    /// The record of a former agent; empty if the file cannot be read.
    std::vector<HiddenWindow> readFile() const;
    /// Adds entries; an entry replaces an older one of its window. Call `writeFile` before the windows are unmapped.
    void add(const std::vector<HiddenWindow>& windows);
    /// Marks the windows that were hidden with the process as returning and returns them. They stay recorded until they
    /// are on the screen.
    std::vector<xcb_window_t> takeHidden(pid_t processIdentifier, Seconds now);
    /// Marks one window as returning, which need not be recorded.
    void markReturning(xcb_window_t window, Seconds now);
    void remove(xcb_window_t window);
    /// Marks all hidden windows as returning and returns them.
    std::vector<xcb_window_t> takeAll(Seconds now);
    /// Replaces the file if the record has changed since it was written. An outdated entry is harmless: the next start
    /// skips windows that are on the screen.
    void writeFile();
    bool isWritten() const { return isWritten_; }
    /// The next `writeFile` writes in any case.
    void doubtFile() { isWritten_ = false; }

    /// Whether this window was hidden with its application.
    bool holds(xcb_window_t window) const;
    /// Whether windows were hidden with the application and none of its windows is on the screen.
    bool isApplicationHidden(pid_t processIdentifier, const WindowModel& model) const;
    /// Drops entries of windows that were shown by the user, that never left the screen, or that have been missing for
    /// a while (not at once, since there is no window list while window managers change).
    void followModel(const WindowModel& model, Seconds now);
    /// Whether `followModel` would change anything.
    bool isBehind(const WindowModel& model, Seconds now) const;

  private:
    using Place = std::list<HiddenWindow>::iterator;
    static bool isHeld(const HiddenWindow& hidden);
    void setReturning(HiddenWindow& hidden, Seconds now);
    void erase(Place place);
    void countHeld(const HiddenWindow& hidden, int change);

    std::string path_;
    bool isWritten_ = true;
    std::list<HiddenWindow> windows_; // in the order in which they were hidden
    std::unordered_map<xcb_window_t, Place> places_;
    std::unordered_map<pid_t, int> heldByProcess_; // how many windows were hidden with it
};

} // namespace kova::x11
