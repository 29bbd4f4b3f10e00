// Undo and focus mode when windows, displays or the permission have changed meanwhile, and commands without a pause
// between them.
#include "tests/harness/Scenario.h"

#include <gtest/gtest.h>

namespace kova {

namespace {

class UndoStories : public testing::TestWithParam<HidingStyle> {};

INSTANTIATE_TEST_SUITE_P(BothStyles, UndoStories,
                         testing::Values(HidingStyle::hidesApplication, HidingStyle::iconifiesWindows));

TEST_P(UndoStories, AWindowOpenedMeanwhileStaysVisibleWhenItsApplicationIsHiddenAgain) {
    for (const bool byUndo : {false, true}) {
        Scenario desk;
        desk.desktop.setHidingStyle(GetParam());
        desk.display(2560, 1440).layout("jarvis.dual-split").opens("Mail").opens("Codex").arrange();
        desk.desktop.userFocuses("Codex");
        desk.move(WorkspaceDirection::right);
        ASSERT_FALSE(desk.desktop.isOnScreen(desk.desktop.window("Mail")));
        desk.zoom();
        desk.desktop.userHides("Mail", false); // an application that opens a window also shows its hidden windows
        desk.opens("Mail").settle();
        byUndo ? desk.undo() : desk.zoom();
        EXPECT_TRUE(desk.desktop.isOnScreen(desk.desktop.window("Mail 2"))) << desk.desktop.picture();
        EXPECT_FALSE(desk.desktop.isOnScreen(desk.desktop.window("Mail"))) << desk.desktop.picture();
        desk.desktop.userFocuses("Codex");
        desk.cycleStack();
        EXPECT_TRUE(desk.desktop.isOnScreen(desk.desktop.window("Mail"))) << "the user can reach the window as before";
    }
}

TEST_P(UndoStories, AWindowThatIsBeingRestoredCountsAsRestored) {
    for (const Seconds pollDuration : {Seconds(0), Seconds(0.3)}) {
        Scenario desk;
        desk.desktop.setHidingStyle(GetParam());
        desk.desktop.pollingQueue().setJobDuration(pollDuration);
        desk.display(2560, 1440).layout("jarvis.dual-split");
        desk.opens("Mail", {.isMinimized = true, .writeDelay = Seconds(0.2)}).opens("Codex").start();
        desk.advance(Seconds(1));
        auto& controller = desk.controller();
        controller.perform(action::Arrange{});
        desk.advance(Seconds(0.1));
        controller.perform(action::ToggleFocusZoom{});
        desk.advance(Seconds(0.1));
        controller.perform(action::ToggleFocusZoom{});
        desk.advance(Seconds(0.1));
        controller.perform(action::Move{WorkspaceDirection::right});
        desk.advance(Seconds(0.1));
        controller.perform(action::Undo{});
        desk.settle();
        desk.expectTiles("Codex 15,15 1254x1382 | Mail 1291,15 1254x1382");
    }
}

TEST_P(UndoStories, APollFromBeforeARequestDoesNotOverruleTheRequest) {
    Scenario desk;
    desk.desktop.setHidingStyle(GetParam());
    desk.desktop.setAnnouncesAllChanges(false);
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Mail").opens("Codex").arrange();
    desk.desktop.userFocuses("Codex");
    desk.move(WorkspaceDirection::right).expectTiles("- | Codex 1291,15 1254x1382 + Mail");
    desk.desktop.pollingQueue().setJobDuration(Seconds(0.4));
    for (int step = 0; step < 8; ++step) {
        desk.controller().perform(action::CycleStack{});
        desk.advance(Seconds(0.35));
    }
    desk.settle().expectTiles("- | Codex 1291,15 1254x1382 + Mail");
    EXPECT_FALSE(desk.desktop.isOnScreen(desk.desktop.window("Mail"))) << desk.desktop.picture();
}

TEST_P(UndoStories, EachCommandStartsFromTheStateThatThePreviousOneRequested) {
    Scenario desk;
    desk.desktop.setHidingStyle(GetParam());
    desk.display(2560, 1440).layout("jarvis.quad-grid");
    for (const char* name : {"Codex", "Firefox", "Mail", "Viewer"}) desk.opens(name, {.writeDelay = Seconds(0.15)});
    desk.arrange();
    auto& controller = desk.controller();
    for (const auto direction : {WorkspaceDirection::right, WorkspaceDirection::left, WorkspaceDirection::down}) {
        controller.perform(action::Move{direction});
    }
    desk.advance(Seconds(0.5));
    controller.perform(action::Undo{});
    (void)controller.perform(
        action::SelectLayout{desk.displayIDOf("A"), DisplayLayoutSelection::layout("jarvis.dual-split")});
    controller.perform(action::Arrange{});
    desk.settle();
    for (const auto* window : desk.desktop.livingWindows()) {
        const bool hasTile = controller.assignments().isAssigned(desk.desktop.windowIDOf(window->label()));
        EXPECT_EQ(hasTile, desk.desktop.isOnScreen(*window)) << window->label() << ": " << desk.desktop.picture();
    }
}

TEST(UndoAndFocusStories, AMaximizedWindowIsMaximizedAgainOnASlowDesktop) {
    for (int i = 0; i < 10; ++i) { // in some cases a poll comes before the desktop has changed the window
        const bool byUndo = i % 2 == 0;
        Scenario desk;
        desk.display(2560, 1440).layout("jarvis.dual-split").opens("Codex");
        desk.opens("Mail", {.writeDelay = Seconds(0.3)}).arrange();
        desk.desktop.setMaximized("Mail", true);
        desk.desktop.userFocuses("Mail");
        desk.advance(Seconds(2 + 0.05 * i));
        byUndo ? desk.arrange() : desk.zoom();
        ASSERT_FALSE(desk.desktop.window("Mail").isMaximized);
        byUndo ? desk.undo() : desk.zoom();
        EXPECT_TRUE(desk.desktop.window("Mail").isMaximized) << (byUndo ? "undone" : "focus mode left");
        desk.desktop.setMaximized("Mail", false);
        desk.settle().expectTiles("Codex 15,15 1254x1382 | Mail 1291,15 1254x1382");
    }
}

TEST(UndoAndFocusStories, UndoWhileADisplayIsDisconnectedLeavesNoVisibleWindowWithoutATile) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").display(1920, 1080).layout("jarvis.dual-split");
    desk.opens("Mail", {.frame = makeRect(2700, 60, 800, 600)}).opens("Codex", {.frame = makeRect(50, 60, 800, 600)});
    desk.arrange().move(WorkspaceDirection::right);
    desk.desktop.removeDisplay("B");
    desk.settle().expectTiles("Mail 15,15 1254x1382 | Codex 1291,15 1254x1382");
    desk.undo().expectTiles("Codex 15,15 1254x1382 | Mail 1291,15 1254x1382");
    desk.display(1920, 1080, "B").settle();
    desk.expectTiles("Codex 15,15 1254x1382 | - || Mail 2575,15 934x1022 | -");
}

TEST(UndoAndFocusStories, AVisibleStackedWindowIsNotPlacedWhileItsDisplayIsDisconnected) {
    for (const bool byUndo : {false, true}) {
        Scenario desk;
        desk.display(2560, 1440).layout("jarvis.triple-strip").display(1920, 1080).layout("jarvis.dual-split");
        desk.opens("Mail", {.frame = makeRect(2700, 60, 800, 600)});
        desk.opens("Codex", {.frame = makeRect(50, 60, 800, 600)}).arrange();
        desk.desktop.removeDisplay("B");
        desk.settle();
        desk.perform(command::Place{desk.desktop.windowIDOf("Codex"),
                                    *desk.controller().assignments().targetOf(desk.desktop.windowIDOf("Mail"))});
        desk.desktop.userFocuses("Mail");
        desk.settle();
        const std::string before = desk.tiles();
        if (byUndo) {
            desk.arrange().undo();
        } else {
            desk.desktop.setPanels("A", makeRect(0, 40, 0, 0));
            desk.settle().desktop.setPanels("A", {});
            desk.settle();
        }
        desk.expectTiles(before);
    }
}

TEST(UndoAndFocusStories, TheSecondPassOfAnArrangementLeavesADraggedWindowAlone) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Mail", {.isMinimized = true}).opens("Codex").start();
    desk.controller().perform(action::Arrange{});
    desk.advance(Seconds(0.7));
    desk.controller().perform(action::PressWindow{desk.desktop.windowIDOf("Mail")});
    const CGRect held = makeRect(600, 300, 700, 500);
    desk.desktop.userMoves("Mail", held);
    desk.advance(Seconds(1));
    EXPECT_EQ(desk.desktop.window("Mail").frame, held);
    desk.controller().perform(action::ReleaseWindow{});
    desk.settle().expectTiles("Codex 15,15 1254x1382 | Mail 1291,15 1254x1382");
}

TEST(UndoAndFocusStories, PanelsAndWindowsOnAnotherDisplayDoNotEndFocusMode) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").display(1920, 1080).layout("jarvis.dual-split");
    desk.opens("Notes", {.frame = makeRect(2700, 60, 800, 600)}).opens("Mail", {.frame = makeRect(50, 60, 800, 600)});
    desk.arrange().zoom().expectMessage("Focus Mode — Mail owns this display");
    desk.desktop.setPanels("B", makeRect(0, 40, 0, 0));
    desk.opens("Question", {.frame = makeRect(2900, 300, 400, 200), .subrole = "AXDialog"}).settle();
    EXPECT_TRUE(*desk.state().focusMode);
    desk.zoom().expectTiles("Mail 15,15 1254x1382 | - || Notes 2575,55 934x982 | -");
    desk.zoom().undo().expectTiles("Mail 15,15 1254x1382 | - || Notes 2575,55 934x982 | -");
    desk.desktop.userFocuses("Mail");
    desk.zoom().desktop.setPanels("A", makeRect(0, 40, 0, 0));
    desk.settle();
    EXPECT_FALSE(*desk.state().focusMode) << "the zoomed window's own display has changed";
}

TEST(UndoAndFocusStories, LeavingFocusModeNeedsThePermission) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Mail").arrange().zoom();
    desk.desktop.setTrusted(false);
    desk.settle().zoom().expectMessage("Accessibility permission is required");
    EXPECT_FALSE(desk.wasCarriedOut());
    desk.desktop.setTrusted(true);
    desk.settle().zoom().expectMessage("Focus Mode closed — workspace restored");
}

TEST(UndoAndFocusStories, ResettingTheSizesOfADisplayResetsAllItsLayouts) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Mail").arrange();
    const auto drag = [&] {
        const auto divider = desk.controller().dividers().front();
        ASSERT_TRUE(desk.controller().perform(action::BeginDividerDrag{divider}));
        desk.controller().perform(action::UpdateDividerDrag{divider, 200});
        desk.controller().perform(action::EndDividerDrag{divider});
        desk.settle();
    };
    drag();
    desk.layout("jarvis.triple-strip");
    drag();
    desk.layout("jarvis.quad-grid");
    EXPECT_TRUE(desk.controller().perform(action::ResetLayoutSizes{}));
    EXPECT_TRUE(desk.state().profile->layoutWeightsByDisplay.empty());
    desk.undo();
    EXPECT_EQ(desk.state().profile->layoutWeightsByDisplay.at(desk.displayIDOf("A")).size(), 2u);
}

TEST(UndoAndFocusStories, EachRefusedActionGivesItsReason) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").start();
    const auto steps = desk.controller().undoHistory().size();
    desk.arrange().expectMessage("There is no window to arrange");
    EXPECT_EQ(desk.controller().undoHistory().size(), steps) << "a refused action adds no undo step";
    const WorkspaceAction fromTheFocusedTile[] = {action::Focus{WorkspaceDirection::left},
                                                  action::Move{WorkspaceDirection::left}, action::CycleStack{}};
    for (const auto& action : fromTheFocusedTile) {
        desk.perform(action).expectMessage("No managed window has the focus");
    }
    desk.zoom().expectMessage("No managed window has the focus");
    desk.opens("Mail").settle();
    for (const auto& action : fromTheFocusedTile) {
        desk.perform(action).expectMessage("Mail is in no tile. Put it into one with “kova tile” or “kova place”");
    }
    desk.arrange().cycleStack().expectMessage("No other window waits behind it in its tile");
}

TEST(FocusModeStories, ItsEndKeepsTheThemeAndAccentColorChosenMeanwhile) {
    for (const bool byUndo : {false, true}) {
        Scenario desk;
        desk.display(2560, 1440).layout("jarvis.dual-split").opens("Mail").opens("Notes").arrange();
        desk.zoom();
        desk.perform(action::SelectTheme{"jarvis.neon-cyan"}).perform(action::SelectAccentColor{"reactor-amber"});
        byUndo ? desk.undo() : desk.zoom();
        EXPECT_EQ(*desk.state().focusMode, std::nullopt);
        EXPECT_EQ(desk.state().profile->themeID, "jarvis.neon-cyan");
        EXPECT_EQ(*desk.state().accentColorID, "reactor-amber");
        EXPECT_EQ(desk.preferences.string("KOVA.accentColor.v1"), "reactor-amber");
    }
}

} // namespace

} // namespace kova
