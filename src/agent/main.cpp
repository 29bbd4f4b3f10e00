// The agent: one per user session, without a window of its own. It puts the parts together and runs until it is told to
// stop or loses its desktop.

#include "app/AppDelegate.h"
#include "app/LogFile.h"
#include "control/ControlMethods.h"
#include "control/ControlServer.h"
#include "platform/linux/AbsentDesktop.h"
#include "platform/linux/DesktopEntries.h"
#include "platform/linux/DesktopLauncher.h"
#include "platform/linux/EventLoop.h"
#include "platform/linux/FilePreferencesStore.h"
#include "platform/linux/Process.h"
#include "platform/linux/SerialWorkQueue.h"
#include "platform/linux/XdgFolders.h"
#include "platform/x11/X11Desktop.h"
#include "support/Version.h"

#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace kova {
namespace {

constexpr int kExitFailed = 1;
constexpr int kExitWrongUsage = 2;

constexpr std::string_view kHelp =
    R"(usage: kova-agent [OPTION]...

Divides each display into tiles and keeps the windows of this session in them. It runs until SIGTERM, "kova quit"
or the end of the X server; ask it with "kova". One agent has a session.

  --foreground   write the log to the terminal, too (it stays in the foreground either way: session managers
                 and autostart want that)
  --verbose      log what it does in detail; names and titles of windows may be among it
  --version      print the version and end
  --help         print this and end

The log is in $XDG_STATE_HOME/kova/agent.log, the preferences are in $XDG_CONFIG_HOME/kova/preferences.json.
)";

struct Options {
    LogEcho echo = LogEcho::none;
    LogLevel lowestLevel = LogLevel::note;
};

/// Tells whoever started us, and the log.
void complain(const Options& options, const std::string& text) {
    log(LogLevel::error, text);
    if (options.echo == LogEcho::none) std::fprintf(stderr, "kova-agent: %s\n", text.c_str());
}

/// Nobody has told us of a locked screen.
class UnlockedSession final : public SessionServicing {
  public:
    bool isLoginSessionScreenLocked() const override { return false; }
};

/// The desktop of this session, behind the seams.
class Desktop {
  public:
    /// Absent when there is none and the agent should end; it has been said why.
    static std::optional<Desktop> open(const Options& options, const std::string& hiddenWindowsFile, EventLoop& loop,
                                       ApplicationCatalogue& catalogue, ApplicationLauncher& launcher) {
        auto opened = X11Desktop::open(
            {.displayName = std::nullopt, .hiddenWindowsFile = hiddenWindowsFile, .launcher = &launcher}, loop,
            catalogue);
        Desktop desktop;
        if (auto* x11 = std::get_if<std::unique_ptr<X11Desktop>>(&opened)) {
            desktop.x11_ = std::move(*x11);
            return desktop;
        }
        const auto& reason = std::get<std::string>(opened);
        complain(options, reason);
        if (!isWaylandOnly()) return std::nullopt;
        desktop.absent_ = std::make_unique<AbsentDesktop>(reason, loop);
        return desktop;
    }

    /// Null on a session without X.
    X11Desktop* x11() const { return x11_.get(); }
    ShellServices shell() const {
        return {.pointer = x11_.get(), .dividerHandles = x11_.get(), .systemActivity = nullptr};
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
    std::unique_ptr<AbsentDesktop> absent_;
};

void openLogIn(const std::filesystem::path& stateFolder, const Options& options) {
    const bool hasFolder = createPrivateFolder(stateFolder);
    const auto problem = openLog((stateFolder / "agent.log").string(), options.lowestLevel, options.echo);
    if (!hasFolder || problem) {
        std::fprintf(stderr, "kova-agent: no log is kept in %s\n", (stateFolder / "agent.log").c_str());
    }
}

/// Everything is owned here, each part after those that it leans on.
int manageSession(const Options& options) {
    const auto folders = XdgFolders::fromEnvironment();
    const auto stateFolder = folders.stateHome / "kova";
    openLogIn(stateFolder, options);

    auto claim = AgentClaim::take(controlSocketPlace());
    if (const auto* refusal = std::get_if<AgentClaimRefusal>(&claim)) {
        complain(options, refusal->holder
                              ? "process " + std::to_string(*refusal->holder) + " already manages this session"
                              : refusal->message);
        return kExitFailed;
    }

    EventLoop loop;
    loop.onStopSignal([&loop] { loop.quit(EXIT_SUCCESS); });
    SerialWorkQueue diskQueue("kova-disk");
    FilePreferencesStore preferences(folders.configHome / "kova/preferences.json", loop, diskQueue,
                                     [](const std::string& problem) { log(LogLevel::warning, problem); });
    DesktopEntries catalogue(folders, DesktopEntries::localeOfMessages());
    DesktopLauncher launcher(catalogue, loop);
    const auto desktop = Desktop::open(options, (stateFolder / "hidden-windows").string(), loop, catalogue, launcher);
    if (!desktop) return kExitFailed;

    UnlockedSession session;
    SerialWorkQueue pollingQueue("kova-polling");
    UnansweredAlerts alerts; // the command line asks at its terminal
    AppDelegate delegate(desktop->services(session, preferences, loop, pollingQueue, alerts), desktop->shell());
    const auto& state = delegate.workspace().state();
    const auto messages = state.lastActionMessage.observe([](const std::optional<std::string>& message) {
        if (message) log(LogLevel::detail, *message);
    });

    if (X11Desktop* x11 = desktop->x11()) {
        const auto watch = [&loop](int descriptor, std::function<void()> readable) {
            return loop.watchReadable(descriptor, std::move(readable));
        };
        x11->listen(watch, [&loop, &options] {
            complain(options, "the X server has ended, or has closed the connection");
            loop.quit(kExitFailed);
        });
    }

    ControlMethods methods({.controller = delegate.workspace(),
                            .urls = delegate.urls(),
                            .preferences = preferences,
                            .diagnostics = &desktop->diagnostics(),
                            .queue = loop,
                            .quit = [&loop] { loop.quit(EXIT_SUCCESS); }});
    ControlServer server(std::get<AgentClaim>(std::move(claim)), loop, methods);
    if (const auto problem = server.start()) {
        complain(options, *problem);
        return kExitFailed;
    }
    log(LogLevel::note, "kova-agent " KOVA_VERSION " manages this session");
    delegate.startWorkspace();
    const int exitCode = loop.run();
    delegate.stopWorkspace();
    return exitCode;
}

int run(std::span<char*> arguments) {
    Options options;
    for (const std::string_view argument : arguments) {
        if (argument == "--foreground") {
            options.echo = LogEcho::standardError;
        } else if (argument == "--verbose") {
            options.lowestLevel = LogLevel::detail;
        } else if (argument == "--version") {
            std::puts("kova-agent " KOVA_VERSION);
            return EXIT_SUCCESS;
        } else if (argument == "--help") {
            std::fputs(kHelp.data(), stdout);
            return EXIT_SUCCESS;
        } else {
            std::fprintf(stderr, "kova-agent: unknown argument \"%s\"; see kova-agent --help\n", argument.data());
            return kExitWrongUsage;
        }
    }
    prepareProcess();
    const int exitCode = manageSession(options);
    closeLog();
    return exitCode;
}

} // namespace
} // namespace kova

int main(int argc, char** argv) {
    return kova::run(std::span(argv, static_cast<std::size_t>(argc)).subspan(argc > 0 ? 1 : 0));
}
