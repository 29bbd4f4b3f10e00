// Displays that are unplugged, on standby, resized or reordered, and where their windows are in the meantime.
#include "tests/harness/Scenario.h"
#include "tests/workspace/Seeds.h"
#include "workspace/DisplayRenaming.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>
#include <utility>

namespace kova {
namespace {

/// Three displays with two tiles each, and a window in each tile.
class Displays : public ::testing::Test {
  protected:
    Displays() { prepare(desk); }
    static void prepare(Scenario& desk) {
        for (const char* name : {"A", "B", "C"}) {
            desk.display(2560, 1440, name).layout("jarvis.dual-split");
        }
        for (const char* name : {"Mail", "Notes", "Codex", "Firefox", "Console", "Viewer"}) {
            desk.opens(name, {.frame = makeRect(100 + 2560.0 * (desk.desktop.openedCount() / 2), 100, 900, 700)});
        }
        desk.arrange();
    }
    static SimulatedDisplay disconnect(Scenario& desk, const std::string& name) {
        const CGRect frame = desk.desktop.frameOfDisplay(name);
        desk.desktop.removeDisplay(name);
        return {.name = name, .size = frame.size, .origin = frame.origin};
    }
    Scenario desk;
};

TEST_F(Displays, TheStandbyOfADisplayMovesNoWindowToAnotherDisplay) {
    desk.desktop.close("Mail"); // frees a tile on any display
    desk.settle().arrange();
    const auto assigned = *desk.state().assignedWindowIDs;
    for (const char* name : {"A", "B", "C"}) {
        SCOPED_TRACE(name);
        const auto display = disconnect(desk, name);
        desk.advance(Seconds(0.5));
        desk.controller().perform(action::Arrange{}); // leaves the windows of the missing display alone
        desk.advance(Seconds(1.4));
        EXPECT_EQ(*desk.state().assignedWindowIDs, assigned);
        desk.desktop.addDisplay(display);
        desk.settle();
        EXPECT_EQ(*desk.state().assignedWindowIDs, assigned);
    }
}

TEST_F(Displays, AWindowWithoutAFreeTileIsMovedOntoAConnectedDisplay) {
    desk.desktop.strandWindows(true);
    desk.opens("Floating", {.frame = makeRect(5600, 300, 900, 700)});
    desk.opens("Moved", {.frame = makeRect(5500, 200, 900, 700)});
    desk.opens("Peeking", {.frame = makeRect(4400, 900, 900, 700)}).settle();
    const std::string before = desk.tiles();
    const auto shown = [&](const char* label) { return desk.desktop.describeWindow(desk.desktop.window(label)); };
    const auto display = disconnect(desk, "C");
    desk.advance(Seconds(1));
    const auto lines = desk.controller().planArrangement().explanation();
    EXPECT_TRUE(std::ranges::find(lines, "Console “Console” is left alone for a moment: its display was unplugged just "
                                         "now and may come back") != lines.end());
    desk.advance(Seconds(1.1));
    EXPECT_EQ(shown("Console"), "Console 3866,15 1254x1382");
    EXPECT_EQ(shown("Viewer"), "Viewer 3866,15 1254x1382");
    EXPECT_EQ(shown("Floating"), "Floating 4220,300 900x700");
    EXPECT_EQ(shown("Peeking"), "Peeking 4400,900 900x700") << "a connected display shows a part of the window";
    desk.settle().desktop.userMoves("Moved", makeRect(3000, 100, 900, 700));
    desk.settle();
    desk.desktop.addDisplay(display);
    desk.settle();
    EXPECT_EQ(desk.tiles(), before);
    EXPECT_EQ(shown("Floating"), "Floating 5600,300 900x700");
    EXPECT_EQ(shown("Moved"), "Moved 3000,100 900x700");
}

TEST_F(Displays, AWindowOfADisconnectedDisplayTakesAFreeTileAndReturns) {
    desk.desktop.close("Mail");
    desk.settle();
    const std::string before = desk.tiles();
    const auto display = disconnect(desk, "C");
    desk.advance(Seconds(3)).settle();
    EXPECT_TRUE(desk.tiles().starts_with("Viewer 15,15 1254x1382 | ")) << "a window of C: " << desk.tiles();
    desk.desktop.addDisplay(display);
    desk.settle();
    EXPECT_EQ(desk.tiles(), before);
}

TEST_F(Displays, ADragDelaysThePlacementOfWindowsOfADisconnectedDisplay) {
    desk.desktop.close(desk.desktop.labelOfID(*desk.controller().tiles().front().windowID));
    desk.settle();
    const auto held = desk.controller().tiles()[1];
    (void)disconnect(desk, "C");
    desk.advance(Seconds(1.5));
    const std::string label = desk.desktop.labelOfID(*held.windowID);
    ASSERT_TRUE(desk.controller().perform(
        action::BeginWindowDrag{*held.windowID, desk.desktop.frameForWindowService(desk.desktop.window(label))}));
    const auto before = *desk.state().assignedWindowIDs;
    desk.advance(Seconds(1));
    EXPECT_EQ(*desk.state().assignedWindowIDs, before);
    const CGPoint there = center(held.frameOnScreen);
    desk.controller().perform(action::EndWindowDrag{there, action::WindowDragKind::move, action::DropMode::intoTile});
    desk.advance(Seconds(5));
    EXPECT_EQ(std::ranges::count(desk.tiles(), '-'), 0) << "a window of C has the free tile: " << desk.tiles();
}

TEST_F(Displays, AWindowThatTheUserMovedWhileItsDisplayWasDisconnectedStaysThere) {
    const WindowID onC = *desk.controller().tiles().back().windowID;
    const std::string label = desk.desktop.labelOfID(onC);
    const auto display = disconnect(desk, "C");
    desk.advance(Seconds(3));
    desk.desktop.userFocuses(label);
    ASSERT_TRUE(desk.controller().perform(
        action::BeginWindowDrag{onC, desk.desktop.frameForWindowService(desk.desktop.window(label))}));
    const auto tile = desk.controller().tiles().front();
    const CGPoint there = center(tile.frameOnScreen);
    desk.controller().perform(action::UpdateWindowDrag{there, action::WindowDragKind::move});
    desk.controller().perform(action::EndWindowDrag{there, action::WindowDragKind::move, action::DropMode::intoTile});
    desk.advance(Seconds(3));
    desk.desktop.addDisplay(display);
    desk.settle();
    EXPECT_EQ(desk.controller().assignments().targetOf(onC), tile.target);
}

TEST_F(Displays, TheReturnOfADisplayRevertsAnArrangementMadeWithoutIt) {
    const auto display = disconnect(desk, "B");
    desk.advance(Seconds(3)).arrange();
    EXPECT_NE(desk.desktop.picture().find("minimized"), std::string::npos) << "there were too few tiles";
    desk.desktop.addDisplay(display);
    desk.settle();
    for (const auto& tile : desk.controller().tiles()) {
        if (tile.displayID != desk.displayIDOf("B")) continue;
        ASSERT_TRUE(tile.windowID);
        EXPECT_EQ(tile.stack, std::vector{*tile.windowID});
        EXPECT_FALSE(desk.desktop.window(desk.desktop.labelOfID(*tile.windowID)).isMinimized);
    }
    EXPECT_EQ(desk.desktop.picture().find("minimized"), std::string::npos)
        << "the surplus windows of that arrangement have their tiles again";
}

TEST_F(Displays, PlacementsReturnWithALayoutThatADisplayCouldNotShowForAWhile) {
    Scenario one;
    one.display(5120, 1440);
    (void)one.controller().perform(action::SelectLayout{one.displayIDOf("A"), DisplayLayoutSelection{}});
    for (const char* name : {"Mail", "Notes", "Codex", "Firefox", "Console"}) one.opens(name);
    one.arrange();
    const std::string picture = one.tiles();
    for (const Seconds meanwhile : {Seconds(0.2), Seconds(8)}) {
        one.desktop.resizeDisplay("A", {1280, 800});
        one.advance(meanwhile);
        EXPECT_NE(one.tiles(), picture);
        one.desktop.resizeDisplay("A", {5120, 1440});
        one.settle().settle();
        EXPECT_EQ(one.tiles(), picture);
    }
}

TEST_F(Displays, WindowsGetTilesOfThePresentLayoutWhileADisplayCannotShowTheirLayout) {
    struct Way {
        const char* what;
        std::function<void(Scenario&)> shrinks;
        bool isForgotten; // the former layout returns without its placements
    };
    const std::vector<Way> ways = {
        {"while a window is zoomed",
         [](Scenario& one) {
             one.zoom().desktop.resizeDisplay("A", {1280, 800});
         },
         false},
        {"asleep, while a window is zoomed",
         [](Scenario& one) {
             one.zoom().sleep().desktop.resizeDisplay("A", {1280, 800});
             one.wake();
         },
         false},
        {"undone to the state before the change",
         [](Scenario& one) {
             one.arrange().desktop.resizeDisplay("A", {1280, 800});
             one.settle().undo();
         },
         true},
        {"while no agent runs",
         [](Scenario& one) {
             one.stop().desktop.resizeDisplay("A", {1280, 800});
             one.restart();
         },
         true},
    };
    for (const auto& way : ways) {
        SCOPED_TRACE(way.what);
        Scenario one;
        one.display(5120, 1440);
        (void)one.controller().perform(action::SelectLayout{one.displayIDOf("A"), DisplayLayoutSelection{}});
        for (const char* name : {"Mail", "Notes", "Codex", "Firefox", "Console"}) one.opens(name);
        one.arrange();
        one.desktop.userFocuses("Notes");
        const std::string picture = one.tiles();
        way.shrinks(one);
        one.settle().settle();
        std::set<WindowID> shown;
        for (const auto& tile : one.controller().tiles()) {
            if (tile.windowID) shown.insert(*tile.windowID);
            shown.insert(tile.stack.begin(), tile.stack.end());
        }
        EXPECT_EQ(shown.size(), 5u) << one.tiles();
        if (way.isForgotten) continue;
        one.desktop.resizeDisplay("A", {5120, 1440});
        one.advance(Seconds(12)).settle();
        EXPECT_EQ(one.tiles(), picture);
    }
}

TEST_F(Displays, FocusModeLastsWhileDisplaysSleep) {
    desk.zoom();
    ASSERT_TRUE(desk.state().focusMode->has_value());
    const std::string picture = desk.desktop.picture();
    desk.simulate(SystemActivityEvent::screensDidSleep);
    const auto display = disconnect(desk, "C");
    desk.advance(Seconds(60));
    desk.desktop.addDisplay(display);
    desk.advance(Seconds(1)).simulate(SystemActivityEvent::screensDidWake).settle();
    EXPECT_EQ(desk.desktop.picture(), picture);
    EXPECT_TRUE(desk.state().focusMode->has_value());
}

TEST_F(Displays, FocusModeEndsIfDisplaysChangeBeforeALockIsReported) {
    desk.zoom();
    ASSERT_TRUE(desk.state().focusMode->has_value());
    desk.desktop.setLocked(true);
    desk.advance(Seconds(1)); // until a poll has seen the lock
    for (const char* name : {"A", "B", "C"}) desk.desktop.resizeDisplay(name, {1920, 1080});
    desk.simulate(SystemActivityEvent::screenDidLock).advance(Seconds(60));
    desk.simulate(SystemActivityEvent::screenDidUnlock).advance(Seconds(12));
    EXPECT_FALSE(desk.state().focusMode->has_value());
}

/// A stacked window must be in a stack on a connected display, where the user can reach it.
TEST_F(Displays, AWindowStackedBehindADisplacedWindowCanBeReached) {
    const auto onC = desk.controller().tiles().back();
    const WindowID waiting = *onC.windowID;
    const TileTarget sameSlotOnA{desk.displayIDOf("A"), onC.slot.id};
    desk.desktop.close(desk.desktop.labelOfID(*desk.controller().tiles()[4].windowID));
    desk.opens("Maps", {.frame = makeRect(5200, 100, 900, 700)}).settle();
    const WindowID front = desk.desktop.windowIDOf("Maps");
    for (const bool isTileFree : {false, true}) {
        SCOPED_TRACE(isTileFree);
        desk.controller().perform(command::Place{front, onC.target});
        desk.settle();
        ASSERT_EQ(desk.controller().assignments().stackTargetOf(waiting), onC.target);
        if (isTileFree) {
            desk.desktop.close(
                desk.desktop.labelOfID(desk.controller().assignments().assignedWindowIDs.at(sameSlotOnA)));
            desk.settle();
        }
        const std::string before = desk.tiles();
        const auto display = disconnect(desk, "C");
        desk.advance(Seconds(3)).settle();
        const auto& meanwhile = desk.controller().assignments();
        EXPECT_EQ(meanwhile.stackTargetOf(waiting), sameSlotOnA);
        EXPECT_EQ(meanwhile.targetOf(front) == sameSlotOnA, isTileFree);
        desk.desktop.userFocuses(desk.desktop.labelOfID(meanwhile.assignedWindowIDs.at(sameSlotOnA)));
        for (std::size_t i = meanwhile.stackWindowIDsByTarget.at(sameSlotOnA).size(); i > 0; --i) desk.cycleStack();
        EXPECT_TRUE(desk.wasCarriedOut());
        desk.desktop.addDisplay(display);
        desk.settle();
        EXPECT_EQ(desk.tiles(), before);
    }
}

TEST_F(Displays, AZoomedWindowOnlyDelaysThePlacementOfWindowsOfADisconnectedDisplay) {
    struct Case {
        const char* freeOn; // the display that has a free tile
        bool isPlacedAtOnce;
    };
    for (const Case& c : {Case{"B", true}, Case{"A", false}}) {
        SCOPED_TRACE(c.freeOn);
        Scenario one;
        prepare(one);
        const auto holder = [&](const char* display, std::size_t slot) {
            std::vector<std::string> labels;
            for (const auto& tile : one.controller().tiles()) {
                if (tile.displayID == one.displayIDOf(display)) labels.push_back(one.desktop.labelOfID(*tile.windowID));
            }
            return labels.at(slot);
        };
        const std::string zoomed = holder("A", 0);
        one.desktop.close(holder(c.freeOn, 1));
        one.settle();
        (void)disconnect(one, "C");
        one.advance(Seconds(1));
        one.desktop.userFocuses(zoomed);
        one.controller().perform(action::ToggleFocusZoom{});
        one.advance(Seconds(3));
        ASSERT_TRUE(one.state().focusMode->has_value());
        EXPECT_EQ(std::ranges::count(one.tiles(), '-'), c.isPlacedAtOnce ? 0 : 1) << one.tiles();
        one.zoom();
        EXPECT_FALSE(one.state().focusMode->has_value());
        EXPECT_EQ(std::ranges::count(one.tiles(), '-'), 0) << one.tiles();
        EXPECT_TRUE(one.tiles().starts_with(zoomed)) << one.tiles();
    }
}

/// A display whose id is made from its frame, such as that of a virtual machine.
class NamelessDisplay : public ::testing::Test {
  protected:
    NamelessDisplay() {
        plugIn({1920, 1080});
        desk.layout("jarvis.dual-split", "VM").opens("Mail").opens("Notes").arrange();
        desk.opens("Codex").settle();
        desk.controller().perform(
            command::Place{desk.desktop.windowIDOf("Codex"), desk.controller().tiles().back().target});
        desk.settle();
        before = windowsInTiles();
    }
    void plugIn(CGSize size) {
        desk.desktop.addDisplay({.name = "VM", .size = size, .origin = CGPoint{0, 0}, .canTellUUID = false});
        desk.desktop.queue().runDue();
    }
    /// For each tile, its front window and its stacked windows.
    std::string windowsInTiles() {
        std::string text;
        for (const auto& tile : desk.controller().tiles()) {
            text += tile.slot.id.text() + ":";
            if (tile.windowID) text += " " + desk.desktop.labelOfID(*tile.windowID);
            for (const auto& waiting : tile.stack) text += " +" + desk.desktop.labelOfID(waiting);
            text += "\n";
        }
        return text;
    }
    Scenario desk;
    std::string before;
};

TEST_F(NamelessDisplay, KeepsItsWindowsAndItsLayoutWhenItsSizeChanges) {
    const std::vector<std::pair<const char*, std::function<void(CGSize)>>> ways = {
        {"at once", [&](CGSize size) { desk.desktop.resizeDisplay("VM", size); }},
        {"disconnected for a moment",
         [&](CGSize size) {
             desk.desktop.removeDisplay("VM");
             desk.advance(Seconds(0.5));
             plugIn(size);
         }},
        {"asleep",
         [&](CGSize size) {
             desk.sleep().advance(Seconds(60));
             desk.desktop.removeDisplay("VM");
             desk.advance(Seconds(60));
             plugIn(size);
             desk.wake().advance(Seconds(15));
         }},
        {"while no agent is running",
         [&](CGSize size) {
             desk.stop();
             desk.desktop.resizeDisplay("VM", size);
             desk.restart();
         }},
    };
    double width = 1920;
    for (const auto& [what, resizeTo] : ways) {
        SCOPED_TRACE(what);
        width += 320;
        resizeTo({width, 1200});
        desk.settle().settle();
        EXPECT_EQ(windowsInTiles(), before);
        const auto profile = *desk.state().profile;
        EXPECT_LE(profile.layoutSelectionsByDisplay.size(), 3u) << "layouts of former sizes are forgotten";
    }
    desk.move(WorkspaceDirection::left);
    EXPECT_NE(windowsInTiles(), before);
    desk.desktop.resizeDisplay("VM", {1280, 800});
    desk.settle().undo();
    EXPECT_EQ(windowsInTiles(), before);
}

TEST_F(NamelessDisplay, TheLastArrangementAndDisplacedWindowsGetItsNewID) {
    desk.arrange().desktop.resizeDisplay("VM", {1280, 800});
    desk.settle();
    const auto& placements = desk.controller().lastArrangement().placements;
    ASSERT_FALSE(placements.empty());
    for (const auto& placement : placements) EXPECT_EQ(placement.target.displayID, desk.displayIDOf("VM"));

    StackPromotion promotion;
    promotion.noteDisplaced("notes", "D::left", "D::right");
    promotion.renameDisplay("D", "E");
    TileAssignments former, now;
    (void)former.assign("mail", {"E::left"});
    now.insertIntoStack("E::right", "notes", TileAssignments::StackPosition::behind);
    const auto candidates = promotion.candidates(former, now);
    ASSERT_EQ(candidates.size(), 1u);
    EXPECT_EQ(candidates[0], (std::vector<Promotion>{{"notes", "E::left"}}));
}

TEST(DisplayRenaming, MatchesOnlyUnambiguousDisplays) {
    const DisplayID a = "display-0-0-1920x1080", b = "display--1920-0-1920x1080", c = "display-0-0-1280x800";
    const DisplayID other = "display-1920-0-2560x1440", device = "display-8A0F0DCC-11C8-8F52-9AAC-00DE52A1B4F5";
    using Ids = std::set<DisplayID>;
    using Pairs = std::map<DisplayID, DisplayID>;
    EXPECT_EQ(matchRenamedDisplays(Ids{a}, Ids{c}), (Pairs{{a, c}}));
    EXPECT_EQ(matchRenamedDisplays(Ids{a, device}, Ids{c}), (Pairs{{a, c}}));
    EXPECT_EQ(matchRenamedDisplays(Ids{device}, Ids{c}), Pairs{});
    EXPECT_EQ(matchRenamedDisplays(Ids{a}, Ids{device}), Pairs{});
    EXPECT_EQ(matchRenamedDisplays(Ids{a, other}, Ids{b, c}), (Pairs{{a, b}, {other, c}})) << "the size decides";
    EXPECT_EQ(matchRenamedDisplays(Ids{a, b}, Ids{c}), Pairs{});
    EXPECT_EQ(matchRenamedDisplays(Ids{a}, Ids{c, other}), Pairs{});
}

/// Disconnects all displays and connects them again in any order, fast or slowly, awake or asleep, and perhaps at other
/// positions.
TEST(DisplayWalk, ReconnectingAllDisplaysRestoresTheArrangement) {
    forEachSeed(60, [](std::uint32_t seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        Scenario desk;
        for (const char* name : {"A", "B", "C"}) desk.display(2560, 1440, name).layout("jarvis.dual-split");
        const std::size_t count = 3 + random() % 6;
        const std::vector<const char*> names = {"Mail", "Notes", "Codex", "Firefox", "Console", "Viewer", "Maps"};
        for (std::size_t i = 0; i < count; ++i) {
            desk.opens(names[i % names.size()],
                       {.frame = makeRect(100 + 2560.0 * static_cast<double>(random() % 3), 100, 900, 700)});
        }
        desk.arrange();
        const std::string tiles = desk.tiles();
        const auto assignments = desk.controller().assignments();
        const bool sleeps = random() % 3 == 0;
        if (sleeps) desk.sleep();
        std::vector<SimulatedDisplay> disconnected;
        std::vector<std::string> order = {"A", "B", "C"};
        const auto pause = [&] { desk.advance(Seconds(std::vector{0.0, 0.3, 1.5, 2.5, 5.0}[random() % 5])); };
        std::shuffle(order.begin(), order.end(), random);
        std::size_t removedCount = 0;
        while (removedCount < order.size() || !disconnected.empty()) {
            const bool removes = removedCount < order.size() && (disconnected.empty() || random() % 3 > 0);
            if (removes) {
                const CGRect frame = desk.desktop.frameOfDisplay(order[removedCount]);
                disconnected.push_back({.name = order[removedCount], .size = frame.size, .origin = frame.origin});
                desk.desktop.removeDisplay(order[removedCount++]);
            } else {
                const auto chosen = disconnected.begin() + static_cast<std::ptrdiff_t>(random() % disconnected.size());
                desk.desktop.addDisplay(*chosen);
                disconnected.erase(chosen);
            }
            pause();
        }
        if (sleeps) desk.wake();
        desk.desktop.makeFirstDisplay("C");
        desk.desktop.makeFirstDisplay("B");
        desk.desktop.makeFirstDisplay("A");
        desk.advance(Seconds(15)).settle();
        EXPECT_EQ(desk.tiles(), tiles);
        EXPECT_EQ(desk.controller().assignments(), assignments);
    });
}

} // namespace
} // namespace kova
