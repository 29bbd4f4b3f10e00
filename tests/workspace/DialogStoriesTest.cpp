// Dialogs stay with their windows; KOVA does not move a window that the user maximized.
#include "tests/harness/Scenario.h"

#include <gtest/gtest.h>

namespace kova {

namespace {

const CGRect kDialogFrame = makeRect(400, 300, 300, 150);

/// Mail with a dialog, Notes and Viewer; the three windows have the same frame.
void openMailWithDialog(Scenario& desk) {
    desk.opens("Mail", {.frame = makeRect(200, 200, 800, 600)});
    desk.opens("Mail", {.frame = kDialogFrame, .title = "Save?", .subrole = "AXDialog", .dialogOf = "Mail"});
    desk.opens("Notes").opens("Viewer");
}

std::string describeDialog(const Scenario& desk) {
    return desk.desktop.describeWindow(desk.desktop.window("Mail 2"));
}

TEST(DialogStories, ADialogTakesNoTileAndMovesWithItsWindowByTheSameDistance) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split");
    openMailWithDialog(desk);
    desk.desktop.userFocuses("Notes");
    desk.arrange();
    EXPECT_EQ(desk.explanation().find("Save?"), std::string::npos) << desk.explanation();
    desk.expectTiles("Mail 15,15 1254x1382 | Notes 1291,15 1254x1382");
    EXPECT_EQ(describeDialog(desk), "Mail 2 215,115 300x150");
    desk.desktop.userFocuses("Mail 2"); // counts as a focus of the dialog's window
    desk.move(WorkspaceDirection::right);
    EXPECT_EQ(describeDialog(desk), "Mail 2 1491,115 300x150");
    desk.undo();
    EXPECT_EQ(describeDialog(desk), "Mail 2 215,115 300x150");
    // The dialog stays where the user moves it, even when its window returns to its tile.
    desk.desktop.userMoves("Mail 2", makeRect(900, 1200, 300, 150));
    desk.settle();
    desk.desktop.userMoves("Mail", makeRect(300, 300, 1254, 1382));
    desk.settle();
    EXPECT_EQ(describeDialog(desk), "Mail 2 900,1200 300x150");
    desk.zoom().zoom();
    EXPECT_EQ(describeDialog(desk), "Mail 2 900,1200 300x150");
}

TEST(DialogStories, ADialogStaysOnTheDisplayOfItsWindow) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").display(1024, 768).layout("jarvis.focus-single");
    openMailWithDialog(desk);
    desk.desktop.userMoves("Mail 2", makeRect(1600, 900, 300, 150)); // beyond the edge of the window
    desk.start().settle();
    ASSERT_TRUE(
        desk.controller().perform(command::Place{desk.desktop.windowIDOf("Mail"), desk.target("B", "focus-main")}));
    desk.settle();
    EXPECT_EQ(describeDialog(desk), "Mail 2 3284,618 300x150"); // in the lower right corner
}

TEST(DialogStories, ASurplusWindowIsMinimizedAndRestoredWithItsDialog) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.focus-single");
    desk.opens("Codex");
    openMailWithDialog(desk);
    desk.desktop.userFocuses("Codex");
    desk.arrange();
    desk.expectTiles("Codex 15,15 2530x1382");
    EXPECT_TRUE(desk.desktop.window("Mail").isMinimized && desk.desktop.window("Mail 2").isMinimized);
    desk.undo();
    EXPECT_EQ(describeDialog(desk), "Mail 2 400,300 300x150");
}

TEST(DialogStories, RulesAndScenesIgnoreDialogs) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Mail").opens("Notes").arrange();
    WorkspaceRule rule;
    rule.bundleIdentifier = "sim.mail";
    rule.disposition = disposition::Tile{"secondary-1"};
    ASSERT_TRUE(desk.controller().perform(action::AddRule{rule}));
    desk.controller().perform(action::Switch{action::Setting::continuousManagement, true});
    desk.settle();
    const std::string before = desk.tiles();
    desk.opens("Mail", {.frame = kDialogFrame, .title = "Save?", .dialogOf = "Mail"}).settle();
    EXPECT_EQ(desk.tiles(), before);
    EXPECT_EQ(describeDialog(desk), "Mail 2 400,300 300x150");
    desk.controller().perform(action::CaptureScene{"work"});
    EXPECT_EQ(desk.state().scenes->back().placements.size(), 2u);
    // Once its window has closed, the dialog is treated as an ordinary window.
    desk.desktop.close("Mail");
    desk.settle().arrange();
    EXPECT_NE(desk.tiles().find("Mail 2"), std::string::npos) << desk.tiles();
}

TEST(DialogStories, AMaximizedWindowIsLeftAloneUntilItIsRestoredOrWindowsAreArranged) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Mail").opens("Notes").arrange();
    const std::string tiles = desk.tiles();
    desk.desktop.setMaximized("Mail", true);
    EXPECT_EQ(desk.framesWrittenWithin(Scenario::kSettlingTime), 0);
    desk.layout("jarvis.quad-grid").layout("jarvis.dual-split");
    EXPECT_TRUE(desk.desktop.window("Mail").isMaximized) << "a change of the layout moves only the other windows";
    desk.desktop.setMaximized("Mail", false);
    desk.settle().expectTiles(tiles);

    desk.desktop.setMaximized("Mail", true);
    desk.settle().arrange().expectTiles(tiles);
    EXPECT_FALSE(desk.desktop.window("Mail").isMaximized);
    desk.undo();
    EXPECT_TRUE(desk.desktop.window("Mail").isMaximized);
}

} // namespace

} // namespace kova
