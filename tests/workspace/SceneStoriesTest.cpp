// Scenes: what a capture records, which windows are restored, and the messages about missing windows.
#include "tests/workspace/SceneSteps.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

namespace kova {

namespace {

std::string journalOfLaunches(Scenario& desk) {
    std::string text;
    std::string journal = desk.desktop.takeJournal();
    for (std::size_t at = 0; at < journal.size();) {
        const auto end = std::min(journal.find('\n', at), journal.size());
        const std::string line = journal.substr(at, end - at);
        if (line.find("launch") != std::string::npos) text += line + "\n";
        at = end + 1;
    }
    return text;
}

std::string sceneDifferencesOf(Scenario& desk, const Uuid& id) {
    std::string text;
    const auto all = desk.controller().diffScene(id);
    for (const auto& difference : *all) {
        text += difference.what + ": " + difference.inScene + " / " + difference.now + "\n";
    }
    return text;
}

TEST(SceneStories, EveryWindowReturnsToItsTileAndStack) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.quad-grid");
    desk.display(1920, 1080).layout("jarvis.dual-split");
    desk.opens("Codex", {.minimumSize = {{2300, 400}}}).opens("Mail").opens("Notes").opens("Notes");
    desk.desktop.setTitle("Notes", "Shopping");
    desk.desktop.setTitle("Notes 2", "Ideas");
    desk.opens("Viewer", {.frame = makeRect(2700, 60, 800, 600)}).arrange();
    desk.desktop.userFocuses("Notes 2");
    desk.controller().perform(command::Place{desk.desktop.windowIDOf("Notes 2"), desk.target("A", "secondary-3")});
    desk.settle();
    const std::string before = desk.tiles();
    captureScene(desk, "  Büro \n").expectMessage("Scene “Büro” captured");
    const WorkspaceScene scene = desk.state().scenes->back();
    EXPECT_EQ(*desk.state().activeSceneID, scene.id);
    EXPECT_TRUE(scene.createdAt == scene.updatedAt);
    EXPECT_DOUBLE_EQ(scene.displays.front().aspectRatio, 2560.0 / 1440);
    EXPECT_EQ(storedDocument(desk).scenes.size(), 1u);
    EXPECT_EQ(sceneDifferencesOf(desk, scene.id), "");

    desk.layout("jarvis.focus-single", "B");
    desk.layout("jarvis.triple-strip", "A");
    desk.controller().perform(action::SetTileInset{12});
    desk.desktop.userMoves("Viewer", makeRect(100, 100, 700, 500));
    desk.settle();
    EXPECT_NE(sceneDifferencesOf(desk, scene.id), "");
    openScene(desk, scene.id).expectMessage("Scene “Büro” restored");
    desk.expectTiles(before);
    EXPECT_EQ(sceneDifferencesOf(desk, scene.id), "");
}

TEST(SceneStories, DifferencesUseTheNamesThatTheUserSees) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Mail").opens("Notes").opens("Maps").arrange();
    auto scene = sceneOf({"Notes||focus-main|0", "Mail||secondary-1|0"});
    scene.themeID = "jarvis.neon-cyan";
    scene.accentColorID = "reactor-amber";
    scene.displays.front().layoutWeights.splits["root"] = {3, 1};
    EXPECT_EQ(sceneDifferencesOf(desk, importScene(desk, scene)),
              "theme: Neon Cyan / Native\n"
              "accent color: REACTOR AMBER / SYSTEM BLUE\n"
              "sizes of A: Primary 74.06 × 96.67 %, Secondary 24.69 × 96.67 % / the layout's own\n"
              "Mail: Secondary on A / in no tile\n"
              "Maps “Maps”: not in the scene / Secondary on A\n");
    desk.layout("jarvis.quad-grid");
    EXPECT_NE(sceneDifferencesOf(desk, scene.id).find("layout of A: Dual Split (2) / Quad Grid (2×2)\n"),
              std::string::npos);
}

TEST(SceneStories, ASceneWithoutANameIsNamedAfterTheTime) {
    Scenario desk;
    desk.display(2560, 1440).opens("Mail").arrange();
    const Date now = std::chrono::floor<std::chrono::microseconds>(desk.desktop.queue().now());
    desk.controller().perform(action::CaptureScene{"   "});
    EXPECT_EQ(desk.state().scenes->back().name, "Workspace " + localMonthDayTime(now));
    desk.controller().perform(action::CaptureScene{});
    EXPECT_EQ(desk.state().scenes->back().name, "Workspace " + localMonthDayTime(now));
    EXPECT_NE(desk.state().scenes->front().id, desk.state().scenes->back().id) << "two scenes may have the same name";
}

TEST(SceneStories, CaptureRecordsThePlaceOfEachWindow) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.quad-grid");
    desk.opens("Codex", {.minimumSize = {{2300, 400}}}).opens("Mail").opens("Tool").arrange().opens("Floating");
    desk.desktop.setTitle("Tool", "");
    desk.controller().perform(command::Place{desk.desktop.windowIDOf("Tool"), desk.target("A", "secondary-2")});
    desk.settle();
    desk.desktop.setTitle("Mail", "Inbox");
    desk.settle();
    captureScene(desk);
    std::string text;
    for (const auto& placement : desk.state().scenes->back().placements) {
        text += placement.window.bundleIdentifier.value_or("-").text() + " " +
                placement.window.titleHint.value_or("-") + " " + placement.slotID.text() + " " +
                std::to_string(placement.stackIndex) + (*placement.isActive ? " front" : "") + " [";
        for (const auto& slot : *placement.claimedSlotIDs) text += slot.text() + " ";
        text += "]\n";
    }
    EXPECT_EQ(text, "sim.codex Codex focus-main 0 front [focus-main secondary-1 ]\n"
                    "sim.tool - secondary-2 0 front [secondary-2 ]\n"
                    "sim.mail Inbox secondary-2 1 [secondary-2 ]\n")
        << desk.tiles();
}

TEST(SceneStories, MissingApplicationsAreLaunchedOnceAndAwaited) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.triple-strip");
    desk.opens("Codex").opens("Mail").opens("Mail").arrange();
    captureScene(desk);
    desk.desktop.install("Mail", {.startsAfter = Seconds(2), .opensAfter = Seconds(1), .windowCount = 2});
    desk.desktop.quit("Mail");
    desk.settle();
    desk.desktop.takeJournal();
    desk.desktop.userFocuses("Codex");
    desk.controller().perform(action::ActivateScene{lastScene(desk)});
    desk.expectMessage("Restoring Scene “Work” — waiting for 2 app windows");
    EXPECT_EQ(journalOfLaunches(desk), "Mail: launch in the background\n");
    desk.advance(Seconds(6));
    desk.expectMessage("Scene fully restored");
    EXPECT_TRUE(desk.controller().pendingSceneWindowPlacements().empty());
    desk.expectFocus("Codex");
    desk.expectTiles("Codex 15,15 829x1382 | Mail 866,15 829x1382 | Mail 2 1717,15 828x1382");
    desk.settle();
    EXPECT_EQ(desk.framesWrittenWithin(Seconds(60)), 0);
}

TEST(SceneStories, AStartingApplicationIsNotLaunchedAgain) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").start();
    const auto mail = desk.desktop.install("Mail", {.startsAfter = Seconds(3)});
    const auto scene = importScene(desk, sceneOf({"Mail||focus-main|0"}));
    desk.desktop.takeJournal();
    desk.controller().perform(action::ActivateScene{scene});
    desk.advance(Seconds(1));
    desk.controller().perform(action::ActivateScene{scene});
    EXPECT_EQ(journalOfLaunches(desk), "Mail: launch in the background\n")
        << "the second opening waits for the application that the first opening has launched";
    desk.advance(Seconds(5));
    desk.expectTiles("Mail 15,15 1254x1382 | -");

    desk.desktop.quit("Mail");
    desk.settle();
    desk.controller().perform(action::ActivateScene{scene});
    EXPECT_EQ(journalOfLaunches(desk), "Mail: launch in the background\n")
        << "the application was launched and has ended";
    desk.advance(Seconds(6));
    desk.desktop.quit("Mail");
    desk.settle();
    desk.controller().perform(action::LaunchApplication{mail, desk.displayIDOf("A"), "secondary-1"});
    desk.controller().perform(action::ActivateScene{scene});
    EXPECT_EQ(journalOfLaunches(desk), "Mail: launch\n");

    desk.desktop.install("Broken", {.fails = "It is broken"});
    const auto broken = importScene(desk, sceneOf({"Broken||focus-main|0"}));
    for (int round = 0; round < 2; ++round) {
        desk.controller().perform(action::ActivateScene{broken});
        EXPECT_EQ(journalOfLaunches(desk), "Broken: launch in the background\n") << "a failed launch is tried again";
        desk.advance(Seconds(1));
    }
}

TEST(SceneStories, OpeningASceneTwiceMovesNothing) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.quad-grid");
    desk.opens("Codex", {.minimumSize = {{2300, 400}}}).opens("Mail").opens("Mail").opens("Viewer").arrange();
    desk.controller().perform(command::Place{desk.desktop.windowIDOf("Viewer"), desk.target("A", "secondary-2")});
    desk.settle();
    captureScene(desk);
    desk.layout("jarvis.dual-split");
    openScene(desk, lastScene(desk));
    const std::string before = desk.desktop.picture();
    const std::string tilesBefore = desk.tiles();
    desk.desktop.takeJournal();
    openScene(desk, lastScene(desk)).expectMessage("Scene “Work” restored");
    EXPECT_EQ(desk.desktop.takeJournal(), "") << "no window got a request";
    EXPECT_EQ(desk.desktop.picture(), before);
    desk.expectTiles(tilesBefore);
}

TEST(SceneStories, WindowsOfOneApplicationAreMatchedByTitleThenByOrder) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.triple-strip");
    desk.opens("Mail").opens("Mail").opens("Mail").start();
    desk.desktop.setTitle("Mail", "Calendar – Work");
    desk.desktop.setTitle("Mail 2", "");
    desk.desktop.setTitle("Mail 3", "INBOX");
    desk.settle();
    const auto scene =
        sceneOf({"Mail|calendar|secondary-1|0", "Mail|Inbox (3)|focus-main|0", "Mail|Gone|secondary-2|0"},
                "jarvis.triple-strip");
    openScene(desk, importScene(desk, scene));
    desk.expectTiles("Mail 3 15,15 829x1382 | Mail 866,15 829x1382 | Mail 2 1717,15 828x1382");
}

TEST(SceneStories, AnApplicationIsIdentifiedByItsBundleElseByItsName) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").start();
    desk.desktop.launch("Tool", {.hasBundleIdentifier = false});
    desk.opens("Tool").opens("Mail").settle();
    const auto window = [&](std::optional<BundleID> bundle, std::string name) {
        const auto found = desk.controller().findWindow({std::move(bundle), std::move(name), std::nullopt}, {});
        return found ? found->applicationName : "none";
    };
    EXPECT_EQ(window(std::nullopt, "tOOL"), "Tool");
    EXPECT_EQ(window("sim.mail", "Another"), "Mail");
    EXPECT_EQ(window("sim.Mail", "Mail"), "none") << "bundle identifiers are case-sensitive";
    EXPECT_EQ(window("sim.tool", "Tool"), "none") << "the window has no bundle identifier";
    EXPECT_EQ(desk.controller().findWindow({"sim.mail", "", std::nullopt}, {desk.desktop.windowIDOf("Mail")}),
              std::nullopt);
}

TEST(SceneStories, MissingWindowsAreCountedWhenTheWaitEnds) {
    const struct {
        std::vector<std::string> windows;
        const char* waiting;
        const char* message;
    } cases[] = {
        {{"Mail||focus-main|0"}, " — waiting for 1 app window", "Scene restored — 1 app window was unavailable"},
        {{"Mail||focus-main|0", "Notes||secondary-1|0"},
         " — waiting for 2 app windows",
         "Scene restored — 2 app windows were unavailable"},
    };
    for (const auto& story : cases) {
        Scenario desk;
        desk.display(2560, 1440).layout("jarvis.dual-split").start();
        desk.desktop.install("Notes", {.fails = "Notes is damaged"});
        desk.controller().perform(action::ActivateScene{importScene(desk, sceneOf(story.windows))});
        desk.expectMessage("Restoring Scene “Sample”" + std::string(story.waiting));
        desk.advance(Seconds(24.9));
        EXPECT_EQ(desk.controller().pendingSceneWindowPlacements().size(), story.windows.size());
        desk.advance(Seconds(0.7));
        desk.expectMessage(story.message);
        EXPECT_TRUE(desk.controller().pendingSceneWindowPlacements().empty());
        const int jobs = desk.desktop.pollingQueue().jobsBegun();
        desk.advance(Seconds(600));
        EXPECT_LE(desk.desktop.pollingQueue().jobsBegun(), jobs + desk.mostPollsWhileIdle(Seconds(600)))
            << "polls are idle again";
    }
}

TEST(SceneStories, TheNextWindowOfAStackIsInFrontWhileTheFrontWindowIsAwaited) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Viewer").opens("Mail").start();
    openScene(desk, importScene(desk, sceneOf({"Notes||focus-main|0", "Mail||focus-main|1", "Viewer||focus-main|2"})));
    desk.expectTiles("Mail 15,15 1254x1382 + Viewer | -");
    EXPECT_TRUE(desk.desktop.isHidden("Viewer"));
    desk.opens("Notes").settle();
    desk.expectTiles("Notes 15,15 1254x1382 + Mail + Viewer | -");
    desk.expectMessage("Scene fully restored");
    EXPECT_TRUE(desk.desktop.isHidden("Mail"));
}

TEST(SceneStories, OpeningAnotherSceneEndsTheWaitForTheWindowsOfTheFirst) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Viewer").start();
    desk.controller().perform(action::ActivateScene{importScene(desk, sceneOf({"Mail||focus-main|0"}))});
    desk.advance(Seconds(10));
    openScene(desk, importScene(desk, sceneOf({"Viewer||secondary-1|0"}))).expectMessage("Scene “Sample” restored");
    desk.opens("Mail").advance(Seconds(20));
    desk.expectTiles("- | Viewer 1291,15 1254x1382");
    desk.expectMessage("");
}

TEST(SceneStories, TheFirstDisplayReplacesAMissingOne) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split");
    desk.display(1920, 1080).layout("jarvis.dual-split");
    desk.opens("Mail", {.frame = makeRect(2700, 60, 800, 600)}).arrange();
    desk.expectTiles("- | - || Mail 2575,15 934x1022 | -");
    captureScene(desk);
    desk.desktop.removeDisplay("B");
    desk.advance(Seconds(1)); // within the settle time of displays
    EXPECT_EQ(sceneDifferencesOf(desk, lastScene(desk)), "display B: connected / not connected\n"
                                                         "Mail “Mail”: Primary on A / in no tile\n");
    openScene(desk, lastScene(desk)).expectTiles("Mail 15,15 1254x1382 | -");
}

TEST(SceneStories, UnavailablePartsOfASceneAreLeftOut) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Mail").opens("Notes").arrange();
    auto scene = sceneOf({"Mail||secondary-1|0", "Notes||no-such-slot|0"}, "no.such.layout");
    scene.themeID = "jarvis.neon-cyan";
    scene.accentColorID = "no such color";
    scene.tileInset = 1e300;
    scene.placements.front().displayOrdinal = 99;
    scene.placements.front().claimedSlotIDs = {"secondary-1", "elsewhere"};
    scene.displays.push_back({.ordinal = -1, .name = "", .aspectRatio = 0, .layoutID = "", .layoutWeights = {}});
    openScene(desk, importScene(desk, scene)).expectMessage("Scene “Sample” restored");
    EXPECT_EQ(desk.state().profile->themeID, "jarvis.neon-cyan");
    EXPECT_EQ(*desk.state().accentColorID, "system-blue");
    EXPECT_EQ(desk.state().profile->tileInset, 100);
    EXPECT_EQ(desk.state().assignedWindowIDs->size(), 1u);
}

TEST(SceneStories, StackIndicesOfAnySizeCanBePrinted) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Mail").start();
    auto scene = sceneOf({"Mail||focus-main|1"});
    scene.placements.front().stackIndex = INT64_MAX;
    EXPECT_EQ(sceneDifferencesOf(desk, importScene(desk, scene)), "Mail: Primary on A / in no tile\n")
        << "the window is in front, since no other window precedes it";
}

TEST(SceneStories, UndoRestoresTheStateBeforeTheSceneWasOpened) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Mail").opens("Notes").arrange();
    captureScene(desk, "First");
    desk.layout("jarvis.triple-strip").arrange();
    const std::string before = desk.tiles();
    const auto other = importScene(desk, sceneOf({"Notes||focus-main|0", "Viewer||secondary-1|0"}));
    openScene(desk, other);
    EXPECT_EQ(storedDocument(desk).activeSceneID, other);
    desk.undo().expectMessage("Last window action undone");
    desk.expectTiles(before);
    EXPECT_EQ(*desk.state().activeSceneID, desk.state().scenes->front().id);
    EXPECT_EQ(storedDocument(desk).activeSceneID, desk.state().scenes->front().id);
    desk.opens("Viewer").advance(Seconds(10));
    desk.expectTiles(before);
    desk.expectMessage("");

    openScene(desk, other);
    desk.controller().perform(action::DeleteScene{desk.state().scenes->front().id});
    desk.undo();
    EXPECT_EQ(*desk.state().activeSceneID, std::nullopt) << "the scene that was active before has been deleted";
}

TEST(SceneStories, ARefusedOpeningOfASceneChangesNothing) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Mail").arrange();
    captureScene(desk);
    desk.advance(Seconds(5));
    EXPECT_FALSE(desk.controller().perform(action::ActivateScene{Uuid::random()}));
    desk.expectMessage("");
    desk.desktop.setLocked(true);
    desk.advance(Seconds(1));
    openScene(desk, lastScene(desk)).expectMessage("The screen is locked");
    desk.desktop.setLocked(false);
    desk.advance(Seconds(15));
    desk.desktop.setTrusted(false);
    desk.settle();
    openScene(desk, lastScene(desk)).expectMessage("Accessibility permission is required");
    EXPECT_FALSE(desk.wasCarriedOut());
}

TEST(SceneStories, OpeningASceneFirstEndsFocusMode) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Mail").opens("Notes").arrange();
    captureScene(desk);
    const std::string before = desk.tiles();
    desk.desktop.userFocuses("Mail");
    desk.zoom();
    openScene(desk, lastScene(desk)).expectTiles(before);
    EXPECT_EQ(*desk.state().focusMode, std::nullopt);
}

} // namespace

} // namespace kova
