// The part of the agent that is the same on all platforms: the workspace with its delegate, and the control socket.
// Main thread.
#pragma once

#include "app/AppDelegate.h"
#include "app/DocumentExchange.h"
#include "app/FirstSteps.h"
#include "app/KovaMenuBarContent.h"
#include "control/AgentClaim.h"
#include "control/ControlMethods.h"
#include "control/ControlServer.h"
#include "control/UserInterfaceDialogs.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kova {

/// All members outlive the agent.
struct AgentServices {
    WorkspaceServices workspace;
    ShellServices shell;
    std::vector<const DiagnosticsServicing*> diagnostics; // the parts that report to `doctor`
    std::function<void()> quit;                           // ends the process soon, with success
    DocumentPanelServicing* documentPanels = nullptr;     // null where the platform has no such panels
    UserInterfaceDialogs* dialogs = nullptr;              // null where the platform has dialogs of its own
    UpdateChecker* updates = nullptr;                     // null where a package manager updates KOVA
};

class SessionAgent {
  public:
    explicit SessionAgent(const AgentServices& services);
    SessionAgent(const SessionAgent&) = delete;
    SessionAgent& operator=(const SessionAgent&) = delete;

    /// Claims the session, so that no other agent manages it; call before anything else. On failure returns no claim,
    /// and passes the reason to `reportProblem`.
    static std::optional<AgentClaim> claimSession(const std::function<void(const std::string&)>& reportProblem);

    /// Listens at the socket and begins to manage windows; clients are served after the first poll. Returns the error
    /// for the user; absent on success.
    [[nodiscard]] std::optional<std::string> start(AgentClaim claim);
    /// Stops managing windows. The socket stays open until the agent is destroyed.
    void stop() { delegate_.stopWorkspace(); }

    /// Opens URLs that the desktop passes to the program, once the windows are known.
    void openURLs(const std::vector<std::string>& urls);

    AppDelegate& delegate() { return delegate_; }
    /// For the program or platform that draws the menu.
    KovaMenuBarContent& menu() { return menu_; }
    /// Advice for a new user; absent for other users. The same user counts as new until this agent ends.
    std::optional<std::string> firstSteps();

  private:
    void serveOnceWindowsAreKnown(Seconds until);

    MainQueue& queue_;
    AppDelegate delegate_;
    const UserHistory userHistory_; // when the agent started
    Subscription messages_;
    const std::unique_ptr<DocumentExchange> documents_; // null without panels
    KovaMenuBarContent menu_;
    ControlMethods methods_;
    std::optional<ControlServer> server_;
    bool isServing_ = false;
    std::vector<std::string> waitingURLs_; // until requests are served
    Lifetime lifetime_;
};

} // namespace kova
