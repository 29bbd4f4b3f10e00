// Choosing layouts, undo, focus mode, and moving the focus between tiles.
#include "tests/harness/Scenario.h"
#include "tests/workspace/Pictures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <tuple>

namespace kova {

namespace {

using enum WorkspaceDirection;

TEST(LayoutStories, WindowsFollowTheirTilesIntoAnotherLayoutAndUndoBringsThemBack) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Codex").opens("Mail").arrange();
    desk.layout("jarvis.dual-stack");
    desk.expectTiles("Codex 15,15 2530x666 | Mail 15,731 2530x666");
    desk.layout("jarvis.focus-single");
    desk.expectTiles("Mail 15,15 2530x1382 + Codex");
    EXPECT_TRUE(desk.desktop.isHidden("Codex")) << "the window is stacked behind the focused one";
    desk.undo().undo();
    desk.expectTiles(kHalves);
    EXPECT_FALSE(desk.desktop.isHidden("Codex"));
}

TEST(LayoutStories, TheFocusedWindowStaysInFrontInALayoutWithTooFewTiles) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.quad-grid").opens("Codex").opens("Mail").opens("Notes").opens("Maps");
    desk.arrange();
    for (const char* focused : {"Codex", "Mail", "Notes", "Maps"}) {
        desk.desktop.userFocuses(focused);
        const auto start = desk.controller().assignments();
        for (const char* layout : {"jarvis.dual-split", "jarvis.focus-single", "jarvis.triple-strip"}) {
            desk.layout(layout);
            EXPECT_TRUE(desk.controller().assignments().isAssigned(desk.desktop.windowIDOf(focused)))
                << focused << layout;
            desk.expectFocus(focused);
        }
        desk.layout("jarvis.quad-grid");
        EXPECT_EQ(desk.controller().assignments(), start) << focused;
    }
}

TEST(LayoutStories, CyclingGoesThroughTheWholeCatalogueAndWrapsAround) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.super-ultrawide-5120x1440").start();
    auto& controller = desk.controller();
    const auto current = [&] { return controller.resolvedLayout(desk.displayIDOf("A"))->id; };
    EXPECT_TRUE(controller.perform(action::CycleLayout{}));
    EXPECT_EQ(current(), "jarvis.command-center");
    EXPECT_TRUE(controller.perform(action::CycleLayout{LayoutStep::previous}));
    EXPECT_EQ(current(), "jarvis.super-ultrawide-5120x1440");
    for (std::size_t i = 0; i < controller.catalogue().size(); ++i) controller.perform(action::CycleLayout{});
    EXPECT_EQ(current(), "jarvis.super-ultrawide-5120x1440");
}

TEST(LayoutStories, TheCurrentDisplayIsThatOfTheFocusedWindowElseOfThePointerElseTheFirst) {
    Scenario desk;
    desk.display(2560, 1440).display(1920, 1080);
    desk.opens("Mail", {.frame = makeRect(2700, 60, 800, 600)}).start();
    EXPECT_EQ(desk.controller().currentDisplayID(), desk.displayIDOf("B"));
    desk.desktop.quit("Mail");
    desk.settle();
    EXPECT_EQ(desk.controller().currentDisplayID(), desk.displayIDOf("A"));
    desk.desktop.movePointer(CGPoint{3000, 300});
    EXPECT_EQ(desk.controller().currentDisplayID(), desk.displayIDOf("B"));
}

TEST(LayoutStories, TheAutomaticLayoutDependsOnTheShapeOfTheDisplay) {
    Scenario desk;
    desk.display(2560, 1440).display(1920, 1080).display(5120, 1440).display(4200, 1440);
    desk.desktop.setPanels("D", makeRect(0, 60, 0, 0)); // the visible frame is wider than 3 to 1
    auto& controller = desk.controller();
    const auto automatic = [&](const char* name) {
        EXPECT_EQ(controller.perform(action::SelectLayout{desk.displayIDOf(name), DisplayLayoutSelection::automatic()}),
                  true);
        return controller.resolvedLayout(desk.displayIDOf(name))->id;
    };
    EXPECT_EQ(automatic("A"), "jarvis.command-center");
    EXPECT_EQ(automatic("B"), "jarvis.compact-16-by-9");
    EXPECT_EQ(automatic("C"), "jarvis.super-ultrawide-5120x1440");
    EXPECT_EQ(automatic("D"), "jarvis.command-center");
    EXPECT_EQ(controller.perform(action::SelectLayout{"display-nowhere", DisplayLayoutSelection::automatic()}), false);
    EXPECT_EQ(
        controller.perform(action::SelectLayout{desk.displayIDOf("A"), DisplayLayoutSelection::layout("none such")}),
        false);
}

TEST(LayoutStories, WeightsDetermineTheSizesOfTilesUntilTheyAreReset) {
    Scenario desk;
    desk.display(2560, 1440);
    WorkspaceProfile profile;
    profile.layoutSelectionsByDisplay[desk.displayIDOf("A")] = DisplayLayoutSelection::layout("jarvis.dual-split");
    profile.layoutWeightsByDisplay[desk.displayIDOf("A")]["jarvis.dual-split"].splits["root"] = {3, 1};
    desk.preferences.setValue("KOVA.workspaceProfile.v1", PreferenceData{encodeWorkspaceProfile(profile)});
    desk.opens("Codex").opens("Mail").arrange();
    desk.expectTiles("Codex 15,15 1886x1382 | Mail 1923,15 622x1382");
    EXPECT_TRUE(desk.controller().perform(action::ResetLayoutSizes{}));
    desk.settle();
    desk.expectTiles(kHalves);
    EXPECT_TRUE(desk.state().profile->layoutWeightsByDisplay.empty());
}

TEST(LayoutStories, TilesFollowTheDisplayAndItsPanels) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Codex").opens("Mail").arrange();
    desk.desktop.resizeDisplay("A", {1920, 1080});
    desk.settle();
    desk.expectTiles("Codex 15,15 934x1022 | Mail 971,15 934x1022");
    desk.desktop.setPanels("A", makeRect(0, 30, 0, 0));
    desk.settle();
    desk.expectTiles("Codex 15,45 934x992 | Mail 971,45 934x992");
}

TEST(LayoutStories, TheInsetIsTheGapAroundWindows) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Codex").opens("Mail").arrange();
    EXPECT_TRUE(desk.controller().perform(action::SetTileInset{0}));
    desk.settle();
    desk.expectTiles("Codex 10,10 1264x1392 | Mail 1286,10 1264x1392");
    EXPECT_FALSE(desk.controller().perform(action::SetTileInset{-1}));
    EXPECT_FALSE(desk.controller().perform(action::SetTileInset{std::nan("")}));
}

TEST(FocusModeStories, OneWindowGetsTheDisplayUntilFocusModeEnds) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Codex").opens("Mail").arrange();
    desk.desktop.userFocuses("Mail");
    desk.zoom();
    desk.expectMessage("Focus Mode — Mail owns this display");
    EXPECT_EQ(desk.desktop.describeWindow(desk.desktop.window("Mail")), "Mail 15,15 2530x1382");
    EXPECT_EQ(desk.framesWrittenWithin(Seconds(30)), 0) << "polls do not move the zoomed window";
    desk.zoom();
    desk.expectMessage("Focus Mode closed — workspace restored");
    desk.expectTiles(kHalves);
    EXPECT_EQ(desk.controller().undoHistory().size(), 2u)
        << "focus mode adds no undo step to those of the layout and the arrangement";
}

TEST(FocusModeStories, EveryOtherActionStartsFromTheRestoredWorkspace) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Codex").opens("Mail").arrange();
    desk.desktop.userFocuses("Codex");
    desk.zoom().arrange();
    desk.expectTiles(kHalves);
    EXPECT_EQ(*desk.state().focusMode, std::nullopt);
    desk.undo();
    desk.expectTiles(kHalves);
}

TEST(LayoutStories, WindowsGetTilesOfTheLayoutThatANewSizeOfTheDisplaySelects) {
    Scenario desk;
    desk.display(1920, 1080);
    desk.controller().perform(action::SelectLayout{desk.displayIDOf("A"), DisplayLayoutSelection::automatic()});
    desk.opens("Codex").opens("Mail").opens("Notes").arrange();
    const auto steps = desk.controller().undoHistory().size();
    desk.desktop.resizeDisplay("A", {5120, 1440});
    desk.settle();
    EXPECT_EQ(desk.controller().resolvedLayout(desk.displayIDOf("A"))->id, "jarvis.super-ultrawide-5120x1440");
    EXPECT_EQ(desk.state().assignedWindowIDs->size(), 3u);
    EXPECT_EQ(desk.state().assignedWindowIDs->count(desk.target("A", "secondary-1")), 1u)
        << "the window is in the slot with the same canonical id";
    EXPECT_EQ(desk.controller().undoHistory().size(), steps);
}

TEST(LayoutStories, AWindowThatNoLongerFitsClaimsASpanAtOnceAndHandlesFollowEachMove) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Codex", {.minimumSize = {{300, 1300}}}).arrange();
    auto revision = *desk.state().layoutRevision;
    desk.layout("jarvis.quad-grid");
    EXPECT_GT(*desk.state().layoutRevision, revision);
    desk.expectTiles("Codex 15,15 1254x1382 | - | (Codex) | -");
    ASSERT_TRUE(*desk.state().placementNotice);
    EXPECT_EQ((*desk.state().placementNotice)->additionalTileCount, 1);

    desk.layout("jarvis.dual-split").opens("Mail", {.minimumSize = {{1700, 300}}});
    desk.advance(Seconds(1)).arrange();
    revision = *desk.state().layoutRevision;
    desk.desktop.close("Mail");
    desk.settle();
    EXPECT_GT(*desk.state().layoutRevision, revision)
        << "the divider has moved, since the minimum size of the closed window does not count any more";
}

TEST(LayoutStories, ASpanDoesNotOverlapTheTilesBesideItWhenTheyGrow) {
    Scenario desk;
    desk.display(2560, 1440)
        .layout("jarvis.six-grid-portrait")
        .opens("Codex", {.minimumSize = {{300, 1300}}})
        .arrange();
    desk.expectTiles("Codex 15,15 1254x1382 | - | (Codex) | - | (Codex) | -");
    const auto dividers = desk.controller().dividers();
    const auto middleRow = std::ranges::find(dividers, "root.1", [](const auto& each) { return each.divider.splitID; });
    ASSERT_NE(middleRow, dividers.end());
    for (const auto& [translation, expected] : {std::pair{-300.0, 954}, std::pair{300.0, 1254}}) {
        ASSERT_TRUE(desk.controller().perform(action::BeginDividerDrag{*middleRow}));
        desk.controller().perform(action::UpdateDividerDrag{*middleRow, translation});
        desk.controller().perform(action::EndDividerDrag{*middleRow});
        desk.settle().expectTiles("Codex 15,15 " + std::to_string(expected) + "x1382 | - | (Codex) | - | (Codex) | -");
        desk.undo().settle();
    }
    desk.opens("Mail", {.minimumSize = {{1700, 300}}}).arrange();
    desk.expectTiles("Codex 15,15 808x1382 | Mail 845,15 1700x428 | (Codex) | - | (Codex) | -");
}

TEST(LayoutStories, NothingMovesWhileTheScreenIsLocked) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Codex").opens("Mail").arrange();
    desk.desktop.setLocked(true);
    desk.advance(Seconds(1));
    const int before = desk.desktop.window("Mail").frameWriteCount;
    desk.desktop.resizeDisplay("A", {1920, 1080});
    desk.advance(Seconds(5));
    desk.perform(action::Arrange{});
    EXPECT_FALSE(desk.wasCarriedOut());
    EXPECT_EQ(desk.desktop.window("Mail").frameWriteCount, before);
    desk.desktop.setLocked(false);
    desk.settle();
    desk.expectTiles("Codex 15,15 934x1022 | Mail 971,15 934x1022");
}

TEST(FocusModeStories, AWindowWithoutATileCanBeZoomedUntilItsDisplayChangesItsSize) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Mail", {.frame = makeRect(1500, 90, 600, 400)}).start();
    desk.desktop.userFocuses("Mail");
    desk.zoom();
    ASSERT_TRUE(*desk.state().focusMode);
    EXPECT_EQ((*desk.state().focusMode)->anchor, desk.target("A", "secondary-1"));
    desk.desktop.resizeDisplay("A", {2000, 1100});
    desk.settle();
    EXPECT_EQ(*desk.state().focusMode, std::nullopt);
    EXPECT_EQ(desk.desktop.describeWindow(desk.desktop.window("Mail")), "Mail 1500,90 600x400");
}

TEST(FocusModeStories, AnActionThatIsRefusedWhilePausedLockedOrAsleepDoesNotEndFocusMode) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Codex").opens("Mail").arrange();
    desk.perform(action::CaptureScene{});
    desk.desktop.userFocuses("Mail");
    const auto divider = desk.controller().dividers().front();
    desk.zoom();
    const auto zoomed = *desk.state().focusMode;
    const auto setPaused = [&](bool on) { desk.perform(action::Switch{action::Setting::isPaused, on}); };
    const std::tuple<const char*, std::function<void()>, std::function<void()>> absences[] = {
        {"paused", [&] { setPaused(true); }, [&] { setPaused(false); }},
        {"locked", [&] { desk.desktop.setLocked(true); }, [&] { desk.desktop.setLocked(false); }},
        {"asleep", [&] { desk.sleep(); }, [&] { desk.wake(); }},
    };
    const WorkspaceAction actions[] = {
        action::Arrange{},
        action::Undo{},
        action::ToggleFocusZoom{},
        action::CycleStack{},
        action::Move{left},
        WindowCommand(command::PlaceInNumbered{desk.desktop.windowIDOf("Mail"), 1}),
        action::ActivateScene{desk.state().scenes->back().id},
        action::MoveDivider{divider, 100},
        action::CycleLayout{},
    };
    for (const auto& [absence, begin, end] : absences) {
        begin();
        desk.settle();
        for (const auto& action : actions) {
            desk.perform(action);
            EXPECT_FALSE(desk.wasCarriedOut()) << absence << " " << action.index();
            EXPECT_EQ(*desk.state().focusMode, zoomed) << absence << " " << action.index();
        }
        end();
        desk.settleFully();
        EXPECT_EQ(*desk.state().focusMode, zoomed) << absence;
        EXPECT_EQ(desk.desktop.describeWindow(desk.desktop.window("Mail")), "Mail 15,15 2530x1382");
    }
}

TEST(FocusModeStories, HiddenWindowsStayHidden) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Codex").opens("Mail").arrange();
    desk.desktop.userFocuses("Mail");
    desk.move(left);
    ASSERT_TRUE(desk.desktop.isHidden("Codex"));
    desk.desktop.userFocuses("Mail");
    desk.zoom().zoom();
    EXPECT_TRUE(desk.desktop.isHidden("Codex"));
    desk.expectTiles("Mail 15,15 1254x1382 + Codex | -");
}

TEST(FocusModeStories, EndsWhenItsWindowClosesAndIsRefusedIfItWouldChangeNothing) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Codex").opens("Mail").arrange();
    desk.desktop.userFocuses("Codex");
    desk.zoom();
    desk.desktop.close("Codex");
    desk.settle();
    desk.expectMessage("Focus Mode closed because its window is no longer available");
    desk.expectTiles("- | Mail 1291,15 1254x1382");
    desk.layout("jarvis.focus-single");
    desk.desktop.userFocuses("Mail");
    desk.zoom();
    EXPECT_FALSE(desk.wasCarriedOut());
    desk.expectMessage("This display already uses a single-pane layout");
}

TEST(FocusModeStories, StoppingEndsFocusModeAndAFullHistoryLosesNoEntry) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Codex").opens("Mail").arrange();
    for (int i = 0; i < 40; ++i) desk.controller().perform(action::Arrange{});
    desk.settle();
    const auto history = desk.controller().undoHistory().entries();
    desk.desktop.userFocuses("Mail");
    desk.zoom();
    desk.stop();
    EXPECT_EQ(desk.desktop.describeWindow(desk.desktop.window("Mail")), "Mail 1291,15 1254x1382");
    EXPECT_EQ(desk.controller().undoHistory().entries(), history);
}

TEST(UndoOfArrangements, MinimizedStatesAndFramesAreRestoredAndClosedWindowsAreSkipped) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split");
    desk.opens("Codex", {.frame = makeRect(20, 20, 600, 400)}).opens("Mail", {.frame = makeRect(80, 80, 600, 400)});
    desk.opens("Viewer", {.frame = makeRect(160, 160, 600, 400), .isMinimized = true}).start();
    const std::string before = desk.desktop.picture();
    desk.arrange();
    desk.desktop.userMinimizes("Mail");
    desk.settle();
    desk.undo();
    EXPECT_EQ(desk.desktop.picture(), before);
    EXPECT_TRUE(desk.state().assignedWindowIDs->empty());
    desk.arrange();
    desk.desktop.close("Mail");
    desk.undo();
    EXPECT_TRUE(desk.wasCarriedOut());
    EXPECT_EQ(desk.desktop.livingWindows().size(), 2u);
}

TEST(UndoOfArrangements, IsRefusedWithoutAMessageIfTheHistoryIsEmpty) {
    Scenario desk;
    desk.display(2560, 1440).opens("Codex").undo();
    EXPECT_FALSE(desk.wasCarriedOut());
    EXPECT_EQ(*desk.state().lastActionMessage, std::nullopt);
}

TEST(NavigationStories, TheFocusMovesBetweenOccupiedTilesAndAMissingNeighborIsReported) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.quad-grid").opens("Codex").opens("Mail").opens("Notes").arrange();
    desk.desktop.userFocuses("Codex");
    desk.focus(right);
    desk.expectFocus("Mail");
    desk.expectMessage("Focused Mail");
    desk.focus(down);
    desk.expectFocus("Notes"); // the tile below is empty, so the tile beside that one is the nearest occupied tile
    desk.focus(left);
    EXPECT_FALSE(desk.wasCarriedOut());
    desk.expectMessage("No occupied zone left of the focused window");
    desk.move(down);
    desk.expectMessage("No zone down of the focused window");
}

TEST(NavigationStories, CyclingOntoASpanKeepsAllWindowsInStacks) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.quad-grid");
    for (const char* name : {"Codex", "Firefox", "Mail", "Viewer"}) desk.opens(name);
    desk.arrange();
    desk.controller().perform(action::Switch{action::Setting::bringsNextForward, false});
    desk.opens("Big", {.minimumSize = {{2000, 1300}}}).advance(Seconds(1));
    desk.desktop.userFocuses("Codex");
    const TileTarget anchor = desk.target("A", "focus-main");
    ASSERT_TRUE(desk.controller().perform(command::Place{desk.desktop.windowIDOf("Big"), anchor}));
    EXPECT_EQ(desk.state().stackWindowIDsByTarget->at(anchor).size(), 5u);
    desk.settle();
    desk.cycleStack();
    EXPECT_EQ(desk.state().stackWindowIDsByTarget->at(anchor).size(), 5u);
    for (int i = 0; i < 4; ++i) desk.cycleStack();
    EXPECT_EQ(desk.state().stackWindowIDsByTarget->at(anchor).size(), 5u);
}

TEST(NavigationStories, CyclingAStackWrapsAround) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Codex").opens("Mail").arrange();
    desk.desktop.userFocuses("Mail");
    desk.move(left);
    desk.expectTiles("Mail 15,15 1254x1382 + Codex | -");
    desk.cycleStack();
    desk.expectMessage("Codex is now active");
    desk.expectTiles("Codex 15,15 1254x1382 + Mail | -");
    EXPECT_TRUE(desk.desktop.isHidden("Mail"));
    desk.cycleStack();
    desk.expectTiles("Mail 15,15 1254x1382 + Codex | -");
    EXPECT_FALSE(desk.desktop.isHidden("Mail"));
}

} // namespace

} // namespace kova
