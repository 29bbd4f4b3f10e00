// Displays that disconnect and return on a real server.
#include "tests/agent/Session.h"
#include "tests/desktop/TestClient.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <map>

namespace kova::testing {
namespace {

class RealDisplays : public ::testing::TestWithParam<Manager> {
  protected:
    void SetUp() override {
        if (!PrivateServer::isInstalled()) GTEST_SKIP() << "Xvfb is not installed";
        if (GetParam() == Manager::openbox) server_.startManager();
        plugIn("left", "960/254x1080/285+0+0", "screen");
        plugIn("right", "960/254x1080/285+960+0");
        for (int i = 0; i < 4; ++i) {
            const double x = i < 2 ? 50 : 1010;
            windows_.push_back(drawing_.open({.title = std::to_string(i), .frame = makeRect(x, 60, 300, 200)}));
        }
        session_.startAgent();
        ASSERT_TRUE(session_.agentResponds());
        ASSERT_TRUE(eventually([&] { return session_.query("windows").size() == 4; }));
        for (const char* display : {"1", "2"}) {
            ASSERT_EQ(session_.kova({"layout", "select", "dual-split", "--display", display}).exitCode, 0);
        }
        ASSERT_EQ(session_.kova({"arrange"}).exitCode, 0);
        settle();
        picture_ = picture();
    }
    void plugIn(const char* name, const char* place, const char* output = "none") {
        session_.run({"xrandr", "--setmonitor", name, place, output});
    }
    void unplug(const char* name) { session_.run({"xrandr", "--delmonitor", name}); }
    bool hasDisplays(std::size_t count) {
        return eventually([&] { return session_.query("displays").size() == count; });
    }
    /// The frames of all windows, and the window of each tile.
    std::string picture() {
        std::string all;
        for (const auto window : windows_) {
            const CGRect frame = drawing_.outerFrame(window);
            all += std::to_string(window) + (drawing_.isViewable(window) ? " at " : " hidden at ") +
                   std::to_string(minX(frame)) + "," + std::to_string(minY(frame)) + " " +
                   std::to_string(frame.size.width) + "x" + std::to_string(frame.size.height) + "\n";
        }
        for (const auto& tile : session_.query("tiles")) {
            all += tile.at("id").get<std::string>() + " " + tile.at("window").dump() + "\n";
        }
        return all;
    }
    bool isAsBefore() {
        const bool isReached = eventually([&] { return picture() == picture_; });
        EXPECT_EQ(picture(), picture_);
        return isReached;
    }
    void settle() {
        EXPECT_TRUE(
            movementEnds([this] { return drawing_.takeConfigureCount(windows_); }, std::chrono::milliseconds(1500)));
    }

    PrivateServer server_{"1920x1080"};
    Session session_{server_.folder(), server_.displayName()};
    TestClient drawing_{server_.displayName(), "Drawing", static_cast<std::uint32_t>(getpid())};
    std::vector<xcb_window_t> windows_;
    std::string picture_;
};

TEST_P(RealDisplays, RestoreEveryWindowWhenTheyReturn) {
    // A monitor in standby looks like a disconnected monitor, so the agent waits before it moves windows.
    unplug("right");
    ASSERT_TRUE(hasDisplays(1));
    plugIn("right", "960/254x1080/285+960+0");
    ASSERT_TRUE(hasDisplays(2));
    settle();
    EXPECT_TRUE(isAsBefore());

    // Now the display is disconnected for longer than the agent waits. Its windows move to the other display, and
    // return when the display returns.
    unplug("right");
    ASSERT_TRUE(hasDisplays(1));
    sleep(3);
    EXPECT_EQ(session_.query("windows").size(), 4U);
    plugIn("right", "960/254x1080/285+960+0");
    ASSERT_TRUE(hasDisplays(2));
    EXPECT_TRUE(isAsBefore());

    // The display returns with another resolution, and then with the former resolution.
    unplug("right");
    plugIn("right", "640/170x720/190+960+0");
    EXPECT_TRUE(eventually([&] { return picture() != picture_; }));
    sleep(3);
    unplug("right");
    plugIn("right", "960/254x1080/285+960+0");
    EXPECT_TRUE(isAsBefore());
}

TEST_P(RealDisplays, DoNotTakeBackAWindowThatTheUserMovedMeanwhile) {
    const auto before = session_.query("tiles");
    const auto& tileOnLeft = before.at(1).at("id");
    const auto& windowOfRight = before.at(3).at("window");
    const auto isThere = [&] {
        for (const auto& tile : session_.query("tiles")) {
            if (tile.at("id") == tileOnLeft) return tile.at("window") == windowOfRight;
        }
        return false;
    };
    unplug("right");
    ASSERT_TRUE(hasDisplays(1));
    sleep(3);
    const auto placed = session_.kova({"place", windowOfRight, tileOnLeft});
    ASSERT_EQ(placed.exitCode, 0) << placed.output;
    ASSERT_TRUE(eventually(isThere));
    settle();
    plugIn("right", "960/254x1080/285+960+0");
    ASSERT_TRUE(hasDisplays(2));
    settle();
    EXPECT_TRUE(isThere()) << session_.query("tiles").dump(1);
}

INSTANTIATE_TEST_SUITE_P(With, RealDisplays, ::testing::Values(Manager::none, Manager::openbox), managerName);

} // namespace
} // namespace kova::testing
