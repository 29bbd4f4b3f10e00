// What outlives the agent: the session is written down while it changes, and a new agent takes up what the one before
// it has left. Always true: the kept session is taken up at most once, with the first picture of the desktop; until
// then it is not overwritten. Times are uptimes.
#pragma once

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
    /// How long a window may take to come back to its place once its agent has ended: some window managers draw its
    /// way, and give it the keyboard at first.
    static constexpr Seconds kReturnTakesAtMost{3};

    SessionRestore(MainQueue& queue, PreferencesStore& store,
                   std::function<std::optional<WorkspaceSession>()> describe);

    void noteChange() { keeper_.noteChange(); }
    /// Without waiting for the second to pass.
    void save() { keeper_.save(); }
    /// A session of the agent before this one has still to be taken up.
    bool isUnread() const { return kept_.has_value(); }
    /// The first time, what was kept, or an empty session; absent after that.
    std::optional<WorkspaceSession> takeKept();
    /// What was kept is not to be taken up.
    void dropKept() { kept_.reset(); }

    /// Tells the process from others that had or will have its number. A process that is on record already goes on, so
    /// it is not read again.
    std::optional<std::string> processStart(pid_t process, const ProcessStartOf& read);
    void keepProcesses(const std::set<pid_t>& recorded);

    /// These windows are not seen, but their processes go on.
    void await(std::set<std::string> windowIDs, Seconds now);
    /// Those that may yet come.
    const std::set<std::string>& awaited(const std::vector<ManagedWindow>& live, Seconds now);

    /// The window waited in a stack when the last agent ended, which then brought it back to the frame.
    void expectReturn(const std::string& windowID, const std::optional<CGRect>& formerFrame);
    /// From now on returning windows have `kReturnTakesAtMost`. The uptime at which that ends.
    Seconds beginReturns(Seconds now);
    bool hasReturns() const { return !returning_.empty(); }
    bool isReturning(const std::string& windowID) const { return returning_.contains(windowID); }
    /// Where the window was when the last agent ended; absent for one that is not returning.
    std::optional<CGRect> formerFrame(const std::string& windowID) const;
    using IsThere = std::function<bool(const std::string& windowID)>;
    using HasReturned = std::function<bool(const ManagedWindow& window, const std::optional<CGRect>& formerFrame)>;
    /// Windows that are back and are to leave the screen again. An application leaves as a whole, so its windows wait
    /// for one another as long as there is time. Windows for which `isWaiting` is false are forgotten.
    std::set<std::string> takeReturned(const std::vector<ManagedWindow>& live, const IsThere& isWaiting,
                                       const HasReturned& hasReturned, Seconds now);
    void forgetReturns() { returning_.clear(); }

    /// Something here waits for time to pass.
    bool isWaiting() const { return !awaited_.empty() || !returning_.empty(); }
    void rename(const std::string& windowID, const std::string& newID);

  private:
    SessionKeeper keeper_;
    std::optional<WorkspaceSession> kept_;
    bool hasTakenUp_ = false;
    std::map<pid_t, std::optional<std::string>> processStarts_;
    std::set<std::string> awaited_;
    Seconds awaitedUntil_{0};
    std::map<std::string, std::optional<CGRect>> returning_; // by window id
    Seconds returningUntil_{0};
};

} // namespace kova
