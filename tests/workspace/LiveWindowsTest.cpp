#include "workspace/LiveWindows.h"

#include "workspace/AwaitedWindows.h"

#include <gtest/gtest.h>

using namespace kova;

namespace {

ManagedWindow live(const WindowID& id, pid_t process) {
    ManagedWindow window;
    window.id = id;
    window.processIdentifier = process;
    window.isVisible = true;
    return window;
}

TEST(LiveWindows, CountAsInTheRequestedStateUntilAPollConfirmsIt) {
    LiveWindows windows;
    (void)windows.take({live("a", 1), live("b", 1), live("c", 2)}, Seconds{0});
    EXPECT_FALSE(windows.request("gone", WindowPresentation::shown, Seconds{1}));
    windows.requestHidden(1, Seconds{1});
    EXPECT_TRUE(windows.request("c", WindowPresentation::minimized, Seconds{1}));
    const auto isAsAsked = [&] {
        return !windows.find("a")->isVisible && !windows.find("b")->isVisible && windows.find("c")->isMinimized;
    };
    EXPECT_TRUE(isAsAsked() && windows.isWaiting());
    (void)windows.take({live("a", 1), live("b", 1), live("c", 2)}, Seconds{0.9});
    EXPECT_TRUE(isAsAsked()) << "that poll began before";
    (void)windows.take({live("a", 1), live("c", 2)}, Seconds{9});
    EXPECT_FALSE(isAsAsked() || windows.isWaiting()) << "they did not do it";
    EXPECT_EQ(windows.find("b"), nullptr);
}

TEST(LiveWindows, ARenamedWindowIsStillTheOneThatWasMinimizedAndUsed) {
    LiveWindows windows;
    windows.minimized().note("a", Seconds{0});
    windows.focusOrder().note("a");
    windows.rename("a", "a2");
    EXPECT_EQ(windows.minimized().takeAll(), std::vector<WindowID>{"a2"});
    EXPECT_EQ(windows.focusOrder().windowIDs(), std::vector<WindowID>{"a2"});
}

LaunchableApplication mapsApplication() {
    LaunchableApplication maps;
    maps.identifier = "maps.desktop";
    return maps;
}

LaunchResult startedAs(pid_t process) {
    LaunchResult result;
    result.processIdentifier = process;
    return result;
}

TEST(AwaitedWindows, WhatIsAwaitedFollowsNewNames) {
    AwaitedWindows::PublishedLaunches published;
    AwaitedWindows awaited(published);
    awaited.awaitLaunch(mapsApplication(), "D", "a", Seconds{0});
    awaited.scene().pending.emplace_back().displayID = "D";
    awaited.noteMovedByUser("mail");
    awaited.scene().stackIndexByID["notes"] = 1;
    awaited.rename("mail", "mail2");
    awaited.rename("notes", "notes2");
    awaited.renameDisplay("D", "E");
    EXPECT_EQ(awaited.scene().movedByUser, std::set<WindowID>{"mail2"});
    EXPECT_TRUE(awaited.scene().stackIndexByID.contains("notes2"));
    EXPECT_EQ(awaited.scene().pending.front().displayID, "E");
    ASSERT_TRUE(awaited.launches().contains("E::a"));
    EXPECT_TRUE(published->contains("E::a"));
    awaited.noteLaunched("D::a", "another.desktop", startedAs(7));
    EXPECT_FALSE(awaited.launches().at("E::a").processIdentifier) << "that was another launch into the tile";
    awaited.noteLaunched("D::a", "maps.desktop", startedAs(7));
    EXPECT_EQ(awaited.launches().at("E::a").processIdentifier, 7) << "known by its tile at the launch";
}

TEST(AwaitedWindows, TimeDoesNotPassWhileNothingCanBeSeen) {
    AwaitedWindows::PublishedLaunches published;
    AwaitedWindows awaited(published);
    awaited.awaitLaunch(mapsApplication(), "D", "a", Seconds{0});
    awaited.postpone(Seconds{100});
    awaited.dropExpired(Seconds{119});
    EXPECT_TRUE(awaited.isWaiting());
    awaited.dropExpired(Seconds{120});
    EXPECT_FALSE(awaited.isWaiting());
    EXPECT_TRUE(published->empty());
}

} // namespace
