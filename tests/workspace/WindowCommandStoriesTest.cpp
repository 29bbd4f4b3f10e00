// Commands that move one window into a tile, out of its tile or to another display, and their dry runs.
#include "tests/harness/Scenario.h"
#include "tests/workspace/Pictures.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace kova {

namespace {

class WindowCommandStories : public ::testing::Test {
  public:
    WindowCommandStories() {
        desk.display(2560, 1440).layout("jarvis.dual-split").opens("Codex").opens("Mail").arrange();
        desk.expectTiles(kHalves);
        desk.desktop.userFocuses("Mail");
        desk.settle();
    }
    WindowID id(const char* label) { return desk.desktop.windowIDOf(label); }
    TileTarget tile(const SlotID& slot, const char* display = "A") { return desk.target(display, slot); }
    /// The steps of the plan as "place Mail A1, wait Codex A1", or the reason of the refusal.
    std::string steps(const WindowCommand& command) {
        const auto planned = desk.controller().planCommand(command);
        if (const auto* refusal = std::get_if<WindowRefusal>(&planned)) return refusal->reason;
        std::string out;
        for (const auto& step : std::get<WindowPlan>(planned).steps) {
            out += (out.empty() ? "" : ", ") + std::string(describe(step.kind)) + " " +
                   desk.desktop.labelOfID(step.windowID);
            if (step.target) out += " " + step.target->slot.text();
        }
        return out;
    }
    std::string picture() { return desk.desktop.picture(); }

    Scenario desk;
};

} // namespace

TEST_F(WindowCommandStories, AWindowWithoutATileIsPutIntoTheNamedTile) {
    desk.opens("Notes").settle();
    desk.desktop.userMinimizes("Notes");
    desk.desktop.userFocuses("Codex");
    desk.settle();
    const WindowCommand place = command::Place{id("Notes"), tile("secondary-1")};
    EXPECT_EQ(steps(place), "place Notes secondary-1, wait Mail secondary-1");
    const std::string before = picture();
    desk.perform(place);
    desk.expectTiles("Codex 15,15 1254x1382 | Notes 1291,15 1254x1382 + Mail");
    desk.expectMessage("Moved Notes to Secondary");
    desk.expectFocus("Codex");
    desk.undo();
    EXPECT_EQ(picture(), before);
    desk.perform(command::Place{std::nullopt, tile("focus-main")});
    EXPECT_TRUE(desk.wasCarriedOut()) << "the window is there already";
    desk.perform(command::Place{id("Notes"), "nowhere::slot"});
    EXPECT_FALSE(desk.wasCarriedOut());
}

TEST_F(WindowCommandStories, AStackedWindowThatWasClosedUnnoticedIsNotFocusedAndTheNextOneComesForward) {
    desk.opens("Notes").settle();
    desk.perform(command::Place{id("Notes"), tile("secondary-1")}).settle();
    const WindowID mail = id("Mail");
    desk.desktop.close("Mail");
    EXPECT_FALSE(desk.controller().perform(command::FocusWindow{mail}));
    EXPECT_EQ(*desk.controller().state().assignedWindowIDs, desk.controller().assignments().assignedWindowIDs);
    desk.settle();
    desk.expectTiles("Codex 15,15 1254x1382 | Notes 1291,15 1254x1382");
}

TEST_F(WindowCommandStories, TwoWindowsSwapTheirTilesAndTheStacksStay) {
    desk.opens("Notes").opens("Viewer").settle();
    desk.perform(command::Place{id("Notes"), tile("focus-main")});
    desk.perform(command::Place{id("Viewer"), tile("secondary-1")});
    desk.expectTiles("Notes 15,15 1254x1382 + Codex | Viewer 1291,15 1254x1382 + Mail");
    desk.desktop.userFocuses("Notes");
    EXPECT_EQ(steps(command::Swap{std::nullopt, WorkspaceDirection::right}),
              "place Viewer focus-main, place Notes secondary-1");
    desk.perform(command::Swap{std::nullopt, WorkspaceDirection::right});
    desk.expectTiles("Viewer 15,15 1254x1382 + Codex | Notes 1291,15 1254x1382 + Mail");
    desk.expectMessage("Swapped Notes and Viewer");
    desk.expectFocus("Notes");
    EXPECT_EQ(steps(command::Swap{std::nullopt, WorkspaceDirection::right}), "There is no tile to the right of Notes");
    desk.perform(command::Swap{std::nullopt, tile("focus-main")}).undo().undo();
    desk.expectTiles("Notes 15,15 1254x1382 + Codex | Viewer 1291,15 1254x1382 + Mail");
    desk.opens("Notes", {.title = "Draft"}).settle();
    desk.perform(command::Place{id("Notes 2"), tile("secondary-1")});
    desk.perform(command::Swap{id("Notes"), tile("secondary-1")});
    desk.expectMessage("Swapped Notes “Notes” and Notes “Draft”");
}

TEST_F(WindowCommandStories, AFloatingWindowIsLeftAloneUntilItIsPutIntoATileAgain) {
    desk.desktop.userMoves("Mail", makeRect(1500, 200, 700, 500));
    desk.settle();
    desk.perform(command::Float{});
    desk.expectMessage("Mail floats until it is put into a tile");
    desk.desktop.userMoves("Mail", makeRect(1500, 200, 700, 500));
    desk.settle();
    desk.opens("Notes").arrange();
    EXPECT_EQ(desk.desktop.describeWindow(desk.desktop.window("Mail")), "Mail 1500,200 700x500");
    EXPECT_EQ(desk.state().floatingWindowIDs->size(), 1u);
    desk.undo(); // reverts only the arrangement
    EXPECT_EQ(desk.state().floatingWindowIDs->size(), 1u);
    desk.desktop.userFocuses("Mail");
    desk.perform(command::ToggleFloating{});
    desk.expectTiles(kHalves);
    EXPECT_TRUE(desk.state().floatingWindowIDs->empty());
    desk.perform(command::ToggleFloating{}).undo();
    EXPECT_TRUE(desk.state().floatingWindowIDs->empty());
    desk.expectTiles(kHalves);
}

TEST_F(WindowCommandStories, AWindowInFullScreenIsFocusedButNotMovedOrZoomed) {
    desk.desktop.setFullScreen("Mail", true);
    desk.settle();
    const std::string before = picture();
    desk.move(WorkspaceDirection::left).expectMessage("Mail is in full screen; end that first");
    desk.zoom().expectMessage("Mail is in full screen; end that first");
    EXPECT_EQ(*desk.state().focusMode, std::nullopt);
    EXPECT_EQ(picture(), before);
    const auto& windows = desk.controller().liveWindows();
    const bool isElsewhere = std::ranges::find(windows, id("Mail"), &ManagedWindow::id)->isElsewhere; // on a Mac
    EXPECT_EQ(steps(command::FocusWindow{id("Mail")}),
              isElsewhere ? "Mail is in full screen; end that first" : "focus Mail");
}

TEST_F(WindowCommandStories, AFloatingWindowStaysVisibleWhenTheOtherWindowOfItsApplicationIsDisplaced) {
    desk.opens("Mail").settle().perform(command::Float{id("Mail 2")});
    desk.perform(command::Place{id("Codex"), tile("secondary-1")});
    EXPECT_FALSE(desk.desktop.isOnScreen(desk.desktop.window("Mail"))) << picture();
    EXPECT_TRUE(desk.desktop.isOnScreen(desk.desktop.window("Mail 2"))) << picture();
}

TEST_F(WindowCommandStories, AWindowThatIsBroughtForwardIsNotLearnedAsMovedByTheUser) {
    const auto learned = [&] { return desk.preferences.values().find("KOVA.autoArrangeLearning.v1")->second; };
    desk.perform(command::Place{id("Codex"), tile("secondary-1")});
    const auto before = learned();
    desk.perform(command::FocusWindow{id("Mail")}).expectTiles("- | Mail 1291,15 1254x1382 + Codex");
    EXPECT_EQ(learned(), before);
}

TEST_F(WindowCommandStories, AnArrangementKeepsTheOrderOfAStack) {
    desk.opens("Notes").opens("Viewer").settle();
    const auto stack = [&] { return desk.controller().tiles().back().stack; };
    std::vector<std::string> names{"Codex", "Mail", "Notes", "Viewer"};
    do {
        for (const auto& name : names) desk.perform(command::Place{id(name.c_str()), tile("secondary-1")});
        const auto before = stack();
        ASSERT_EQ(before.size(), 4U);
        desk.arrange();
        // The arrangement may give a window of the stack a tile of its own.
        auto kept = before;
        std::erase_if(kept, [&](const WindowID& each) { return std::ranges::count(stack(), each) == 0; });
        EXPECT_EQ(stack(), kept);
    } while (std::ranges::next_permutation(names).found);
}

TEST_F(WindowCommandStories, AFloatingWindowStillFloatsAfterASleepAndARestart) {
    desk.perform(command::Float{}).sleep();
    desk.desktop.loseWindow("Mail");
    desk.wake().advance(Seconds(1));
    desk.desktop.loseWindow("Mail", false);
    desk.advance(Seconds(15));
    EXPECT_EQ(desk.state().floatingWindowIDs->size(), 1u);
    desk.advance(Seconds(2));
    desk.restart().settle();
    EXPECT_EQ(desk.state().floatingWindowIDs->size(), 1u);
    desk.arrange();
    desk.expectTiles("Codex 15,15 1254x1382 | -");
}

TEST_F(WindowCommandStories, TheFocusAndWindowsMoveToOtherDisplays) {
    desk.display(2560, 1440).layout("jarvis.dual-split", "B");
    desk.opens("Notes", {.frame = makeRect(2700, 100, 800, 600)}).settle();
    desk.desktop.userFocuses("Notes");
    desk.settle();
    desk.desktop.userFocuses("Codex");
    desk.settle();
    EXPECT_EQ(*desk.state().focusedWindowID, id("Codex"));
    desk.perform(command::FocusDisplay{DisplayStep::next}).expectFocus("Notes");
    desk.perform(command::FocusDisplay{DisplayStep::previous}).expectFocus("Codex");
    desk.perform(command::FocusDisplay{desk.displayIDOf("B")}).expectFocus("Notes");
    desk.desktop.userFocuses("Mail");
    EXPECT_EQ(steps(command::MoveToDisplay{std::nullopt, DisplayStep::next}), "place Mail secondary-1");
    desk.perform(command::MoveToDisplay{std::nullopt, DisplayStep::next});
    desk.expectMessage("Moved Mail to Secondary on B");
    desk.expectTiles("Codex 15,15 1254x1382 | - || - | Mail 3851,15 1254x1382");
    desk.perform(command::MoveToDisplay{std::nullopt, DisplayStep::next}).undo();
    desk.expectTiles("Codex 15,15 1254x1382 | - || - | Mail 3851,15 1254x1382");
    EXPECT_EQ(steps(command::MoveToDisplay{std::nullopt, DisplayID("gone")}), "There is no such display");
}

TEST_F(WindowCommandStories, TheNamedWindowIsUsedInsteadOfTheFocusedOne) {
    desk.opens("Notes").settle();
    desk.perform(command::Place{id("Notes"), tile("focus-main")});
    desk.perform(action::CycleStack{StackStep::previous, {}, tile("focus-main")});
    desk.expectTiles("Codex 15,15 1254x1382 + Notes | Mail 1291,15 1254x1382");
    desk.perform(action::Move{WorkspaceDirection::right, id("Notes")});
    desk.expectMessage("Notes waits behind another window. Bring it to the front with “kova focus window”");
    desk.perform(action::CycleStack{StackStep::next, id("Notes"), {}}); // cycles the stack that contains Notes
    desk.expectTiles("Notes 15,15 1254x1382 + Codex | Mail 1291,15 1254x1382");
    desk.undo();
    desk.desktop.userFocuses("Mail");
    desk.perform(action::ToggleFocusZoom{id("Codex")});
    EXPECT_EQ((*desk.state().focusMode)->windowID, id("Codex"));
    desk.perform(action::ToggleFocusZoom{}).desktop.userFocuses("Mail");
    desk.perform(action::Move{WorkspaceDirection::right, id("Codex")});
    EXPECT_EQ(desk.state().assignedWindowIDs->at(tile("secondary-1")), id("Codex"));
}

TEST_F(WindowCommandStories, ACommandForAFocusedDialogAffectsTheWindowOfTheDialog) {
    desk.opens("Codex", {.frame = makeRect(300, 300, 400, 200), .title = "Save?", .dialogOf = "Codex"}).settle();
    desk.desktop.userFocuses("Codex 2");
    desk.settle();
    EXPECT_EQ(*desk.state().focusedWindowID, id("Codex"));
    desk.perform(command::Swap{std::nullopt, WorkspaceDirection::right});
    desk.expectTiles("Mail 15,15 1254x1382 | Codex 1291,15 1254x1382");
}

TEST_F(WindowCommandStories, ADryRunDuringFocusModeSaysWhatTheCommandWillDoAfterEndingFocusMode) {
    desk.opens("Notes").opens("Viewer").layout("jarvis.quad-grid").arrange();
    const SlotID corner = "secondary-3"; // at the bottom right; the zoomed window reaches beyond it in every direction
    const WindowID window = desk.state().assignedWindowIDs->at(tile(corner));
    for (const auto direction : {WorkspaceDirection::left, WorkspaceDirection::up, WorkspaceDirection::right}) {
        const command::Swap swap{window, direction};
        const std::string before = steps(swap);
        desk.perform(action::ToggleFocusZoom{window});
        ASSERT_TRUE(*desk.state().focusMode);
        EXPECT_EQ(steps(swap), before);
        desk.perform(action::ToggleFocusZoom{});
    }
}

TEST_F(WindowCommandStories, ASwapThatWouldCoverAThirdWindowIsRefusedWithoutAChange) {
    desk.opens("Notes").opens("Tall", {.minimumSize = {{300, 1300}}}).layout("jarvis.quad-grid").arrange();
    desk.perform(command::Place{id("Tall"), tile("focus-main")});
    desk.perform(command::Place{id("Mail"), tile("secondary-1")});
    desk.perform(command::Place{id("Notes"), tile("secondary-3")});
    const std::string before = picture();
    const command::Swap swap{id("Tall"), WorkspaceDirection::right};
    EXPECT_EQ(steps(swap), "Tall is too large to trade places with Mail");
    desk.perform(swap);
    EXPECT_EQ(picture(), before);
}

TEST_F(WindowCommandStories, CyclingAStackSkipsAWindowThatCannotBeShownInTheTile) {
    desk.opens("Notes").settle();
    for (const char* name : {"Codex", "Notes", "Mail"}) desk.perform(command::Place{id(name), tile("secondary-1")});
    const int shown = desk.desktop.shownVirtualDesktop();
    desk.desktop.setFullScreen("Notes", true);
    desk.settle();
    desk.desktop.showVirtualDesktop(shown); // a Mac shows the window's own Space
    desk.settle().perform(action::CycleStack{StackStep::next, {}, tile("secondary-1")});
    EXPECT_EQ(desk.state().assignedWindowIDs->at(tile("secondary-1")), id("Codex")) << picture();
}

TEST_F(WindowCommandStories, DriftedWindowsAreFoundAndMovedBack) {
    const auto verdictOf = [&](const char* label) {
        for (const auto& finding : desk.controller().verifyPlacements()) {
            if (finding.windowID == id(label)) return finding.verdict;
        }
        return PlacementVerdict::leftAlone;
    };
    EXPECT_EQ(verdictOf("Mail"), PlacementVerdict::asRequested);
    desk.opens("Notes", {.frame = makeRect(100, 100, 700, 500), .springsBackTimes = 40}).settle();
    desk.perform(command::Place{id("Notes"), tile("focus-main")}).advance(Seconds(10));
    EXPECT_EQ(verdictOf("Notes"), PlacementVerdict::drifted) << "polls have made all their requests for this frame";
    for (int i = 0; i < 20 && verdictOf("Notes") != PlacementVerdict::asRequested; ++i) {
        ASSERT_TRUE(desk.controller().perform(action::RepairPlacements{}));
        desk.settle();
    }
    EXPECT_EQ(verdictOf("Notes"), PlacementVerdict::asRequested);
    desk.desktop.userMinimizes("Mail");
    desk.settle();
    EXPECT_EQ(verdictOf("Mail"), PlacementVerdict::leftAlone);
}

} // namespace kova
