#include "app/AppDelegate.h"
#include "app/SystemDockAutoHideService.h"
#include "persistence/MemoryPreferencesStore.h"
#include "persistence/PreferenceKeys.h"
#include "platform/simulated/SimulatedDesktop.h"
#include "support/Log.h"

#include <gtest/gtest.h>

#include <deque>

namespace kova {
namespace {

/// Captures the log as long as this object exists.
class CapturedLog {
  public:
    CapturedLog() {
        setLogWriter([this](LogLevel, const std::string& text) { lines.push_back(text); }, LogLevel::note);
    }
    ~CapturedLog() { setLogWriter({}, LogLevel::note); }
    std::vector<std::string> lines;
};

class ScriptedLoginItem final : public LaunchAtLoginServicing {
  public:
    LaunchAtLoginStatus status() const override { return now; }
    std::optional<std::string> registerAtLogin() override { return change(registered); }
    std::optional<std::string> unregisterAtLogin() override { return change(LaunchAtLoginStatus::notRegistered); }

    LaunchAtLoginStatus now = LaunchAtLoginStatus::notRegistered;
    LaunchAtLoginStatus registered = LaunchAtLoginStatus::enabled; // the status after registering
    std::optional<std::string> problem;

  private:
    std::optional<std::string> change(LaunchAtLoginStatus next) {
        if (!problem) now = next;
        return problem;
    }
};

TEST(LaunchAtLogin, ShowsTheStateOfTheSystemAfterTheRequest) {
    CapturedLog log;
    MemoryPreferencesStore defaults;
    ScriptedLoginItem item;
    LaunchAtLoginController controller(item, defaults);
    const auto expect = [&](bool starts, const std::optional<std::string>& error, std::optional<bool> stored,
                            const std::string& line) {
        EXPECT_EQ(*controller.startsAtLogin(), starts) << line;
        EXPECT_EQ(*controller.errorMessage(), error) << line;
        EXPECT_EQ(defaults.boolean(preferenceKey::startAtLogin), stored) << line;
        EXPECT_EQ(log.lines.empty() ? "" : log.lines.back(), line);
    };
    item.now = LaunchAtLoginStatus::enabled;
    controller.refreshStatus();
    expect(true, std::nullopt, std::nullopt, ""); // a change in the system's settings is not stored
    controller.setStartsAtLogin(false);
    expect(false, std::nullopt, false, "KOVA removed as a login item");
    controller.setStartsAtLogin(true);
    expect(true, std::nullopt, true, "KOVA registered as a login item");
    item.problem = "the disk is full";
    controller.setStartsAtLogin(false);
    expect(true, "the disk is full", false, "Unable to update KOVA login item: the disk is full");
    item.problem.reset();
    item.registered = LaunchAtLoginStatus::requiresApproval;
    controller.setStartsAtLogin(true);
    expect(false, "Allow KOVA under System Settings → General → Login Items.", true, "KOVA registered as a login item");
    controller.refreshStatus();
    EXPECT_TRUE(*controller.errorMessage()) << "the user has not approved it yet";
    item.now = LaunchAtLoginStatus::enabled;
    controller.refreshStatus();
    expect(true, std::nullopt, true, "KOVA registered as a login item");
}

/// A Dock with simulated commands: records the commands and returns the results that each test sets.
class Dock : public ::testing::Test, public ProcessRunning, public WorkQueue {
  protected:
    ProcessOutcome run(const std::string& program, const std::vector<std::string>& arguments, Seconds) override {
        std::string words = program;
        for (const auto& argument : arguments) words += " " + argument;
        if (arguments.front() == "read") return isSet ? outcome(isHidden ? "1\n" : "0\n") : failing("does not exist");
        commands += words + "\n";
        if (!failure.empty() && program.ends_with(failure)) return failing("Could not write domain\n");
        if (arguments.front() == "write") {
            isHidden = arguments.back() == "true";
            isSet = true;
        }
        return outcome("");
    }
    void post(std::function<void()> job) override { jobs.push_back(std::move(job)); }

    static ProcessOutcome outcome(std::string text) {
        return {.ending = ProcessOutcome::Ending::exited, .exitCode = 0, .output = std::move(text), .problem = {}};
    }
    static ProcessOutcome failing(std::string text) {
        return {.ending = ProcessOutcome::Ending::exited, .exitCode = 1, .output = {}, .problem = std::move(text)};
    }
    void settle() {
        for (desktop.queue().runDue(); !jobs.empty(); desktop.queue().runDue()) {
            const auto job = std::move(jobs.front());
            jobs.pop_front();
            job();
        }
    }
    std::string takeCommands() { return std::exchange(commands, {}); }

    SimulatedDesktop desktop;
    MemoryPreferencesStore defaults;
    SystemDockAutoHideService service{*this, *this, desktop.queue()};
    DockAutoHideController controller{service, defaults};
    CapturedLog log;
    std::deque<std::function<void()>> jobs;
    std::string commands;
    std::string failure; // the end of the name of the command that fails
    bool isHidden = false;
    bool isSet = false; // whether the Dock's setting has a value
};

constexpr const char* kHide = "/usr/bin/defaults write com.apple.dock autohide -bool true\n/usr/bin/killall Dock\n";
constexpr const char* kShow = "/usr/bin/defaults write com.apple.dock autohide -bool false\n/usr/bin/killall Dock\n";

TEST_F(Dock, IsRestartedOnlyIfItsStateDiffersFromTheSetting) {
    controller.setHidesSystemDock(true);
    EXPECT_EQ(takeCommands(), "") << "the main queue does not wait for a command";
    settle();
    EXPECT_EQ(takeCommands(), kHide);
    EXPECT_EQ(log.lines.back(), "macOS Dock auto-hide set to true");
    controller.setHidesSystemDock(true);
    settle();
    EXPECT_EQ(takeCommands(), "");
    controller.setHidesSystemDock(false);
    settle();
    EXPECT_EQ(takeCommands(), kShow);
    controller.setHidesSystemDock(true); // changed back before a command has run
    controller.setHidesSystemDock(false);
    settle();
    EXPECT_EQ(takeCommands(), "");
    EXPECT_EQ(defaults.boolean(preferenceKey::hideSystemDock), false);
}

TEST_F(Dock, ReportsTheFailedCommandAndItsErrorText) {
    failure = "defaults";
    controller.setHidesSystemDock(true);
    settle();
    EXPECT_EQ(takeCommands(), "/usr/bin/defaults write com.apple.dock autohide -bool true\n"); // and no restart
    EXPECT_EQ(*controller.errorMessage(), "Unable to run defaults: Could not write domain");
    EXPECT_EQ(log.lines.back(), *controller.errorMessage());
    failure = "killall";
    controller.applyDockPreference();
    settle();
    EXPECT_EQ(*controller.errorMessage(), "Unable to run killall: Could not write domain");
    failure = {};
    isHidden = false;
    controller.applyDockPreference();
    settle();
    EXPECT_EQ(*controller.errorMessage(), std::nullopt);
}

TEST_F(Dock, IsChangedAtTheStartOnlyIfTheUserChoseToHideIt) {
    struct Case {
        std::optional<bool> chosen;
        bool isHidden;
        const char* commands;
        bool isSwitchOn;
    };
    const std::vector<Case> cases = {
        {std::nullopt, false, "", false}, {std::nullopt, true, "", true}, {false, true, "", true},
        {true, true, "", true},           {true, false, kHide, true},
    };
    for (const Case& c : cases) {
        MemoryPreferencesStore preferences;
        if (c.chosen) preferences.setValue(preferenceKey::hideSystemDock, *c.chosen);
        isHidden = c.isHidden;
        isSet = true;
        AppDelegate delegate({desktop, desktop, desktop, desktop, desktop, preferences, desktop.queue(),
                              desktop.pollingQueue(), desktop},
                             {.dockAutoHide = &service});
        delegate.applicationDidFinishLaunching();
        settle();
        EXPECT_EQ(takeCommands(), c.commands);
        EXPECT_EQ(*delegate.dockAutoHide()->hidesSystemDock(), c.isSwitchOn);
        EXPECT_EQ(*delegate.dockAutoHide()->isPreferenceConfigured(), c.chosen.has_value());
        EXPECT_EQ(preferences.boolean(preferenceKey::hideSystemDock), c.chosen);
    }
}

class ScriptedOnboarding final : public OnboardingServicing {
  public:
    void showOnboarding(std::optional<OnboardingOffer> offered, std::function<void()> request) override {
        ++timesShown;
        offer = std::move(offered);
        requestPermission = std::move(request);
    }
    void closeOnboarding() override { ++timesClosed; }
    void openPermissionSettings() override { ++timesSettingsOpened; }
    int timesShown = 0;
    int timesClosed = 0;
    int timesSettingsOpened = 0;
    std::optional<OnboardingOffer> offer;
    std::function<void()> requestPermission;
};

TEST_F(Dock, IsOfferedToANewUserAndChangedOnlyIfAccepted) {
    ScriptedOnboarding onboarding;
    desktop.setTrusted(false);
    AppDelegate delegate(
        {desktop, desktop, desktop, desktop, desktop, defaults, desktop.queue(), desktop.pollingQueue(), desktop},
        {.dockAutoHide = &service, .onboarding = &onboarding});
    delegate.applicationDidFinishLaunching();
    settle();
    ASSERT_TRUE(onboarding.offer);
    EXPECT_FALSE(onboarding.offer->isOn());
    EXPECT_EQ(takeCommands(), "");
    onboarding.offer->choose(true);
    settle();
    EXPECT_TRUE(onboarding.offer->isOn());
    EXPECT_EQ(takeCommands(), kHide);
}

TEST(Onboarding, IsShownUntilThePermissionIsGrantedAndNeverAgain) {
    SimulatedDesktop desktop;
    MemoryPreferencesStore preferences;
    ScriptedOnboarding onboarding;
    const auto start = [&](bool isTrusted) {
        desktop.setTrusted(isTrusted);
        AppDelegate delegate({desktop, desktop, desktop, desktop, desktop, preferences, desktop.queue(),
                              desktop.pollingQueue(), desktop},
                             {.onboarding = &onboarding});
        delegate.applicationDidFinishLaunching();
        return *delegate.onboarding().isCompleted();
    };
    EXPECT_FALSE(start(false));
    EXPECT_EQ(onboarding.timesShown, 1);
    EXPECT_EQ(onboarding.timesClosed, 1); // closed when the workspace stopped
    EXPECT_TRUE(start(true));
    EXPECT_EQ(preferences.boolean(preferenceKey::onboardingCompleted), true);
    EXPECT_TRUE(start(false));
    EXPECT_EQ(onboarding.timesShown, 1);
}

TEST(Onboarding, ShowsTheSystemsDialogFirstAndThenItsSettings) {
    SimulatedDesktop desktop;
    MemoryPreferencesStore preferences;
    ScriptedOnboarding onboarding;
    desktop.setTrusted(false);
    AppDelegate delegate(
        {desktop, desktop, desktop, desktop, desktop, preferences, desktop.queue(), desktop.pollingQueue(), desktop},
        {.onboarding = &onboarding});
    delegate.applicationDidFinishLaunching();
    onboarding.requestPermission();
    EXPECT_EQ(desktop.promptCount(), 1);
    delegate.permission().ask();
    EXPECT_EQ(desktop.promptCount(), 1);
    EXPECT_EQ(onboarding.timesSettingsOpened, 1);

    desktop.setTrusted(true);
    desktop.queue().advance(Seconds(1));
    EXPECT_TRUE(*delegate.onboarding().isCompleted());
    EXPECT_EQ(onboarding.timesClosed, 1) << "the permission was granted while the dialog was open";
}

} // namespace
} // namespace kova
