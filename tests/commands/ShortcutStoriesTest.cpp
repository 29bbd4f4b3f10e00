// Key presses become operations of the workspace.
#include "commands/LayoutShortcutCoordinator.h"
#include "support/Log.h"
#include "tests/harness/Scenario.h"
#include "windowing/KeyCodes.h"

#include <gtest/gtest.h>

namespace kova {
namespace {

constexpr std::uint64_t kFocus = modifierFlag::control | modifierFlag::option;
constexpr std::uint64_t kMove = kFocus | modifierFlag::shift;
const char* const kHalves = "Codex 15,15 1254x1382 | Mail 1291,15 1254x1382";

class Keys : public ::testing::Test {
  public:
    Keys() {
        desk.display(2560, 1440).layout("jarvis.dual-split").opens("Codex").opens("Mail").arrange();
        desk.desktop.userFocuses("Mail");
        desk.settle();
        coordinator.installMonitors();
        desk.settle();
    }
    /// Presses and releases the key once.
    void press(std::uint16_t code, std::uint64_t flags) {
        keyboard.press(code, flags);
        desk.settle();
    }
    std::string layout() { return desk.controller().resolvedLayout(desk.displayIDOf("A"))->id; }

    Scenario desk;
    SimulatedKeyboard& keyboard = desk.desktop.keyboard();
    KovaShortcutSettings settings{desk.preferences};
    LayoutShortcutCoordinator coordinator{desk.controller(), settings, keyboard, desk.desktop.queue()};
};

TEST_F(Keys, AssignedByTheUserDriveCommandsForOneWindow) {
    const auto pressed = [this](KovaShortcutAction action) {
        EXPECT_TRUE(settings.setShortcut({{keyCode::g, kFocus, "G"}}, action));
        press(keyCode::g, kFocus);
        EXPECT_TRUE(settings.setShortcut(std::nullopt, action));
    };
    using enum KovaShortcutAction;
    pressed(swapLeft);
    desk.expectTiles("Mail 15,15 1254x1382 | Codex 1291,15 1254x1382");
    pressed(placeInTile2);
    desk.expectTiles("- | Mail 1291,15 1254x1382 + Codex");
    pressed(previousInStack);
    desk.expectTiles("- | Codex 1291,15 1254x1382 + Mail");
    pressed(toggleFloating);
    EXPECT_EQ(desk.state().floatingWindowIDs->size(), 1u);
    pressed(focusNextDisplay);
    desk.expectMessage("There is no other display");
    pressed(placeInTile3);
    desk.expectMessage("There is no tile 3 in this layout");
}

TEST_F(Keys, ArrangeAWindowThatWasOpenedJustBeforeAndActInTheOrderOfTheirPresses) {
    desk.layout("jarvis.quad-grid").settle();
    desk.desktop.pollingQueue().setJobDuration(Seconds(0.05));
    desk.opens("Notes");
    keyboard.press(keyCode::a, kFocus);
    desk.settle();
    const WindowID notes = desk.desktop.windowIDOf("Notes");
    EXPECT_TRUE(desk.controller().assignments().isAssigned(notes)) << desk.tiles();

    desk.desktop.close("Notes");
    keyboard.press(keyCode::a, kFocus);
    keyboard.press(keyCode::z, kFocus);
    desk.settle();
    desk.expectMessage("Last window action undone"); // after the arrangement, which waited for a poll
}

TEST_F(Keys, PauseAndResume) {
    ASSERT_TRUE(settings.setShortcut({{keyCode::g, kFocus, "G"}}, KovaShortcutAction::pauseOrResume));
    press(keyCode::g, kFocus);
    EXPECT_TRUE(*desk.state().isPaused);
    desk.desktop.userMoves("Mail", makeRect(300, 300, 500, 400));
    press(keyCode::a, kFocus);
    EXPECT_EQ(desk.desktop.describeWindow(desk.desktop.window("Mail")), "Mail 300,300 500x400");
    EXPECT_FALSE(desk.controller().perform(action::Arrange{}));
    desk.expectMessage("KOVA is paused; “kova resume” goes on");
    press(keyCode::g, kFocus);
    desk.expectTiles(kHalves);
}

TEST_F(Keys, DriveTheWholeWorkspace) {
    desk.expectTiles(kHalves);
    press(keyCode::h, kFocus);
    desk.expectFocus("Codex");
    press(keyCode::l, kFocus | modifierFlag::capsLock);
    desk.expectFocus("Mail");
    press(keyCode::h, kMove);
    desk.expectTiles("Mail 15,15 1254x1382 + Codex | -");
    press(keyCode::tab, kFocus);
    desk.expectFocus("Codex");
    press(keyCode::z, kFocus);
    press(keyCode::z, kFocus);
    desk.expectTiles(kHalves);
    press(keyCode::returnKey, kFocus);
    EXPECT_TRUE(desk.state().focusMode->has_value());
    press(keyCode::returnKey, kFocus);
    EXPECT_FALSE(desk.state().focusMode->has_value());
    desk.desktop.userMoves("Mail", makeRect(300, 300, 500, 400));
    press(keyCode::a, kFocus);
    desk.expectMessage("Windows arranged into zones — Undo is available");
    EXPECT_TRUE(keyboard.takeTyped().empty());
    press(keyCode::a, 0);
    EXPECT_EQ(keyboard.takeTyped().size(), 1U) << "keys without a shortcut are typed";
}

TEST_F(Keys, HeldDownChangeTheLayoutOfTheFocusedWindowsDisplayOnce) {
    desk.display(1920, 1080, "B").layout("jarvis.dual-split", "B");
    const DisplayID other = desk.displayIDOf("B");
    desk.desktop.movePointer(CGPoint{3000, 500}); // over the other display
    keyboard.press(keyCode::right, kFocus);
    for (int i = 0; i < 5; ++i) keyboard.repeat(keyCode::right, kFocus);
    desk.settle();
    EXPECT_EQ(layout(), "jarvis.dual-stack");
    EXPECT_EQ(desk.controller().resolvedLayout(other)->id, "jarvis.dual-split");
    press(keyCode::left, kFocus);
    EXPECT_EQ(layout(), "jarvis.dual-split");
}

TEST_F(Keys, AreNotTypedIntoWindowsOfKovaEvenIfTheActionIsRefused) {
    keyboard.setFocus(SimulatedKeyboard::Focus::ownWindow);
    desk.desktop.setLocked(true);
    desk.settle();
    press(keyCode::a, kFocus);
    EXPECT_TRUE(keyboard.takeTyped().empty()) << "the action is refused, and the key is not typed into the text field";
    press(keyCode::a, modifierFlag::shift);
    keyboard.repeat(keyCode::a, kFocus);
    EXPECT_EQ(keyboard.takeTyped().size(), 2U);
}

TEST_F(Keys, ActOncePerPressAndOnlyWhileMonitorsAreInstalled) {
    coordinator.installMonitors();
    keyboard.press(keyCode::right, kFocus);
    desk.settle();
    EXPECT_EQ(layout(), "jarvis.dual-stack") << "installed twice, the monitors report once";
    // A press that is delivered after the monitors were removed has no effect.
    keyboard.press(keyCode::right, kFocus);
    coordinator.removeMonitors();
    coordinator.removeMonitors();
    EXPECT_TRUE(keyboard.claimed().empty());
    press(keyCode::right, kFocus);
    EXPECT_EQ(layout(), "jarvis.dual-stack");
    EXPECT_EQ(keyboard.takeTyped().size(), 1U);
    coordinator.installMonitors();
    press(keyCode::left, kFocus);
    EXPECT_EQ(layout(), "jarvis.dual-split");
}

TEST_F(Keys, FollowTheConfigurationAndHaveNoEffectDuringARecording) {
    ASSERT_TRUE(settings.setShortcut({{keyCode::f5, modifierFlag::command, "F5"}}, KovaShortcutAction::nextLayout));
    ASSERT_TRUE(settings.setShortcut({{keyCode::q, kFocus, "Q"}}, KovaShortcutAction::commandCenter));
    EXPECT_FALSE(keyboard.claimed().contains({keyCode::right, kFocus}));
    EXPECT_FALSE(keyboard.claimed().contains({keyCode::q, kFocus})) << "commandCenter has no effect";
    press(keyCode::q, kFocus);
    press(keyCode::right, kFocus);
    EXPECT_EQ(keyboard.takeTyped().size(), 2U);
    press(keyCode::f5, modifierFlag::command);
    EXPECT_EQ(layout(), "jarvis.dual-stack");
    settings.isRecording.set(true);
    press(keyCode::f5, modifierFlag::command);
    EXPECT_EQ(layout(), "jarvis.dual-stack");
    EXPECT_FALSE(coordinator.handle({keyCode::f5, modifierFlag::command, false}));
    settings.isRecording.set(false);
    EXPECT_FALSE(coordinator.handle({keyCode::f5, modifierFlag::command, true})) << "a repetition has no effect";
    EXPECT_TRUE(coordinator.handle({keyCode::f5, modifierFlag::command, false}));
}

TEST_F(Keys, HeldByAnotherProgramHaveNoEffectAndOtherKeysWork) {
    std::vector<std::string> logged;
    setLogWriter([&](LogLevel, const std::string& text) { logged.push_back(text); }, LogLevel::warning);
    coordinator.removeMonitors();
    const KeyCombination right{keyCode::right, kFocus};
    keyboard.claimByOther(right);
    coordinator.installMonitors();
    desk.settle();
    // After a recording or a new installation of the monitors the held combination is not logged again.
    settings.isRecording.set(true);
    Subscription recording = keyboard.recordKeys([](const KeyPress&) { return false; }, [](const std::string&) {});
    desk.settle();
    settings.isRecording.set(false);
    recording = {};
    desk.settle();
    coordinator.removeMonitors();
    coordinator.installMonitors();
    desk.settle();
    setLogWriter({}, LogLevel::note);
    EXPECT_EQ(logged, std::vector<std::string>{"another program holds Ctrl+Alt+Right, the shortcut for “Next Layout”"});
    EXPECT_EQ(keyboard.heldByOthers(), std::vector{right});
    press(keyCode::right, kFocus);
    EXPECT_EQ(layout(), "jarvis.dual-split");
    press(keyCode::h, kFocus);
    desk.expectFocus("Codex");
    keyboard.releaseByOther(right);
    press(keyCode::right, kFocus);
    EXPECT_EQ(layout(), "jarvis.dual-stack");
}

TEST_F(Keys, AlsoReachTheFocusedWindowIfMonitorsOnlyObserve) {
    keyboard.setDelivery(SimulatedKeyboard::Delivery::observed);
    press(keyCode::right, kFocus);
    EXPECT_EQ(layout(), "jarvis.dual-stack");
    EXPECT_EQ(keyboard.takeTyped().size(), 1U);
}

} // namespace
} // namespace kova
