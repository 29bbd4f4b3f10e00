// What an agent is on any desktop: the workspace with its delegate, and the socket on which it is asked. Main thread.
#pragma once

#include "app/AppDelegate.h"
#include "app/DocumentExchange.h"
#include "app/FirstSteps.h"
#include "app/KovaMenuBarContent.h"
#include "control/AgentClaim.h"
#include "control/ControlMethods.h"
#include "control/ControlServer.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kova {

/// All of it outlives the agent.
struct AgentServices {
    WorkspaceServices workspace;
    ShellServices shell;
    std::vector<const DiagnosticsServicing*> diagnostics; // the parts that report to `doctor`
    std::function<void()> quit;                           // ends the process soon, with success
    DocumentPanelServicing* documentPanels = nullptr;     // null where the command line is all there is
    UpdateChecker* updates = nullptr;                     // null where the system's packages are updated
};

class SessionAgent {
  public:
    explicit SessionAgent(const AgentServices& services);
    SessionAgent(const SessionAgent&) = delete;
    SessionAgent& operator=(const SessionAgent&) = delete;

    /// The right to the session, taken before anything else is begun; absent when another agent has it, which has been
    /// reported.
    static std::optional<AgentClaim> claimSession(const std::function<void(const std::string&)>& complain);

    /// Listens at the socket and begins to manage windows; clients are served once these are known. Absent when it
    /// does; else what is in the way, in words for a person.
    [[nodiscard]] std::optional<std::string> start(AgentClaim claim);
    /// The desktop gets back what was borrowed. The socket is open until the agent is gone.
    void stop() { delegate_.stopWorkspace(); }

    /// What the desktop asks the program to open; done once the windows are known.
    void openURLs(const std::vector<std::string>& urls);

    AppDelegate& delegate() { return delegate_; }
    /// For whatever draws it.
    KovaMenuBarContent& menu() { return menu_; }
    /// What a new user is told, until this agent ends; absent for other users.
    std::optional<std::string> firstSteps();

  private:
    void serveOnceWindowsAreKnown(Seconds until);

    MainQueue& queue_;
    AppDelegate delegate_;
    const Acquaintance acquaintance_; // as it was found
    Subscription messages_;
    const std::unique_ptr<DocumentExchange> documents_; // null without panels
    KovaMenuBarContent menu_;
    ControlMethods methods_;
    std::optional<ControlServer> server_;
    bool isServing_ = false;
    std::vector<std::string> waitingURLs_; // until it does
    Lifetime lifetime_;
};

} // namespace kova
