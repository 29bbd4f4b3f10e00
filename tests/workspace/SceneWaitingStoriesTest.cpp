// How long a scene waits for windows, which windows it uses, and what it reports in the end.
#include "tests/harness/Scenario.h"
#include "tests/workspace/Pictures.h"

#include "persistence/WorkspaceDocumentCoding.h"
#include "workspace/StackingOrder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

namespace kova {

namespace {

class WaitingScene : public ::testing::Test {
  protected:
    WaitingScene() { desk.display(2560, 1440).layout("jarvis.dual-split"); }

    /// Adds a scene with one window of each application, in the slots of the dual split.
    Uuid scene(const std::vector<std::string>& applications) {
        WorkspaceScene made;
        made.name = "Sample";
        made.themeID = "plaid"; // does not exist, so the default theme is used
        made.displays.push_back(
            {.ordinal = 0, .name = "A", .aspectRatio = 1.8, .layoutID = "jarvis.dual-split", .layoutWeights = {}});
        for (const auto& application : applications) {
            WorkspaceScenePlacement placement;
            placement.window = {BundleID("sim." + application), application, std::nullopt};
            placement.slotID = made.placements.empty() ? SlotID("focus-main") : SlotID("secondary-1");
            made.placements.push_back(placement);
        }
        return add(made);
    }
    Uuid add(const WorkspaceScene& made) {
        WorkspaceProductDocument document;
        document.scenes.push_back(made);
        (void)desk.controller().perform(
            action::ImportDocument{std::get<std::string>(encodeExportedDocument(document))});
        return made.id;
    }
    Scenario& open(const Uuid& id) { return desk.perform(action::ActivateScene{id}); }
    std::string report() {
        const auto& last = *desk.state().sceneReport;
        if (!last) return "none";
        std::string text(describe(last->state));
        const auto list = [&](const char* what, const std::vector<std::string>& names) {
            for (const auto& name : names) text += std::string(", ") + what + " " + name;
        };
        list("adopted", last->adopted);
        list("launched", last->launched);
        list("placed", last->placed);
        list("without a tile", last->withoutTile);
        list("missing", last->missing);
        return text;
    }
    Scenario desk;
};

TEST_F(WaitingScene, TheWaitDoesNotCountTheTimeOfALockedOrSleepingScreen) {
    using Change = std::function<void(Scenario&)>;
    const struct {
        const char* how;
        Change away, back;
    } cases[] = {
        {"asleep", [](Scenario& d) { d.sleep(); }, [](Scenario& d) { d.wake(); }},
        {"locked, seen by a poll", [](Scenario& d) { d.desktop.setLocked(true); },
         [](Scenario& d) { d.desktop.setLocked(false); }},
    };
    desk.start();
    for (const auto& c : cases) {
        SCOPED_TRACE(c.how);
        desk.desktop.install("mail", {.startsAfter = Seconds(4), .window = {.frame = kSomewhere}});
        desk.controller().perform(action::ActivateScene{scene({"mail"})});
        desk.advance(Seconds(1));
        c.away(desk);
        desk.advance(Seconds(600));
        EXPECT_EQ(desk.desktop.window("mail").frame, kSomewhere);
        c.back(desk);
        desk.settle().expectTiles("mail 15,15 1254x1382 | -");
        desk.expectMessage("Scene fully restored");
        desk.desktop.quit("mail");
        desk.advance(Seconds(20));
        desk.desktop.uninstall("mail");
    }
}

TEST_F(WaitingScene, DoesNotUseAWindowThatTheUserMadeFloatMeanwhile) {
    desk.opens("mail", {.frame = kSomewhere}).start();
    open(scene({"mail", "mail"})).expectTiles("mail 15,15 1254x1382 | -");
    const WindowID mail = desk.desktop.windowIDOf("mail");
    desk.controller().perform(action::BeginWindowDrag{mail, makeRect(15, 15, 1254, 1382)});
    desk.desktop.userMoves("mail", kSomewhere);
    desk.controller().perform(
        action::EndWindowDrag{{700, 700}, action::WindowDragKind::move, action::DropMode::floating});
    desk.advance(Seconds(5)).expectTiles("- | -");
    desk.opens("mail").settle().expectTiles("- | mail 2 1291,15 1254x1382");
}

TEST_F(WaitingScene, AnApplicationThatEndedBeforeItsWindowIsLaunchedByTheNextOpening) {
    desk.start();
    desk.desktop.install("mail", {.startsAfter = Seconds(1), .opensAfter = Seconds(4)});
    const Uuid id = scene({"mail"});
    const auto launches = [&] {
        const std::string journal = desk.desktop.takeJournal();
        return journal.find("mail: launch in the background") != std::string::npos;
    };
    open(id);
    EXPECT_TRUE(launches());
    open(id);
    EXPECT_FALSE(launches()) << "the launched application may still show its window";
    desk.desktop.quit("mail");
    open(id);
    EXPECT_TRUE(launches());
    desk.advance(Seconds(6)).expectTiles("mail 15,15 1254x1382 | -");
}

TEST_F(WaitingScene, AnApplicationThatShowsItsWindowsInAnotherProcessIsLaunchedOnce) {
    desk.start();
    desk.desktop.install("mail", {.opensAfter = Seconds(3), .forks = true});
    const Uuid id = scene({"mail"});
    open(id);
    desk.advance(Seconds(0.2));
    open(id);
    const std::string journal = desk.desktop.takeJournal();
    EXPECT_EQ(journal.find("launch"), journal.rfind("launch")) << journal;
    desk.advance(Seconds(8)).expectTiles("mail 15,15 1254x1382 | -");
}

TEST_F(WaitingScene, ASceneOpenedBeforeTheFirstPollReplacesTheStoredSession) {
    desk.opens("mail").opens("notes").start();
    open(scene({"mail", "notes"})).expectTiles("mail 15,15 1254x1382 | notes 1291,15 1254x1382");
    const Uuid other = scene({"notes", "mail"});
    desk.advance(Seconds(3)).stop();
    desk.restart([&] { desk.controller().perform(action::ActivateScene{other}); });
    desk.expectTiles("notes 15,15 1254x1382 | mail 1291,15 1254x1382");
    EXPECT_EQ(report(), "finished, placed notes “notes”, placed mail “mail”");
}

TEST_F(WaitingScene, WindowsAreRaisedAboveThoseThatDoNotBelongToTheScene) {
    desk.opens("mail").opens("notes").opens("viewer", {.frame = makeRect(0, 0, 2560, 1440)}).start();
    const Uuid id = scene({"mail", "notes"});
    desk.desktop.userFocuses("viewer");
    desk.settle();
    open(id);
    const auto onTopAt = [&](CGPoint point) {
        for (const auto& shown : desk.desktop.onScreenWindows()) {
            if (containsPoint(shown.bounds, point)) return shown.processIdentifier;
        }
        return pid_t{0};
    };
    EXPECT_EQ(onTopAt({600, 700}), desk.desktop.processIdentifier("mail"));
    EXPECT_EQ(onTopAt({1900, 700}), desk.desktop.processIdentifier("notes"));
    desk.expectFocus("viewer");
    desk.desktop.takeJournal();
    open(id);
    EXPECT_EQ(desk.desktop.takeJournal(), "") << "the second opening raises nothing";
}

TEST(StackingOrder, TheWindowFocusedLastIsRaisedLast) {
    struct Case {
        std::string onScreen; // front to back; "x" covers all of them
        std::vector<WindowID> focusOrder;
        std::string raised;
    };
    const Case cases[] = {
        {"xabc", {}, "cba"},  {"xabc", {"x", "b", "a"}, "cab"}, {"abxc", {"b"}, "cb"}, {"abcx", {"x", "a", "b"}, ""},
        {"xa", {"c"}, "bac"},
    };
    for (const auto& c : cases) {
        std::vector<ManagedWindow> windows;
        std::vector<OnScreenWindow> onScreen;
        const auto frameOf = [](char name) { return makeRect(100.0 * (name - 'a'), 0, 300, 300); };
        for (const char name : {'a', 'b', 'c'}) {
            windows.emplace_back();
            windows.back().id = WindowID(std::string(1, name));
            windows.back().processIdentifier = name;
            windows.back().frame = frameOf(name);
        }
        for (const char name : c.onScreen) {
            onScreen.push_back({name, 0, name == 'x' ? makeRect(0, 0, 900, 900) : frameOf(name)});
        }
        std::string raised;
        for (const auto* window : windowsToRaise({&windows[0], &windows[1], &windows[2]}, onScreen, c.focusOrder)) {
            raised += window->id.text();
        }
        EXPECT_EQ(raised, c.raised) << c.onScreen;
    }
}

TEST_F(WaitingScene, OnlyWhatOpeningASceneWouldChangeIsADifference) {
    desk.opens("mail").start();
    WorkspaceScene strange;
    strange.name = "Strange";
    strange.themeID = "kova.native";
    strange.accentColorID = "plaid";
    strange.tileInset = 150;
    strange.displays.push_back({.ordinal = 0, .name = "A", .aspectRatio = 1, .layoutID = "none", .layoutWeights = {}});
    WorkspaceScenePlacement nowhere;
    nowhere.window = {"sim.mail", "mail", std::nullopt};
    nowhere.slotID = "secondary-9";
    WorkspaceScenePlacement left = nowhere;
    left.slotID = "focus-main";
    strange.placements = {nowhere, left};
    const Uuid id = add(strange);
    EXPECT_EQ(desk.controller().diffScene(id)->size(), 2u) << "only the inset and the window differ";
    open(id);
    EXPECT_TRUE(desk.controller().diffScene(id)->empty());
    EXPECT_EQ(report(), "finished, adopted mail “mail”, without a tile mail");
}

TEST_F(WaitingScene, AnOpenedSceneHasNoDifferencesWhateverItsRecordContains) {
    desk.opens("mail").opens("notes").opens("maps").layout("jarvis.quad-grid").start();
    struct Case {
        const char* how;
        std::optional<std::vector<SlotID>> claimedByMail;
        std::vector<std::int64_t> stackIndices; // in one tile
        std::optional<bool> isActive{};
    };
    const Case cases[] = {
        {"a slot that the layout lacks", {{"focus-main", "secondary-9"}}, {0, 1, 2}},
        {"unsorted", {{"secondary-1", "focus-main"}}, {0, 1, 2}},
        {"twice", {{"focus-main", "focus-main", "secondary-1", "secondary-1"}}, {0, 1, 2}},
        {"without the slot of the placement", {{"secondary-1"}}, {0, 1, 2}},
        {"across other tiles", {{"focus-main", "secondary-3"}}, {0, 1, 2}},
        {"gaps between stack indices", {}, {0, 3, 7}},
        {"negative stack indices", {}, {-5, -5, 0}},
        {"no front", {}, {0, 1, 1}, false},
        {"three fronts", {}, {2, 1, 0}, true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.how);
        WorkspaceScene made;
        made.name = c.how;
        made.themeID = "kova.native";
        for (const char* layout : {"jarvis.dual-split", "jarvis.quad-grid", "none"}) {
            made.displays.push_back(
                {.ordinal = 0, .name = "A", .aspectRatio = 1, .layoutID = layout, .layoutWeights = {}});
        }
        for (const char* name : {"mail", "notes", "maps"}) {
            WorkspaceScenePlacement placement;
            placement.window = {BundleID(std::string("sim.") + name), name, std::nullopt};
            placement.slotID = "focus-main";
            placement.stackIndex = c.stackIndices[made.placements.size()];
            placement.isActive = c.isActive;
            if (made.placements.empty()) placement.claimedSlotIDs = c.claimedByMail;
            made.placements.push_back(placement);
        }
        const Uuid id = add(made);
        open(id);
        const auto differences = desk.controller().diffScene(id);
        for (const auto& difference : *differences) {
            ADD_FAILURE() << difference.what << ": " << difference.inScene << " / " << difference.now;
        }
        EXPECT_NE(desk.tiles().find("mail"), std::string::npos) << desk.tiles();
        EXPECT_NE(desk.tiles().find("maps"), std::string::npos) << desk.tiles();
    }
}

TEST_F(WaitingScene, AnActiveSceneIsAlwaysInTheList) {
    desk.start();
    int changes = 0;
    const auto subscription = desk.state().activeSceneID.observe([&](const std::optional<Uuid>& id) {
        ++changes;
        const auto& scenes = *desk.state().scenes;
        EXPECT_TRUE(std::any_of(scenes.begin(), scenes.end(), [&](const auto& each) { return each.id == id; }));
    });
    desk.controller().perform(action::CaptureScene{"Captured"});
    EXPECT_EQ(changes, 1);
}

TEST_F(WaitingScene, TheReportNamesEveryWindow) {
    desk.opens("mail").start();
    desk.desktop.install("notes", {.startsAfter = Seconds(1)});
    open(scene({"mail", "notes", "maps"})).settle();
    EXPECT_EQ(report(), "waiting, adopted mail “mail”, launched notes, placed notes “notes”");
    desk.advance(Seconds(25));
    EXPECT_EQ(report(), "finished, adopted mail “mail”, launched notes, placed notes “notes”, missing maps");
    const Uuid waits = scene({"maps"});
    open(waits);
    desk.undo();
    EXPECT_EQ(report(), "abandoned");
    open(waits).advance(Seconds(1));
    open(scene({"mail"}));
    EXPECT_EQ(report(), "finished, adopted mail “mail”");
}

} // namespace

} // namespace kova
