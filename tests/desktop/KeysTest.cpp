// Key combinations on a private server: grabbed by KOVA or by another program, repeated, recorded, and with changing
// keyboard layouts.
#include "platform/x11/XkbProtocol.h"
#include "tests/desktop/DesktopUnderTest.h"
#include "windowing/KeyCodes.h"

#include <xcb/xinput.h>

#include <algorithm>
#include <cstdlib>

namespace kova::testing {
namespace {

constexpr std::uint64_t kControlOption = modifierFlag::control | modifierFlag::option;

class Keys : public ::testing::Test {
  protected:
    void SetUp() override {
        if (!PrivateServer::isInstalled()) GTEST_SKIP() << "Xvfb is not installed";
        desk = std::make_unique<DesktopUnderTest>(Manager::none);
        other = desk->client("Other", 4001);
        desk->openDesktop();
    }
    /// Grabs the combinations and appends their presses to `reported`.
    void observeKeys(const std::vector<KeyCombination>& combinations) {
        grabs = desk->desktop().observeHeldByOthers([this] { ++notifications; });
        monitor = desk->desktop().addGlobalMonitor([this](const KeyPress& press) { reported.push_back(press); });
        claim(combinations);
    }
    void claim(const std::vector<KeyCombination>& combinations) {
        const int before = notifications;
        desk->desktop().claim(combinations);
        ASSERT_TRUE(desk->runUntil([&] { return notifications > before; }));
    }
    /// Runs the shell command on the private server and waits for its end.
    void run(const std::string& command) {
        const std::string line = "DISPLAY=" + desk->server().displayName() + " " + command + " >/dev/null 2>&1";
        EXPECT_EQ(std::system(line.c_str()), 0) << command;
    }
    void press(const std::string& keys) { run("xdotool key " + keys); }
    /// Presses the keys (in the notation of xdotool). True if the only reported press is that of `combination`.
    bool pressIsReported(const std::string& keys, const KeyCombination& combination) {
        reported.clear();
        press(keys);
        const bool isAnyReported = desk->runUntil([&] { return !reported.empty(); });
        return isAnyReported && reported.size() == 1 && reported[0].keyCode == combination.keyCode &&
               !reported[0].isRepeat &&
               (reported[0].modifierFlags & modifierFlag::ofShortcuts) == combination.modifierFlags;
    }
    /// Presses `keys` and then `reportedKeys`. True if only the second press is reported. Presses are reported in their
    /// order, so the first press is not reported later.
    bool pressIsIgnored(const std::string& keys, const std::string& reportedKeys, const KeyCombination& combination) {
        press(keys);
        return pressIsReported(reportedKeys, combination);
    }
    void switchToGroup(std::uint8_t group) {
        xcb_xkb_use_extension(other->connection(), 1, 0);
        xcb_xkb_latch_lock_state(other->connection(), XCB_XKB_ID_USE_CORE_KBD, 0, 0, 1, group, 0, 0, 0);
        other->sync();
    }
    void grabAsOther(std::uint16_t state, xcb_keycode_t key) {
        xcb_grab_key(other->connection(), 0, other->root(), state, key, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
        other->sync();
    }

    void grabByInputExtension(std::uint32_t state, xcb_keycode_t key) {
        xcb_connection_t* connection = other->connection();
        std::free(xcb_input_xi_query_version_reply(connection, xcb_input_xi_query_version(connection, 2, 2), nullptr));
        constexpr std::uint16_t kVirtualCoreKeyboard = 3;
        const std::uint32_t mask = XCB_INPUT_XI_EVENT_MASK_KEY_PRESS;
        const auto grabbed = xcb_input_xi_passive_grab_device(
            connection, XCB_CURRENT_TIME, other->root(), XCB_CURSOR_NONE, key, kVirtualCoreKeyboard, 1, 1,
            XCB_INPUT_GRAB_TYPE_KEYCODE, XCB_INPUT_GRAB_MODE_22_ASYNC, XCB_INPUT_GRAB_MODE_22_ASYNC,
            XCB_INPUT_GRAB_OWNER_NO_OWNER, &mask, &state);
        std::free(xcb_input_xi_passive_grab_device_reply(connection, grabbed, nullptr));
    }

    std::unique_ptr<DesktopUnderTest> desk;
    std::unique_ptr<TestClient> other;
    std::vector<KeyPress> reported;
    int notifications = 0;
    Subscription grabs, monitor;
};

const KeyCombination kH{keyCode::h, kControlOption}, kJ{keyCode::j, kControlOption},
    kShiftJ{keyCode::j, kControlOption | modifierFlag::shift}, kLeft{keyCode::left, modifierFlag::command};
constexpr xcb_keycode_t kHKeycode = 43, kLeftKeycode = 113;
constexpr std::uint16_t kControlAltMask = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1;

TEST_F(Keys, AreReportedWithAnyLockWhileThereIsAnObserver) {
    observeKeys({kH, kShiftJ, kLeft});
    for (const char* lock : {"", "Caps_Lock", "Num_Lock", "Caps_Lock"}) {
        if (*lock) press(lock);
        EXPECT_TRUE(pressIsReported("ctrl+alt+h", kH)) << lock;
        EXPECT_TRUE(pressIsReported("ctrl+alt+shift+j", kShiftJ)) << lock;
        EXPECT_TRUE(pressIsReported("super+Left", kLeft)) << lock;
        EXPECT_TRUE(pressIsIgnored("ctrl+alt+shift+h ctrl+h h alt+j super+alt+Left", "ctrl+alt+h", kH)) << lock;
    }
    EXPECT_EQ(reported[0].charactersIgnoringModifiers, "h");
    // A new list of combinations replaces the former list.
    claim({kLeft});
    EXPECT_TRUE(pressIsIgnored("ctrl+alt+h", "super+Left", kLeft));
    // Without an observer other programs can grab the combinations.
    monitor = {};
    EXPECT_TRUE(desk->runUntil([&] {
        const auto cookie = xcb_grab_key_checked(other->connection(), 0, other->root(), XCB_MOD_MASK_4, kLeftKeycode,
                                                 XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
        xcb_generic_error_t* error = xcb_request_check(other->connection(), cookie);
        const bool isFree = error == nullptr;
        std::free(error);
        return isFree;
    }));
}

TEST_F(Keys, GrabbedByAnotherProgramAreListedUntilKovaCanGrabThem) {
    grabAsOther(kControlAltMask | XCB_MOD_MASK_2, kHKeycode); // only while Num Lock is on
    observeKeys({kH, kLeft});
    EXPECT_EQ(desk->desktop().heldByOthers(), std::vector{kH});
    EXPECT_TRUE(pressIsIgnored("ctrl+alt+h", "super+Left", kLeft))
        << "a combination that cannot be grabbed with every lock is not grabbed with any";
    xcb_ungrab_key(other->connection(), kHKeycode, other->root(), kControlAltMask | XCB_MOD_MASK_2);
    other->sync();
    // `heldByOthers` also tries to grab the combination again.
    EXPECT_TRUE(desk->runUntil([&] { return desk->desktop().heldByOthers().empty(); }));
    EXPECT_TRUE(pressIsReported("ctrl+alt+h", kH));

    // The server does not refuse KOVA's core grab if another program has grabbed the combination through XInput.
    grabByInputExtension(XCB_MOD_MASK_4, kLeftKeycode);
    claim({kH});
    claim({kH, kLeft});
    EXPECT_EQ(desk->desktop().heldByOthers(), std::vector{kLeft});
    EXPECT_TRUE(pressIsIgnored("super+Left", "ctrl+alt+h", kH));
}

TEST_F(Keys, StayOnTheirKeyWhenTheKeyboardLayoutChanges) {
    const KeyCombination q{keyCode::q, kControlOption};
    observeKeys({q});
    const auto qWrites = [&](const std::string& text) {
        return desk->runUntil([&] { return desk->desktop().charactersOf(keyCode::q) == text; });
    };
    EXPECT_TRUE(qWrites("q"));
    EXPECT_TRUE(pressIsReported("ctrl+alt+q", q));
    run("setxkbmap fr");
    EXPECT_TRUE(qWrites("a"));
    EXPECT_EQ(desk->desktop().charactersOf(keyCode::leftBracket), "^") << "a dead key";
    EXPECT_EQ(desk->desktop().charactersOf(keyCode::keypad7), "7");
    EXPECT_EQ(desk->desktop().charactersOf(keyCode::space), " ");
    EXPECT_EQ(desk->desktop().charactersOf(keyCode::f1), "");
    EXPECT_TRUE(pressIsReported("ctrl+alt+a", q));
    EXPECT_EQ(reported[0].charactersIgnoringModifiers, "a");
    run("setxkbmap us -variant dvorak");
    EXPECT_TRUE(qWrites("'"));
    EXPECT_TRUE(pressIsReported("ctrl+alt+apostrophe", q));
    // Two keyboard layouts are configured, and the second one is switched on.
    run("setxkbmap us,ru");
    EXPECT_TRUE(qWrites("q"));
    switchToGroup(1);
    EXPECT_TRUE(qWrites("й"));
    EXPECT_TRUE(pressIsReported("ctrl+alt+24", q)); // 24: the server's key code of Q
    switchToGroup(0);
    EXPECT_TRUE(qWrites("q"));
    // Alt is mapped to another modifier.
    run("setxkbmap us");
    run("xmodmap -e 'clear mod1' -e 'add mod3 = Alt_L'");
    EXPECT_TRUE(desk->runUntil([&] {
        reported.clear();
        press("ctrl+alt+q");
        desk->runFor(Seconds(0.1));
        return !reported.empty();
    }));
    EXPECT_EQ(reported.back().modifierFlags, kControlOption);
}

TEST_F(Keys, ThatStayPressedAreReportedAsRepetitions) {
    observeKeys({kH});
    run("xset r rate 150 30");
    for (int round = 0; round < 2; ++round) {
        reported.clear();
        run("xdotool keydown ctrl keydown alt keydown h");
        EXPECT_TRUE(desk->runUntil([&] { return reported.size() > 3; })) << reported.size();
        run("xdotool keyup h keyup alt keyup ctrl");
        ASSERT_FALSE(reported.empty());
        EXPECT_FALSE(reported.front().isRepeat);
        EXPECT_EQ(std::ranges::count_if(reported, &KeyPress::isRepeat), std::ssize(reported) - 1);
        desk->runFor(Seconds(0.1));
    }
    // In fast typing a key is pressed before the previous key is released, and the release of the previous key is sent
    // to another program.
    run("xset r rate 5000 30");
    reported.clear();
    claim({kH, kJ});
    run("xdotool keydown ctrl keydown alt keydown h keydown j keyup h keyup j key j key h keyup alt keyup ctrl");
    EXPECT_TRUE(desk->runUntil([&] { return reported.size() >= 4; })) << reported.size();
    EXPECT_EQ(std::ranges::count_if(reported, &KeyPress::isRepeat), 0);
}

TEST_F(Keys, AllGoToTheRecorderAndToNoOtherProgram) {
    observeKeys({kH});
    std::vector<KeyPress> recorded;
    std::string reason;
    const auto record = [&] {
        return desk->desktop().recordKeys(
            [&](const KeyPress& press) {
                recorded.push_back(press);
                return press.keyCode == keyCode::escape;
            },
            [&](const std::string& why) { reason = why; });
    };
    // A key that was pressed before the recording is reported only as repetitions.
    run("xset r rate 150 30");
    run("xdotool keydown F8");
    Subscription recording = record();
    EXPECT_TRUE(desk->runUntil([&] { return recorded.size() > 2; })) << recorded.size();
    EXPECT_TRUE(std::ranges::all_of(recorded, &KeyPress::isRepeat));
    run("xdotool keyup F8");
    recorded.clear();
    // The keyboard is grabbed a moment after `record()`.
    ASSERT_TRUE(desk->runUntil([&] {
        press("F7");
        desk->runFor(Seconds(0.05));
        return !recorded.empty();
    }));
    reported.clear();
    recorded.clear();
    press("shift+a ctrl+alt+h Escape");
    EXPECT_TRUE(desk->runUntil([&] { return recorded.size() == 3; })) << recorded.size();
    EXPECT_EQ(recorded[0], (KeyPress{keyCode::a, modifierFlag::shift, false, "a"}));
    EXPECT_EQ(recorded[1], (KeyPress{keyCode::h, kControlOption, false, "h"}));
    EXPECT_TRUE(reported.empty());
    EXPECT_TRUE(desk->runUntil([&] {
        press("ctrl+alt+h");
        desk->runFor(Seconds(0.05));
        return !reported.empty();
    })) << "after the recording, observers get the keys again";
    EXPECT_EQ(recorded.size(), 3U);

    const auto grabbed = xcb_grab_keyboard(other->connection(), 0, other->root(), XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC,
                                           XCB_GRAB_MODE_ASYNC);
    std::free(xcb_grab_keyboard_reply(other->connection(), grabbed, nullptr));
    recording = record();
    EXPECT_TRUE(desk->runUntil([&] { return !reason.empty(); }));
    EXPECT_NE(reason.find("Another program holds the keyboard"), std::string::npos) << reason;
    xcb_ungrab_keyboard(other->connection(), XCB_CURRENT_TIME);
    other->sync();
    EXPECT_TRUE(pressIsReported("ctrl+alt+h", kH));
}

/// The user can kill the connection for keys and dividers with xkill. Windows must still be managed then.
TEST_F(Keys, AreDiagnosedWhenTheirConnectionIsKilled) {
    const auto topLevels = [&] {
        const auto request = xcb_query_tree(other->connection(), other->root());
        auto* tree = xcb_query_tree_reply(other->connection(), request, nullptr);
        const xcb_window_t* children = xcb_query_tree_children(tree);
        std::vector<xcb_window_t> all(children, children + xcb_query_tree_children_length(tree));
        std::free(tree);
        return all;
    };
    const auto isDiagnosed = [&] {
        return std::ranges::any_of(desk->desktop().diagnose(), [](const DiagnosticLine& line) {
            return line.subject == "keys and dividers" && line.verdict == DiagnosticVerdict::wrong;
        });
    };
    observeKeys({kH});
    ASSERT_TRUE(pressIsReported("ctrl+alt+h", kH));
    const auto before = topLevels();
    desk->desktop().showHandles({{"divider", makeRect(400, 0, 10, 600), LayoutAxis::horizontal}});
    ASSERT_TRUE(desk->runUntil([&] { return topLevels().size() > before.size(); }));
    EXPECT_FALSE(isDiagnosed());
    for (const xcb_window_t window : topLevels()) {
        if (std::ranges::find(before, window) == before.end()) xcb_kill_client(other->connection(), window);
    }
    other->sync();
    EXPECT_TRUE(desk->runUntil(isDiagnosed));
    EXPECT_FALSE(desk->isConnectionLost());
    desk->desktop().claim({kH, kShiftJ});
    desk->desktop().showHandles({});
    other->open({.title = "Still"});
    EXPECT_TRUE(desk->showsExactly({"Still"}));
}

} // namespace
} // namespace kova::testing
