// Drags of dividers, of windows from tile to tile, and of a window's edge.
#include "tests/harness/Scenario.h"
#include "tests/workspace/Pictures.h"
#include "workspace/DisplayLayouts.h"
#include "workspace/EdgeResize.h"

#include <gtest/gtest.h>

#include <cmath>

namespace kova {

namespace {

/// Two windows side by side, the divider between them, and the pointer.
class DragStories : public ::testing::Test {
  protected:
    DragStories() {
        desk.display(2560, 1440).layout("jarvis.dual-split").opens("Codex").opens("Mail").arrange();
        divider = desk.controller().dividers().front();
        history = desk.controller().undoHistory().size();
    }
    WorkspaceController& kova() { return desk.controller(); }
    std::size_t newUndoSteps() { return kova().undoHistory().size() - history; }
    void takes(const std::string& label) {
        const CGRect frame = desk.desktop.frameForWindowService(desk.desktop.window(label));
        ASSERT_TRUE(kova().perform(action::BeginWindowDrag{desk.desktop.windowIDOf(label), frame}));
    }
    /// Moves the dragged window and drops it. The frame is in desktop space, the pointer in screen space.
    void letsGo(const std::string& label, const CGRect& frame, CGPoint pointer,
                action::DropMode how = action::DropMode::intoTile,
                action::WindowDragKind movement = action::WindowDragKind::move) {
        desk.desktop.userMoves(label, frame);
        kova().perform(action::UpdateWindowDrag{pointer, movement});
        desk.advance(Seconds(0.2));
        kova().perform(action::EndWindowDrag{pointer, movement, how});
        desk.settle();
    }

    Scenario desk;
    DisplayLayoutDivider divider;
    std::size_t history = 0;
};

TEST_F(DragStories, BothNeighborsFollowTheDividerAndUndoPutsItBack) {
    EXPECT_EQ(kova().dividerFrameOnScreen(divider), makeRect(1274, 38, 12, 1392));
    ASSERT_TRUE(kova().perform(action::BeginDividerDrag{divider}));
    kova().perform(action::UpdateDividerDrag{divider, 200});
    EXPECT_EQ(desk.tiles(), "Codex 15,15 1454x1382 | Mail 1491,15 1054x1382") << "the first update is applied at once";
    kova().perform(action::UpdateDividerDrag{divider, 400});
    kova().perform(action::EndDividerDrag{divider});
    desk.settle();
    desk.expectTiles("Codex 15,15 1654x1382 | Mail 1691,15 854x1382");
    const auto& stored = desk.state().profile->layoutWeightsByDisplay.at(divider.displayID).at("jarvis.dual-split");
    EXPECT_EQ(stored.splits.at("root"), (std::vector<double>{1664, 864}));
    EXPECT_EQ(newUndoSteps(), 1u);
    desk.undo();
    desk.expectTiles(kHalves);
    EXPECT_TRUE(desk.state().profile->layoutWeightsByDisplay.empty());
}

TEST_F(DragStories, ADividerStopsWhereTheNeighborCannotShrink) {
    ASSERT_TRUE(kova().perform(action::BeginDividerDrag{divider}));
    kova().perform(action::UpdateDividerDrag{divider, 5000});
    kova().perform(action::EndDividerDrag{divider});
    desk.settle();
    desk.expectTiles("Codex 15,15 2198x1382 | Mail 2235,15 310x1382");
}

TEST_F(DragStories, UpdatesAreAppliedAtMostSixtyTimesASecondAndTheLastOneAlways) {
    ASSERT_TRUE(kova().perform(action::BeginDividerDrag{divider}));
    const auto revision = *desk.state().layoutRevision;
    for (int i = 1; i <= 100; ++i) {
        kova().perform(action::UpdateDividerDrag{divider, static_cast<double>(i)});
        desk.advance(Seconds(0.001));
    }
    EXPECT_LE(*desk.state().layoutRevision - revision, 7);
    EXPECT_GE(*desk.state().layoutRevision - revision, 5);
    desk.advance(Seconds(0.02));
    EXPECT_EQ(desk.tiles(), "Codex 15,15 1354x1382 | Mail 1391,15 1154x1382");
    kova().perform(action::EndDividerDrag{divider});
}

TEST_F(DragStories, ADragThatEndsWhereItBeganOrIsCanceledChangesNothing) {
    const auto profile = *desk.state().profile;
    ASSERT_TRUE(kova().perform(action::BeginDividerDrag{divider}));
    kova().perform(action::EndDividerDrag{divider});
    ASSERT_TRUE(kova().perform(action::BeginDividerDrag{divider}));
    kova().perform(action::UpdateDividerDrag{divider, 300});
    desk.advance(Seconds(0.1));
    kova().perform(action::UpdateDividerDrag{divider, 0});
    kova().perform(action::EndDividerDrag{divider});
    ASSERT_TRUE(kova().perform(action::BeginDividerDrag{divider}));
    kova().perform(action::UpdateDividerDrag{divider, 300});
    kova().perform(action::CancelDividerDrag{});
    desk.settle();
    desk.expectTiles(kHalves);
    EXPECT_EQ(*desk.state().profile, profile);
    EXPECT_EQ(newUndoSteps(), 0u);
}

TEST_F(DragStories, PollsDoNotMoveADraggedWindow) {
    desk.desktop.setAnnouncesAllChanges(false);
    ASSERT_TRUE(kova().perform(action::BeginDividerDrag{divider}));
    kova().perform(action::UpdateDividerDrag{divider, 300});
    for (int i = 0; i < 30; ++i) {
        desk.advance(Seconds(0.2));
        kova().perform(action::UpdateDividerDrag{divider, 300});
        ASSERT_EQ(desk.tiles(), "Codex 15,15 1554x1382 | Mail 1591,15 954x1382");
    }
    DisplayLayoutDivider other = divider;
    other.divider.boundaryIndex = 7;
    kova().perform(action::UpdateDividerDrag{other, -300});
    kova().perform(action::EndDividerDrag{other});
    desk.advance(Seconds(0.1));
    EXPECT_EQ(desk.tiles(), "Codex 15,15 1554x1382 | Mail 1591,15 954x1382") << "a drag of another divider is ignored";
    kova().perform(action::EndDividerDrag{divider});
}

TEST_F(DragStories, FocusModeThatBeganDuringADragRestoresTheFramesFromBeforeTheDrag) {
    desk.desktop.userFocuses("Mail");
    ASSERT_TRUE(kova().perform(action::BeginDividerDrag{divider}));
    kova().perform(action::UpdateDividerDrag{divider, 300});
    desk.zoom();
    kova().perform(action::EndDividerDrag{divider}); // the button is released only now
    kova().perform(action::ToggleFocusZoom{});
    EXPECT_EQ(desk.tiles(), kHalves) << "the frames are right before a poll can correct them";
    desk.settle();
    EXPECT_EQ(newUndoSteps(), 0u);
}

TEST_F(DragStories, ResettingADividerDropsItsWeightsAndAnUnknownDividerIsRefused) {
    EXPECT_FALSE(kova().perform(action::ResetDivider{divider})) << "there are no weights to drop";
    ASSERT_TRUE(kova().perform(action::BeginDividerDrag{divider}));
    kova().perform(action::UpdateDividerDrag{divider, 300});
    kova().perform(action::EndDividerDrag{divider});
    EXPECT_TRUE(kova().perform(action::ResetDivider{divider}));
    desk.settle();
    desk.expectTiles(kHalves);
    DisplayLayoutDivider unknown = divider;
    unknown.displayID = "display-unknown";
    EXPECT_FALSE(kova().perform(action::BeginDividerDrag{unknown}));
    desk.layout("jarvis.dual-stack");
    EXPECT_FALSE(kova().perform(action::BeginDividerDrag{divider}));
}

TEST_F(DragStories, ADividerDragIsAbandonedWhenTheMachineSleeps) {
    ASSERT_TRUE(kova().perform(action::BeginDividerDrag{divider}));
    kova().perform(action::UpdateDividerDrag{divider, 300});
    desk.sleep();
    kova().perform(action::EndDividerDrag{divider});
    desk.wake().settle();
    desk.expectTiles(kHalves);
}

TEST_F(DragStories, ADisplayThatAZoomedWindowOwnsHasNoDividers) {
    desk.desktop.userFocuses("Mail");
    desk.zoom();
    EXPECT_TRUE(kova().dividers().empty());
}

TEST_F(DragStories, AWindowDroppedOnAnotherTileMovesThereAndUndoPutsItBack) {
    takes("Mail");
    desk.desktop.userMoves("Mail", makeRect(400, 300, 1254, 1382));
    kova().perform(action::UpdateWindowDrag{{500, 700}, action::WindowDragKind::move});
    EXPECT_EQ(*desk.state().dropTarget, desk.target("A", "focus-main"));
    letsGo("Mail", makeRect(420, 300, 1254, 1382), {500, 700});
    EXPECT_EQ(*desk.state().dropTarget, std::nullopt);
    desk.expectTiles("Mail 15,15 1254x1382 + Codex | -");
    EXPECT_EQ(newUndoSteps(), 1u);
    desk.undo();
    desk.expectTiles(kHalves);
}

TEST_F(DragStories, AWindowDroppedOnItsOwnTileOrBetweenTilesReturns) {
    for (const CGPoint pointer : {CGPoint{2000, 700}, CGPoint{1280, 700}}) {
        takes("Mail");
        letsGo("Mail", makeRect(1000, 300, 1254, 1382), pointer);
        desk.expectTiles(kHalves);
    }
    EXPECT_EQ(newUndoSteps(), 0u);
}

TEST_F(DragStories, AWindowUnderAPressedButtonIsNotMoved) {
    desk.desktop.setAnnouncesAllChanges(false);
    takes("Mail");
    desk.desktop.userMoves("Mail", makeRect(1000, 300, 1254, 1382));
    for (int i = 0; i < 10; ++i) desk.advance(Seconds(0.5));
    EXPECT_EQ(desk.desktop.describeWindow(desk.desktop.window("Mail")), "Mail 1000,300 1254x1382");
    kova().perform(action::EndWindowDrag{{2000, 700}, action::WindowDragKind::move, action::DropMode::intoTile});
    desk.settle();
    desk.expectTiles(kHalves);
}

TEST_F(DragStories, AWindowDroppedWithShiftFloatsUntilAnArrangementOrADropOnATile) {
    takes("Mail");
    letsGo("Mail", makeRect(1000, 300, 1254, 1000), {2000, 700}, action::DropMode::floating);
    desk.expectTiles("Codex 15,15 1254x1382 | -");
    EXPECT_EQ(desk.desktop.describeWindow(desk.desktop.window("Mail")), "Mail 1000,300 1254x1000");
    takes("Mail");
    letsGo("Mail", makeRect(1300, 300, 1254, 1000), {2000, 700});
    desk.expectTiles(kHalves);
    EXPECT_EQ(newUndoSteps(), 2u);
}

TEST_F(DragStories, WideningAWindowMovesTheDivider) {
    takes("Codex");
    letsGo("Codex", makeRect(15, 15, 1554, 1382), {1569, 700}, action::DropMode::intoTile,
           action::WindowDragKind::resize);
    desk.expectTiles("Codex 15,15 1554x1382 | Mail 1591,15 954x1382");
    EXPECT_EQ(newUndoSteps(), 1u);
    takes("Mail");
    letsGo("Mail", makeRect(1291, 15, 1254, 1382), {1291, 700}, action::DropMode::intoTile,
           action::WindowDragKind::resize);
    desk.expectTiles(kHalves);
    takes("Codex");
    letsGo("Codex", makeRect(15, 15, 1254, 700), {700, 725}, action::DropMode::intoTile,
           action::WindowDragKind::resize);
    desk.expectTiles(kHalves); // the dragged edge is at the display's edge, where no divider is
}

TEST_F(DragStories, ADraggedCornerMovesBothDividersByTheSameDistanceForAnyWeights) {
    desk.layout("jarvis.quad-grid").opens("Notes").opens("Viewer").arrange();
    for (const auto& each : kova().dividers()) {
        if (each.divider.splitID != "root.1") continue;
        ASSERT_TRUE(kova().perform(action::BeginDividerDrag{each}));
        kova().perform(action::UpdateDividerDrag{each, 200});
        kova().perform(action::EndDividerDrag{each});
        break;
    }
    desk.desktop.resizeDisplay("A", {1920, 1440}); // the weights were stored as lengths of the wider display
    desk.settle();
    const auto corner = [&] { return desk.desktop.frameForWindowService(desk.desktop.window("Viewer")); };
    const CGRect before = corner();
    takes("Viewer");
    letsGo("Viewer", makeRect(minX(before) - 100, minY(before) - 50, before.size.width + 100, before.size.height + 50),
           {minX(before), 1440 - minY(before)}, action::DropMode::intoTile, action::WindowDragKind::resize);
    EXPECT_NEAR(minX(corner()), minX(before) - 100, 1);
    EXPECT_NEAR(minY(corner()), minY(before) - 50, 1);
}

TEST_F(DragStories, AnotherActionCancelsTheDrag) {
    ASSERT_TRUE(kova().perform(action::BeginDividerDrag{divider}));
    kova().perform(action::UpdateDividerDrag{divider, 300});
    desk.perform(action::Arrange{});
    kova().perform(action::EndDividerDrag{divider});
    desk.settle();
    desk.expectTiles(kHalves);
    EXPECT_EQ(newUndoSteps(), 1u) << "only the arrangement adds an undo step";
}

TEST_F(DragStories, ResizingAFloatingWindowIsNoDrop) {
    desk.opens("Notes", {.frame = makeRect(100, 100, 500, 400)}).advance(Seconds(1));
    takes("Notes");
    letsGo("Notes", makeRect(100, 100, 800, 600), {850, 600}, action::DropMode::intoTile,
           action::WindowDragKind::resize);
    EXPECT_EQ(desk.desktop.describeWindow(desk.desktop.window("Notes")), "Notes 100,100 800x600");
    EXPECT_EQ(newUndoSteps(), 0u);
}

TEST_F(DragStories, DraggingAnotherWindowEndsFocusMode) {
    desk.opens("Notes", {.frame = makeRect(100, 100, 500, 400)}).advance(Seconds(1));
    desk.desktop.userFocuses("Mail");
    desk.zoom();
    takes("Notes");
    EXPECT_EQ(*desk.state().focusMode, std::nullopt);
    letsGo("Notes", makeRect(1300, 100, 500, 400), {2000, 700});
    desk.expectTiles("Codex 15,15 1254x1382 | Notes 1291,15 1254x1382 + Mail");
}

TEST(EdgeResize, OnlyDividersAlongTheDraggedEdgeMove) {
    const auto solved = solveDefinition(*findLayout(builtInLayouts(), "jarvis.quad-grid"), {}, {2560, 1440}, 5);
    const CGRect cell = solved.frames[3]; // lower right
    const CGRect window = insetBy(cell, 5);
    const auto pulled = [&](double left, double top, double right, double bottom) {
        const CGRect after = makeRect(minX(window) + left, minY(window) + top, window.size.width - left + right,
                                      window.size.height - top + bottom);
        std::string text;
        for (const auto& move : dividersMovedBy(cell, window, after, solved.dividers)) {
            text += move.divider.splitID + " " + std::to_string(std::lround(move.translationPoints)) + " ";
        }
        return text;
    };
    EXPECT_EQ(pulled(-100, -50, 0, 0), "root -50 root.1 -100 ") << "the divider of the window's own row moves";
    EXPECT_EQ(pulled(-2, 1, 0, 0), "");
    EXPECT_EQ(pulled(0, 0, 80, 80), "");
}

/// During a drag the cached layout is changed in place. The result must equal a layout that is computed from the start.
TEST(DraggedLayout, EqualsALayoutComputedFromTheSameWeights) {
    const auto& catalogue = builtInLayouts();
    const LayoutDefinition& layout = *findLayout(catalogue, "jarvis.six-grid");
    Screen screen;
    screen.frame = screen.visibleFrame = makeRect(0, 0, 2560, 1440);
    WorkspaceProfile profile;
    profile.layoutID = layout.id;
    const TileMinimumSizes none, wide{{"secondary-1", {1200, 300}}, {"secondary-4", {400, 200}}};
    struct Step {
        LayoutWeightOverrides weights;
        TileMinimumSizes minimums;
    };
    const Step steps[] = {{{}, none},
                          {{{{"root", {2, 1}}}}, none},
                          {{{{"root", {1, 3}}, {"root.1", {1, 2, 3}}}}, wide},
                          {{{{"root.0", {4, 1, 1}}}}, wide},
                          {{{{"root.0", {1, 1}}}}, none}, // one weight is missing
                          {{}, wide}};
    DisplayLayouts layouts;
    for (const auto& [weights, minimums] : steps) {
        layouts.setTransientWeights(displayID(screen), layout.id, weights);
        const LayoutDefinition reweighted = applying(layout, weights);
        const SolvedLayout expected =
            solveDefinition(reweighted, minimums, screen.visibleFrame.size, profile.tileInset);
        EXPECT_TRUE(layouts.solve(screen, profile, catalogue, minimums) == expected);
        EXPECT_TRUE(layouts.resolve(screen, profile, catalogue).slots == reweighted.slots);
        EXPECT_TRUE(layouts.solve(screen, profile, catalogue, minimums) == expected) << "from the cache";
    }
}

} // namespace

} // namespace kova
