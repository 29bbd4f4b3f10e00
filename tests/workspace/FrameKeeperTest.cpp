#include "workspace/FrameKeeper.h"

#include <gtest/gtest.h>

using namespace kova;

namespace {

using enum FrameKeeper::Decision;
using CorrectedDrift = FrameKeeper::CorrectedDrift;

constexpr CGRect kTile{{0, 0}, {100, 100}};

ManagedWindow windowAt(const CGRect& frame) {
    ManagedWindow window;
    window.id = "mail";
    window.frame = frame;
    return window;
}

struct FrameKeeperTest : testing::Test {
    FrameKeeper frames;
    void refuse(const ManagedWindow& window, int times = FrameKeeper::kAttempts) {
        for (int i = 0; i < times; ++i) {
            ASSERT_EQ(frames.decide(window, kTile, CorrectedDrift::noticeable, std::nullopt), repeatRequest);
            frames.noteAttempt(window.id);
        }
    }
};

TEST_F(FrameKeeperTest, RequestsTheSameFrameALimitedNumberOfTimes) {
    const auto window = windowAt(makeRect(50, 0, 100, 100));
    refuse(window, FrameKeeper::kAttempts - 1);
    EXPECT_EQ(frames.refusal("mail"), nullptr);
    EXPECT_TRUE(frames.isWaiting());
    refuse(window, 1);
    EXPECT_EQ(frames.decide(window, kTile, CorrectedDrift::noticeable, std::nullopt), noRequest);
    EXPECT_FALSE(frames.refusal("mail")->isAccepted);
    EXPECT_EQ(frames.refusal("mail")->actual, *window.frame);
    const CGRect otherTile = makeRect(200, 0, 100, 100);
    EXPECT_EQ(frames.decide(window, otherTile, CorrectedDrift::noticeable, std::nullopt), repeatRequest)
        << "the window may accept that frame";
    refuse(windowAt(makeRect(60, 0, 100, 100)));
    frames.rename("mail", "mail of another tab");
    EXPECT_FALSE(frames.refusal("mail of another tab")) << "the other tab may accept the frame";
    EXPECT_EQ(frames.decide(window, kTile, CorrectedDrift::noticeable, std::nullopt), repeatRequest);
    frames.accept("mail", kTile, *window.frame);
    frames.rename("mail", "mail of another tab");
    EXPECT_TRUE(frames.refusal("mail of another tab")->isAccepted) << "the tab has the frame that was accepted";
    frames.rename("mail of another tab", "mail");
    frames.forgetRefusal("mail");
    EXPECT_EQ(frames.decide(window, kTile, CorrectedDrift::noticeable, std::nullopt), repeatRequest);
}

TEST_F(FrameKeeperTest, DecidesWhichFramesHaveDrifted) {
    const struct {
        const char* what;
        double offset;
        CorrectedDrift correctedDrift;
        std::optional<CGRect> pending;
        FrameKeeper::Decision expected;
    } cases[] = {
        {"a drift of 1.5 points is tolerated", 1.5, CorrectedDrift::noticeable, {}, noRequest},
        {"a drift of 1.5 points after the user changed the tiles", 1.5, CorrectedDrift::any, {}, repeatRequest},
        {"a pending request for the same frame is not repeated", 50, CorrectedDrift::any, kTile, noRequest},
        {"a pending request for another frame is replaced", 50, CorrectedDrift::any, makeRect(9, 9, 100, 100), request},
    };
    for (const auto& each : cases) {
        const auto window = windowAt(makeRect(each.offset, 0, 100, 100));
        EXPECT_EQ(frames.decide(window, kTile, each.correctedDrift, each.pending), each.expected) << each.what;
    }
}

TEST_F(FrameKeeperTest, AwaitsAPlacementDuringWhichThePointerHeldTheWindow) {
    const auto window = windowAt(makeRect(0, 0, 150, 100));
    frames.noteRequest("mail");
    frames.noteNotPlaced(window); // held by the pointer
    EXPECT_EQ(frames.decide(window, kTile, CorrectedDrift::noticeable, kTile), noRequest);
    EXPECT_TRUE(frames.isWaiting()) << "the placement is not verified yet";
    EXPECT_EQ(frames.decide(window, kTile, CorrectedDrift::noticeable, std::nullopt), repeatRequest);
}

TEST_F(FrameKeeperTest, ForgetsTheRefusalOfAWindowThatReachedItsTile) {
    refuse(windowAt(makeRect(50, 0, 100, 100)));
    EXPECT_EQ(frames.decide(windowAt(kTile), kTile, CorrectedDrift::noticeable, std::nullopt), noRequest);
    EXPECT_EQ(frames.refusal("mail"), nullptr);
}

TEST_F(FrameKeeperTest, KeepsTheRefusalOfAWindowOnAnotherSpace) {
    auto window = windowAt(makeRect(50, 0, 100, 100));
    refuse(window);
    window.isElsewhere = true;
    frames.noteNotPlaced(window);
    EXPECT_TRUE(frames.refusal("mail"));
    window.isElsewhere = false;
    frames.noteNotPlaced(window);
    EXPECT_FALSE(frames.refusal("mail"));
}

TEST_F(FrameKeeperTest, WaitsForAPollThatSeesTheRequestedFrame) {
    frames.accept("mail", kTile, makeRect(50, 0, 100, 100));
    EXPECT_TRUE(frames.refusal("mail")->isAccepted);
    EXPECT_FALSE(frames.isWaiting());
    frames.noteRequest("mail");
    EXPECT_TRUE(frames.isWaiting());
    const auto yes = [](const WindowID&) { return true; };
    const auto no = [](const WindowID&) { return false; };
    frames.onPoll({{}, Seconds{0}, yes, yes});
    EXPECT_TRUE(frames.isWaiting()) << "the frame is still being verified";
    frames.onPoll({{}, Seconds{0}, yes, no});
    EXPECT_FALSE(frames.isWaiting());
    frames.onPoll({{}, Seconds{0}, no, no});
    EXPECT_FALSE(frames.refusal("mail")) << "the window has closed";
}

TEST_F(FrameKeeperTest, ASpanningWindowThatNeedsLessRoomIsReportedOnce) {
    const std::map<WindowID, TileTarget> anchors{{"mail", "D::a"}};
    CGSize minimum{300, 100};
    const auto minimumOf = [&](const WindowID&) { return std::optional(minimum); };
    EXPECT_TRUE(frames.takeShrunken(anchors, minimumOf).empty());
    minimum.width = 200;
    EXPECT_EQ(frames.takeShrunken(anchors, minimumOf), std::vector<WindowID>{"mail"});
    EXPECT_TRUE(frames.takeShrunken(anchors, minimumOf).empty());
    EXPECT_TRUE(frames.takeShrunken({}, minimumOf).empty());
}

} // namespace
