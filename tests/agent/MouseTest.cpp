// Drags of dividers and windows with the pointer of a real server.
#include "tests/agent/TwoWindows.h"

#include <cmath>
#include <filesystem>
#include <iostream>

namespace kova::testing {
namespace {

class Mouse : public TwoWindows {
  protected:
    void SetUp() override {
        TwoWindows::SetUp();
        if (IsSkipped() || HasFatalFailure()) return;
        ASSERT_EQ(session_.kova({"arrange"}).exitCode, 0);
        const auto isLeft = [&] { return minX(client_.outerFrame(left_)) < minX(client_.outerFrame(right_)); };
        ASSERT_TRUE(eventually([&] { return frames() == kHalves || (!isLeft() && frames() == kHalvesSwapped); }));
        if (!isLeft()) std::swap(left_, right_);
    }
    void TearDown() override {
        if (!HasFailure()) return;
        const auto picture = std::filesystem::current_path() / "mouse.png";
        session_.run({"import", "-window", "root", picture.string()});
        std::cerr << "Screenshot of the desktop: " << picture << "\n"
                  << session_.kova({"query", "tiles"}).output << session_.kova({"query", "windows"}).output;
    }

    void mouse(std::vector<std::string> command) {
        command.insert(command.begin(), "xdotool");
        const auto finished = session_.run(command);
        ASSERT_EQ(finished.exitCode, 0) << finished.output;
    }
    /// Moves the pointer in small steps, as a user does.
    void moveBy(int x, int y) {
        mouse({"mousemove_relative", "--", std::to_string(x / 2), std::to_string(y / 2)});
        mouse({"mousemove_relative", "--", std::to_string(x - x / 2), std::to_string(y - y / 2)});
    }
    void pressAt(int x, int y) {
        mouse({"mousemove", std::to_string(x), std::to_string(y)});
        mouse({"mousedown", "1"});
    }
    void release() { mouse({"mouseup", "1"}); }
    std::string frames() const { return text(client_.outerFrame(left_)) + " | " + text(client_.outerFrame(right_)); }
    bool framesBecome(const std::string& expected) {
        const bool isReached = eventually([&] { return frames() == expected; });
        if (!isReached) ADD_FAILURE() << frames() << " instead of " << expected;
        return isReached;
    }
    /// The title of the front window of each tile, or "-".
    std::string tiles() {
        std::string titles;
        const auto windows = session_.query("windows");
        for (const auto& tile : session_.query("tiles")) {
            std::string title = "-";
            for (const auto& window : windows) {
                if (window.at("id") == tile.at("window")) title = window.at("title");
            }
            titles += (titles.empty() ? "" : " ") + title;
        }
        return titles;
    }
    bool isMinimized(xcb_window_t window) {
        for (const auto& listed : session_.query("windows")) {
            if (listed.at("id").get<std::string>().ends_with(":" + std::to_string(window)))
                return listed.at("isMinimized");
        }
        return false;
    }
    /// Presses on the window's title bar and moves the pointer. Without a window manager the test moves the window, as
    /// its program would.
    void drag(xcb_window_t window, int x, int y) {
        const CGRect before = client_.outerFrame(window);
        pressAt(static_cast<int>(minX(before)) + 200, static_cast<int>(minY(before)) + 9);
        const auto moveWith = [&](int dx, int dy) {
            moveBy(dx, dy);
            if (isManaged()) return;
            const CGRect now = client_.outerFrame(window);
            client_.configure(window, makeRect(minX(now) + dx, minY(now) + dy, now.size.width, now.size.height));
        };
        // A window manager starts to move the window when the pointer has moved far enough.
        moveWith(40, 30);
        EXPECT_TRUE(eventually([&] {
            if (client_.outerFrame(window).origin != before.origin) return true;
            moveWith(2, 0);
            return false;
        })) << "the window does not follow the mouse";
        moveWith(x, y);
        EXPECT_TRUE(eventually([&] { return std::abs(minX(client_.outerFrame(window)) - minX(before)) > 100; }))
            << text(client_.outerFrame(window));
    }

    const std::string kHalves = "15,15 614x742 | 651,15 614x742";
    const std::string kHalvesSwapped = "651,15 614x742 | 15,15 614x742";
};

TEST_P(Mouse, DragsADividerAndBothNeighborsFollow) {
    pressAt(640, 400);
    moveBy(100, 20);
    EXPECT_TRUE(framesBecome("15,15 714x742 | 751,15 514x742")) << "while the button is held";
    moveBy(-200, 0);
    EXPECT_TRUE(framesBecome("15,15 514x742 | 551,15 714x742"));
    mouse({"key", "Escape"});
    EXPECT_TRUE(framesBecome(kHalves));
    moveBy(50, 0);
    release();
    EXPECT_TRUE(framesBecome(kHalves)) << "Escape has ended the drag";

    pressAt(640, 400);
    moveBy(120, 0);
    release();
    EXPECT_TRUE(framesBecome("15,15 734x742 | 771,15 494x742"));
    // The windows have their frames before the button is released, but the drag can be undone only after the release.
    EXPECT_TRUE(
        eventually([&] { return session_.kova({"history"}).output.find("drag divider") != std::string::npos; }));
    EXPECT_EQ(session_.kova({"undo"}).exitCode, 0);
    EXPECT_TRUE(framesBecome(kHalves));
}

TEST_P(Mouse, ResetsADividerWithADoubleClick) {
    pressAt(640, 400);
    moveBy(120, 0);
    release();
    EXPECT_TRUE(framesBecome("15,15 734x742 | 771,15 494x742"));
    // On a busy machine the clicks may be too late for a double click, so they are repeated.
    EXPECT_TRUE(eventually([&] {
        mouse({"mousemove", "760", "400", "click", "--repeat", "2", "--delay", "40", "1"});
        return frames() == kHalves;
    })) << frames();
}

TEST_P(Mouse, DoesNotDragADividerThroughAWindowInFrontOfIt) {
    client_.open({.title = "Question", .frame = makeRect(560, 300, 200, 150), .type = "DIALOG"});
    ASSERT_TRUE(eventually([&] { return session_.query("windows").size() == 3; }));
    pressAt(640, 400);
    moveBy(100, 0);
    release();
    // The dialog received the drag, so the divider has not moved. Beside the dialog the divider can be dragged.
    pressAt(640, 600);
    moveBy(100, 0);
    EXPECT_TRUE(framesBecome("15,15 714x742 | 751,15 514x742"));
    release();
}

TEST_P(Mouse, DragsAWindowToAnotherTile) {
    const std::string before = tiles();
    const std::string after = before.substr(before.find(' ') + 1) + " -"; // the right window is in the left tile
    // On a busy machine the drag may be over before the agent has handled the press.
    for (int attempt = 0; attempt < 5 && tiles() != after; ++attempt) {
        EXPECT_TRUE(framesBecome(kHalves));
        drag(right_, -500, 40);
        release();
        eventually([&] { return tiles() == after; }, std::chrono::seconds(4));
    }
    EXPECT_EQ(tiles(), after);
    EXPECT_TRUE(eventually([&] { return text(client_.outerFrame(right_)) == "15,15 614x742"; })) << frames();
    EXPECT_TRUE(eventually([&] { return !client_.isViewable(left_) && isMinimized(left_); }));
    EXPECT_EQ(session_.kova({"undo"}).exitCode, 0);
    EXPECT_TRUE(eventually([&] { return tiles() == before; })) << tiles() << " instead of " << before;
    EXPECT_TRUE(eventually([&] { return client_.isViewable(left_) && !isMinimized(left_); }));
    EXPECT_TRUE(framesBecome(kHalves));
}

TEST_P(Mouse, ReturnsAWindowThatIsDroppedOnItsOwnTile) {
    const std::string before = tiles();
    drag(right_, 250, 200); // still over its own tile
    release();
    EXPECT_TRUE(framesBecome(kHalves));
    EXPECT_EQ(tiles(), before);
}

INSTANTIATE_TEST_SUITE_P(With, Mouse, ::testing::Values(Manager::none, Manager::openbox), managerName);

} // namespace
} // namespace kova::testing
