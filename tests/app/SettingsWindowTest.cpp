#include "app/AppDelegate.h"
#include "app/KovaMenuBarContent.h"
#include "persistence/MemoryPreferencesStore.h"
#include "platform/simulated/SimulatedDesktop.h"

#include <gtest/gtest.h>

namespace kova {
namespace {

class FakeUserInterface final : public UserInterfaceServicing {
  public:
    std::optional<std::string> unavailableReason() const override { return missing; }
    void start(std::function<void(UserInterfaceEnd)> ended) override {
        isRunning = true;
        ended_ = std::move(ended);
    }
    void end() override { isRunning = false; }
    std::optional<pid_t> process() const override { return isRunning ? std::optional<pid_t>(4711) : std::nullopt; }
    void closeByUser() {
        isRunning = false;
        ended_(UserInterfaceEnd::byItself);
    }

    std::optional<std::string> missing;
    bool isRunning = false;

  private:
    std::function<void(UserInterfaceEnd)> ended_;
};

class SwitchableLoginItem final : public LaunchAtLoginServicing {
  public:
    LaunchAtLoginStatus status() const override { return now; }
    std::optional<std::string> registerAtLogin() override { return "not here"; }
    std::optional<std::string> unregisterAtLogin() override { return "not here"; }
    LaunchAtLoginStatus now = LaunchAtLoginStatus::notRegistered;
};

class SettingsWindow : public ::testing::Test {
  protected:
    SettingsWindow() { desktop.addDisplay({.name = "A"}); }
    std::optional<OverlayShownWindow> shown() {
        OverlayContents contents;
        delegate.overlay().update(contents, kEveryOverlaySection);
        return contents.windows.settings;
    }

    SimulatedDesktop desktop;
    MemoryPreferencesStore preferences;
    FakeUserInterface program;
    SwitchableLoginItem loginItem;
    AppDelegate delegate{
        {desktop, desktop, desktop, desktop, desktop, preferences, desktop.queue(), desktop.pollingQueue(), desktop},
        {.launchAtLogin = &loginItem, .userInterface = &program}};
};

TEST_F(SettingsWindow, IsShownOnlyOnRequestAndThenReadsTheSystemSettings) {
    EXPECT_FALSE(delegate.settingsWindow()) << "before `applicationDidFinishLaunching` there is none";
    delegate.applicationDidFinishLaunching();
    EXPECT_EQ(shown(), std::nullopt);
    loginItem.now = LaunchAtLoginStatus::enabled; // the user enables it in the system's settings
    EXPECT_EQ(delegate.settingsWindow()->show("about"), std::nullopt);
    EXPECT_EQ(shown(), (OverlayShownWindow{"about", 1}));
    EXPECT_TRUE(*delegate.launchAtLogin()->startsAtLogin());
    KovaMenuBarContent menu({.delegate = delegate});
    EXPECT_TRUE(menu.choose("settings"));
    EXPECT_EQ(shown(), (OverlayShownWindow{std::nullopt, 2}));
    delegate.stopWorkspace();
    EXPECT_TRUE(delegate.settingsWindow()->isShown()) << "the settings window stays open without a workspace";
    delegate.settingsWindow()->close();
    EXPECT_EQ(shown(), std::nullopt);
}

TEST_F(SettingsWindow, StartsTheProgramThatDrawsItOrSaysWhyItCannotBeShown) {
    delegate.applicationDidFinishLaunching();
    program.closeByUser();
    EXPECT_EQ(delegate.settingsWindow()->show(std::nullopt), std::nullopt);
    EXPECT_TRUE(program.isRunning);
    delegate.userInterface()->setOn(false);
    EXPECT_EQ(delegate.settingsWindow()->show(std::nullopt), "kova-ui is switched off. Switch it on with “kova ui on”");
    delegate.overlay().watch([](OverlaySections) {});
    EXPECT_EQ(delegate.settingsWindow()->show(std::nullopt), std::nullopt)
        << "a kova-ui that the user started is connected";
    delegate.overlay().watch({});
    program.missing = "kova-ui is not installed";
    EXPECT_EQ(delegate.settingsWindow()->show(std::nullopt), program.missing);
    EXPECT_FALSE(KovaMenuBarContent({.delegate = delegate}).choose("settings"));
}

class FakeDialog final : public OnboardingServicing {
  public:
    void showOnboarding(std::optional<OnboardingOffer>, std::function<void()>) override { ++timesShown; }
    void closeOnboarding() override {}
    void openPermissionSettings() override {}
    int timesShown = 0;
};

TEST(OnboardingWindow, IsShownAtEachStartUntilThePermissionHasBeenGrantedOnce) {
    SimulatedDesktop desktop;
    MemoryPreferencesStore preferences;
    FakeUserInterface program;
    FakeDialog dialog;
    struct Start {
        bool isTrusted, isShown, isGrantedMeanwhile, isCompleted;
    };
    std::optional<AppDelegate> delegate;
    const auto isShown = [&] {
        OverlayContents contents;
        delegate->overlay().update(contents, kEveryOverlaySection);
        return contents.windows.onboarding.has_value();
    };
    for (const Start& start :
         {Start{.isTrusted = false, .isShown = true, .isGrantedMeanwhile = false, .isCompleted = false},
          Start{.isTrusted = false, .isShown = true, .isGrantedMeanwhile = true, .isCompleted = true},
          Start{.isTrusted = false, .isShown = false, .isGrantedMeanwhile = false, .isCompleted = true},
          Start{.isTrusted = true, .isShown = false, .isGrantedMeanwhile = false, .isCompleted = true}}) {
        desktop.setTrusted(start.isTrusted);
        delegate.emplace(WorkspaceServices{desktop, desktop, desktop, desktop, desktop, preferences, desktop.queue(),
                                           desktop.pollingQueue(), desktop},
                         ShellServices{.onboarding = &dialog, .userInterface = &program});
        delegate->applicationDidFinishLaunching();
        desktop.queue().advance(Seconds(1));
        EXPECT_EQ(isShown(), start.isShown);
        if (start.isGrantedMeanwhile) {
            desktop.setTrusted(true);
            desktop.queue().advance(Seconds(1));
            EXPECT_TRUE(isShown()) << "the window continues with the pages for settings";
        }
        delegate->onboardingWindow()->close();
        EXPECT_FALSE(isShown());
        EXPECT_EQ(*delegate->onboarding().isCompleted(), start.isCompleted);
        delegate.reset();
    }
    EXPECT_EQ(dialog.timesShown, 0) << "kova-ui shows the window";
    preferences.removeValue(preferenceKey::onboardingCompleted);
    desktop.setTrusted(false);
    program.missing = "kova-ui is not installed";
    delegate.emplace(WorkspaceServices{desktop, desktop, desktop, desktop, desktop, preferences, desktop.queue(),
                                       desktop.pollingQueue(), desktop},
                     ShellServices{.onboarding = &dialog, .userInterface = &program});
    delegate->applicationDidFinishLaunching();
    EXPECT_EQ(dialog.timesShown, 1);
}

TEST(OnboardingWindow, IsNotShownAutomaticallyWithoutAPermissionToGrant) {
    SimulatedDesktop desktop;
    MemoryPreferencesStore preferences;
    FakeUserInterface program;
    desktop.setTrusted(false); // as in a session without windows to manage
    AppDelegate delegate(
        {desktop, desktop, desktop, desktop, desktop, preferences, desktop.queue(), desktop.pollingQueue(), desktop},
        {.userInterface = &program});
    delegate.applicationDidFinishLaunching();
    OverlayContents contents;
    delegate.overlay().update(contents, kEveryOverlaySection);
    EXPECT_EQ(contents.windows.onboarding, std::nullopt);
    EXPECT_TRUE(KovaMenuBarContent({.delegate = delegate}).choose("onboarding"));
    delegate.overlay().update(contents, kEveryOverlaySection);
    EXPECT_EQ(contents.windows.onboarding, (OverlayShownWindow{std::nullopt, 1}));
}

} // namespace
} // namespace kova
