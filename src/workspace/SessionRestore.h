// Stores the session while it changes, and restores the session of the former agent. Always true: the stored session is
// restored at most once, with the first poll; until then it is not overwritten. Times are uptimes.
#pragma once

#include "workspace/PollContext.h"
#include "workspace/SessionKeeper.h"
#include "workspace/SessionResumption.h"

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace kova {

class SessionRestore {
  public:
    /// How long a window may take to return to its frame after the agent that hid it has ended: some window managers
    /// animate and focus the window first.
    static constexpr Seconds kReturnTakesAtMost{3};

    SessionRestore(MainQueue& queue, PreferencesStore& store,
                   std::function<std::optional<WorkspaceSession>()> describe);

    void noteChange() { keeper_.noteChange(); }
    /// Stores at once, without the limit of one second.
    void save() { keeper_.save(); }
    /// True until the session of the former agent was restored or dropped.
    bool isUnread() const { return stored_.has_value(); }
    /// The first call returns the stored session, or an empty one; later calls return nothing.
    std::optional<WorkspaceSession> takeStored();
    /// Drops the stored session without restoring it.
    void dropStored() { stored_.reset(); }

    /// A text that distinguishes the process from other processes with the same id at other times. The text is
    /// recorded, because it does not change while the process runs; `read` is called only if no text is recorded.
    std::optional<std::string> processStart(pid_t process, const ProcessStartOf& read);
    void keepProcesses(const std::set<pid_t>& recorded);

    /// Begins to await the windows. They are windows of the former session that no poll lists although their processes
    /// run.
    void await(std::set<WindowID> windowIDs, Seconds now);
    /// The awaited windows that are not in `live`; empty after the timeout.
    const std::set<WindowID>& awaited(const std::vector<ManagedWindow>& live, Seconds now);

    /// Records a window that was stacked when the former agent ended; that agent then showed it at `formerFrame`.
    void expectReturn(const WindowID& windowID, const std::optional<CGRect>& formerFrame);
    /// Starts the timeout of `kReturnTakesAtMost` for returning windows, and returns the uptime at which it ends.
    Seconds beginReturns(Seconds now);
    bool hasReturns() const { return !returning_.empty(); }
    bool isReturning(const WindowID& windowID) const { return returning_.contains(windowID); }
    /// The window's frame when the former agent ended; absent for a window that is not returning.
    std::optional<CGRect> formerFrame(const WindowID& windowID) const;
    using IsStacked = std::function<bool(const WindowID& windowID)>;
    using HasReturned = std::function<bool(const ManagedWindow& window, const std::optional<CGRect>& formerFrame)>;
    /// Removes and returns the windows that are at their frames again; the caller hides them. An application is hidden
    /// as a whole, so its windows are returned only when all its visible ones are at their frames, or at the timeout.
    /// Forgets windows for which `isStacked` is false.
    std::set<WindowID> takeReturned(const std::vector<ManagedWindow>& live, const IsStacked& isStacked,
                                    const HasReturned& hasReturned, Seconds now);
    void forgetReturns() { returning_.clear(); }

    /// Whether a timeout is pending, so that polls must continue.
    bool isWaiting() const { return !awaited_.empty() || !returning_.empty(); }
    void rename(const WindowID& windowID, const WindowID& newID);
    void renameDisplay(const DisplayID&, const DisplayID&) {} // the stored session keeps its own display ids
    void onPoll(const PollContext&) {} // windows are awaited until a deadline, not for a number of polls

  private:
    SessionKeeper keeper_;
    std::optional<WorkspaceSession> stored_;
    bool isTaken_ = false;
    std::map<pid_t, std::optional<std::string>> processStarts_;
    std::set<WindowID> awaited_;
    Seconds awaitedUntil_{0};
    std::map<WindowID, std::optional<CGRect>> returning_; // by window id
    Seconds returningUntil_{0};
};

} // namespace kova
