// The contract tests on a Mac. The tests open windows on the desktop, so the test program needs the accessibility
// permission. Do not use the mouse and the keyboard while the tests run.
#include "platform/macos/CoreFoundation.h"
#include "platform/macos/DispatchQueues.h"
#include "platform/macos/MacAccessibility.h"
#include "platform/macos/MacApplications.h"
#include "platform/macos/MacChangeObservers.h"
#include "platform/macos/MacDividerHandles.h"
#include "platform/macos/MacKeyMonitors.h"
#include "platform/macos/MacPointerMonitor.h"
#include "platform/macos/MacScreens.h"
#include "platform/macos/MacSystemActivity.h"
#include "platform/macos/UserDefaultsStore.h"
#include "tests/contract/ContractDesktop.h"
#include "tests/contract/PreferencesContract.h"
#include "tests/contract/QueueContract.h"
#include "tests/contract/SessionContract.h"

#import <AppKit/AppKit.h>

#include <atomic>
#include <csignal>
#include <map>
#include <optional>
#include <thread>

namespace kova::contract {
namespace {

using namespace macos;

DispatchMainQueue& mainQueue() {
    static auto* const queue = new DispatchMainQueue();
    return *queue;
}

void runMainLoopFor(Seconds time) {
    @autoreleasepool {
        [NSApplication sharedApplication];
        NSDate* end = [NSDate dateWithTimeIntervalSinceNow:time.count()];
        do {
            NSEvent* event = [NSApp nextEventMatchingMask:NSEventMaskAny
                                                untilDate:end
                                                   inMode:NSDefaultRunLoopMode
                                                  dequeue:YES];
            if (event) [NSApp sendEvent:event];
        } while (end.timeIntervalSinceNow > 0);
    }
}

/// Makes an application bundle with the client's program. The bundle is in the user's Applications folder, where the
/// system finds it.
NSURL* makeBundle(const std::string& name) {
    NSFileManager* files = NSFileManager.defaultManager;
    NSURL* home = [files URLsForDirectory:NSApplicationDirectory inDomains:NSUserDomainMask].firstObject;
    NSURL* bundle = [home URLByAppendingPathComponent:nsString("KOVA contract tests/" + name + ".app")];
    NSURL* programs = [bundle URLByAppendingPathComponent:@"Contents/MacOS"];
    [files removeItemAtURL:bundle error:nil];
    [files createDirectoryAtURL:programs withIntermediateDirectories:YES attributes:nil error:nil];
    [files copyItemAtPath:@KOVA_CONTRACT_CLIENT
                   toPath:[programs URLByAppendingPathComponent:nsString(name)].path
                    error:nil];
    NSDictionary* information = @{
        @"CFBundleExecutable" : nsString(name),
        @"CFBundleIdentifier" : nsString("org.example.kova-test." + name),
        @"CFBundleName" : nsString(name),
        @"CFBundlePackageType" : @"APPL"
    };
    [information writeToURL:[bundle URLByAppendingPathComponent:@"Contents/Info.plist"] error:nil];
    LSRegisterURL((__bridge CFURLRef)bundle, true);
    return bundle;
}

/// A running client program, which carries out commands.
class Client {
  public:
    explicit Client(const std::string& name) {
        task_.executableURL = [makeBundle(name) URLByAppendingPathComponent:nsString("Contents/MacOS/" + name)];
        task_.arguments = @[ @"--commands" ];
        task_.standardInput = commands_;
        task_.standardOutput = responses_;
        NSError* error = nil;
        EXPECT_TRUE([task_ launchAndReturnError:&error]) << macos::text(error.localizedDescription);
    }
    ~Client() { kill(); }
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    pid_t process() const { return task_.processIdentifier; }
    void kill() {
        if (task_.running) ::kill(task_.processIdentifier, SIGKILL);
        [task_ waitUntilExit];
    }
    /// Sends a command and returns the words of the response; none if the client has ended.
    NSArray<NSString*>* send(const std::vector<std::string>& words) {
        std::string line;
        for (const auto& word : words) line += (line.empty() ? "" : "\t") + word;
        line += '\n';
        [commands_.fileHandleForWriting writeData:[NSData dataWithBytes:line.data() length:line.size()]];
        while (pending_.find('\n') == std::string::npos) {
            NSData* read = responses_.fileHandleForReading.availableData;
            if (read.length == 0) return @[];
            pending_.append(static_cast<const char*>(read.bytes), read.length);
        }
        const auto end = pending_.find('\n');
        NSString* response = nsString(pending_.substr(0, end));
        pending_.erase(0, end + 1);
        return [response componentsSeparatedByString:@"\t"];
    }

  private:
    NSTask* task_ = [[NSTask alloc] init];
    NSPipe* commands_ = [NSPipe pipe];
    NSPipe* responses_ = [NSPipe pipe];
    std::string pending_;
};

class MacStage final : public ContractDesktop {
  public:
    bool can(Ability ability) const override {
        return ability != Ability::pluggingInDisplays && ability != Ability::withdrawingPermission &&
               ability != Ability::grabbingKeys && ability != Ability::openingDialogs;
    }
    pid_t open(const NewWindow& newWindow) override {
        auto& client = clients_[newWindow.application];
        if (!client) client = std::make_unique<Client>(newWindow.application);
        owners_[newWindow.title] = client.get();
        auto words = wordsOf("open", newWindow.title, newWindow.frame);
        words.push_back(std::to_string(newWindow.minimumSize ? newWindow.minimumSize->width : 0));
        words.push_back(std::to_string(newWindow.minimumSize ? newWindow.minimumSize->height : 0));
        send(newWindow.title, words);
        return client->process();
    }
    void retitle(const std::string& title, const std::string& newTitle) override {
        send(title, {"retitle", title, newTitle});
        owners_[newTitle] = owners_.at(title);
        owners_.erase(title);
    }
    void close(const std::string& title) override { send(title, {"close", title}); }
    void userMoves(const std::string& title, const CGRect& frame) override {
        send(title, wordsOf("move", title, frame));
    }
    void userMinimizes(const std::string& title) override { send(title, {"minimize", title}); }
    void crash(const std::string& application) override {
        Client* ended = clients_.at(application).get();
        std::erase_if(owners_, [&](const auto& owner) { return owner.second == ended; });
        clients_.erase(application);
    }
    CGRect frame(const std::string& title) override {
        NSArray<NSString*>* edges = owners_.at(title)->send({"frame", title});
        if (edges.count != 4) return {};
        return makeRect(edges[0].doubleValue, edges[1].doubleValue, edges[2].doubleValue, edges[3].doubleValue);
    }
    void plugInPrimaryDisplay() override {}
    void withdrawPermission() override {}
    void destroyDesktop() override {
        changes_.reset();
        applications_.reset();
        keys_.reset();
        pointer_.reset();
    }
    void press(CGPoint point) override { mouse(kCGEventLeftMouseDown, point); }
    void movePointer(CGPoint point) override {
        mouse(isPressed_ ? kCGEventLeftMouseDragged : kCGEventMouseMoved, point);
    }
    void releaseButton() override { mouse(kCGEventLeftMouseUp, pointerPosition_); }
    void pressKey(KeyCombination combination) override {
        for (const bool isDown : {true, false}) {
            const auto event =
                Owned<CGEventRef>::adopt(CGEventCreateKeyboardEvent(nullptr, combination.keyCode, isDown));
            CGEventSetFlags(event.get(), static_cast<CGEventFlags>(combination.modifierFlags));
            CGEventPost(kCGHIDEventTap, event.get());
        }
        runFor(Seconds(0.05));
    }
    void claimForOther(KeyCombination) override {}
    LaunchableApplication install(const std::string& name) override {
        makeBundle(name);
        std::optional<LaunchableApplication> known;
        const auto isKnown = [&] {
            return (known = applications_->launchableApplication("org.example.kova-test." + name)).has_value();
        };
        EXPECT_TRUE(runUntil(isKnown)) << name;
        return known.value_or(LaunchableApplication{});
    }
    void uninstall(const std::string& name) override {
        [NSFileManager.defaultManager removeItemAtURL:makeBundle(name) error:nil];
    }

    AccessibilityServicing& accessibility() override { return accessibility_; }
    ApplicationServicing& applications() override { return *applications_; }
    ScreenServicing& screens() override { return screens_; }
    DesktopChangeServicing& changes() override { return *changes_; }
    PointerMonitorServicing& pointer() override { return *pointer_; }
    DividerHandleServicing& handles() override { return handles_; }
    KeyMonitorServicing& keys() override { return *keys_; }

    void onPollingQueue(const std::function<void()>& job) override {
        std::atomic<bool> isDone = false;
        std::thread polling([&] {
            @autoreleasepool {
                job();
            }
            isDone = true;
        });
        while (!isDone) runFor(Seconds(0.002));
        polling.join();
    }
    bool runUntil(const std::function<bool()>& condition) override {
        const Seconds end = mainQueue().uptime() + Seconds(20);
        while (!condition()) {
            if (mainQueue().uptime() > end) return false;
            runFor(Seconds(0.005));
        }
        return true;
    }
    void runFor(Seconds time) override { runMainLoopFor(time); }

  private:
    static std::vector<std::string> wordsOf(const std::string& command, const std::string& title, const CGRect& r) {
        return {command,
                title,
                std::to_string(minX(r)),
                std::to_string(minY(r)),
                std::to_string(r.size.width),
                std::to_string(r.size.height)};
    }
    void send(const std::string& title, const std::vector<std::string>& words) {
        EXPECT_EQ(macos::text(owners_.at(title)->send(words).firstObject), "done") << words.front();
    }
    void mouse(CGEventType type, CGPoint point) {
        pointerPosition_ = point;
        isPressed_ = type == kCGEventLeftMouseDown || type == kCGEventLeftMouseDragged;
        const auto event = Owned<CGEventRef>::adopt(CGEventCreateMouseEvent(nullptr, type, point, kCGMouseButtonLeft));
        CGEventPost(kCGHIDEventTap, event.get());
        runFor(Seconds(0.05));
    }

    MacAccessibility accessibility_{mainQueue()};
    std::optional<MacChangeObservers> changes_{std::in_place, mainQueue(), accessibility_};
    std::optional<MacApplications> applications_{std::in_place, mainQueue(), accessibility_};
    MacScreens screens_;
    std::optional<MacPointerMonitor> pointer_{std::in_place, mainQueue()};
    MacDividerHandles handles_{mainQueue()};
    std::optional<MacKeyMonitors> keys_{std::in_place, mainQueue()};
    std::map<std::string, std::unique_ptr<Client>> clients_; // by the application's name
    std::map<std::string, Client*> owners_;                  // by the window's title
    CGPoint pointerPosition_{};
    bool isPressed_ = false;
};

INSTANTIATE_TEST_SUITE_P(Mac, DesktopContract,
                         ::testing::Values(Backend{
                             "Mac",
                             AXIsProcessTrusted() ? "" : "the test program may not use the accessibility interface",
                             [] { return std::make_unique<MacStage>(); }}),
                         nameOf);

/// The test posts the system's notifications itself. It does not post those of the screen lock, since other
/// applications would act on them.
class MacSessionStage final : public SessionStage {
  public:
    SystemActivityServicing& activity() override { return activity_; }
    SessionServicing& session() override { return session_; }
    void simulate(SystemActivityEvent event) override {
        NSArray<NSNotificationName>* names = @[
            NSWorkspaceWillSleepNotification, NSWorkspaceDidWakeNotification, NSWorkspaceScreensDidSleepNotification,
            NSWorkspaceScreensDidWakeNotification, NSWorkspaceSessionDidResignActiveNotification,
            NSWorkspaceSessionDidBecomeActiveNotification
        ];
        NSNotificationName name = names[static_cast<NSUInteger>(event)];
        mainQueue().post(
            [name] { [NSWorkspace.sharedWorkspace.notificationCenter postNotificationName:name object:nil]; });
    }
    bool runUntil(const std::function<bool()>& condition) override {
        for (int i = 0; i < 400 && !condition(); ++i) runFor(Seconds(0.05));
        return condition();
    }
    void runFor(Seconds time) override { runMainLoopFor(time); }
    bool canSimulate(SystemActivityEvent event) const override {
        return event != SystemActivityEvent::screenDidLock && event != SystemActivityEvent::screenDidUnlock;
    }

  private:
    MacSystemActivity activity_;
    MacSession session_;
};

INSTANTIATE_TEST_SUITE_P(Mac, SessionContract,
                         ::testing::Values(SessionBackend{"Mac", "",
                                                          [] { return std::make_unique<MacSessionStage>(); }}),
                         [](const auto& chosen) { return chosen.param.name; });

class DispatchStage final : public QueueStage {
  public:
    MainQueue& queue() override { return mainQueue(); }
    void runFor(Seconds time) override { runMainLoopFor(time); }
    std::unique_ptr<WorkQueue> makeWorker() override { return std::make_unique<DispatchWorkQueue>("worker"); }
    void beBusyFor(Seconds time) override { std::this_thread::sleep_for(time); }
};

INSTANTIATE_TEST_SUITE_P(Mac, QueueContract,
                         ::testing::Values(QueueBackend{"Dispatch", [] { return std::make_unique<DispatchStage>(); }}),
                         [](const auto& chosen) { return chosen.param.name; });

/// Uses the defaults of the test program itself, and removes KOVA's keys from them before and after each test.
class UserDefaultsStage final : public PreferencesStage {
  public:
    UserDefaultsStage() { clear(); }
    ~UserDefaultsStage() override { clear(); }
    PreferencesStore& store() override { return *store_; }
    void reopen() override { store_ = std::make_unique<UserDefaultsStore>(); }

  private:
    static void clear() {
        NSUserDefaults* defaults = NSUserDefaults.standardUserDefaults;
        for (NSString* key in defaults.dictionaryRepresentation.allKeys) {
            if ([key hasPrefix:@"KOVA."]) [defaults removeObjectForKey:key];
        }
    }
    std::unique_ptr<UserDefaultsStore> store_ = std::make_unique<UserDefaultsStore>();
};

INSTANTIATE_TEST_SUITE_P(Mac, PreferencesContract,
                         ::testing::Values(PreferencesBackend{"UserDefaults",
                                                              [] { return std::make_unique<UserDefaultsStage>(); }}),
                         [](const auto& chosen) { return chosen.param.name; });

} // namespace
} // namespace kova::contract
