#include "agent/MacAgent.h"

#include "app/SystemDockAutoHideService.h"
#include "platform/macos/CoreFoundation.h"
#include "platform/macos/DispatchQueues.h"
#include "platform/macos/MacAccessibility.h"
#include "platform/macos/MacAlerts.h"
#include "platform/macos/MacApplications.h"
#include "platform/macos/MacChangeObservers.h"
#include "platform/macos/MacChildProcesses.h"
#include "platform/macos/MacDiagnostics.h"
#include "platform/macos/MacDividerHandles.h"
#include "platform/macos/MacDocumentPanels.h"
#include "platform/macos/MacKeyMonitors.h"
#include "platform/macos/MacOnboarding.h"
#include "platform/macos/MacPointerMonitor.h"
#include "platform/macos/MacScreens.h"
#include "platform/macos/MacSystemActivity.h"
#include "platform/macos/MainAppLoginItem.h"
#include "platform/macos/MenuBar.h"
#include "platform/macos/Modal.h"
#include "platform/macos/SparkleUpdateChecker.h"
#include "platform/macos/UserDefaultsStore.h"
#include "platform/posix/ProcessRunner.h"
#include "platform/posix/UserInterfaceProcess.h"

#import <AppKit/AppKit.h>

#include <csignal>
#include <utility>

namespace kova {

using namespace macos;

namespace {

/// Never destroyed: the system may call back until the process has ended.
DispatchMainQueue& mainQueue() {
    static auto* const queue = new DispatchMainQueue();
    return *queue;
}

std::string queueLabel(const char* suffix) {
    NSString* identifier = NSBundle.mainBundle.bundleIdentifier;
    return (identifier ? text(identifier) : std::string("kova-agent")) + suffix;
}

/// The folder of the log, which the system does not empty.
std::string logFolder() {
    NSFileManager* files = NSFileManager.defaultManager;
    NSURL* library = [files URLsForDirectory:NSLibraryDirectory inDomains:NSUserDomainMask].firstObject;
    NSURL* folder = [library URLByAppendingPathComponent:@"Logs/KOVA" isDirectory:YES];
    [files createDirectoryAtURL:folder
        withIntermediateDirectories:YES
                         attributes:@{
                             NSFilePosixPermissions : @0700
                         }
                              error:nil];
    return text(folder.path);
}

} // namespace

/// Each part is declared after the parts that it uses.
struct MacAgent::Parts {
    Parts() :
        agent({.workspace = {accessibility, applications, screens, session, changes, preferences, mainQueue(),
                             pollingQueue, alerts},
               .shell = {.pointer = &pointer,
                         .dividerHandles = &dividerHandles,
                         .systemActivity = {&systemActivity},
                         .keys = &keys,
                         .launchAtLogin = &loginItem,
                         .dockAutoHide = &dock,
                         .onboarding = &onboarding,
                         .userInterface = &userInterface},
               .diagnostics = {&diagnostics},
               .quit = quitMacAgent,
               .documentPanels = &panels,
               .updates = updates.get()}) {}

    UserDefaultsStore preferences;
    MacAccessibility accessibility{mainQueue()};
    MacChangeObservers changes{mainQueue(), accessibility};
    MacApplications applications{mainQueue(), accessibility};
    MacScreens screens;
    MacSession session;
    MacSystemActivity systemActivity;
    MacPointerMonitor pointer{mainQueue()};
    MacKeyMonitors keys{mainQueue()};
    MacDividerHandles dividerHandles{mainQueue()};
    MacAlerts alerts;
    MacDiagnostics diagnostics{accessibility, applications};
    MacOnboarding onboarding;
    MainAppLoginItem loginItem;
    ProcessRunner runner;
    DispatchWorkQueue commandQueue{queueLabel(".commands")};
    SystemDockAutoHideService dock{runner, commandQueue, mainQueue()};
    DispatchWorkQueue diskQueue{queueLabel(".disk")};
    MacDocumentPanels panels{mainQueue(), diskQueue};
    MacChildProcesses children{mainQueue()};
    UserInterfaceProcess userInterface{[] { return findUserInterface(text(NSBundle.mainBundle.executablePath)); },
                                       controlSocketPlace().path, mainQueue(), children};
    std::unique_ptr<UpdateChecker> updates = makeUpdateChecker();
    DispatchWorkQueue pollingQueue{queueLabel(".window-snapshot")};
    SessionAgent agent;
    std::optional<MenuBar> menuBar; // absent until the agent has started
    // Without this activity the system slows down timers of an application without windows (App Nap). The machine may
    // still sleep.
    id<NSObject> activity =
        [NSProcessInfo.processInfo beginActivityWithOptions:NSActivityUserInitiatedAllowingIdleSystemSleep
                                                     reason:@"Windows are kept in their tiles"];
};

MacAgent::MacAgent(const AgentOptions& options) : options_(options) {
    std::signal(SIGPIPE, SIG_IGN);
    openAgentLog(logFolder(), options_);
}

MacAgent::~MacAgent() {
    stop();
    closeLog();
}

std::optional<int> MacAgent::start() {
    const auto report = [this](const std::string& problem) {
        reportProblem(options_, problem);
        startProblem_ = problem;
    };
    auto claim = SessionAgent::claimSession(report);
    if (!claim) return kExitSessionNotTaken;
    parts_ = std::make_unique<Parts>();
    if (const auto problem = parts_->agent.start(std::move(*claim))) {
        report(*problem);
        parts_.reset();
        return kExitFailed;
    }
    isStarted_ = true;
    parts_->menuBar.emplace(parts_->agent.menu());
    const KovaOnboardingWindowController* introduction = parts_->agent.delegate().onboardingWindow();
    noteOpened(introduction && introduction->isShown() ? OpenedWindow::ofUserInterface : OpenedWindow::none);
    openURLs(std::exchange(waitingURLs_, {}));
    return std::nullopt;
}

void MacAgent::stop() {
    if (std::exchange(isStarted_, false)) parts_->agent.stop();
    parts_.reset();
}

void MacAgent::openURLs(const std::vector<std::string>& urls) {
    if (urls.empty()) return;
    noteOpened(OpenedWindow::none);
    if (isStarted_) return parts_->agent.openURLs(urls);
    waitingURLs_.insert(waitingURLs_.end(), urls.begin(), urls.end());
}

void MacAgent::noteOpened(OpenedWindow window) {
    activationReturn_.noteOpened(mainQueue().uptime(), window);
    if (NSApp.active) useActivation();
}

void MacAgent::useActivation() {
    const OwnDialog dialog = hasDialog() ? OwnDialog::shown : OwnDialog::none;
    switch (activationReturn_.use(mainQueue().uptime(), dialog)) {
    case ActivationUse::keep:
        return;
    case ActivationUse::giveBack:
        return returnActivation();
    case ActivationUse::passToUserInterface:
        return passActivationTo(text(NSBundle.mainBundle.bundleIdentifier) + ".ui");
    }
}

void MacAgent::reopen() {
    if (!parts_ || !parts_->menuBar) return;
    KovaSettingsWindowController* settings = parts_->agent.delegate().settingsWindow();
    if (!settings || settings->show(std::nullopt)) return parts_->menuBar->open();
    noteOpened(OpenedWindow::ofUserInterface);
}

void quitMacAgent() {
    // Posted, so that no function of the agent runs while its parts are destroyed.
    mainQueue().post([] { [NSApp terminate:nil]; });
}

} // namespace kova
