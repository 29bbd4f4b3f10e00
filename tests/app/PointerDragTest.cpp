// Drags of divider handles and of windows.
#include "app/DesktopGuards.h"
#include "app/LayoutDividerWindowController.h"
#include "app/WindowDragCoordinator.h"
#include "tests/harness/Scenario.h"
#include "windowing/DividerGestureRecognizer.h"

#include <gtest/gtest.h>

#include <numeric>

namespace kova {
namespace {

const char* const kHalves = "Codex 15,15 1254x1382 | Mail 1291,15 1254x1382";

class PointerFixture : public ::testing::Test {
  public:
    PointerFixture() {
        desk.display(2560, 1440).layout("jarvis.dual-split").opens("Codex").opens("Mail").arrange();
        dividers.emplace(desk.controller(), desk.desktop, board, desk.desktop.queue());
        drags.emplace(desk.controller(), desk.desktop, board, desk.desktop.queue());
        drags->installMonitor();
        history = desk.controller().undoHistory().size();
    }
    ~PointerFixture() override {
        drags.reset();
        dividers.reset();
        EXPECT_TRUE(desk.desktop.handles().empty());
    }
    std::size_t newUndoSteps() { return desk.controller().undoHistory().size() - history; }
    PointerFixture& presses(CGPoint point, WindowPart grip = WindowPart::titleBar) {
        desk.desktop.pressAt(point, grip);
        return waits(0.02);
    }
    PointerFixture& moves(CGPoint point) {
        desk.desktop.movePointer(point);
        return waits(0.02);
    }
    PointerFixture& releases(ShiftKey shift = ShiftKey::up) {
        desk.desktop.releaseButton(shift);
        return waits(0.02);
    }
    PointerFixture& waits(double seconds) {
        desk.advance(Seconds(seconds));
        return *this;
    }
    std::vector<DividerHandle> currentHandles() {
        desk.advance(Seconds(0)); // handles are updated after the operation that moved them
        return desk.desktop.handles();
    }
    /// The frames of all handles. "-" follows a handle between columns, "i" a handle between rows.
    std::string handles() {
        std::string text;
        for (const auto& handle : currentHandles()) {
            text += (text.empty() ? "" : " | ") + describeFrame(handle.frame);
            text += handle.axis == LayoutAxis::horizontal ? " -" : " i";
        }
        return text;
    }

    Scenario desk;
    OverlayBoard board;
    std::optional<LayoutDividerWindowController> dividers;
    std::optional<WindowDragCoordinator> drags;
    std::size_t history = 0;
};

using DividerHandles = PointerFixture;
using DraggedWindows = PointerFixture;

TEST_F(DividerHandles, FollowTheLayoutsTheDisplaysAndThePermission) {
    EXPECT_EQ(handles(), "1274,38 12x1392 -");
    desk.layout("jarvis.quad-grid");
    const std::string quarters = handles();
    EXPECT_EQ(currentHandles().size(), 3U) << quarters;
    desk.layout("jarvis.dual-split").display(1920, 1080, "B").layout("jarvis.dual-split", "B").settle();
    EXPECT_EQ(handles(), "1274,38 12x1392 - | 3514,398 12x1032 -");
    desk.desktop.resizeDisplay("B", {1280, 1080});
    desk.settle();
    EXPECT_EQ(handles(), "1274,38 12x1392 - | 3194,398 12x1032 -");
    desk.desktop.removeDisplay("A");
    desk.settle();
    EXPECT_EQ(handles(), "634,38 12x1032 -");
    desk.desktop.setTrusted(false);
    desk.settle();
    EXPECT_EQ(handles(), "");
    desk.desktop.setTrusted(true);
    desk.settle();
    EXPECT_EQ(handles(), "634,38 12x1032 -");
}

TEST_F(DividerHandles, LeaveTheDesktopIconsOfAnEmptyDisplayFree) {
    desk.desktop.coverDesktopIcons();
    desk.display(1920, 1080, "B").layout("jarvis.dual-split", "B").settle();
    EXPECT_EQ(handles(), "1274,38 12x1392 -");
    desk.perform(WindowCommand{command::Place{desk.desktop.windowIDOf("Mail"), desk.target("B", "focus-main")}});
    EXPECT_EQ(handles(), "1274,38 12x1392 - | 3514,398 12x1032 -");
    for (const char* label : {"Mail", "Codex"}) desk.desktop.close(label);
    desk.settle();
    EXPECT_EQ(handles(), "");
}

/// A Mac moves all windows aside when its wallpaper is clicked.
TEST_F(DividerHandles, TogetherWithGuardsCoverTheDesktopBetweenWindows) {
    desk.desktop.coverDesktopIcons();
    const auto areaOf = [](const CGRect& frame) { return frame.size.width * frame.size.height; };
    for (const char* layout : {"jarvis.dual-stack", "jarvis.command-center", "jarvis.dual-split"}) {
        SCOPED_TRACE(layout);
        desk.layout(layout).settle();
        std::vector<CGRect> all;
        for (const auto& handle : currentHandles()) all.push_back(gapFrame(handle));
        all.insert(all.end(), desk.desktop.guardedAreas().begin(), desk.desktop.guardedAreas().end());
        const double maxYOfFirst = maxY(desk.desktop.screens().front().frame);
        for (const auto& tile : desk.controller().tiles())
            all.push_back(flipped(tile.frameForWindowService, maxYOfFirst));
        EXPECT_TRUE(uncoveredParts(desk.desktop.screens().front().visibleFrame, all).empty());
        const double sum = std::accumulate(all.begin(), all.end(), 0.0,
                                           [&](double area, const CGRect& each) { return area + areaOf(each); });
        // The handle of a nested split overlaps the handle of its outer split by the inset.
        EXPECT_NEAR(sum, areaOf(desk.desktop.screens().front().visibleFrame), 500) << "no handle lies over a window";
    }
    desk.desktop.userFocuses("Mail");
    desk.zoom();
    EXPECT_TRUE(currentHandles().empty() && desk.desktop.guardedAreas().empty());
    desk.zoom();
    EXPECT_FALSE(currentHandles().empty() || desk.desktop.guardedAreas().empty());
    desk.desktop.setTrusted(false);
    desk.settle();
    EXPECT_TRUE(desk.desktop.guardedAreas().empty());
    desk.desktop.setTrusted(true);
    desk.settle();
    dividers->close();
    EXPECT_TRUE(desk.desktop.guardedAreas().empty());
}

TEST_F(DividerHandles, LeaveTheFootersOfTheTilesAboveThemFree) {
    desk.layout("jarvis.dual-stack").settle();
    // The upper 28 points of the 40-point gap belong to the footer.
    EXPECT_EQ(handles(), "10,714 2540x12 i");
}

TEST_F(DividerHandles, AreRemovedDuringFocusMode) {
    desk.display(1920, 1080, "B").layout("jarvis.dual-split", "B").settle();
    desk.desktop.userFocuses("Mail");
    desk.zoom();
    EXPECT_EQ(handles(), "3514,398 12x1032 -");
    desk.zoom();
    EXPECT_EQ(handles(), "1274,38 12x1392 - | 3514,398 12x1032 -");
}

TEST_F(DividerHandles, OfAnotherDisplayEndFocusModeAndCanBeDragged) {
    desk.display(1920, 1080, "B").layout("jarvis.dual-split", "B").settle();
    desk.desktop.userFocuses("Mail");
    desk.zoom();
    presses({3520, 500}).moves({3420, 500}).releases();
    desk.settle();
    EXPECT_EQ(handles(), "1274,38 12x1392 - | 3414,398 12x1032 -");
    desk.expectTiles(std::string(kHalves) + " || - | -");
}

TEST_F(DividerHandles, AreRemovedDuringADragUntilTheNextRefresh) {
    presses({1280, 700}).moves({1480, 700});
    dividers->close();
    EXPECT_EQ(handles(), "");
    dividers->refresh();
    EXPECT_EQ(handles(), "1274,38 12x1392 -");
    releases();
}

TEST_F(DividerHandles, MoveBothNeighborsWhileTheyAreDragged) {
    presses({1280, 700}).moves({1480, 720});
    EXPECT_EQ(desk.tiles(), "Codex 15,15 1454x1382 | Mail 1491,15 1054x1382");
    EXPECT_EQ(handles(), "1474,38 12x1392 -") << "the handle stays under the pointer";
    moves({1180, 100}).moves({1080, 100});
    EXPECT_EQ(desk.tiles(), "Codex 15,15 1054x1382 | Mail 1091,15 1454x1382");
    EXPECT_EQ(newUndoSteps(), 0U);
    releases();
    desk.settle();
    desk.expectTiles("Codex 15,15 1054x1382 | Mail 1091,15 1454x1382");
    EXPECT_EQ(newUndoSteps(), 1U);
    // The y axis of the pointer's position points up, that of the layout down.
    desk.layout("jarvis.quad-grid");
    const CGRect across = currentHandles()[1].frame;
    ASSERT_EQ(currentHandles()[1].axis, LayoutAxis::vertical) << handles();
    const double y = 1440 - center(across).y;
    presses({center(across).x, y}).moves({center(across).x, y + 100}).releases();
    EXPECT_EQ(minY(currentHandles()[1].frame), minY(across) - 100);
}

/// A desktop may report the press on a handle late, when the pointer is already over a window that has not moved yet.
TEST_F(DividerHandles, AreNotMistakenForAWindowWhoseEdgeIsDragged) {
    desk.desktop.delayPressReport();
    presses({1280, 25});
    desk.desktop.movePointer({1300, 25});
    desk.desktop.movePointer({1480, 25});
    desk.desktop.reportPress();
    waits(0.02).moves({1500, 25});
    EXPECT_EQ(desk.tiles(), "Codex 15,15 1474x1382 | Mail 1511,15 1034x1382");
    moves({1400, 25}).releases();
    desk.settle();
    desk.expectTiles("Codex 15,15 1374x1382 | Mail 1411,15 1134x1382");
    EXPECT_EQ(newUndoSteps(), 1U);
}

TEST_F(DividerHandles, ReturnToTheirPlaceWhenEscapeIsPressed) {
    const auto profile = *desk.state().profile;
    presses({1280, 700}).moves({1580, 700});
    EXPECT_EQ(desk.tiles(), "Codex 15,15 1554x1382 | Mail 1591,15 954x1382");
    desk.desktop.pressEscape();
    waits(0.02);
    EXPECT_EQ(desk.tiles(), kHalves);
    moves({1900, 700}).releases();
    desk.settle();
    desk.expectTiles(kHalves);
    EXPECT_EQ(*desk.state().profile, profile);
    EXPECT_EQ(newUndoSteps(), 0U);
}

TEST_F(DividerHandles, ResetTheWeightsWithADoubleClick) {
    presses({1280, 700}).moves({1480, 700}).releases();
    presses({1480, 700}).releases();
    waits(0.5).presses({1480, 700}).releases();
    desk.settle();
    desk.expectTiles(
        "Codex 15,15 1454x1382 | Mail 1491,15 1054x1382"); // a press after a drag or a pause is no double click
    presses({1480, 700}).releases().waits(0.1).presses({1480, 700}).moves({1700, 700}).releases();
    desk.settle();
    desk.expectTiles(kHalves);
    EXPECT_EQ(newUndoSteps(), 2U);
}

TEST_F(DividerHandles, EndTheDragWhenTheLayoutOrTheDisplayChanges) {
    presses({1280, 700}).moves({1480, 700});
    desk.layout("jarvis.quad-grid");
    const std::string quarters = desk.tiles();
    moves({1900, 700}).releases();
    desk.settle();
    desk.expectTiles(quarters);

    desk.layout("jarvis.dual-split");
    presses({1280, 700}).moves({1480, 700});
    desk.desktop.removeDisplay("A");
    desk.settle();
    moves({1500, 700}).releases();
    EXPECT_EQ(handles(), "");
}

TEST_F(DividerHandles, LieBehindTheWindowsThatOverlapThem) {
    desk.opens("Notes", {.frame = makeRect(1100, 600, 400, 300)}).settle();
    presses({1280, 700}).moves({1380, 750}).releases(ShiftKey::down);
    desk.settle();
    desk.expectTiles(kHalves);
    EXPECT_EQ(desk.desktop.describeWindow(desk.desktop.window("Notes")), "Notes 1200,650 400x300");
}

TEST_F(DividerHandles, UpdateTheLayoutAtMostSixtyOneTimesASecond) {
    presses({1280, 700});
    const auto revision = *desk.state().layoutRevision;
    for (int i = 1; i <= 1000; ++i) {
        desk.desktop.movePointer({1280 + i * 0.5, 700});
        waits(0.001);
    }
    EXPECT_LE(*desk.state().layoutRevision - revision, 61);
    EXPECT_GE(*desk.state().layoutRevision - revision, 55);
    waits(0.02);
    EXPECT_EQ(desk.tiles(), "Codex 15,15 1754x1382 | Mail 1791,15 754x1382");
    releases();
}

TEST_F(DraggedWindows, LandInTheTileWhereTheyAreDropped) {
    presses({1400, 30}).moves({1300, 100});
    EXPECT_EQ(*desk.state().dropTarget, std::nullopt) << "a window cannot be dropped on its own tile";
    moves({500, 300});
    EXPECT_EQ(*desk.state().dropTarget, desk.target("A", "focus-main"));
    EXPECT_EQ(newUndoSteps(), 0U);
    releases();
    EXPECT_EQ(*desk.state().dropTarget, desk.target("A", "focus-main"))
        << "the window may not have reached its frame yet";
    desk.settle();
    EXPECT_EQ(*desk.state().dropTarget, std::nullopt);
    desk.expectTiles("Mail 15,15 1254x1382 + Codex | -");
    EXPECT_EQ(newUndoSteps(), 1U);
    desk.undo();
    desk.expectTiles(kHalves);
}

TEST_F(DraggedWindows, AreDroppedIntoTheTileEvenIfTheyFollowThePointerLate) {
    presses({1400, 30}, WindowPart::nothing).moves({500, 300}).releases();
    desk.desktop.userMoves("Mail", makeRect(391, 285, 1254, 1382));
    desk.settle();
    desk.expectTiles("Mail 15,15 1254x1382 + Codex | -");
    presses({100, 30}, WindowPart::nothing).moves({1900, 300}).releases();
    presses({100, 30}, WindowPart::nothing);
    desk.settle();
    releases();
    desk.expectTiles("Mail 15,15 1254x1382 + Codex | -"); // the first release does not affect the second press
}

TEST_F(DraggedWindows, ReturnWhenTheyAreNotDroppedOnAnotherTile) {
    desk.desktop.setPanels("A", makeRect(0, 0, 0, 100)); // a panel at the bottom edge
    desk.settle();
    const std::string before = desk.tiles();
    for (const CGPoint place : {CGPoint{1280, 700}, CGPoint{1900, 500}, CGPoint{300, 1430}}) {
        presses({1400, 30}).moves({1500, 300}).moves(place).releases();
        desk.settle();
        desk.expectTiles(before);
    }
    EXPECT_EQ(newUndoSteps(), 0U);
}

TEST_F(DraggedWindows, ReturnToTheirFrameInFocusMode) {
    desk.desktop.userFocuses("Mail");
    desk.zoom();
    const std::string zoomed = desk.desktop.picture();
    presses({1400, 30}).moves({1500, 300}).releases();
    EXPECT_NE(desk.desktop.picture(), zoomed);
    desk.settle();
    EXPECT_EQ(desk.desktop.picture(), zoomed);
    desk.zoom();
    desk.expectTiles(kHalves);
    presses({1400, 30}).moves({1500, 300});
    desk.controller().perform(action::ToggleFocusZoom{}); // by a shortcut, during the drag
    moves({1600, 900}).releases();
    desk.settle();
    EXPECT_EQ(desk.desktop.picture(), zoomed);
}

TEST_F(DraggedWindows, FloatWithShiftUntilTheyAreDroppedOnATileOrArranged) {
    presses({1400, 30}).moves({1200, 330}).releases(ShiftKey::down);
    desk.settle();
    desk.expectTiles("Codex 15,15 1254x1382 | -");
    EXPECT_EQ(desk.desktop.describeWindow(desk.desktop.window("Mail")), "Mail 1091,315 1254x1382");
    presses({1200, 330}).moves({1900, 400}).releases();
    desk.settle();
    desk.expectTiles(kHalves);
    presses({1400, 30}).moves({1200, 330}).releases(ShiftKey::down);
    desk.arrange();
    desk.expectTiles(kHalves);
}

TEST_F(DraggedWindows, ResizedAtAnEdgeMoveTheDividerWithinMinimumSizes) {
    presses({1268, 700}, WindowPart::rightEdge).moves({1468, 900}).releases();
    desk.settle();
    desk.expectTiles("Codex 15,15 1454x1382 | Mail 1491,15 1054x1382");
    presses({1492, 700}, WindowPart::leftEdge).moves({2540, 700}).releases();
    desk.settle();
    desk.expectTiles("Codex 15,15 2198x1382 | Mail 2235,15 310x1382");
    EXPECT_EQ(newUndoSteps(), 2U);
    EXPECT_EQ(*desk.state().dropTarget, std::nullopt);
}

TEST_F(DraggedWindows, AreLeftAloneByPollsWhileThePointerPauses) {
    desk.desktop.setAnnouncesAllChanges(false);
    presses({1400, 30}).moves({1500, 300});
    for (int i = 0; i < 20; ++i) {
        desk.advance(Seconds(0.25));
        ASSERT_EQ(desk.desktop.describeWindow(desk.desktop.window("Mail")), "Mail 1391,285 1254x1382");
        ASSERT_EQ(desk.tiles(), "Codex 15,15 1254x1382 | Mail 1391,285 1254x1382");
    }
    releases();
    desk.settle();
    desk.expectTiles(kHalves);
}

TEST_F(DraggedWindows, AreLeftAloneFromThePressOn) {
    desk.desktop.setAnnouncesAllChanges(false);
    // The window is pressed while its placement is still being verified.
    ASSERT_TRUE(
        desk.controller().perform(command::Place{desk.desktop.windowIDOf("Mail"), desk.target("A", "secondary-1")}));
    presses({1400, 30}, WindowPart::nothing);
    desk.desktop.userMoves("Mail", makeRect(391, 285, 1254, 1382));
    for (int i = 0; i < 20; ++i) {
        waits(0.1);
        ASSERT_EQ(desk.desktop.describeWindow(desk.desktop.window("Mail")), "Mail 391,285 1254x1382");
    }
    // The pointer was not moved, so the user did not drag the window. Polls put the window back.
    releases();
    desk.settle();
    desk.expectTiles(kHalves);
    presses({1400, 30}, WindowPart::nothing).moves({500, 300});
    desk.desktop.userMoves("Mail", makeRect(391, 285, 1254, 1382));
    waits(2).releases();
    desk.settle();
    desk.expectTiles("Mail 15,15 1254x1382 + Codex | -");
}

TEST_F(DraggedWindows, ReturnHoweverOftenTheyAreDroppedAtTheSamePlace) {
    for (int i = 0; i < 6; ++i) {
        presses({1400, 30}, WindowPart::nothing);
        desk.desktop.userMoves("Mail", makeRect(1391, 285, 1254, 1382));
        releases().waits(0.1);
        EXPECT_EQ(desk.tiles(), kHalves) << i;
    }
    desk.settle();
    desk.expectTiles(kHalves);
    // After the monitor is removed, polls put the window back.
    presses({1400, 30}, WindowPart::nothing);
    desk.desktop.userMoves("Mail", makeRect(1391, 285, 1254, 1382));
    drags->removeMonitor();
    desk.settle();
    desk.expectTiles(kHalves);
}

TEST_F(DraggedWindows, AreOnlyWindowsThatMoveTogetherWithThePointer) {
    presses({1400, 30}, WindowPart::nothing);
    desk.desktop.userMoves("Mail", makeRect(300, 300, 800, 600));
    moves({1401, 31}).releases();
    EXPECT_EQ(*desk.state().dropTarget, std::nullopt);
    desk.settle();
    desk.expectTiles(kHalves);
    // Clicks and selections of text do not move windows either.
    presses({400, 400}, WindowPart::nothing).moves({1900, 500}).releases();
    desk.settle();
    desk.expectTiles(kHalves);
    EXPECT_EQ(newUndoSteps(), 0U);
}

} // namespace
} // namespace kova
