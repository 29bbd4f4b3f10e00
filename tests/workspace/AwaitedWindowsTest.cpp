#include "workspace/AwaitedWindows.h"

#include <gtest/gtest.h>

using namespace kova;

namespace {

struct Awaited {
    AwaitedWindows::PublishedLaunches launches;
    AwaitedWindows::PublishedReport report;
    AwaitedWindows windows{launches, report};
};

LaunchableApplication application(const std::string& identifier) {
    LaunchableApplication application;
    application.identifier = identifier;
    application.bundleIdentifier = BundleID(identifier);
    return application;
}

PendingSceneWindowPlacement placement(const std::string& name, std::int64_t stackIndex, Seconds expiresAt) {
    PendingSceneWindowPlacement placement;
    placement.stackIndex = stackIndex;
    placement.expiresAt = expiresAt;
    placement.window.applicationName = name;
    placement.displayID = "D";
    return placement;
}

TEST(AwaitedWindows, ATileWaitsForItsNewestLaunch) {
    struct Case {
        const char* what;
        const char* identifier; // of the launch that is reported
        bool hasFailed;
        std::optional<pid_t> process; // of the launch that the tile waits for
        bool isWaiting;
    };
    for (const auto& [what, identifier, hasFailed, process, isWaiting] : {
             Case{"started", "maps", false, 7, true},
             Case{"failed", "maps", true, std::nullopt, false},
             Case{"another launch into the tile started", "mail", false, std::nullopt, true},
             Case{"another launch into the tile failed", "mail", true, std::nullopt, true},
         }) {
        Awaited awaited;
        awaited.windows.awaitLaunch(application("mail"), "D", "a", Seconds{0});
        awaited.windows.awaitLaunch(application("maps"), "D", "a", Seconds{0});
        awaited.windows.renameDisplay("D", "E");
        LaunchResult result;
        if (hasFailed) result.error = "not found";
        if (!hasFailed) result.processIdentifier = 7;
        awaited.windows.noteLaunched("D::a", identifier, result); // "D" was the id of the display at the launch
        EXPECT_EQ(awaited.windows.isWaiting(), isWaiting) << what;
        EXPECT_EQ(awaited.launches->size(), isWaiting ? 1U : 0U) << what;
        const auto launch = awaited.windows.launches().find("E::a");
        if (isWaiting && launch != awaited.windows.launches().end()) {
            EXPECT_EQ(launch->second.processIdentifier, process) << what;
        }
    }
}

TEST(AwaitedWindows, ASuspensionPostponesAllDeadlines) {
    Awaited awaited;
    awaited.windows.awaitLaunch(application("maps"), "D", "a", Seconds{0});
    awaited.windows.awaitForScene(placement("Mail", 0, Seconds{25}));
    awaited.windows.postpone(Seconds{100});
    awaited.windows.dropExpired(Seconds{119});
    EXPECT_EQ(awaited.windows.launches().size(), 1U);
    awaited.windows.dropExpired(Seconds{120});
    EXPECT_TRUE(awaited.launches->empty());
    const auto none = [](const auto&) { return std::nullopt; };
    EXPECT_EQ(awaited.windows.takeForScene(Seconds{124}, none).expired, 0U);
    EXPECT_EQ(awaited.windows.takeForScene(Seconds{125}, none).expired, 1U);
    EXPECT_FALSE(awaited.windows.isWaiting());
}

TEST(AwaitedWindows, ASceneTakesItsWindowsInTheOrderOfTheirStacksAndReportsEachOnce) {
    Awaited awaited;
    AwaitedWindows& windows = awaited.windows;
    windows.beginScene(4);
    EXPECT_TRUE(windows.noteSceneLaunch("maps", "Maps", Seconds{0}));
    EXPECT_FALSE(windows.noteSceneLaunch("maps", "Maps", Seconds{0}));
    windows.awaitForScene(placement("Late", 0, Seconds{5}));
    windows.awaitForScene(placement("Back", 1, Seconds{25}));
    windows.awaitForScene(placement("Front", 0, Seconds{25}));
    windows.renameDisplay("D", "E");
    ManagedWindow window;
    const auto find = [&](const PendingSceneWindowPlacement& each) -> std::optional<AwaitedWindows::FoundForScene> {
        EXPECT_EQ(each.displayID, "E");
        window.id = WindowID(each.window.applicationName);
        window.applicationName = each.window.applicationName;
        return AwaitedWindows::FoundForScene{&window, {TileTarget("E::a")}};
    };
    const auto taken = windows.takeForScene(Seconds{5}, find);
    ASSERT_EQ(taken.found.size(), 2U);
    EXPECT_EQ(taken.found.front().windowID, "Front");
    EXPECT_TRUE(taken.found.front().isFront && !taken.found.back().isFront);
    EXPECT_EQ(taken.expired, 1U);
    windows.publishReport();
    const SceneReport& report = **awaited.report;
    EXPECT_EQ(report.state, SceneReport::State::finished);
    EXPECT_EQ(report.launched, std::vector<std::string>{"Maps"});
    EXPECT_EQ(report.placed, (std::vector<std::string>{"Front", "Back"}));
    EXPECT_EQ(report.missing, std::vector<std::string>{"Late"});
    windows.abandonScene();
    EXPECT_EQ(report.state, SceneReport::State::finished) << "the scene was not waiting any more";
}

TEST(AwaitedWindows, AnAbandonedSceneIsReportedAsAbandonedAndThenForgotten) {
    Awaited awaited;
    awaited.windows.beginScene(4);
    awaited.windows.noteMovedByUser("early");
    awaited.windows.awaitForScene(placement("Mail", 0, Seconds{25}));
    awaited.windows.noteMovedByUser("mail");
    awaited.windows.noteRestored({{"notes", {}, 3, true}});
    awaited.windows.rename("mail", "mail2");
    awaited.windows.rename("notes", "notes2");
    EXPECT_EQ(awaited.windows.scene().movedByUser, std::set<WindowID>{"mail2"})
        << "movements are recorded only while the scene waits";
    EXPECT_EQ(awaited.windows.scene().stackIndexByID, (std::map<WindowID, std::int64_t>{{"notes2", 3}}));
    awaited.windows.beginScene(5);
    EXPECT_EQ((*awaited.report)->state, SceneReport::State::abandoned);
    EXPECT_FALSE(awaited.windows.isWaiting());
    EXPECT_TRUE(awaited.windows.scene().movedByUser.empty());
    EXPECT_EQ(awaited.windows.endScene(), 5U);
}

} // namespace
