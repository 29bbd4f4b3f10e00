// A real desktop used with the keyboard alone.
#include "tests/agent/TwoWindows.h"

#include <algorithm>
#include <cmath>
#include <csignal>
#include <future>

namespace kova::testing {
namespace {

class Keyboard : public TwoWindows {
  protected:
    void press(const std::string& keys) {
        const auto finished = session_.run({"/bin/sh", "-c", "xdotool key " + keys});
        ASSERT_EQ(finished.exitCode, 0) << finished.output;
    }
    /// The x coordinate of the window's left edge; "away" if the window is not shown.
    std::string place(xcb_window_t window) const {
        return client_.isViewable(window) ? std::to_string(std::lround(minX(client_.outerFrame(window)))) : "away";
    }
    std::string places() const { return place(left_) + " " + place(right_); }
    bool placesBecome(const std::string& expected) {
        const bool isReached = eventually([&] { return places() == expected; });
        if (!isReached)
            ADD_FAILURE() << places() << " instead of " << expected << session_.kova({"query", "tiles"}).output;
        return isReached;
    }
    std::string layout() const { return session_.query("displays")[0]["layout"]["id"]; }
    bool layoutBecomes(const std::string& expected) {
        const bool isReached = eventually([&] { return layout() == expected; });
        if (!isReached) ADD_FAILURE() << layout() << " instead of " << expected;
        return isReached;
    }
    /// Runs `kova shortcut record` and presses the keys repeatedly until the command has ended.
    Finished record(const std::string& action, const std::string& keys) {
        auto recording = std::async(std::launch::async, [&] { return session_.kova({"shortcut", "record", action}); });
        const auto hasEnded = [&] { return recording.wait_for(std::chrono::seconds(0)) == std::future_status::ready; };
        EXPECT_TRUE(eventually([&] {
            if (hasEnded()) return true;
            const auto list = nlohmann::json::parse(session_.kova({"shortcut", "list", "--json"}).output);
            if (list["isRecording"]) press(keys);
            return false;
        }));
        return recording.get();
    }
};

TEST_P(Keyboard, ArrangesMovesAndUndoesWithAnyLockOn) {
    press("ctrl+alt+a");
    ASSERT_TRUE(eventually([&] { return places() == "15 651" || places() == "651 15"; })) << places();
    if (places() != "15 651") std::swap(left_, right_);
    // A click focuses a window without the agent.
    ASSERT_EQ(session_.run({"xdotool", "mousemove", "900", "400", "click", "1"}).exitCode, 0);
    for (const char* lock : {"Shift_L", "Caps_Lock", "Num_Lock"}) {
        SCOPED_TRACE(lock);
        press(lock);
        // The focus moves to the left and then to the right; either window may be focused before.
        press("ctrl+alt+h");
        EXPECT_TRUE(eventually([&] { return client_.focus() == left_; }));
        press("ctrl+alt+l");
        EXPECT_TRUE(eventually([&] { return client_.focus() == right_; }));
        press("ctrl+alt+Return");
        EXPECT_TRUE(eventually([&] { return client_.outerFrame(right_).size.width > 1200; })) << places();
        press("ctrl+alt+Return");
        placesBecome("15 651");
        press("ctrl+alt+shift+h");
        placesBecome("away 15");
        press("ctrl+alt+z");
        placesBecome("15 651");
        // The next round begins after the agent has noticed that the window is restored.
        EXPECT_TRUE(eventually([&] {
            return std::ranges::none_of(session_.query("windows"),
                                        [](const auto& w) { return w["isMinimized"] == true; });
        }));
    }
}

TEST_P(Keyboard, NamesCombinationsThatOtherProgramsHold) {
    // Openbox grabs Ctrl+Alt with the arrow keys to switch desktops.
    const auto status = session_.kova({"status"}).output;
    EXPECT_EQ(status.find("Ctrl+Alt+Right (Next Layout) is held by another program") != std::string::npos, isManaged())
        << status;
    const auto doctor = session_.kova({"doctor"}).output;
    EXPECT_EQ(doctor.find("Ctrl+Alt+Left (Previous Layout)") != std::string::npos, isManaged()) << doctor;
    const auto finished = session_.kova({"shortcut", "set", "nextLayout", "super+n"});
    EXPECT_EQ(finished.output, "“Next Layout”: Super+N\n");
    press("super+n");
    layoutBecomes("jarvis.dual-stack");
    // A combination that stays pressed changes the layout only once.
    session_.run({"xset", "r", "rate", "100", "30"});
    session_.run({"/bin/sh", "-c", "xdotool keydown super keydown n sleep 0.6 keyup n keyup super"});
    layoutBecomes("jarvis.triple-strip");
    EXPECT_EQ(session_.kova({"shortcut", "clear", "nextLayout"}).exitCode, 0);
    EXPECT_EQ(session_.kova({"shortcut", "set", "commandCenter", "super+n"}).exitCode, 0);
    EXPECT_EQ(session_.kova({"shortcut", "set", "previousLayout", "super+p"}).exitCode, 0);
    press("super+n super+p");
    layoutBecomes("jarvis.dual-stack");
}

TEST_P(Keyboard, RecordsAndStoresAShortcut) {
    auto recorded = record("nextLayout", "shift+n ctrl+alt+a super+n");
    EXPECT_EQ(recorded.exitCode, 0);
    EXPECT_NE(recorded.output.find("Type Shortcut…\n"), std::string::npos);
    EXPECT_NE(recorded.output.find("This shortcut is already used by “Arrange Windows into Zones”."),
              std::string::npos);
    EXPECT_NE(recorded.output.find("“Next Layout”: Super+N\n"), std::string::npos) << recorded.output;
    EXPECT_EQ(record("previousLayout", "Escape").exitCode, 1);
    EXPECT_NE(record("focusZoom", "ctrl+c").output.find(": Ctrl+C\n"), std::string::npos)
        << "only Escape cancels the recording";
    EXPECT_NE(record("undo", "ctrl+Delete").output.find("“Undo Window Action” has no shortcut."), std::string::npos);
    press("super+n");
    layoutBecomes("jarvis.dual-stack");

    session_.signalAgent(SIGTERM);
    ASSERT_TRUE(session_.waitForAgent());
    session_.startAgent();
    ASSERT_TRUE(session_.agentResponds());
    // The padding of the columns is removed.
    std::string list = session_.kova({"shortcut", "list"}).output;
    const auto areSpaces = [](char a, char b) { return a == ' ' && b == ' '; };
    list.erase(std::unique(list.begin(), list.end(), areSpaces), list.end());
    EXPECT_NE(list.find("Super+N"), std::string::npos) << list;
    EXPECT_NE(list.find("previousLayout Previous Layout Ctrl+Alt+Left"), std::string::npos) << list;
    EXPECT_NE(list.find("undo Undo Window Action - "), std::string::npos) << list;
    press("super+n");
    layoutBecomes("jarvis.triple-strip");
}

INSTANTIATE_TEST_SUITE_P(With, Keyboard, ::testing::Values(Manager::none, Manager::openbox), managerName);

} // namespace
} // namespace kova::testing
