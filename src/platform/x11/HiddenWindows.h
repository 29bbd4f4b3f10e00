// The windows that KOVA hid and must show again: the windows of hidden applications and, without a window manager,
// every window that KOVA unmapped. They are recorded in a file before they are unmapped, so that the next agent can
// show them if this agent is killed. The file must survive the end of the agent but not a crash of the machine. So it
// is replaced atomically, but not synced to the disk.
#pragma once

#include "platform/x11/WindowModel.h"

#include <list>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace kova::x11 {

enum class HiddenBy { application, unmapping };

struct HiddenWindow {
    xcb_window_t window = kNoWindow;
    pid_t processIdentifier = 0;
    HiddenBy how = HiddenBy::application;
    Seconds since{};                       // uptime of the last request to hide or show it
    bool hasLeftScreen = false;            // the model has reported it off the screen
    bool isLate = false;                   // still on the screen some time after the request to hide it
    bool isReturning = false;              // KOVA requested to show it; it stays recorded until it is on the screen
    std::optional<Seconds> missingSince{}; // uptime since which the window is not in the model
};

class HiddenWindows {
  public:
    /// With an empty path the record is kept in memory only.
    explicit HiddenWindows(std::string path) : path_(std::move(path)) {}

    const std::list<HiddenWindow>& all() const { return windows_; }
    /// The entries that a former agent left in the file; empty if the file cannot be read.
    std::vector<HiddenWindow> readFile() const;
    /// Adds entries; each replaces an older entry of the same window. Call `writeFile` before the windows are unmapped.
    void add(const std::vector<HiddenWindow>& windows);
    /// Marks the windows that were hidden with the application as returning and returns them. They stay recorded until
    /// they are on the screen.
    std::vector<xcb_window_t> markApplicationReturning(pid_t processIdentifier, Seconds now);
    /// Marks a window as returning; no-op if the window is not recorded.
    void markReturning(xcb_window_t window, Seconds now);
    void remove(xcb_window_t window);
    /// Marks all hidden windows as returning and returns them.
    std::vector<xcb_window_t> markAllReturning(Seconds now);
    /// Replaces the file if the entries have changed since it was written. An outdated entry is harmless: the next
    /// agent skips windows that are on the screen.
    void writeFile();
    bool isWritten() const { return isWritten_; }
    /// What prevented the last write; empty if it succeeded.
    const std::string& problem() const { return problem_; }
    /// Makes the next `writeFile` write even if no entry has changed.
    void forceWrite() { isWritten_ = false; }

    /// True if the window was hidden with its application and is neither late nor returning.
    bool isHiddenWithApplication(xcb_window_t window) const;
    /// True if windows were hidden with the application, and none of the application's windows is on the screen.
    bool isApplicationHidden(pid_t processIdentifier, const WindowModel& model) const;
    /// Drops entries of windows that are on the screen again, or that have not left the screen for a long time. A busy
    /// window manager may hide a window late, so an entry outlives the time after which its window counts as shown.
    /// Also drops entries of windows that have been missing from the model for some time. It does not drop those at
    /// once, since there is no window list while window managers change.
    void followModel(const WindowModel& model, Seconds now);
    /// Whether `followModel` would change anything.
    bool isOutdated(const WindowModel& model, Seconds now) const;

  private:
    using Place = std::list<HiddenWindow>::iterator;
    static bool isHiddenWithApplication(const HiddenWindow& hidden);
    void setReturning(HiddenWindow& hidden, Seconds now);
    void setLate(HiddenWindow& hidden, bool isLate);
    void erase(Place place);
    void countHidden(const HiddenWindow& hidden, int change);

    std::string path_;
    std::string problem_;
    bool isWritten_ = true;
    std::list<HiddenWindow> windows_; // in the order in which they were hidden
    std::unordered_map<xcb_window_t, Place> places_;
    std::unordered_map<pid_t, int> hiddenByProcess_; // counts windows hidden with their application
};

} // namespace kova::x11
