// End to end: real applications, agent and command line; the test reads the frames of the windows from the server.
#include "tests/agent/Session.h"
#include "tests/desktop/TestClient.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <map>
#include <set>
#include <thread>

namespace kova::testing {
namespace {

using namespace std::chrono_literals;

CGRect rectOf(const nlohmann::json& json) {
    return makeRect(json.at("x"), json.at("y"), json.at("width"), json.at("height"));
}

xcb_window_t windowNumber(const std::string& windowID) {
    return static_cast<xcb_window_t>(std::stoul(windowID.substr(windowID.find(':') + 1)));
}

class RealWindows : public ::testing::TestWithParam<Manager> {
  protected:
    void SetUp() override {
        if (!PrivateServer::isInstalled()) GTEST_SKIP() << "Xvfb is not installed";
        if (GetParam() == Manager::openbox) server_.startManager();
        session_.startAgent();
        ASSERT_TRUE(session_.agentResponds());
    }
    void TearDown() override {
        if (!HasFailure()) return;
        const auto picture = std::filesystem::current_path() / "real-windows.png";
        session_.run({"import", "-window", "root", picture.string()});
        std::cerr << "Screenshot of the desktop: " << picture << "\n" << session_.kova({"query", "tiles"}).output;
    }

    void openTerminals(int count) {
        for (int i = 1; i <= count; ++i) {
            terminals_.push_back(
                server_.start({"xterm", "-T", "terminal " + std::to_string(i), "-e", "sleep", "1000"}));
        }
    }
    bool hasWindows(std::size_t count) {
        return eventually([&] { return session_.query("windows").size() == count; });
    }

    /// The window's frame with the window manager's decorations and the border that the server draws.
    CGRect visibleFrame(xcb_window_t window) {
        CGRect frame = client_.outerFrame(window);
        auto* const geometry =
            xcb_get_geometry_reply(client_.connection(), xcb_get_geometry(client_.connection(), window), nullptr);
        const double border = geometry ? geometry->border_width : 0;
        std::free(geometry);
        frame.origin = {frame.origin.x - border, frame.origin.y - border};
        frame.size = {frame.size.width + 2 * border, frame.size.height + 2 * border};
        return frame;
    }
    /// Describes the windows that are not in their tiles. A window is in its tile if it has the tile's top left corner
    /// and size; the size may be smaller by less than a resize increment.
    std::string misplacedWindows() {
        std::map<std::string, CGRect> places;
        for (const auto& tile : session_.query("tiles")) {
            if (!tile.at("window").is_string()) continue;
            const CGRect frame = rectOf(tile.at("frame"));
            const auto [place, isFirst] = places.emplace(tile.at("window"), frame);
            if (!isFirst) place->second = unionOf(place->second, frame);
        }
        std::string wrong = places.empty() ? "no tile has a window" : "";
        for (const auto& [windowID, place] : places) {
            const CGRect seen = visibleFrame(windowNumber(windowID));
            const double missingWidth = place.size.width - seen.size.width;
            const double missingHeight = place.size.height - seen.size.height;
            const bool isInPlace = client_.isViewable(windowNumber(windowID)) && seen.origin == place.origin &&
                                   missingWidth >= 0 && missingWidth < 10 && missingHeight >= 0 && missingHeight < 20;
            if (!isInPlace) wrong += windowID + " is at " + text(seen) + " instead of " + text(place) + "\n";
        }
        return wrong;
    }
    void expectInPlace() {
        std::string wrong;
        EXPECT_TRUE(eventually([&] { return (wrong = misplacedWindows()).empty(); })) << wrong;
        // The verification of the placements, which ends after this pause, must not move a window.
        std::this_thread::sleep_for(800ms);
        EXPECT_EQ(misplacedWindows(), "");
    }

    PrivateServer server_{"1920x1080"};
    Session session_{server_.folder(), server_.displayName()};
    TestClient client_{server_.displayName(), "Drawing", static_cast<std::uint32_t>(getpid())};
    std::vector<ChildProcess> terminals_;
};

TEST_P(RealWindows, ArePlacedInTheirTiles) {
    openTerminals(6);
    ASSERT_TRUE(hasWindows(6));
    ASSERT_EQ(session_.kova({"layout", "select", "jarvis.six-grid"}).exitCode, 0);
    ASSERT_EQ(session_.kova({"arrange"}).exitCode, 0);
    expectInPlace();
    std::set<std::string> inTiles;
    for (const auto& tile : session_.query("tiles")) inTiles.insert(tile.at("window").get<std::string>());
    EXPECT_EQ(inTiles.size(), 6U);

    ASSERT_EQ(session_.kova({"layout", "inset", "20"}).exitCode, 0);
    expectInPlace();

    // In a layout with two tiles, windows without a tile are not closed.
    ASSERT_EQ(session_.kova({"layout", "select", "jarvis.dual-split"}).exitCode, 0);
    ASSERT_EQ(session_.kova({"arrange"}).exitCode, 0);
    expectInPlace();
    EXPECT_EQ(session_.query("windows").size(), 6U);
}

TEST_P(RealWindows, MakeRoomForAWindowThatRefusesToShrink) {
    const auto large = client_.open({.title = "Large", .minimumSize = CGSize{1100, 450}});
    openTerminals(3);
    ASSERT_TRUE(hasWindows(4));
    ASSERT_EQ(session_.kova({"layout", "select", "jarvis.six-grid"}).exitCode, 0);
    ASSERT_EQ(session_.kova({"arrange"}).exitCode, 0);
    expectInPlace();
    const CGRect frameOfLarge = visibleFrame(large);
    EXPECT_GE(frameOfLarge.size.width, 1100);
    int others = 0;
    for (const auto& tile : session_.query("tiles")) {
        if (!tile.at("window").is_string() || windowNumber(tile.at("window")) == large) continue;
        EXPECT_EQ(intersectionArea(visibleFrame(windowNumber(tile.at("window"))), frameOfLarge), 0) << tile.dump();
        ++others;
    }
    EXPECT_EQ(others, 3);
}

INSTANTIATE_TEST_SUITE_P(With, RealWindows, ::testing::Values(Manager::none, Manager::openbox), managerName);

} // namespace
} // namespace kova::testing
