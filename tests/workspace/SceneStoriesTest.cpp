// Scenes: what is remembered, what comes back, and what is said about the rest.
#include "tests/harness/Scenario.h"

#include "persistence/PreferenceKeys.h"
#include "persistence/WorkspaceDocumentCoding.h"
#include "support/text/Text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

namespace kova {

namespace {

Uuid lastScene(Scenario& desk) {
    return desk.state().scenes->back().id;
}

Scenario& capture(Scenario& desk, const char* name = "Work") {
    desk.controller().perform(action::CaptureScene{name});
    return desk.advance(Seconds(0));
}

Scenario& open(Scenario& desk, const Uuid& id) {
    return desk.perform(action::ActivateScene{id});
}

WorkspaceProductDocument storedDocument(Scenario& desk) {
    const auto data = desk.preferences.data(preferenceKey::workspaceProduct);
    if (!data) return {};
    return std::get<WorkspaceProductDocument>(decodeStoredDocument(data->json));
}

std::string launches(Scenario& desk) {
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

std::string differences(Scenario& desk, const Uuid& id) {
    std::string text;
    const auto all = desk.controller().diffScene(id);
    for (const auto& difference : *all) {
        text += difference.what + ": " + difference.inScene + " / " + difference.now + "\n";
    }
    return text;
}

/// A scene of a display with windows that are written as "application|title|slot|stack index".
WorkspaceScene sceneOf(const std::vector<std::string>& windows, const std::string& layoutID = "jarvis.dual-split") {
    WorkspaceScene scene;
    scene.name = "Told";
    scene.themeID = "kova.native";
    scene.accentColorID = "system-blue";
    scene.displays.push_back(
        {.ordinal = 0, .name = "A", .aspectRatio = 1.8, .layoutID = layoutID, .layoutWeights = {}});
    for (const auto& window : windows) {
        std::vector<std::string> parts(1);
        for (const char c : window) {
            if (c == '|') {
                parts.emplace_back();
            } else {
                parts.back() += c;
            }
        }
        WorkspaceScenePlacement placement;
        placement.window.applicationName = parts[0];
        placement.window.bundleIdentifier = "sim." + lowercased(parts[0]);
        if (!parts[1].empty()) placement.window.titleHint = parts[1];
        placement.slotID = parts[2];
        placement.stackIndex = std::stoi(parts[3]);
        scene.placements.push_back(placement);
    }
    return scene;
}

std::string exportOf(const WorkspaceProductDocument& document) {
    return std::get<std::string>(encodeExportedDocument(document));
}

Uuid import(Scenario& desk, const WorkspaceScene& scene) {
    WorkspaceProductDocument document;
    document.scenes.push_back(scene);
    const auto imported = desk.controller().perform(action::ImportDocument{exportOf(document)});
    EXPECT_TRUE(imported.details<WorkspaceImportCounts>());
    return scene.id;
}

TEST(SceneStories, EveryWindowIsBackInItsTileAndStack) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.quad-grid");
    desk.display(1920, 1080).layout("jarvis.dual-split");
    desk.opens("Codex", {.minimumSize = {{2300, 400}}}).opens("Mail").opens("Notes").opens("Notes");
    desk.desktop.setTitle("Notes", "Shopping");
    desk.desktop.setTitle("Notes 2", "Ideas");
    desk.opens("Viewer", {.frame = makeRect(2700, 60, 800, 600)}).arrange();
    desk.desktop.userFocuses("Notes 2");
    desk.controller().perform(command::Place{desk.desktop.windowIDOf("Notes 2"), desk.targetID("A", "secondary-3")});
    desk.settle();
    const std::string before = desk.tiles();
    capture(desk, "  Büro \n").expectMessage("Scene “Büro” captured");
    const WorkspaceScene scene = desk.state().scenes->back();
    EXPECT_EQ(*desk.state().activeSceneID, scene.id);
    EXPECT_TRUE(scene.createdAt == scene.updatedAt);
    EXPECT_DOUBLE_EQ(scene.displays.front().aspectRatio, 2560.0 / 1440);
    EXPECT_EQ(storedDocument(desk).scenes.size(), 1u);
    EXPECT_EQ(differences(desk, scene.id), "");

    desk.layout("jarvis.focus-single", "B");
    desk.layout("jarvis.triple-strip", "A");
    desk.controller().perform(action::SetTileInset{12});
    desk.desktop.userMoves("Viewer", makeRect(100, 100, 700, 500));
    desk.settle();
    EXPECT_NE(differences(desk, scene.id), "");
    open(desk, scene.id).expectMessage("Scene “Büro” restored");
    desk.expectTiles(before);
    EXPECT_EQ(differences(desk, scene.id), "");
}

TEST(SceneStories, ASceneWithoutANameIsNamedAfterTheTime) {
    Scenario desk;
    desk.display(2560, 1440).opens("Mail").arrange();
    const Date now = std::chrono::floor<std::chrono::microseconds>(desk.desktop.queue().now());
    desk.controller().perform(action::CaptureScene{"   "});
    EXPECT_EQ(desk.state().scenes->back().name, "Workspace " + localMonthDayTime(now));
    desk.controller().perform(action::CaptureScene{});
    EXPECT_EQ(desk.state().scenes->back().name, "Workspace " + localMonthDayTime(now));
    EXPECT_NE(desk.state().scenes->front().id, desk.state().scenes->back().id) << "two scenes may bear one name";
}

TEST(SceneStories, CaptureRecordsThePlaceOfEachWindow) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.quad-grid");
    desk.opens("Codex", {.minimumSize = {{2300, 400}}}).opens("Mail").opens("Tool").arrange().opens("Floating");
    desk.desktop.setTitle("Tool", "");
    desk.controller().perform(command::Place{desk.desktop.windowIDOf("Tool"), desk.targetID("A", "secondary-2")});
    desk.settle();
    desk.desktop.setTitle("Mail", "Inbox");
    desk.settle();
    capture(desk);
    std::string text;
    for (const auto& placement : desk.state().scenes->back().placements) {
        text += placement.window.bundleIdentifier.value_or("-") + " " + placement.window.titleHint.value_or("-") + " " +
                placement.slotID + " " + std::to_string(placement.stackIndex) + (*placement.isActive ? " front" : "") +
                " [";
        for (const auto& slot : *placement.claimedSlotIDs) text += slot + " ";
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
    capture(desk);
    desk.desktop.install("Mail", {.startsAfter = Seconds(2), .opensAfter = Seconds(1), .windowCount = 2});
    desk.desktop.quit("Mail");
    desk.settle();
    desk.desktop.takeJournal();
    desk.desktop.userFocuses("Codex");
    desk.controller().perform(action::ActivateScene{lastScene(desk)});
    desk.expectMessage("Restoring Scene “Work” — waiting for 2 app windows");
    EXPECT_EQ(desk.controller().pendingSceneApplicationLaunchBundleIDs(), (std::set<std::string>{"sim.mail"}));
    EXPECT_EQ(launches(desk), "Mail: launch in the background\n");
    desk.advance(Seconds(6));
    desk.expectMessage("Scene fully restored");
    EXPECT_TRUE(desk.controller().pendingSceneWindowPlacements().empty());
    EXPECT_TRUE(desk.controller().pendingSceneApplicationLaunchBundleIDs().empty());
    desk.expectFocus("Codex");
    desk.expectTiles("Codex 15,15 829x1382 | Mail 866,15 829x1382 | Mail 2 1717,15 828x1382");
    desk.settle();
    EXPECT_EQ(desk.framesWrittenWithin(Seconds(60)), 0);
}

TEST(SceneStories, AStartingApplicationIsNotLaunchedAgain) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").start();
    const auto mail = desk.desktop.install("Mail", {.startsAfter = Seconds(3)});
    const auto scene = import(desk, sceneOf({"Mail||focus-main|0"}));
    desk.desktop.takeJournal();
    desk.controller().perform(action::ActivateScene{scene});
    desk.advance(Seconds(1));
    desk.controller().perform(action::ActivateScene{scene});
    EXPECT_EQ(launches(desk), "Mail: launch in the background\n") << "the second opening waits for the first's";
    desk.advance(Seconds(5));
    desk.expectTiles("Mail 15,15 1254x1382 | -");

    desk.desktop.quit("Mail");
    desk.settle();
    desk.controller().perform(action::ActivateScene{scene});
    EXPECT_EQ(launches(desk), "Mail: launch in the background\n") << "it came and went";
    desk.advance(Seconds(6));
    desk.desktop.quit("Mail");
    desk.settle();
    desk.controller().perform(action::LaunchApplication{mail, desk.displayIDOf("A"), "secondary-1"});
    desk.controller().perform(action::ActivateScene{scene});
    EXPECT_EQ(launches(desk), "Mail: launch\n");

    desk.desktop.install("Broken", {.fails = "It is broken"});
    const auto broken = import(desk, sceneOf({"Broken||focus-main|0"}));
    for (int round = 0; round < 2; ++round) {
        desk.controller().perform(action::ActivateScene{broken});
        EXPECT_EQ(launches(desk), "Broken: launch in the background\n") << "another try may work";
        desk.advance(Seconds(1));
    }
}

TEST(SceneStories, RunningItTwiceMovesNothing) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.quad-grid");
    desk.opens("Codex", {.minimumSize = {{2300, 400}}}).opens("Mail").opens("Mail").opens("Viewer").arrange();
    desk.controller().perform(command::Place{desk.desktop.windowIDOf("Viewer"), desk.targetID("A", "secondary-2")});
    desk.settle();
    capture(desk);
    desk.layout("jarvis.dual-split");
    open(desk, lastScene(desk));
    const std::string before = desk.desktop.picture();
    const std::string tilesBefore = desk.tiles();
    desk.desktop.takeJournal();
    open(desk, lastScene(desk)).expectMessage("Scene “Work” restored");
    EXPECT_EQ(desk.desktop.takeJournal(), "") << "nothing was asked of any window";
    EXPECT_EQ(desk.desktop.picture(), before);
    desk.expectTiles(tilesBefore);
}

TEST(SceneStories, WindowsOfOneApplicationGoByTitleThenByOrder) {
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
    open(desk, import(desk, scene));
    desk.expectTiles("Mail 3 15,15 829x1382 | Mail 866,15 829x1382 | Mail 2 1717,15 828x1382");
}

TEST(SceneStories, AnApplicationIsKnownByItsBundleElseByItsName) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").start();
    desk.desktop.launch("Tool", {.hasBundleIdentifier = false});
    desk.opens("Tool").opens("Mail").settle();
    const auto window = [&](std::optional<std::string> bundle, std::string name) {
        const auto found = desk.controller().findWindow({std::move(bundle), std::move(name), std::nullopt}, {});
        return found ? found->applicationName : "none";
    };
    EXPECT_EQ(window(std::nullopt, "tOOL"), "Tool");
    EXPECT_EQ(window("sim.mail", "Another"), "Mail");
    EXPECT_EQ(window("sim.Mail", "Mail"), "none") << "to the letter";
    EXPECT_EQ(window("sim.tool", "Tool"), "none") << "the window has no bundle";
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
        desk.controller().perform(action::ActivateScene{import(desk, sceneOf(story.windows))});
        desk.expectMessage("Restoring Scene “Told”" + std::string(story.waiting));
        desk.advance(Seconds(24.9));
        EXPECT_EQ(desk.controller().pendingSceneWindowPlacements().size(), story.windows.size());
        desk.advance(Seconds(0.7));
        desk.expectMessage(story.message);
        EXPECT_TRUE(desk.controller().pendingSceneWindowPlacements().empty());
        const int jobs = desk.desktop.pollingQueue().jobsBegun();
        desk.advance(Seconds(600));
        EXPECT_LE(desk.desktop.pollingQueue().jobsBegun(), jobs + desk.mostPollsAtRest(Seconds(600)))
            << "then the polls rest";
    }
}

TEST(SceneStories, WhileTheFrontIsAwaitedTheNextOfItsStackStandsIn) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Viewer").opens("Mail").start();
    open(desk, import(desk, sceneOf({"Notes||focus-main|0", "Mail||focus-main|1", "Viewer||focus-main|2"})));
    desk.expectTiles("Mail 15,15 1254x1382 + Viewer | -");
    EXPECT_TRUE(desk.desktop.isHidden("Viewer"));
    desk.opens("Notes").settle();
    desk.expectTiles("Notes 15,15 1254x1382 + Mail + Viewer | -");
    desk.expectMessage("Scene fully restored");
    EXPECT_TRUE(desk.desktop.isHidden("Mail"));
}

TEST(SceneStories, AnotherSceneEndsTheWaitingOfTheFirst) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Viewer").start();
    desk.controller().perform(action::ActivateScene{import(desk, sceneOf({"Mail||focus-main|0"}))});
    desk.advance(Seconds(10));
    open(desk, import(desk, sceneOf({"Viewer||secondary-1|0"}))).expectMessage("Scene “Told” restored");
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
    capture(desk);
    desk.desktop.removeDisplay("B");
    desk.advance(Seconds(1)); // it may be back in a moment
    EXPECT_EQ(differences(desk, lastScene(desk)), "display B: connected / not connected\n"
                                                  "Mail “Mail”: A focus-main / in no tile\n");
    open(desk, lastScene(desk)).expectTiles("Mail 15,15 1254x1382 | -");
}

TEST(SceneStories, UnavailablePartsAreLeftOut) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Mail").opens("Notes").arrange();
    auto scene = sceneOf({"Mail||secondary-1|0", "Notes||no-such-slot|0"}, "no.such.layout");
    scene.themeID = "jarvis.neon-cyan";
    scene.accentColorID = "no such colour";
    scene.tileInset = 1e300;
    scene.placements.front().displayOrdinal = 99;
    scene.placements.front().claimedSlotIDs = {"secondary-1", "elsewhere"};
    scene.displays.push_back({.ordinal = -1, .name = "", .aspectRatio = 0, .layoutID = "", .layoutWeights = {}});
    open(desk, import(desk, scene)).expectMessage("Scene “Told” restored");
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
    EXPECT_EQ(differences(desk, import(desk, scene)), "Mail: A focus-main / in no tile\n")
        << "without a window before it, it is in front";
}

TEST(SceneStories, UndoStepsBackToWhatWasBefore) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Mail").opens("Notes").arrange();
    capture(desk, "First");
    desk.layout("jarvis.triple-strip").arrange();
    const std::string before = desk.tiles();
    const auto other = import(desk, sceneOf({"Notes||focus-main|0", "Viewer||secondary-1|0"}));
    open(desk, other);
    EXPECT_EQ(storedDocument(desk).activeSceneID, other);
    desk.undo().expectMessage("Last window action undone");
    desk.expectTiles(before);
    EXPECT_EQ(*desk.state().activeSceneID, desk.state().scenes->front().id);
    EXPECT_EQ(storedDocument(desk).activeSceneID, desk.state().scenes->front().id);
    desk.opens("Viewer").advance(Seconds(10));
    desk.expectTiles(before);
    desk.expectMessage("");

    open(desk, other);
    desk.controller().perform(action::DeleteScene{desk.state().scenes->front().id});
    desk.undo();
    EXPECT_EQ(*desk.state().activeSceneID, std::nullopt) << "it is gone";
}

TEST(SceneStories, RefusalsChangeNothing) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Mail").arrange();
    capture(desk);
    desk.advance(Seconds(5));
    EXPECT_FALSE(desk.controller().perform(action::ActivateScene{Uuid::random()}));
    desk.expectMessage("");
    desk.desktop.setLocked(true);
    desk.advance(Seconds(1));
    open(desk, lastScene(desk)).expectMessage("The screen is locked");
    desk.desktop.setLocked(false);
    desk.advance(Seconds(15));
    desk.desktop.setTrusted(false);
    desk.settle();
    open(desk, lastScene(desk)).expectMessage("Accessibility permission is required");
    EXPECT_FALSE(desk.wasCarriedOut());
}

TEST(SceneStories, AZoomedWindowIsGivenBackFirst) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Mail").opens("Notes").arrange();
    capture(desk);
    const std::string before = desk.tiles();
    desk.desktop.userFocuses("Mail");
    desk.zoom();
    open(desk, lastScene(desk)).expectTiles(before);
    EXPECT_EQ(*desk.state().focusMode, std::nullopt);
}

TEST(SceneStories, ScenesAreFoundRenamedAndDeleted) {
    Scenario desk;
    desk.display(2560, 1440).start();
    auto& controller = desk.controller();
    for (const char* name : {"work", "Work", "Élan"}) controller.perform(action::CaptureScene{name});
    EXPECT_EQ(controller.findScene("Work"), desk.state().scenes->at(1).id);
    EXPECT_EQ(controller.findScene("WORK"), desk.state().scenes->at(0).id);
    EXPECT_EQ(controller.findScene("élan"), desk.state().scenes->at(2).id);
    EXPECT_EQ(controller.findScene("elan"), std::nullopt);
    const Uuid id = lastScene(desk);
    desk.advance(Seconds(60));
    EXPECT_FALSE(controller.perform(action::RenameScene{id, " \t "}));
    desk.expectMessage("A scene needs a name");
    EXPECT_TRUE(controller.perform(action::RenameScene{id, " Vacation "}));
    desk.expectMessage("Scene “Élan” renamed to “Vacation”");
    EXPECT_GT(desk.state().scenes->back().updatedAt, desk.state().scenes->back().createdAt);
    EXPECT_TRUE(controller.perform(action::DeleteScene{id}));
    desk.expectMessage("Scene “Vacation” deleted");
    EXPECT_EQ(*desk.state().activeSceneID, std::nullopt);
    EXPECT_FALSE(controller.perform(action::DeleteScene{id}));
    EXPECT_FALSE(controller.perform(action::RenameScene{id, "x"}));
    desk.restart();
    EXPECT_EQ(desk.state().scenes->size(), 2u);
}

TEST(SceneStories, ImportAddsWhatIsNewAndCountsWhatIsInTheFile) {
    Scenario desk;
    desk.display(2560, 1440).opens("Mail").arrange();
    capture(desk, "Mine");
    WorkspaceRule rule;
    rule.name = "Mail floats";
    rule.bundleIdentifier = "sim.mail";
    WorkspaceProductDocument file;
    file.version = 3;
    file.scenes = {sceneOf({"Mail||focus-main|0"}), sceneOf({})};
    file.scenes.push_back(file.scenes.front());
    file.scenes.back().name = "Same identity";
    file.scenes.push_back(desk.state().scenes->front());
    file.scenes.back().name = "Theirs";
    file.rules = {rule, rule};
    file.activeSceneID = file.scenes.front().id;
    const auto mine = *desk.state().activeSceneID;
    for (int round = 0; round < 2; ++round) {
        (void)desk.controller().perform(action::ImportDocument{exportOf(file)});
        desk.expectMessage("Imported 4 scenes and 2 rules");
        ASSERT_EQ(desk.state().scenes->size(), 3u);
        EXPECT_EQ(desk.state().scenes->at(0).name, "Mine");
        EXPECT_EQ(desk.state().scenes->at(1).name, "Told");
        EXPECT_EQ(desk.state().rules->size(), 1u);
        EXPECT_EQ(*desk.state().activeSceneID, mine);
    }
    EXPECT_EQ(storedDocument(desk).scenes, *desk.state().scenes);
    const auto exported = std::get<std::string>(desk.controller().exportWorkspaceDocument());
    const auto before = *desk.state().scenes;
    const auto failed = desk.controller().perform(action::ImportDocument{"{\"version\": 1, \"scenes\": [7]}"});
    ASSERT_FALSE(failed);
    EXPECT_EQ(failed.message(), "scenes[0]: expected an object");
    EXPECT_EQ(*desk.state().scenes, before);
    EXPECT_EQ(std::get<WorkspaceProductDocument>(decodeExportedDocument(exported)).rules, *desk.state().rules);
}

TEST(SceneStories, ASceneThatCouldNotBeReadBackIsNotTaken) {
    Scenario desk;
    desk.display(2560, 1440).opens("Mail").arrange();
    capture(desk, "Mine");
    auto scene = sceneOf({});
    // As many values as a display may have; a divider that is dragged adds those of its own split.
    scene.displays[0].layoutWeights.splits["of another layout"].assign(4089, 1.0);
    open(desk, import(desk, scene));
    const auto before = *desk.state().scenes;
    const auto divider = desk.controller().dividers().front();
    ASSERT_TRUE(desk.controller().perform(action::BeginDividerDrag{divider}));
    desk.controller().perform(action::UpdateDividerDrag{divider, 100});
    desk.controller().perform(action::EndDividerDrag{divider});
    desk.settle();
    EXPECT_FALSE(desk.controller().perform(action::CaptureScene{"Evening"}));
    desk.expectMessage(
        "Not changed, because it could not be stored: scenes[2].displays[0]: holds more than 4096 values");
    EXPECT_EQ(*desk.state().scenes, before);
    desk.restart().start();
    EXPECT_EQ(*desk.state().scenes, before);
}

TEST(SceneStories, AStoredDocumentThatCannotBeReadCountsAsNone) {
    for (const char* stored : {R"({"version":1,"scenes":[{}],"rules":[]})", "[", "{}"}) {
        Scenario desk;
        desk.preferences.setValue(preferenceKey::workspaceProduct, PreferenceData{stored});
        desk.display(2560, 1440).start();
        EXPECT_TRUE(desk.state().scenes->empty());
        desk.expectMessage("");
        EXPECT_EQ(desk.preferences.data(preferenceKey::workspaceProduct)->json, stored) << "until the next change";
        capture(desk);
        EXPECT_EQ(storedDocument(desk).scenes.size(), 1u);
    }
    Scenario desk;
    desk.preferences.setValue(preferenceKey::workspaceProduct,
                              PreferenceData{R"({"version":7,"scenes":[],"rules":[],"activeSceneID":null})"});
    desk.display(2560, 1440).start();
    EXPECT_EQ(*desk.state().activeSceneID, std::nullopt);
}

} // namespace

} // namespace kova
