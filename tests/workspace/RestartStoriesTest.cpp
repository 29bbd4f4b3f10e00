// What the next agent restores after an agent has ended in various ways.
#include "tests/harness/Scenario.h"
#include "workspace/SessionResumption.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <utility>

namespace kova {
namespace {

/// Two tiles and three windows, one of which is stacked.
class Restart : public ::testing::Test {
  protected:
    Restart() {
        desk.display(2560, 1440).layout("jarvis.dual-split");
        desk.opens("Mail").opens("Terminal", {.sizeIncrement = {17, 31}}).arrange();
        desk.opens("Notes").settle();
        kova().perform(command::Place{desk.desktop.windowIDOf("Notes"), kova().tiles().front().target});
        desk.settle();
        picture = desk.desktop.picture();
        assignments = kova().assignments();
    }
    WorkspaceController& kova() { return desk.controller(); }
    std::string nameOfWaiting() {
        return kova().tiles().front().stack.back() == desk.desktop.windowIDOf("Mail") ? "Mail" : "Terminal";
    }
    /// Ends the agent as a crash does, so that it cannot restore or save anything, and starts the next one.
    Scenario& killAndRestart() {
        desk.desktop.setTrusted(false); // the end of the agent changes neither windows nor the stored session
        desk.advance(Seconds(0.6));
        meanwhile();
        desk.desktop.takeJournal();
        desk.desktop.queue().post([this] { desk.desktop.setTrusted(true); });
        return desk.restart();
    }
    std::function<void()> meanwhile = [] {}; // what happens while no agent runs

    Scenario desk;
    std::string picture;
    TileAssignments assignments;
};

TEST_F(Restart, ACrashLosesNothingAndMovesNothing) {
    desk.advance(Seconds(1));
    killAndRestart().advance(Seconds(30));
    EXPECT_EQ(desk.desktop.takeJournal(), "");
    EXPECT_EQ(desk.desktop.picture(), picture);
    EXPECT_EQ(kova().assignments(), assignments);
    desk.undo();
    EXPECT_FALSE(desk.wasCarriedOut()) << "there is nothing to undo";
    desk.desktop.userFocuses("Notes");
    desk.cycleStack();
    EXPECT_TRUE(desk.wasCarriedOut());
    EXPECT_EQ(desk.tiles().substr(0, 5),
              kova().tiles().front().windowID == desk.desktop.windowIDOf("Mail") ? "Mail " : "Termi");
    desk.cycleStack();
    EXPECT_EQ(desk.tiles().substr(0, 5), "Notes");
}

/// The agent shows stacked windows when it ends. The next agent hides them if `isHiddenAgain` is true.
TEST_F(Restart, AnUpgradeKeepsTheArrangement) {
    struct Case {
        const char* what;
        std::function<void()> meanwhile;
        bool isHiddenAgain;
    };
    const std::string waiting = nameOfWaiting();
    const CGRect tile = kova().tiles().front().frameForWindowService;
    const auto soon = [&](std::function<void()> work) { desk.desktop.queue().after(Seconds(0.3), std::move(work)); };
    std::string second;
    const std::vector<Case> cases = {
        {"nothing", [] {}, true},
        {"another window of the waiting application", [&] { second = desk.desktop.open(waiting); }, true},
        {"the user focuses the window", [&] { desk.desktop.userFocuses(waiting); }, false},
        {"the user moves the window", [&] { desk.desktop.userMoves(waiting, makeRect(700, 300, 500, 400)); }, false},
        {"the window is still moving to its frame",
         [&] {
             desk.desktop.userMoves(waiting, makeRect(900, 1300, 500, 400));
             soon([&] { desk.desktop.userMoves(waiting, tile); });
         },
         true},
        {"the window is not shown yet",
         [&] {
             desk.desktop.userHides(waiting, true);
             soon([&] { desk.desktop.userHides(waiting, false); });
         },
         true},
        {"the window is focused at first",
         [&] {
             desk.desktop.userFocuses(waiting);
             soon([&] { desk.desktop.userFocuses("Notes"); });
         },
         true},
        {"the front window of its tile has closed", [&] { desk.desktop.quit("Notes"); }, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        ASSERT_FALSE(desk.desktop.isOnScreen(desk.desktop.window(waiting)));
        desk.stop();
        desk.desktop.userHides(waiting, false);
        desk.desktop.userMinimizes(waiting, false);
        desk.desktop.userFocuses("Notes");
        c.meanwhile();
        desk.desktop.takeJournal();
        desk.restart();
        EXPECT_EQ(desk.desktop.isOnScreen(desk.desktop.window(waiting)), !c.isHiddenAgain);
        EXPECT_NE(desk.desktop.takeJournal().empty(), c.isHiddenAgain);
        if (!second.empty()) {
            EXPECT_TRUE(desk.desktop.isOnScreen(desk.desktop.window(second)));
            desk.desktop.close(std::exchange(second, ""));
        }
        if (!desk.desktop.isRunning("Notes")) break;
        EXPECT_EQ(kova().assignments(), assignments);
        desk.desktop.userFocuses("Notes");
        desk.cycleStack();
        EXPECT_TRUE(desk.desktop.isOnScreen(desk.desktop.window(waiting)));
        desk.cycleStack();
    }
}

/// The ending agent shows the stacked window. Before the next agent has hidden the window again, that agent ends, or
/// the user cycles the stack to the window.
TEST_F(Restart, AShownStackedWindowIsHiddenByALaterAgentUnlessTheUserCyclesTheStackToIt) {
    const std::string waiting = nameOfWaiting();
    const CGRect tile = kova().tiles().front().frameForWindowService;
    const auto upgrade = [&] {
        desk.stop();
        desk.desktop.userHides(waiting, false);
        desk.desktop.userMoves(waiting, makeRect(900, 1300, 500, 400));
        desk.desktop.userFocuses("Notes");
    };
    upgrade();
    meanwhile = [&] { desk.desktop.userMoves(waiting, tile); };
    desk.desktop.queue().after(Seconds(0.3), [&] { desk.stop(); });
    desk.restart();
    killAndRestart();
    EXPECT_FALSE(desk.desktop.isOnScreen(desk.desktop.window(waiting)));
    EXPECT_EQ(kova().assignments(), assignments);

    upgrade();
    desk.desktop.queue().after(Seconds(0.3), [&] { kova().perform(action::CycleStack{}); });
    desk.restart().advance(Seconds(5));
    EXPECT_TRUE(desk.desktop.isOnScreen(desk.desktop.window(waiting)));
    EXPECT_TRUE(kova().assignments().isAssigned(desk.desktop.windowIDOf(waiting)));
    EXPECT_FALSE(desk.desktop.isOnScreen(desk.desktop.window("Notes")));
}

TEST_F(Restart, AZoomedWindowStaysZoomedAndThenReturnsToItsTile) {
    const std::string before = desk.tiles();
    desk.zoom().advance(Seconds(1));
    const std::string zoomed = desk.desktop.picture();
    killAndRestart();
    EXPECT_EQ(desk.desktop.picture(), zoomed);
    desk.zoom();
    desk.expectTiles(before);
}

TEST_F(Restart, ArrangingOnLaunchLeavesRestoredWindowsInPlace) {
    WorkspaceProfile profile = *desk.state().profile;
    profile.autoArrangeOnLaunch = true;
    desk.preferences.setValue("KOVA.workspaceProfile.v1", PreferenceData{encodeWorkspaceProfile(profile)});
    desk.advance(Seconds(1));
    meanwhile = [this] { desk.opens("Codex"); };
    killAndRestart();
    EXPECT_EQ(kova().assignments(), assignments);
}

/// While the display is disconnected, its window is in a free tile or, without one, where the desktop has put it.
TEST_F(Restart, ADisplayThatReturnsWhileNoAgentRunsGetsItsWindowsBack) {
    for (const bool isTileFree : {false, true}) {
        SCOPED_TRACE(isTileFree);
        desk.display(2560, 1440, "B").layout("jarvis.dual-split");
        desk.opens("Codex", {.frame = makeRect(2700, 100, 900, 700)}).arrange();
        if (isTileFree) desk.desktop.close("Terminal");
        desk.settle();
        const std::string before = desk.tiles();
        const CGRect frame = desk.desktop.frameOfDisplay("B");
        desk.desktop.removeDisplay("B");
        desk.advance(Seconds(5));
        EXPECT_NE(desk.tiles(), before);
        meanwhile = [&] { desk.desktop.addDisplay({.name = "B", .size = frame.size, .origin = frame.origin}); };
        killAndRestart().settle();
        EXPECT_EQ(desk.tiles(), before);
        desk.desktop.close("Codex");
        desk.desktop.removeDisplay("B");
        desk.settle();
    }
}

TEST_F(Restart, ADisplayUnpluggedWhileNoAgentRunsLeavesNoWindowWithoutATile) {
    desk.display(2560, 1440, "B").layout("jarvis.dual-split");
    desk.opens("Codex", {.frame = makeRect(2700, 100, 900, 700)}).arrange();
    desk.desktop.close("Terminal");
    desk.settle();
    const std::string before = desk.tiles();
    const CGRect frame = desk.desktop.frameOfDisplay("B");
    meanwhile = [&] { desk.desktop.removeDisplay("B"); };
    killAndRestart().settle();
    EXPECT_TRUE(kova().assignments().isAssigned(desk.desktop.windowIDOf("Codex")));
    for (const auto& tile : kova().tiles()) EXPECT_TRUE(tile.windowID) << desk.tiles();
    desk.desktop.addDisplay({.name = "B", .size = frame.size, .origin = frame.origin});
    desk.settle();
    EXPECT_EQ(desk.tiles(), before);
}

TEST_F(Restart, ClosedWindowsAreForgottenAndUnresponsiveOnesAreAwaited) {
    desk.advance(Seconds(1));
    const WindowID notes = desk.desktop.windowIDOf("Notes");
    meanwhile = [this] {
        desk.desktop.quit("Notes");
        desk.desktop.loseWindow("Terminal");
    };
    killAndRestart();
    desk.desktop.loseWindow("Terminal", false);
    desk.settle();
    EXPECT_TRUE(kova().assignments().isInAnyTile(desk.desktop.windowIDOf("Terminal")));
    EXPECT_FALSE(kova().assignments().isInAnyTile(notes));
}

TEST_F(Restart, TheSessionIsStoredAtMostOnceASecond) {
    const auto storedSession = [&] {
        const auto data = desk.preferences.data("KOVA.workspaceSession.v1");
        return data ? data->json : "";
    };
    desk.advance(Seconds(5));
    int changes = 0;
    std::string last = storedSession();
    for (std::size_t step = 0; step < 40; ++step) {
        kova().perform(command::Place{desk.desktop.windowIDOf("Mail"), kova().tiles()[step % 2].target});
        desk.advance(Seconds(0.1));
        changes += storedSession() != last ? 1 : 0;
        last = storedSession();
    }
    EXPECT_GE(changes, 3);
    EXPECT_LE(changes, 5);
}

TEST(Resumption, AStoredWindowMatchesOnlyAWindowOfTheSameProcessByIdOrTitle) {
    const auto window = [](WindowID id, pid_t process, std::string title, CGRect frame) {
        ManagedWindow w;
        w.id = std::move(id);
        w.processIdentifier = process;
        w.bundleIdentifier = "sim.mail";
        w.title = std::move(title);
        w.frame = frame;
        return w;
    };
    const CGRect here = makeRect(0, 0, 600, 400);
    WorkspaceSession session;
    session.windows = {{"7:1", 7, "boot 1/100", "sim.mail", "Inbox", here, std::nullopt}};
    session.tiles.assignedWindowIDs = {{"d::a", "7:1"}};
    struct Case {
        const char* what;
        std::optional<std::string> startNow;
        ManagedWindow live;
        std::map<WindowID, WindowID> idNow;
        bool isAwaited;
    };
    const std::vector<Case> cases = {
        {"the same window", "boot 1/100", window("7:1", 7, "Drafts", here), {{"7:1", "7:1"}}, false},
        {"after a reboot", "boot 2/100", window("7:1", 7, "Inbox", here), {}, false},
        {"the start of the process is unknown now", std::nullopt, window("7:1", 7, "Inbox", here), {}, false},
        {"another id", "boot 1/100", window("7:2", 7, "Inbox", here), {{"7:1", "7:2"}}, false},
        {"another id and title", "boot 1/100", window("7:2", 7, "Drafts", here), {}, true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const auto resumed = resumedWindows(session, {c.live}, [&](pid_t) { return c.startNow; });
        EXPECT_EQ(resumed.idNow, c.idNow);
        EXPECT_EQ(!resumed.awaited.empty(), c.isAwaited);
    }
    session.windows[0].processStart.reset();
    const auto byTitle = [&](std::string title) {
        return !resumedWindows(session, {window("7:1", 7, std::move(title), here)}, [](pid_t) {
                    return std::nullopt;
                }).idNow.empty();
    };
    EXPECT_TRUE(byTitle("Inbox")) << "the stored window has no start of its process either";
    EXPECT_FALSE(byTitle("Drafts"));
}

TEST(Resumption, WindowsThatKovaMinimizedAreRestoredAtItsEndAndMinimizedByTheNextAgent) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split");
    for (const char* name : {"Codex", "Firefox", "Mail", "Viewer", "Wiki", "Zip"}) desk.opens(name);
    desk.desktop.userMinimizes("Zip");
    desk.arrange();
    const auto minimized = [&] {
        std::string names;
        for (const auto* window : desk.desktop.livingWindows())
            names += window->isMinimized ? window->label() + " " : "";
        return names;
    };
    EXPECT_EQ(minimized(), "Mail Viewer Wiki Zip ");
    desk.desktop.userMinimizes("Wiki", false);
    desk.settle().advance(Seconds(6));
    desk.desktop.userMinimizes("Wiki"); // counts as minimized by the user from now on
    desk.settle().stop();
    EXPECT_EQ(minimized(), "Wiki Zip ");
    desk.desktop.userFocuses("Codex");
    desk.desktop.userMoves("Viewer", makeRect(900, 700, 500, 400));
    desk.restart();
    EXPECT_EQ(minimized(), "Mail Wiki Zip ") << "the user has moved Viewer meanwhile";
    desk.settle().restart().stop();
    EXPECT_EQ(minimized(), "Wiki Zip ");
}

TEST(Resumption, WindowsThatADesktopMinimizesAnewAreRestoredAtTheEnd) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Codex").opens("Mail").opens("Notes").arrange();
    const auto hidden = [&] {
        std::vector<std::string> labels;
        for (const auto* window : desk.desktop.livingWindows()) {
            if (!desk.desktop.isOnScreen(*window)) labels.push_back(window->label());
        }
        return labels;
    };
    ASSERT_EQ(hidden().size(), 1U);
    const std::string surplus = hidden().front();
    desk.desktop.userMinimizes(surplus, false); // as a new window manager does for a moment
    desk.settle();
    desk.desktop.userMinimizes(surplus);
    desk.settle();
    const std::string inFront = desk.desktop.labelOfID(*desk.controller().tiles().front().windowID);
    desk.desktop.userFocuses(inFront);
    desk.settle().move(WorkspaceDirection::right).settle();
    ASSERT_EQ(hidden().size(), 2U) << "another window is stacked behind " << inFront;
    const std::string stacked = hidden().front() == surplus ? hidden().back() : hidden().front();
    desk.desktop.userHides(stacked, false);
    desk.advance(Seconds(10));
    desk.desktop.userMinimizes(stacked);
    desk.settle().stop();
    EXPECT_EQ(hidden(), std::vector<std::string>{}) << desk.desktop.picture();
}

TEST(Resumption, WindowsOfADisplayThatWasJustDisconnectedAreOnAnotherDisplayAtTheEnd) {
    Scenario desk;
    desk.display(1920, 1080).layout("jarvis.dual-split").display(2560, 1440).layout("jarvis.dual-split");
    for (const char* name : {"Codex", "Mail", "Notes", "Viewer"}) desk.opens(name);
    desk.arrange();
    desk.desktop.strandWindows(true);
    desk.desktop.removeDisplay("B");
    const auto windows = desk.desktop.livingWindows();
    const auto isLost = [&](const SimulatedWindow* window) { return !desk.desktop.isOnSomeDisplay(*window); };
    ASSERT_TRUE(std::ranges::any_of(windows, isLost));
    desk.advance(Seconds(0.7)).stop();
    EXPECT_FALSE(std::ranges::any_of(windows, isLost)) << desk.desktop.picture();
}

TEST(Resumption, WindowsThatANewWindowManagerShowsAreHiddenAgain) {
    for (const HidingStyle style : {HidingStyle::hidesApplication, HidingStyle::iconifiesWindows}) {
        Scenario desk;
        desk.desktop.setHidingStyle(style);
        desk.display(2560, 1440)
            .layout("jarvis.dual-split")
            .opens("Mail")
            .opens("Terminal")
            .opens("Terminal")
            .arrange();
        desk.opens("Notes").settle();
        desk.controller().perform(
            command::Place{desk.desktop.windowIDOf("Notes"), desk.controller().tiles().front().target});
        desk.settle().advance(Seconds(10));
        const std::string picture = desk.desktop.picture();
        const auto assignments = desk.controller().assignments();
        desk.desktop.replaceWindowManager(Seconds(0.5));
        desk.advance(Seconds(2.5));
        EXPECT_NE(desk.desktop.picture(), picture) << "the new window manager shows all windows";
        desk.settle();
        EXPECT_EQ(desk.desktop.picture(), picture);
        EXPECT_EQ(desk.controller().assignments(), assignments);
        desk.advance(Seconds(10));
        desk.desktop.userHides("Notes", true);
        desk.desktop.userHides("Notes", false);
        desk.settle();
        EXPECT_EQ(desk.controller().assignments(), assignments);
    }
}

TEST(RestartStories, TilesOnTheOtherSpaceAreRestored) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Mail").opens("Notes").arrange();
    const std::string here = desk.tiles();
    desk.desktop.showVirtualDesktop(1);
    desk.advance(Seconds(1)).opens("Maps").opens("Codex").arrange();
    const std::string there = desk.tiles();
    desk.restart();
    desk.expectTiles(there);
    desk.desktop.showVirtualDesktop(0);
    desk.settle();
    desk.expectTiles(here);
}

TEST(Resumption, AnInconsistentSessionRecordIsIgnored) {
    const ResumedWindows all{{{"1", "1"}, {"2", "2"}}, {}};
    EXPECT_NE(resumedTiles({{{"d::a", "1"}}, {{"d::a", {"1", "2"}}}, {}}, all), TileAssignments{});
    const std::vector<WorkspaceSessionTiles> wrong = {
        {{{"d::a", "1"}, {"d::b", "1"}}, {}, {}},      // a span without an anchor
        {{{"d::a", "1"}}, {}, {{"1", "d::a"}}},        // an anchor without a span
        {{{"d::a", "1"}}, {{"d::a", {"2", "1"}}}, {}}, // the front window is not the first of its stack
        {{}, {{"d::a", {"2"}}, {"d::b", {"2"}}}, {}},  // a window in two stacks
        {{{"d::a", "1"}}, {{"d::a", {}}}, {}},         // an empty stack
    };
    for (const auto& tiles : wrong) EXPECT_EQ(resumedTiles(tiles, all), TileAssignments{});
    for (const char* text : {"", "[]", "{}", R"({"tiles":{"assigned":{"a":1},"anchors":{},"stacks":{}}})"}) {
        EXPECT_TRUE(std::holds_alternative<DecodingError>(decodeWorkspaceSession(text))) << text;
    }
}

} // namespace
} // namespace kova
