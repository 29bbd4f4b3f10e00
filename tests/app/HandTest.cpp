// The hand on the mouse: the handles between tiles, and windows carried about.
#include "app/LayoutDividerWindowController.h"
#include "app/WindowDragCoordinator.h"
#include "tests/harness/Scenario.h"

#include <gtest/gtest.h>

namespace kova {
namespace {

const char* const kHalves = "Codex 15,15 1254x1382 | Mail 1291,15 1254x1382";

class Hand : public ::testing::Test {
  public:
    Hand() {
        desk.display(2560, 1440).layout("jarvis.dual-split").opens("Codex").opens("Mail").arrange();
        dividers.emplace(desk.controller(), desk.desktop, board, desk.desktop.queue());
        drags.emplace(desk.controller(), desk.desktop, board, desk.desktop.queue());
        drags->installMonitor();
        history = desk.controller().undoHistory().size();
    }
    ~Hand() override {
        drags.reset();
        dividers.reset();
        EXPECT_TRUE(desk.desktop.handles().empty());
    }
    std::size_t newUndoSteps() { return desk.controller().undoHistory().size() - history; }
    Hand& presses(CGPoint point, WindowPart grip = WindowPart::titleBar) {
        desk.desktop.pressAt(point, grip);
        return waits(0.02);
    }
    Hand& moves(CGPoint point) {
        desk.desktop.movePointer(point);
        return waits(0.02);
    }
    Hand& letsGo(ShiftKey shift = ShiftKey::up) {
        desk.desktop.letGo(shift);
        return waits(0.02);
    }
    Hand& waits(double seconds) {
        desk.advance(Seconds(seconds));
        return *this;
    }
    std::vector<DividerHandle> handleFrames() {
        desk.advance(Seconds(0)); // they follow once what moved them is done
        return desk.desktop.handles();
    }
    std::string handles() {
        std::string text;
        for (const auto& handle : handleFrames()) {
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

using DividerHandles = Hand;
using CarriedWindows = Hand;

TEST_F(DividerHandles, FollowTheLayoutsTheDisplaysAndThePermission) {
    EXPECT_EQ(handles(), "1274,38 12x1392 -");
    desk.layout("jarvis.quad-grid");
    const std::string quarters = handles();
    EXPECT_EQ(handleFrames().size(), 3U) << quarters;
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
    desk.perform(WindowCommand{command::Place{desk.desktop.windowIDOf("Mail"), desk.targetID("B", "focus-main")}});
    EXPECT_EQ(handles(), "1274,38 12x1392 - | 3514,398 12x1032 -");
    for (const char* label : {"Mail", "Codex"}) desk.desktop.close(label);
    desk.settle();
    EXPECT_EQ(handles(), "");
}

TEST_F(DividerHandles, LeaveTheFootersOfTheTilesAboveThemFree) {
    desk.layout("jarvis.dual-stack").settle();
    // The gap of 40 points begins with the footer of 28.
    EXPECT_EQ(handles(), "10,714 2540x12 i");
}

TEST_F(DividerHandles, AreGoneWhileAWindowOwnsTheDisplay) {
    desk.display(1920, 1080, "B").layout("jarvis.dual-split", "B").settle();
    desk.desktop.userFocuses("Mail");
    desk.zoom();
    EXPECT_EQ(handles(), "3514,398 12x1032 -");
    desk.zoom();
    EXPECT_EQ(handles(), "1274,38 12x1392 - | 3514,398 12x1032 -");
}

TEST_F(DividerHandles, OfAnotherDisplayEndTheZoomAndAreDraggedAllTheSame) {
    desk.display(1920, 1080, "B").layout("jarvis.dual-split", "B").settle();
    desk.desktop.userFocuses("Mail");
    desk.zoom();
    presses({3520, 500}).moves({3420, 500}).letsGo();
    desk.settle();
    EXPECT_EQ(handles(), "1274,38 12x1392 - | 3414,398 12x1032 -");
    desk.expectTiles(std::string(kHalves) + " || - | -");
}

TEST_F(DividerHandles, AreTakenAwayWithTheDragUnderTheHandUntilTheNextRefresh) {
    presses({1280, 700}).moves({1480, 700});
    dividers->close();
    EXPECT_EQ(handles(), "");
    dividers->refresh();
    EXPECT_EQ(handles(), "1274,38 12x1392 -");
    letsGo();
}

TEST_F(DividerHandles, MoveBothNeighboursWhileTheyAreDragged) {
    presses({1280, 700}).moves({1480, 720});
    EXPECT_EQ(desk.tiles(), "Codex 15,15 1454x1382 | Mail 1491,15 1054x1382");
    EXPECT_EQ(handles(), "1474,38 12x1392 -") << "the handle stays under the hand";
    moves({1180, 100}).moves({1080, 100});
    EXPECT_EQ(desk.tiles(), "Codex 15,15 1054x1382 | Mail 1091,15 1454x1382");
    EXPECT_EQ(newUndoSteps(), 0U);
    letsGo();
    desk.settle();
    desk.expectTiles("Codex 15,15 1054x1382 | Mail 1091,15 1454x1382");
    EXPECT_EQ(newUndoSteps(), 1U);
    // Along the other axis the hand moves against the screen's direction.
    desk.layout("jarvis.quad-grid");
    const CGRect across = handleFrames()[1].frame;
    ASSERT_EQ(handleFrames()[1].axis, LayoutAxis::vertical) << handles();
    const double y = 1440 - centre(across).y;
    presses({centre(across).x, y}).moves({centre(across).x, y + 100}).letsGo();
    EXPECT_EQ(minY(handleFrames()[1].frame), minY(across) - 100);
}

TEST_F(DividerHandles, GoBackWithEscape) {
    const auto profile = *desk.state().profile;
    presses({1280, 700}).moves({1580, 700});
    EXPECT_EQ(desk.tiles(), "Codex 15,15 1554x1382 | Mail 1591,15 954x1382");
    desk.desktop.pressEscape();
    waits(0.02);
    EXPECT_EQ(desk.tiles(), kHalves);
    moves({1900, 700}).letsGo();
    desk.settle();
    desk.expectTiles(kHalves);
    EXPECT_EQ(*desk.state().profile, profile);
    EXPECT_EQ(newUndoSteps(), 0U);
}

TEST_F(DividerHandles, ForgetTheirWeightsWithADoubleClick) {
    presses({1280, 700}).moves({1480, 700}).letsGo();
    presses({1480, 700}).letsGo();
    waits(0.5).presses({1480, 700}).letsGo();
    desk.settle();
    desk.expectTiles("Codex 15,15 1454x1382 | Mail 1491,15 1054x1382"); // neither after a drag nor after a pause
    presses({1480, 700}).letsGo().waits(0.1).presses({1480, 700}).moves({1700, 700}).letsGo();
    desk.settle();
    desk.expectTiles(kHalves);
    EXPECT_EQ(newUndoSteps(), 2U);
}

TEST_F(DividerHandles, AreTornOutOfTheHandWhenTheyGo) {
    presses({1280, 700}).moves({1480, 700});
    desk.layout("jarvis.quad-grid");
    const std::string quarters = desk.tiles();
    moves({1900, 700}).letsGo();
    desk.settle();
    desk.expectTiles(quarters);

    desk.layout("jarvis.dual-split");
    presses({1280, 700}).moves({1480, 700});
    desk.desktop.removeDisplay("A");
    desk.settle();
    moves({1500, 700}).letsGo();
    EXPECT_EQ(handles(), "");
}

TEST_F(DividerHandles, LieUnderTheWindowsThatOverlapThem) {
    desk.opens("Notes", {.frame = makeRect(1100, 600, 400, 300)}).settle();
    presses({1280, 700}).moves({1380, 750}).letsGo(ShiftKey::down);
    desk.settle();
    desk.expectTiles(kHalves);
    EXPECT_EQ(desk.desktop.describeWindow(desk.desktop.window("Notes")), "Notes 1200,650 400x300");
}

TEST_F(DividerHandles, PassAThousandMovementsOnAtMostSixtyOneTimesASecond) {
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
    letsGo();
}

TEST_F(CarriedWindows, LandInTheTileWhereTheyAreDropped) {
    presses({1400, 30}).moves({1300, 100});
    EXPECT_EQ(*desk.state().dropTargetSlotID, std::nullopt) << "nothing would come of it over its own tile";
    moves({500, 300});
    EXPECT_EQ(*desk.state().dropTargetSlotID, desk.targetID("A", "focus-main"));
    EXPECT_EQ(newUndoSteps(), 0U);
    letsGo();
    EXPECT_EQ(*desk.state().dropTargetSlotID, desk.targetID("A", "focus-main"))
        << "it may not have reached its place yet";
    desk.settle();
    EXPECT_EQ(*desk.state().dropTargetSlotID, std::nullopt);
    desk.expectTiles("Mail 15,15 1254x1382 + Codex | -");
    EXPECT_EQ(newUndoSteps(), 1U);
    desk.undo();
    desk.expectTiles(kHalves);
}

TEST_F(CarriedWindows, MayBeSlowerThanTheHand) {
    presses({1400, 30}, WindowPart::nothing).moves({500, 300}).letsGo();
    desk.desktop.userMoves("Mail", makeRect(391, 285, 1254, 1382));
    desk.settle();
    desk.expectTiles("Mail 15,15 1254x1382 + Codex | -");
    presses({100, 30}, WindowPart::nothing).moves({1900, 300}).letsGo();
    presses({100, 30}, WindowPart::nothing);
    desk.settle();
    letsGo();
    desk.expectTiles("Mail 15,15 1254x1382 + Codex | -"); // nothing is left of the first time for the second
}

TEST_F(CarriedWindows, ReturnWhenTheyAreDroppedElsewhere) {
    desk.desktop.setPanels("A", makeRect(0, 0, 0, 100)); // a panel below
    desk.settle();
    const std::string before = desk.tiles();
    for (const CGPoint elsewhere : {CGPoint{1280, 700}, CGPoint{1900, 500}, CGPoint{300, 1430}}) {
        presses({1400, 30}).moves({1500, 300}).moves(elsewhere).letsGo();
        desk.settle();
        desk.expectTiles(before);
    }
    EXPECT_EQ(newUndoSteps(), 0U);
}

TEST_F(CarriedWindows, FloatWithShiftUntilTheyAreDroppedOnATileOrArranged) {
    presses({1400, 30}).moves({1200, 330}).letsGo(ShiftKey::down);
    desk.settle();
    desk.expectTiles("Codex 15,15 1254x1382 | -");
    EXPECT_EQ(desk.desktop.describeWindow(desk.desktop.window("Mail")), "Mail 1091,315 1254x1382");
    presses({1200, 330}).moves({1900, 400}).letsGo();
    desk.settle();
    desk.expectTiles(kHalves);
    presses({1400, 30}).moves({1200, 330}).letsGo(ShiftKey::down);
    desk.arrange();
    desk.expectTiles(kHalves);
}

TEST_F(CarriedWindows, TakeTheDividerAlongWithinMinimumsWhenPulledAtAnEdge) {
    presses({1268, 700}, WindowPart::rightEdge).moves({1468, 900}).letsGo();
    desk.settle();
    desk.expectTiles("Codex 15,15 1454x1382 | Mail 1491,15 1054x1382");
    presses({1492, 700}, WindowPart::leftEdge).moves({2540, 700}).letsGo();
    desk.settle();
    desk.expectTiles("Codex 15,15 2198x1382 | Mail 2235,15 310x1382");
    EXPECT_EQ(newUndoSteps(), 2U);
    EXPECT_EQ(*desk.state().dropTargetSlotID, std::nullopt);
}

TEST_F(CarriedWindows, AreLeftAloneByThePollsHoweverLongTheHandRests) {
    desk.desktop.setVouching(false);
    presses({1400, 30}).moves({1500, 300});
    for (int i = 0; i < 20; ++i) {
        desk.advance(Seconds(0.25));
        ASSERT_EQ(desk.desktop.describeWindow(desk.desktop.window("Mail")), "Mail 1391,285 1254x1382");
        ASSERT_EQ(desk.tiles(), "Codex 15,15 1254x1382 | Mail 1391,285 1254x1382");
    }
    letsGo();
    desk.settle();
    desk.expectTiles(kHalves);
}

TEST_F(CarriedWindows, AreLeftAloneFromThePressOnThoughNobodyHasHeardYetThatTheyMove) {
    desk.desktop.setVouching(false);
    // Pressed while its placement is still looked after.
    ASSERT_TRUE(desk.controller().placeWindow(desk.desktop.windowIDOf("Mail"), desk.targetID("A", "secondary-1"),
                                              WorkspaceController::Focusing::no));
    presses({1400, 30}, WindowPart::nothing);
    desk.desktop.userMoves("Mail", makeRect(391, 285, 1254, 1382));
    for (int i = 0; i < 20; ++i) {
        waits(0.1);
        ASSERT_EQ(desk.desktop.describeWindow(desk.desktop.window("Mail")), "Mail 391,285 1254x1382");
    }
    // A hand that has not moved the window has done nothing to it: then it is put back.
    letsGo();
    desk.settle();
    desk.expectTiles(kHalves);
    presses({1400, 30}, WindowPart::nothing).moves({500, 300});
    desk.desktop.userMoves("Mail", makeRect(391, 285, 1254, 1382));
    waits(2).letsGo();
    desk.settle();
    desk.expectTiles("Mail 15,15 1254x1382 + Codex | -");
}

TEST_F(CarriedWindows, ReturnHoweverOftenTheyAreDroppedAtTheSamePlace) {
    for (int i = 0; i < 6; ++i) {
        presses({1400, 30}, WindowPart::nothing);
        desk.desktop.userMoves("Mail", makeRect(1391, 285, 1254, 1382));
        letsGo().waits(0.1);
        EXPECT_EQ(desk.tiles(), kHalves) << i;
    }
    desk.settle();
    desk.expectTiles(kHalves);
    // Not even the agent's end leaves it where a hand was that is no longer watched.
    presses({1400, 30}, WindowPart::nothing);
    desk.desktop.userMoves("Mail", makeRect(1391, 285, 1254, 1382));
    drags->removeMonitor();
    desk.settle();
    desk.expectTiles(kHalves);
}

TEST_F(CarriedWindows, AreNotThoseThatMoveUnderAHandAtRest) {
    presses({1400, 30}, WindowPart::nothing);
    desk.desktop.userMoves("Mail", makeRect(300, 300, 800, 600));
    moves({1401, 31}).letsGo();
    EXPECT_EQ(*desk.state().dropTargetSlotID, std::nullopt);
    desk.settle();
    desk.expectTiles(kHalves);
    // Nor do clicks and selected text move anything.
    presses({400, 400}, WindowPart::nothing).moves({1900, 500}).letsGo();
    desk.settle();
    desk.expectTiles(kHalves);
    EXPECT_EQ(newUndoSteps(), 0U);
}

} // namespace
} // namespace kova
