#include "workspace/WindowStay.h"

#include <gtest/gtest.h>

using namespace kova;

namespace {

TEST(WindowStay, EachReasonHasASentence) {
    const RefusedFrame refusing{makeRect(0, 0, 300.4, 200), makeRect(10, 20, 640, 480), 3};
    RefusedFrame accepted = refusing;
    accepted.isAccepted = true;
    const struct {
        WindowSituation situation;
        std::vector<std::string> expected;
    } rows[] = {
        {{}, {}},
        {{.hasTile = true}, {}},
        {{.obstacle = "The screen is locked"}, {"No window is moved now: The screen is locked."}},
        {{.isDragUnderWay = true, .hasTile = true, .leftAlone = LeftAloneReason::heldByPointer},
         {"No window is moved while the pointer drags something.",
          "It is not put into its tile while it is held by the pointer."}},
        {{.leftAlone = LeftAloneReason::fullScreen, .refusal = &refusing},
         {"It is left alone while it is in full screen."}},
        {{.hasTile = true, .refusal = &refusing, .attempts = 3},
         {"It refuses the frame of its tile: after 3 requests for 300 × 200 at 0, 0 it is still 640 × 480 at 10, 20. "
          "KOVA requests the frame again when the tile changes or the window moves."}},
        {{.refusal = &refusing, .attempts = 3}, {}},
        {{.hasTile = true, .refusal = &accepted, .attempts = 3},
         {"It is left where it was when KOVA started, 640 × 480 at 10, 20, until its tile changes or it moves."}},
        {{.hasTile = true, .isPlacementPending = true},
         {"KOVA has just requested its frame and is verifying whether the window takes it."}},
        {{.isFloating = true, .rule = "“Calm” says float", .isWaitingForItsDisplay = true},
         {"It floats until it is put into a tile.", "An arrangement leaves it alone: the rule “Calm” says float.",
          "An arrangement leaves it alone for a moment: its display was unplugged and may come back."}},
        {{.isOffScreen = true, .manager = "i3 places windows itself."},
         {"It is on no screen although it is neither minimized nor hidden, so KOVA cannot show it.",
          "i3 places windows itself."}},
        {{.leftAlone = LeftAloneReason::onAnotherDesktop, .isOffScreen = true},
         {"It is left alone while it is on another virtual desktop."}},
        {{.isAwaitedByLaunch = true, .isAwaitedByScene = true},
         {"A tile waits for a window of its application.",
          "The scene that was opened last waits for a window of its application."}},
    };
    for (const auto& row : rows) EXPECT_EQ(whyItStays(row.situation), row.expected);
}

TEST(LeftAloneReason, TheFirstReasonInTheOrderOfPrecedenceIsGiven) {
    ManagedWindow window;
    window.isVisible = true;
    EXPECT_FALSE(whyLeftAlone(window, {}));
    EXPECT_EQ(whyLeftAlone(window, {.isApplicationHidden = true}), LeftAloneReason::applicationHidden);
    window.isResponding = false;
    EXPECT_EQ(whyLeftAlone(window, {.isApplicationHidden = true}), LeftAloneReason::notResponding);
    window.isMaximized = true;
    EXPECT_EQ(whyLeftAlone(window, {}), LeftAloneReason::maximized);
    window.isFullScreen = true;
    EXPECT_EQ(whyLeftAlone(window, {}), LeftAloneReason::fullScreen);
    window.isMinimized = true;
    EXPECT_EQ(whyLeftAlone(window, {}), LeftAloneReason::minimized);
    window.isElsewhere = true;
    EXPECT_EQ(whyLeftAlone(window, {}), LeftAloneReason::onAnotherDesktop);
    EXPECT_EQ(whyLeftAlone(window, {.isZoomed = true, .isHeldByPointer = true}), LeftAloneReason::zoomed);
}

} // namespace
