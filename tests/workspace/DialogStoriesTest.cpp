// Dialogs stay with their windows; a window that the user maximized is left to the user.
#include "tests/harness/Scenario.h"

#include <gtest/gtest.h>

namespace kova {

namespace {

const CGRect kQuestion = makeRect(400, 300, 300, 150);

/// Mail with a dialog, Notes and Viewer, the windows at one place.
void openMailWithDialog(Scenario& desk) {
    desk.opens("Mail", {.frame = makeRect(200, 200, 800, 600)});
    desk.opens("Mail", {.frame = kQuestion, .title = "Save?", .subrole = "AXDialog", .dialogOf = "Mail"});
    desk.opens("Notes").opens("Viewer");
}

std::string placeOfDialog(const Scenario& desk) {
    return desk.desktop.describeWindow(desk.desktop.window("Mail 2"));
}

TEST(DialogStories, ADialogTakesNoTileAndMovesAlongByTheSameAmount) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split");
    openMailWithDialog(desk);
    desk.desktop.userFocuses("Notes");
    desk.arrange();
    EXPECT_EQ(desk.explanation().find("Save?"), std::string::npos) << desk.explanation();
    desk.expectTiles("Mail 15,15 1254x1382 | Notes 1291,15 1254x1382");
    EXPECT_EQ(placeOfDialog(desk), "Mail 2 215,115 300x150");
    desk.desktop.userFocuses("Mail 2"); // its window counts as the one in use
    desk.move(WorkspaceDirection::right);
    EXPECT_EQ(placeOfDialog(desk), "Mail 2 1491,115 300x150");
    desk.undo();
    EXPECT_EQ(placeOfDialog(desk), "Mail 2 215,115 300x150");
    // Where the user puts it is where it belongs from now on; a window that snaps back into its tile leaves it there.
    desk.desktop.userMoves("Mail 2", makeRect(900, 1200, 300, 150));
    desk.settle();
    desk.desktop.userMoves("Mail", makeRect(300, 300, 1254, 1382));
    desk.settle();
    EXPECT_EQ(placeOfDialog(desk), "Mail 2 900,1200 300x150");
    desk.zoom().zoom();
    EXPECT_EQ(placeOfDialog(desk), "Mail 2 900,1200 300x150");
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
    EXPECT_EQ(placeOfDialog(desk), "Mail 2 3284,618 300x150"); // in the lower right corner
}

TEST(DialogStories, ASurplusWindowGoesWithItsDialogAndBothComeBack) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.focus-single");
    desk.opens("Codex");
    openMailWithDialog(desk);
    desk.desktop.userFocuses("Codex");
    desk.arrange();
    desk.expectTiles("Codex 15,15 2530x1382");
    EXPECT_TRUE(desk.desktop.window("Mail").isMinimized && desk.desktop.window("Mail 2").isMinimized);
    desk.undo();
    EXPECT_EQ(placeOfDialog(desk), "Mail 2 400,300 300x150");
}

TEST(DialogStories, RulesAndScenesPassDialogsBy) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Mail").opens("Notes").arrange();
    WorkspaceRule rule;
    rule.bundleIdentifier = "sim.mail";
    rule.disposition = disposition::Tile{"secondary-1"};
    ASSERT_TRUE(desk.controller().perform(action::AddRule{rule}));
    desk.controller().perform(action::Switch{action::Setting::continuousManagement, true});
    desk.settle();
    const std::string before = desk.tiles();
    desk.opens("Mail", {.frame = kQuestion, .title = "Save?", .dialogOf = "Mail"}).settle();
    EXPECT_EQ(desk.tiles(), before);
    EXPECT_EQ(placeOfDialog(desk), "Mail 2 400,300 300x150");
    desk.controller().perform(action::CaptureScene{"work"});
    EXPECT_EQ(desk.state().scenes->back().placements.size(), 2u);
    // Left behind by its window it is a window like any other.
    desk.desktop.close("Mail");
    desk.settle().arrange();
    EXPECT_NE(desk.tiles().find("Mail 2"), std::string::npos) << desk.tiles();
}

TEST(DialogStories, AMaximizedWindowIsLeftAloneUntilThatEndsOrAllAreArranged) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Mail").opens("Notes").arrange();
    const std::string tiles = desk.tiles();
    desk.desktop.setMaximized("Mail", true);
    EXPECT_EQ(desk.framesWrittenWithin(Scenario::kSettlingTime), 0);
    desk.layout("jarvis.quad-grid").layout("jarvis.dual-split");
    EXPECT_TRUE(desk.desktop.window("Mail").isMaximized) << "a change of the layout is about the others";
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
