// Finds the agent's session with logind, and reports when the machine sleeps and whether that session is active and
// locked. logind may start late, restart or be missing; the session may appear late as well.
#pragma once

#include "platform/linux/MessageBus.h"
#include "support/Lifetime.h"

#include <sys/types.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace kova {

/// The facts by which the login session of a process is found.
struct SessionHints {
    std::optional<std::string> sessionID; // $XDG_SESSION_ID
    pid_t process = 0;
    uid_t user = 0;

    static SessionHints ofThisProcess();
};

/// Main thread only.
class LogindClient {
  public:
    struct Listener {
        std::function<void(bool isPreparing)> sleep;
        std::function<void(bool isActive)> active;
        std::function<void(bool isSet)> lockedHint;
        std::function<void()> lockSignal;
        std::function<void()> unlockSignal;
        std::function<void()> disconnected; // earlier reports may be out of date
    };

    LogindClient(std::string busAddress, SessionHints hints, EventLoop& loop, Listener listener);

    /// One sentence for `doctor`: the session that is watched, or what is missing.
    std::string description() const;
    bool hasSession() const { return !sessionPath_.empty(); }

  private:
    struct Session {
        std::string path;
        std::string id;
        std::string type;
        bool isOurs = false; // of this user; not a greeter, and not about to close
        bool isActive = true;
        bool isLocked = false;
        bool isGraphical() const { return type == "x11" || type == "wayland" || type == "mir"; }
    };
    /// Ways to find the session, the most reliable first; `over` means that all have been tried.
    enum class Search { namedByEnvironment, ofProcess, displayOfUser, anyOfUser, over };
    using Number = std::uint64_t;

    std::vector<BusSignal> signals();
    void findSession();
    void onDisconnected(std::string problem);
    void search(Search way);
    void examine(std::vector<std::string> paths, Search way);
    void use(const Session& session);
    void finishSearch();
    void querySession(const std::string& path, std::function<void(std::optional<Session>)> known);
    void propertiesChanged(sdbus::Message& message);
    void querySessionAgain();

    SessionHints hints_;
    MessageBus bus_;
    Listener listener_;
    std::string sessionPath_; // empty while there is none
    std::string sessionName_; // for messages
    std::string problem_;
    std::optional<Session> candidate_; // a session that is not graphical, used if no graphical one is found
    Number round_ = 0;                 // number of the search; replies to requests of an older search are ignored
    Lifetime lifetime_;
};

} // namespace kova
