// Windows that an application does not list for a while: on another Space, in full screen, behind a tab, or while the
// application does not respond. They keep their tiles; closed windows do not.
#include "tests/harness/Scenario.h"

#include <gtest/gtest.h>

#include <functional>

namespace kova {
namespace {

using enum WorkspaceDirection;

class Spaces : public ::testing::TestWithParam<SpaceStyle> {
  protected:
    Spaces() {
        desk.desktop.setSpaceStyle(GetParam());
        desk.display(2560, 1440).layout("jarvis.dual-split").opens("Mail").opens("Notes").arrange();
        picture = desk.tiles();
    }
    Scenario& show(int space) {
        desk.desktop.showVirtualDesktop(space);
        return desk.advance(Seconds(1));
    }
    const ManagedWindow& live(std::string_view label) {
        const auto id = desk.desktop.windowIDOf(label);
        for (const auto& window : desk.controller().liveWindows()) {
            if (window.id == id) return window;
        }
        throw std::out_of_range("not known: " + std::string(label));
    }
    Scenario desk;
    std::string picture;
};

INSTANTIATE_TEST_SUITE_P(Both, Spaces, ::testing::Values(SpaceStyle::listsAll, SpaceStyle::listsShown),
                         [](const auto& style) {
                             return style.param == SpaceStyle::listsAll ? "ListsAll" : "ListsShown";
                         });

TEST_P(Spaces, WindowsOfTheOtherSpaceKeepTheirTilesAndAreNotWrittenTo) {
    show(1);
    EXPECT_FALSE(live("Mail").isVisible);
    EXPECT_TRUE(live("Mail").isElsewhere);
    EXPECT_EQ(desk.state().assignedWindowIDs->size(), 2u);
    desk.desktop.userMoves("Mail", makeRect(40, 40, 700, 500)); // by a script of its application
    EXPECT_EQ(desk.framesWrittenWithin(Seconds(5)), 0);
    show(0).settle();
    desk.expectTiles(picture);
    EXPECT_FALSE(live("Mail").isElsewhere);
}

TEST_P(Spaces, AWindowThatIsTooSmallForAWhileKeepsItsTile) {
    desk.desktop.userMoves("Mail", makeRect(40, 40, 100, 60));
    desk.advance(Seconds(2));
    EXPECT_EQ(desk.state().assignedWindowIDs->size(), 2u);
    desk.desktop.userMoves("Mail", makeRect(40, 40, 700, 500));
    desk.settle().expectTiles(picture);
}

TEST_P(Spaces, AWindowThatRoundsItsSizeGetsNoNewRequestWhenItsSpaceIsShownAgain) {
    desk.opens("Terminal", {.sizeIncrement = {17, 31}}).layout("jarvis.triple-stack").arrange().advance(Seconds(20));
    const int writes = desk.desktop.window("Terminal").frameWriteCount;
    for (const int space : {1, 0, 1, 0}) show(space).settle();
    EXPECT_EQ(desk.desktop.window("Terminal").frameWriteCount, writes);
}

TEST_P(Spaces, AnArrangementChangesOnlyTheShownSpace) {
    show(1).opens("Maps").opens("Codex").arrange();
    const std::string there = desk.tiles();
    EXPECT_EQ(there.find("Mail"), std::string::npos) << there;
    EXPECT_EQ(desk.desktop.window("Mail").isMinimized || desk.desktop.isHidden("Mail"), false);
    show(0).settle();
    desk.expectTiles(picture);
    desk.desktop.userFocuses("Notes");
    desk.focus(desk.tiles().find("Notes") == 0 ? right : left).expectFocus("Mail");
    show(1).settle();
    desk.expectTiles(there);
    show(0).settle();
    desk.expectTiles(picture);
}

TEST_P(Spaces, ThreeSpacesKeepTheirTiles) {
    std::vector<std::string> pictures{picture};
    for (int space = 1; space <= 2; ++space) {
        show(space).opens("App" + std::to_string(space)).opens("Tool" + std::to_string(space)).arrange();
        pictures.push_back(desk.tiles());
    }
    for (const int space : {0, 2, 1, 0, 1, 2}) {
        show(space).settle();
        desk.expectTiles(pictures[static_cast<std::size_t>(space)]);
    }
}

TEST_P(Spaces, StacksKeepTheirOrder) {
    desk.opens("Maps").settle();
    const auto tile = desk.controller().tiles().front();
    ASSERT_TRUE(desk.controller().perform(command::Place{desk.desktop.windowIDOf("Maps"), tile.target}));
    desk.settle();
    picture = desk.tiles();
    ASSERT_NE(picture.find(" + "), std::string::npos);
    show(1);
    // With `listsShown`, hidden windows are listed on every Space, so an arrangement here would use the stacked window.
    if (GetParam() == SpaceStyle::listsAll) desk.opens("Codex").arrange();
    show(0).settle();
    desk.expectTiles(picture);
    desk.cycleStack();
    EXPECT_TRUE(desk.wasCarriedOut());
}

TEST_P(Spaces, AWindowReturnsToATileThatAWindowOfAnotherSpaceTook) {
    show(1).opens("Maps").settle();
    const auto tiles = desk.controller().tiles();
    for (const auto& tile : tiles) {
        (void)desk.controller().perform(command::Place{desk.desktop.windowIDOf("Maps"), tile.target});
        desk.settle();
    }
    for (const char* label : {"Mail", "Notes"}) {
        EXPECT_FALSE(desk.desktop.window(label).isMinimized || desk.desktop.isHidden(label)) << label;
    }
    show(0).settle();
    desk.expectTiles(picture);
}

TEST_P(Spaces, FocusModeContinuesWhileAnotherSpaceIsShownAndItsEndRestoresTheTiles) {
    desk.desktop.userFocuses("Notes");
    desk.zoom();
    const std::string zoomed = desk.desktop.picture();
    show(1).settle();
    ASSERT_TRUE(desk.state().focusMode->has_value());
    show(0).settle();
    EXPECT_EQ(desk.desktop.picture(), zoomed);
    desk.zoom();
    desk.expectTiles(picture);

    desk.desktop.userFocuses("Notes");
    desk.zoom();
    show(1).opens("Maps").arrange(); // ends focus mode: the zoomed window gets the frame of its tile once it is shown
    EXPECT_FALSE(desk.state().focusMode->has_value());
    show(0).settle();
    desk.expectTiles(picture);
}

TEST_P(Spaces, FocusModeOfAnotherSpaceEndsWithoutChangingTheShownTiles) {
    show(1).opens("Maps").opens("Codex").arrange().layout("jarvis.command-center").zoom();
    ASSERT_TRUE(desk.state().focusMode->has_value());
    show(0).settle();
    picture = desk.tiles();
    desk.zoom();
    EXPECT_FALSE(desk.state().focusMode->has_value());
    desk.expectTiles(picture);
}

TEST_P(Spaces, AWindowWithoutATileGetsItsFrameBackAfterFocusModeEndedOnAnotherSpace) {
    desk.opens("Maps", {.frame = makeRect(300, 300, 800, 600)}).settle();
    desk.desktop.userFocuses("Maps");
    desk.zoom();
    show(1).opens("Codex").arrange();
    show(0).settle();
    EXPECT_EQ(desk.desktop.describeWindow(desk.desktop.window("Maps")), "Maps 300,300 800x600");
}

TEST_P(Spaces, AWindowReturnsToItsTileAfterFullScreen) {
    desk.desktop.setFullScreen("Notes", true);
    desk.advance(Seconds(20));
    EXPECT_EQ(desk.state().assignedWindowIDs->size(), 2u);
    desk.desktop.setFullScreen("Notes", false);
    desk.settle();
    desk.expectTiles(picture);
}

TEST_P(Spaces, WindowsClosedOnAnotherSpaceAreForgotten) {
    show(1);
    desk.desktop.close("Mail");
    desk.settle();
    EXPECT_EQ(desk.state().assignedWindowIDs->size(), 1u);
    desk.opens("Maps").arrange();
    desk.desktop.quit("Notes");
    desk.settle();
    show(0).settle();
    EXPECT_EQ(desk.tiles().find("Notes"), std::string::npos) << desk.tiles();
}

TEST_P(Spaces, UndoChangesOnlyTheShownSpace) {
    show(1).opens("Maps", {.frame = makeRect(300, 300, 800, 600)}).arrange();
    desk.undo();
    EXPECT_EQ(desk.desktop.describeWindow(desk.desktop.window("Maps")), "Maps 300,300 800x600");
    show(0).settle();
    desk.expectTiles(picture);
}

TEST(ListedSpaces, AWindowSentToAnotherSpaceIsANewWindowOfThatSpace) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Mail").opens("Notes").arrange();
    desk.desktop.showVirtualDesktop(1);
    desk.advance(Seconds(1)).opens("Maps").opens("Codex").arrange();
    const std::string there = desk.tiles();
    desk.desktop.sendToVirtualDesktop("Mail", 1);
    desk.settle();
    desk.expectTiles(there);
    EXPECT_FALSE(desk.desktop.window("Maps").isMinimized || desk.desktop.isHidden("Maps"));
}

// An application that does not respond

TEST(UnresponsiveApplication, KeepsItsTilesAsLongAsItsProcessRuns) {
    Scenario desk;
    desk.desktop.setAnnouncesAllChanges(false);
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Mail").opens("Notes").arrange();
    const std::string picture = desk.tiles();
    for (const Seconds duration : {Seconds(0.6), Seconds(90)}) {
        desk.desktop.setResponding("Mail", false);
        desk.advance(duration);
        EXPECT_EQ(desk.tiles(), picture);
        desk.desktop.setResponding("Mail", true);
        desk.settle();
        EXPECT_EQ(desk.tiles(), picture);
    }
    desk.desktop.userFocuses("Mail");
    desk.zoom();
    desk.desktop.setResponding("Mail", false);
    desk.advance(Seconds(5));
    EXPECT_TRUE(desk.state().focusMode->has_value());
    desk.desktop.quit("Mail");
    desk.settle();
    EXPECT_FALSE(desk.state().focusMode->has_value());
    EXPECT_EQ(desk.state().assignedWindowIDs->size(), 1u);
}

TEST(UnresponsiveApplication, FollowsAnArrangementOnceItResponds) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Mail").opens("Notes").arrange();
    desk.desktop.setResponding("Mail", false);
    desk.layout("jarvis.command-center").advance(Seconds(30));
    desk.desktop.setResponding("Mail", true);
    desk.settle(); // checks that the window is in its tile
    EXPECT_EQ(desk.framesWrittenWithin(Seconds(10)), 0);
}

// Native tabs

TEST(NativeTabs, EveryOperationAffectsTheShownTab) {
    for (const auto style : {SpaceStyle::listsAll, SpaceStyle::listsShown}) {
        Scenario desk;
        desk.desktop.setSpaceStyle(style);
        desk.display(2560, 1440).layout("jarvis.dual-split").opens("Terminal").opens("Notes").arrange();
        const auto tilesOf = [&] {
            std::string text = desk.tiles();
            const auto at = text.find("Terminal 2");
            return at == std::string::npos ? text : text.replace(at, 10, "Terminal");
        };
        const std::string picture = tilesOf();
        desk.desktop.openTab("Terminal");
        desk.settle();
        EXPECT_EQ(tilesOf(), picture);
        EXPECT_EQ(desk.controller().liveWindows().size(), 2u);
        desk.desktop.userFocuses("Terminal 2");
        desk.zoom();
        for (const char* tab : {"Terminal", "Terminal 2", "Terminal"}) {
            desk.desktop.showTab(tab);
            desk.settle();
            EXPECT_TRUE(desk.state().focusMode->has_value()) << tab;
        }
        desk.zoom();
        EXPECT_EQ(tilesOf(), picture);
        desk.desktop.close("Terminal"); // the other tab comes forward
        desk.settle();
        EXPECT_EQ(tilesOf(), picture);
        desk.undo(); // reverts the arrangement: its snapshot has the window's new id
        EXPECT_TRUE(desk.state().assignedWindowIDs->empty());
    }
}

TEST(NativeTabs, RulesAreNotAppliedAgainToAWindowWithANewId) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Terminal").opens("Notes").arrange();
    desk.controller().perform(action::Switch{action::Setting::continuousManagement, true});
    WorkspaceRule rule;
    rule.applicationName = "Terminal";
    rule.disposition = disposition::Tile{desk.controller().tiles().front().slot.id};
    ASSERT_TRUE(desk.controller().perform(action::AddRule{rule}));
    desk.settle();
    desk.desktop.userFocuses("Terminal");
    desk.move(right).move(right);
    const std::string picture = desk.tiles();
    desk.desktop.renumber("Terminal");
    desk.settle();
    desk.expectTiles(picture);
}

TEST(NativeTabs, WindowsWithEqualFramesAreNotTabsOfOneGroup) {
    struct Case {
        const char* what;
        std::function<void(Scenario&)> happens;
        std::size_t assigned;
    };
    const Case cases[] = {
        {"a window with a new id", [](Scenario& desk) { desk.desktop.renumber("Mail"); }, 2},
        {"a window with a new id, 1.5 points away",
         [](Scenario& desk) {
             CGRect frame = desk.desktop.window("Mail").frame;
             frame.origin.x += 1.5;
             desk.desktop.renumber("Mail");
             desk.desktop.userMoves("Mail", frame);
         },
         2},
        {"a window with a new id and another frame",
         [](Scenario& desk) {
             desk.desktop.renumber("Mail");
             desk.desktop.userMoves("Mail", makeRect(200, 200, 640, 480));
         },
         1},
        {"two windows with new ids and the same frame",
         [](Scenario& desk) {
             const CGRect frame = desk.desktop.window("Mail").frame;
             desk.desktop.renumber("Mail");
             desk.desktop.open("Mail", {.frame = frame});
         },
         1},
        {"another application's window",
         [](Scenario& desk) {
             const CGRect frame = desk.desktop.window("Mail").frame;
             desk.desktop.close("Mail");
             desk.opens("Codex", {.frame = frame});
         },
         1},
    };
    for (const auto& [what, happens, assigned] : cases) {
        Scenario desk;
        desk.display(2560, 1440).layout("jarvis.dual-split").opens("Mail").opens("Notes").arrange();
        happens(desk);
        desk.settle();
        EXPECT_EQ(desk.state().assignedWindowIDs->size(), assigned) << what;
    }
}

TEST(NativeTabs, AWindowOfAnotherSpaceWithTheSameFrameIsNoTab) {
    struct Case {
        const char* what;
        Seconds reportedAfter;
        Seconds pollDuration;
        bool hasOther; // another window on the Space that is left
    };
    const Case cases[] = {
        {"the change of the Space is reported at once", Seconds(0), Seconds(0), false},
        {"the change is reported while windows are listed", Seconds(0.3), Seconds(0.6), false},
        {"the change is reported long after windows were listed", Seconds(0.9), Seconds(0), true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        Scenario desk;
        desk.desktop.setSpaceStyle(SpaceStyle::listsShown);
        desk.desktop.setAnnouncesAllChanges(false);
        desk.display(2560, 1440).layout("jarvis.dual-split").opens("Mail");
        if (c.hasOther) desk.opens("Notes");
        desk.arrange();
        const std::string picture = desk.tiles();
        desk.desktop.open("Mail", {.frame = desk.desktop.window("Mail").frame, .virtualDesktop = 1});
        desk.settle();
        desk.desktop.delaySpaceNotifications(c.reportedAfter);
        desk.desktop.pollingQueue().setJobDuration(c.pollDuration);
        desk.controller().refresh();
        desk.desktop.showVirtualDesktop(1);
        desk.settle();
        EXPECT_EQ(desk.controller().assignments().targetOf(desk.desktop.windowIDOf("Mail 2")), std::nullopt);
        desk.desktop.showVirtualDesktop(0);
        desk.settle();
        desk.expectTiles(picture);
    }
}

TEST(ClosedWindows, ThatStillRespondLoseTheirTilesWhenTheirSizeIsEmptyOrAtTheNextArrangement) {
    for (const auto frame : {SimulatedDesktop::RetainedFrame::empty, SimulatedDesktop::RetainedFrame::asItWas}) {
        Scenario desk;
        desk.desktop.setSpaceStyle(SpaceStyle::listsShown);
        desk.display(2560, 1440).layout("jarvis.dual-split").opens("Mail").opens("Notes").arrange();
        desk.desktop.closeAndRetain("Notes", frame);
        desk.settle();
        const bool isKept = frame == SimulatedDesktop::RetainedFrame::asItWas; // looks like a window of another Space
        EXPECT_EQ(desk.state().assignedWindowIDs->size(), isKept ? 2u : 1u);
        desk.opens("Maps").arrange();
        desk.expectTiles("Maps 15,15 1254x1382 | Mail 1291,15 1254x1382");
    }
}

} // namespace
} // namespace kova
