// The effects of a restarted agent on real windows.
#include "tests/agent/Session.h"
#include "tests/desktop/TestClient.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <algorithm>
#include <csignal>

namespace kova::testing {
namespace {

/// Three windows and two tiles, so that one window is minimized; with a window manager another window is stacked.
class Restart : public ::testing::TestWithParam<Manager> {
  protected:
    void SetUp() override {
        if (!PrivateServer::isInstalled()) GTEST_SKIP() << "Xvfb is not installed";
        const bool isManaged = GetParam() == Manager::openbox;
        if (isManaged) server_.startManager();
        for (int i = 0; i < 2; ++i) windows_.push_back(drawing_.open({.title = "Drawing " + std::to_string(i)}));
        // This window grows in steps of 17 x 31 pixels, as a terminal does by characters, so it never fills its tile
        // completely.
        steppedWindow_ = writing_.open({.title = "Writing", .sizeIncrements = CGSize{17, 31}});
        windows_.push_back(steppedWindow_);
        start();
        ASSERT_TRUE(eventually([&] { return session_.query("windows").size() == 3; }));
        ASSERT_EQ(session_.kova({"layout", "select", "jarvis.dual-split"}).exitCode, 0);
        ASSERT_EQ(session_.kova({"arrange"}).exitCode, 0);
        ASSERT_TRUE(!isManaged || stackOneWindow());
        settle();
    }
    /// Moves a window into the tile of another window; that window is then stacked behind the moved one.
    bool stackOneWindow() {
        for (const auto& tile : session_.query("tiles")) {
            if (!tile.at("window").is_string()) continue;
            const auto id = tile.at("window").get<std::string>();
            const std::string number = id.substr(id.find(':') + 1);
            (void)session_.run({"xdotool", "windowactivate", "--sync", number});
            const bool isMoved = eventually(
                [&] {
                    return session_.kova({"move", "left"}).exitCode == 0 ||
                           session_.kova({"move", "right"}).exitCode == 0;
                },
                std::chrono::seconds(5));
            if (isMoved) return true;
        }
        return false;
    }
    void start() {
        session_.startAgent();
        ASSERT_TRUE(session_.agentResponds());
    }
    /// Waits until nothing has moved for a while; by then the session is stored.
    void settle() {
        EXPECT_TRUE(movementEnds([this] { return takeMoves(); }, std::chrono::milliseconds(3000)));
    }
    int takeMoves() {
        drawing_.sync();
        writing_.sync();
        int moves = 0;
        for (const auto window : windows_) {
            moves +=
                window == steppedWindow_ ? writing_.takeConfigureCount(window) : drawing_.takeConfigureCount(window);
        }
        return moves;
    }
    std::vector<bool> shown() {
        std::vector<bool> all;
        for (const auto window : windows_) all.push_back(drawing_.isViewable(window));
        return all;
    }

    PrivateServer server_{"1920x1080"};
    Session session_{server_.folder(), server_.displayName()};
    TestClient drawing_{server_.displayName(), "Drawing", static_cast<std::uint32_t>(getpid())};
    TestClient writing_{server_.displayName(), "Writing", static_cast<std::uint32_t>(getppid())};
    std::vector<xcb_window_t> windows_;
    xcb_window_t steppedWindow_ = 0;
};

TEST_P(Restart, AfterAnAgentIsKilledTheNextAgentRestoresAllTilesAndMovesNoWindow) {
    const auto tiles = session_.query("tiles");
    const auto windows = session_.query("windows");
    const auto seen = shown();
    EXPECT_NE(std::ranges::count(seen, false), 0) << "at least one window must be hidden before the agent is killed";
    for (int round = 0; round < 2; ++round) {
        session_.signalAgent(SIGKILL);
        ASSERT_TRUE(session_.waitForAgent());
        start();
        ASSERT_TRUE(eventually([&] { return session_.query("tiles") == tiles; })) << session_.query("tiles").dump(1);
        sleep(2);
        EXPECT_EQ(session_.query("tiles"), tiles);
        EXPECT_EQ(session_.query("windows"), windows);
        EXPECT_EQ(takeMoves(), 0);
        EXPECT_EQ(shown(), seen);
    }
    const auto undo = session_.kova({"undo"});
    EXPECT_EQ(undo.exitCode, 1);
    EXPECT_NE(undo.output.find("nothing to undo"), std::string::npos) << undo.output;
}

/// As in an upgrade: the agent ends in order and is started again. Runs only with a window manager: without one these
/// tests stack no window.
class Upgrade : public Restart {};

/// The end of an agent shows hidden windows without changing the focus; the next agent hides them again.
TEST_P(Upgrade, RestoresTheSameTilesAndHidesStackedWindowsAgain) {
    // Each application now has one window, so stacking a window hides its whole application instead of minimizing it.
    drawing_.destroy(windows_[1]);
    windows_.erase(windows_.begin() + 1);
    ASSERT_TRUE(eventually([&] { return session_.query("windows").size() == 2; }));
    ASSERT_EQ(session_.kova({"arrange"}).exitCode, 0);
    settle();
    ASSERT_TRUE(stackOneWindow());
    settle();
    const auto tiles = session_.query("tiles");
    const auto seen = shown();
    const auto focused = drawing_.focus();
    for (int round = 0; round < 2; ++round) {
        session_.signalAgent(SIGTERM);
        ASSERT_TRUE(session_.waitForAgent());
        EXPECT_TRUE(eventually([&] { return shown() != seen; }))
            << "an agent that ends shows the application that it has hidden";
        start(); // the window manager may still animate the return of the windows
        EXPECT_TRUE(eventually([&] { return shown() == seen; }));
        settle();
        EXPECT_EQ(shown(), seen);
        EXPECT_EQ(session_.query("tiles"), tiles);
        EXPECT_EQ(drawing_.focus(), focused);
    }
    EXPECT_EQ(session_.kova({"stack"}).exitCode, 0);
    EXPECT_TRUE(eventually([&] { return shown() != seen; }));
}

/// Before each test one window is minimized and another one is stacked.
class Quitting : public Restart {
  protected:
    bool areAllShown() { return std::ranges::count(shown(), false) == 0; }
    void quit() {
        EXPECT_EQ(session_.kova({"quit"}).exitCode, 0);
        ASSERT_TRUE(session_.waitForAgent());
    }
};

TEST_P(Quitting, ShowsTheWindowsOfAnotherVirtualDesktop) {
    (void)session_.run({"xdotool", "set_num_desktops", "2"});
    (void)session_.run({"xdotool", "set_desktop", "1"});
    ASSERT_TRUE(eventually([&] { return std::ranges::count(shown(), true) == 0; })) << "another desktop is shown";
    settle();
    quit();
    (void)session_.run({"xdotool", "set_desktop", "0"});
    EXPECT_TRUE(eventually([&] { return areAllShown(); })) << std::ranges::count(shown(), false) << " are hidden";
}

TEST_P(Quitting, ShowsWindowsThatWereHiddenAgainUnderANewWindowManager) {
    const auto seen = shown();
    const auto tiles = session_.query("tiles");
    EXPECT_FALSE(areAllShown());
    server_.endManager();
    server_.startManager();
    ASSERT_TRUE(eventually([&] { return session_.query("windows").size() == 3; }));
    sleep(3); // longer than the settling time
    EXPECT_TRUE(eventually([&] { return shown() == seen; }));
    settle();
    EXPECT_EQ(shown(), seen);
    EXPECT_EQ(session_.query("tiles"), tiles);
    quit();
    EXPECT_TRUE(eventually([&] { return areAllShown(); })) << std::ranges::count(shown(), false) << " are hidden";
}

TEST_P(Quitting, ShowsWindowsThatABusyWindowManagerHidesLate) {
    while (session_.kova({"undo"}).exitCode == 0) continue;
    ASSERT_TRUE(eventually([&] { return areAllShown(); }));
    server_.pauseManager();
    EXPECT_EQ(session_.kova({"arrange"}).exitCode, 0);
    sleep(3); // longer than a window manager usually takes
    EXPECT_TRUE(areAllShown());
    server_.resumeManager();
    ASSERT_TRUE(eventually([&] { return !areAllShown(); }));
    settle();
    quit();
    EXPECT_TRUE(eventually([&] { return areAllShown(); })) << std::ranges::count(shown(), false) << " are hidden";
}

INSTANTIATE_TEST_SUITE_P(Managers, Restart, ::testing::Values(Manager::openbox, Manager::none), managerName);
INSTANTIATE_TEST_SUITE_P(Managers, Upgrade, ::testing::Values(Manager::openbox), managerName);
INSTANTIATE_TEST_SUITE_P(Managers, Quitting, ::testing::Values(Manager::openbox), managerName);

} // namespace
} // namespace kova::testing
