// The program on a Mac: an application without a Dock icon, whose delegate starts the agent once it is launched and
// stops it before it ends.

#include "agent/MacAgent.h"
#include "app/SystemArguments.h"
#include "platform/macos/Contained.h"
#include "platform/macos/EditMenu.h"
#include "platform/macos/Modal.h"

#import <AppKit/AppKit.h>

#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <vector>

namespace {

constexpr const char* kHelp =
    R"(usage: kova-agent [OPTION]...

Divides each display into tiles and keeps the windows of this session in them. It runs until it is told to quit;
control it with "kova". Each session has at most one agent.

  --foreground   write the log to the terminal, too
  --verbose      log in detail, including window titles and application names
  --version      print the version and exit
  --help         print this help and exit

The log is ~/Library/Logs/KOVA/agent.log, the preferences are in the user's defaults.
)";

} // namespace

@interface KOVAApplicationDelegate : NSObject <NSApplicationDelegate>
- (instancetype)initWithOptions:(const kova::AgentOptions&)options;
@end

@implementation KOVAApplicationDelegate {
    std::unique_ptr<kova::MacAgent> _agent;
    NSMutableArray<dispatch_source_t>* _stopSignals;
}

- (instancetype)initWithOptions:(const kova::AgentOptions&)options {
    self = [super init];
    if (self) {
        _agent = std::make_unique<kova::MacAgent>(options);
        _stopSignals = [NSMutableArray array];
    }
    return self;
}

- (void)applicationWillFinishLaunching:(NSNotification*)__unused notification {
    kova::macos::installEditMenu();
}

- (void)applicationDidFinishLaunching:(NSNotification*)__unused notification {
    [NSApp setActivationPolicy:NSApplicationActivationPolicyAccessory];
    [NSApp setApplicationIconImage:[NSImage imageNamed:@"AppIcon"]];
    [self listenToStopSignals];
    std::optional<int> exitCode = kova::kExitFailed; // remains if an exception ends the start
    kova::macos::contained([&] { exitCode = self->_agent->start(); });
    if (exitCode) {
        [self showStartProblem];
        _agent.reset();
        std::exit(*exitCode);
    }
}

/// A user who opened the application in the Finder sees neither the log nor the terminal.
- (void)showStartProblem {
    if (isatty(STDERR_FILENO)) return;
    std::string problem = _agent->startProblem();
    if (problem.empty()) { // an exception, which is in the log
        problem =
            "KOVA ended unexpectedly while it started. Open the log for the reason: ~/Library/Logs/KOVA/agent.log";
    }
    NSAlert* alert = [[NSAlert alloc] init];
    alert.alertStyle = NSAlertStyleCritical;
    alert.messageText = @"KOVA could not start";
    alert.informativeText = kova::macos::nsString(problem);
    (void)kova::macos::runAlert(alert);
}

- (void)applicationDidBecomeActive:(NSNotification*)__unused notification {
    kova::macos::contained([&] {
        if (self->_agent) self->_agent->useActivation();
    });
}

/// The system logs a warning about applications without this method.
- (BOOL)applicationSupportsSecureRestorableState:(NSApplication*)__unused application {
    return YES;
}

- (void)applicationWillTerminate:(NSNotification*)__unused notification {
    kova::macos::contained([&] { self->_agent.reset(); });
}

- (void)application:(NSApplication*)__unused application openURLs:(NSArray<NSURL*>*)urls {
    kova::macos::contained([&] {
        std::vector<std::string> texts;
        for (NSURL* url in urls) texts.push_back(kova::macos::text(url.absoluteString));
        if (self->_agent) self->_agent->openURLs(texts);
    });
}

/// Shows a window when the user opens KOVA again, since the notch of a display may cover the menu-bar item.
- (BOOL)applicationShouldHandleReopen:(NSApplication*)__unused application hasVisibleWindows:(BOOL)__unused flag {
    kova::macos::contained([&] {
        if (self->_agent) self->_agent->reopen();
    });
    return NO;
}

- (void)listenToStopSignals {
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
        std::signal(number, SIG_IGN); // the dispatch source still receives the signal
        dispatch_source_t source = dispatch_source_create(DISPATCH_SOURCE_TYPE_SIGNAL, static_cast<uintptr_t>(number),
                                                          0, dispatch_get_main_queue());
        dispatch_source_set_event_handler(source, ^{
          // A second signal ends the process at once.
          for (const int each : {SIGTERM, SIGINT, SIGHUP}) std::signal(each, SIG_DFL);
          kova::macos::contained(kova::quitMacAgent);
        });
        dispatch_resume(source);
        [_stopSignals addObject:source];
    }
}

@end

int main(int argc, char** argv) {
    @autoreleasepool {
        auto arguments = kova::withoutSystemArguments({argv + (argc > 0 ? 1 : 0), argv + argc});
        const auto options = kova::readAgentOptions(arguments, kHelp);
        if (const auto* exitCode = std::get_if<int>(&options)) return *exitCode;
        NSApplication* application = NSApplication.sharedApplication;
        // The application does not own its delegate.
        static KOVAApplicationDelegate* delegate = nil;
        delegate = [[KOVAApplicationDelegate alloc] initWithOptions:std::get<kova::AgentOptions>(options)];
        application.delegate = delegate;
        [application run];
    }
    return EXIT_SUCCESS;
}
