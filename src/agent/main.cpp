// The agent on Linux: puts the parts together and runs until it is requested to stop or loses its desktop.

#include "agent/AgentOptions.h"
#include "agent/SessionAgent.h"
#include "platform/linux/ApplicationScopes.h"
#include "platform/linux/AutostartEntry.h"
#include "platform/linux/ChildProcesses.h"
#include "platform/linux/DesktopEntries.h"
#include "platform/linux/DesktopLauncher.h"
#include "platform/linux/EventLoop.h"
#include "platform/linux/FilePreferencesStore.h"
#include "platform/linux/LoginSession.h"
#include "platform/linux/NoDock.h"
#include "platform/linux/Process.h"
#include "platform/linux/SerialWorkQueue.h"
#include "platform/linux/UnavailableDesktop.h"
#include "platform/linux/XdgFolders.h"
#include "platform/posix/UserInterfaceProcess.h"
#include "platform/x11/X11Desktop.h"

#include <cstdio>
#include <cstdlib>
#include <utility>
#include <variant>
#include <vector>

namespace kova {
namespace {

constexpr const char* kHelp =
    R"(usage: kova-agent [OPTION]...

Divides each display into tiles and keeps the windows of this session in them. It runs until SIGTERM, "kova quit"
or the end of the X server; control it with "kova". Each session has at most one agent.

  --foreground   write the log to the terminal, too (it stays in the foreground either way: session managers
                 and autostart want that)
  --verbose      log in detail, including window titles and application names
  --version      print the version and exit
  --help         print this help and exit

The log is in $XDG_STATE_HOME/kova/agent.log, the preferences are in $XDG_CONFIG_HOME/kova/preferences.json.
)";

/// The desktop of this session, as platform interfaces.
class Desktop {
  public:
    /// The exit code if the agent must end; the reason has been reported.
    static std::variant<Desktop, int> open(const AgentOptions& options, const std::string& hiddenWindowsFile,
                                           EventLoop& loop, ApplicationCatalogue& catalogue,
                                           ApplicationLauncher& launcher) {
        auto opened = X11Desktop::open({.displayName = std::nullopt,
                                        .hiddenWindowsFile = hiddenWindowsFile,
                                        .launcher = &launcher,
                                        .keepsLeftoverWindowsHidden = true,
                                        .claimsServer = true},
                                       loop, catalogue);
        Desktop desktop;
        if (auto* x11 = std::get_if<std::unique_ptr<X11Desktop>>(&opened)) {
            desktop.x11_ = std::move(*x11);
            return desktop;
        }
        const auto& failure = std::get<X11Desktop::Failure>(opened);
        reportProblem(options, failure.reason);
        if (failure.isClaimedByOther) return kExitSessionNotTaken;
        if (!isWaylandOnly()) return kExitFailed;
        desktop.absent_ = std::make_unique<UnavailableDesktop>(failure.reason, loop);
        return desktop;
    }

    /// Null on a session without X.
    X11Desktop* x11() const { return x11_.get(); }
    ShellServices shell(SystemActivityServicing& session, LaunchAtLoginServicing& launchAtLogin,
                        DockAutoHideServicing& dockAutoHide, UserInterfaceServicing& userInterface) const {
        std::vector<SystemActivityServicing*> activity{&session};
        if (x11_) activity.push_back(x11_.get());
        return {.pointer = x11_.get(),
                .dividerHandles = x11_.get(),
                .systemActivity = std::move(activity),
                .keys = x11_.get(),
                .launchAtLogin = &launchAtLogin,
                .dockAutoHide = &dockAutoHide,
                .userInterface = x11_ ? &userInterface : nullptr};
    }
    DiagnosticsServicing& diagnostics() const { return x11_ ? static_cast<DiagnosticsServicing&>(*x11_) : *absent_; }
    WorkspaceServices services(SessionServicing& session, PreferencesStore& preferences, MainQueue& queue,
                               WorkQueue& pollingQueue, AlertServicing& alerts) const {
        const auto from = [&](auto& desktop) {
            return WorkspaceServices{desktop,     desktop, desktop,      session, desktop,
                                     preferences, queue,   pollingQueue, alerts};
        };
        return x11_ ? from(*x11_) : from(*absent_);
    }

  private:
    Desktop() = default;
    static bool isWaylandOnly() {
        const char* wayland = std::getenv("WAYLAND_DISPLAY");
        const char* display = std::getenv("DISPLAY");
        return wayland && *wayland && !(display && *display);
    }

    std::unique_ptr<X11Desktop> x11_;
    std::unique_ptr<UnavailableDesktop> absent_;
};

/// Owns all parts, each declared after the parts that it uses.
int manageSession(const AgentOptions& options) {
    const auto folders = XdgFolders::fromEnvironment();
    const auto stateFolder = folders.stateHome / "kova";
    createPrivateFolder(stateFolder);
    openAgentLog(stateFolder, options);
    const auto report = [&options](const std::string& text) { reportProblem(options, text); };
    auto claim = SessionAgent::claimSession(report);
    if (!claim) return kExitSessionNotTaken;

    EventLoop loop;
    loop.onStopSignal([&loop] { loop.quit(EXIT_SUCCESS); });
    SerialWorkQueue diskQueue("kova-disk");
    FilePreferencesStore preferences(folders.configHome / "kova/preferences.json", loop, diskQueue,
                                     [](const std::string& problem) { log(LogLevel::warning, problem); });
    DesktopEntries catalogue(folders, DesktopEntries::localeOfMessages());
    ApplicationScopes scopes(BusAddresses::fromEnvironment().session, loop);
    DesktopLauncher launcher(catalogue, loop, &scopes);
    // Hidden windows do not outlive the login session, and a full disk must not prevent their record.
    const auto recordFolder = folders.runtime ? *folders.runtime / "kova" : stateFolder;
    createPrivateFolder(recordFolder);
    const auto opened = Desktop::open(options, (recordFolder / "hidden-windows").string(), loop, catalogue, launcher);
    if (const auto* exitCode = std::get_if<int>(&opened)) return *exitCode;
    const auto* desktop = std::get_if<Desktop>(&opened);

    LoginSession session(loop, BusAddresses::fromEnvironment(), SessionHints::ofThisProcess());
    SerialWorkQueue pollingQueue("kova-polling");
    AutostartEntry loginItem(folders, ownProgram());
    NoDock dock;
    ChildProcesses children(loop);
    UserInterfaceProcess userInterface([] { return findUserInterface(ownProgram(), findProgram); },
                                       controlSocketPlace().path, loop, children);
    UserInterfaceDialogs dialogs(loop); // the command line asks the user at its terminal instead
    SessionAgent agent({.workspace = desktop->services(session, preferences, loop, pollingQueue, dialogs),
                        .shell = desktop->shell(session, loginItem, dock, userInterface),
                        .diagnostics = {&desktop->diagnostics(), &session},
                        .quit = [&loop] { loop.quit(EXIT_SUCCESS); },
                        .dialogs = &dialogs});
    if (X11Desktop* x11 = desktop->x11()) {
        const auto watch = [&loop](int descriptor, std::function<void()> readable) {
            return loop.watchReadable(descriptor, std::move(readable));
        };
        x11->listen(watch, [&loop, &options] {
            reportProblem(options, "the X server has ended, or has closed the connection");
            loop.quit(kExitFailed);
        });
    }

    if (const auto problem = agent.start(std::move(*claim))) {
        reportProblem(options, *problem);
        return kExitFailed;
    }
    if (const auto text = agent.firstSteps(); text && isTerminal())
        std::fprintf(stderr, "kova-agent: %s\n", text->c_str());
    const int exitCode = loop.run();
    agent.stop();
    return exitCode;
}

int run(std::span<char*> arguments) {
    const auto options = readAgentOptions(arguments, kHelp);
    if (const auto* exitCode = std::get_if<int>(&options)) return *exitCode;
    prepareProcess();
    const int exitCode = manageSession(std::get<AgentOptions>(options));
    closeLog();
    return exitCode;
}

} // namespace
} // namespace kova

int main(int argc, char** argv) {
    return kova::run(std::span(argv, static_cast<std::size_t>(argc)).subspan(argc > 0 ? 1 : 0));
}
