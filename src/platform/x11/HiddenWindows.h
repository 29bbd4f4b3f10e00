// The windows that KOVA took off the screen and must bring back: those of hidden applications, and, without a window
// manager, every window that it unmapped. Kept in a file as well, written before the windows go, so that an agent that
// was killed finds them at its next start.
// The file guards against the end of the agent, not of the machine, so it is replaced whole but not forced to the disk.
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
    bool hasLeftScreen = false; // the wish was granted
    bool isReturning = false;   // asked back at `since`; on record until it is seen
    std::optional<Seconds> missingSince{};
};

class HiddenWindows {
  public:
    /// An empty path keeps nothing on disk.
    explicit HiddenWindows(std::string path) : path_(std::move(path)) {}

    const std::list<HiddenWindow>& all() const { return windows_; }
    /// What an agent before this one left; a file that cannot be read holds nothing.
    std::vector<HiddenWindow> readFile() const;
    /// One entry a window: a newer one replaces it. `writeFile` is due before the windows go.
    void add(const std::vector<HiddenWindow>& windows);
    /// The windows of the process that were hidden with it. They are on record until they are on the screen again.
    std::vector<xcb_window_t> takeHidden(pid_t processIdentifier, Seconds now);
    /// The same for one window of any kind, which need not be on record.
    void markReturning(xcb_window_t window, Seconds now);
    void remove(xcb_window_t window);
    /// All windows, the same way.
    std::vector<xcb_window_t> takeAll(Seconds now);
    /// Replaces the file, if the record has changed since it was written. An entry too many does no harm: at the next
    /// start a window that is on the screen is passed over.
    void writeFile();
    bool isWritten() const { return isWritten_; }
    /// Has the file written whatever it holds.
    void doubtFile() { isWritten_ = false; }

    /// Whether hiding took this window away.
    bool holds(xcb_window_t window) const;
    /// Some windows were taken away with it and none is on the screen.
    bool isApplicationHidden(pid_t processIdentifier, const WindowModel& model) const;
    /// Follows what others did: a window that came back by hand is no longer ours, nor is one that was never granted to
    /// go, nor one that has been missing for a while: no list is kept while window managers change.
    void followModel(const WindowModel& model, Seconds now);
    /// Whether following would change anything.
    bool isBehind(const WindowModel& model, Seconds now) const;

  private:
    using Place = std::list<HiddenWindow>::iterator;
    static bool isHeld(const HiddenWindow& hidden);
    void setReturning(HiddenWindow& hidden, Seconds now);
    void erase(Place place);
    void countHeld(const HiddenWindow& hidden, int change);

    std::string path_;
    bool isWritten_ = true;
    std::list<HiddenWindow> windows_; // in the order in which they went
    std::unordered_map<xcb_window_t, Place> places_;
    std::unordered_map<pid_t, int> heldByProcess_; // how many windows hiding took away
};

} // namespace kova::x11
