// How often applications are queried on a desktop like a Mac, where applications respond to queries and announce
// changes.
#include "app/WindowDragCoordinator.h"
#include "tests/harness/Scenario.h"
#include "windowing/WindowDragRegion.h"

#include <gtest/gtest.h>

#include <functional>
#include <utility>

namespace kova {

namespace {

class Announcements : public ::testing::Test {
  public:
    Announcements() {
        desk.desktop.setStyle(DesktopStyle::mac);
        desk.display(2560, 1440).layout("jarvis.dual-split").opens("Mail").opens("Notes").arrange();
        desk.advance(Seconds(12));
    }
    /// The number of polls within the duration.
    int polls(Seconds duration) {
        const int before = desk.desktop.pollingQueue().jobsBegun();
        desk.advance(duration);
        return desk.desktop.pollingQueue().jobsBegun() - before;
    }

    Scenario desk;
};

TEST_F(Announcements, PollsAreIdleOnceEachApplicationAndWindowIsObserved) {
    EXPECT_EQ(desk.desktop.announcements().requestCount(), 4) << "two applications and two windows";
    EXPECT_LE(polls(Seconds(600)), 60);
    EXPECT_EQ(desk.desktop.announcements().requestCount(), 4);
    desk.opens("Maps").advance(Seconds(3));
    EXPECT_EQ(desk.desktop.announcements().requestCount(), 6);
    EXPECT_EQ(desk.controller().liveWindows().size(), 3u);
    EXPECT_LE(polls(Seconds(100)), 10);
    desk.desktop.setTitle("Maps", "Paris"); // announced by a window that was opened later
    desk.advance(Seconds(0.7));
    EXPECT_EQ(desk.controller().liveWindows().back().title, "Paris");
    desk.desktop.close("Maps");
    desk.advance(Seconds(0.7));
    EXPECT_EQ(desk.controller().liveWindows().size(), 2u);
}

TEST_F(Announcements, EachChangeIsFollowedByAPollWithinASecond) {
    SimulatedDesktop& desktop = desk.desktop;
    const std::pair<const char*, std::function<void()>> changes[] = {
        {"another window", [&] { desktop.open("Mail"); }},
        {"moved or resized", [&] { desktop.userMoves("Mail 2", makeRect(300, 300, 500, 400)); }},
        {"title", [&] { desktop.setTitle("Notes", "List"); }},
        {"focus", [&] { desktop.userFocuses("Notes"); }},
        {"minimized", [&] { desktop.userMinimizes("Notes"); }},
        {"restored", [&] { desktop.userMinimizes("Notes", false); }},
        {"another tab", [&] { desktop.openTab("Notes"); }},
        {"the former tab", [&] { desktop.showTab("Notes"); }},
        {"hidden", [&] { desktop.userHides("Notes"); }},
        {"shown", [&] { desktop.userHides("Notes", false); }},
        {"another Space", [&] { desktop.showVirtualDesktop(1); }},
        {"the former Space", [&] { desktop.showVirtualDesktop(0); }},
        {"closed", [&] { desktop.close("Mail 2"); }},
        {"ended", [&] { desktop.quit("Notes"); }},
    };
    for (const auto& [what, change] : changes) {
        desk.advance(Seconds(15));
        for (int waited = 0; polls(Seconds(0.1)) == 0; ++waited) ASSERT_LT(waited, 110) << "before " << what;
        ASSERT_EQ(polls(Seconds(2)), 0) << "polls are not idle before " << what;
        change(); // without the change the next poll would follow only after eight seconds
        EXPECT_GE(polls(Seconds(1)), 1) << what;
    }
}

TEST_F(Announcements, TheNextPollNoticesAChangeWhoseAnnouncementWasLost) {
    const std::string picture = desk.tiles();
    desk.desktop.announcements().lose(1);
    desk.desktop.userMoves("Mail", makeRect(300, 300, 500, 400));
    desk.advance(Seconds(13));
    EXPECT_EQ(desk.tiles(), picture);
}

TEST_F(Announcements, AnApplicationThatRefusesToBeObservedIsPolledOnlyWhileItHasWindows) {
    desk.desktop.announcements().refuse(desk.desktop.launch("Paint"));
    desk.advance(Seconds(3));
    EXPECT_LE(polls(Seconds(100)), 10);
    desk.desktop.open("Paint");
    desk.advance(Seconds(11));
    EXPECT_EQ(polls(Seconds(100)), 200);
    desk.desktop.close("Paint");
    desk.advance(Seconds(1));
    EXPECT_LE(polls(Seconds(100)), 10);
}

TEST_F(Announcements, AnApplicationThatDoesNotRespondIsPolledForAWhile) {
    desk.desktop.setResponding("Mail", false);
    desk.advance(Seconds(11));
    EXPECT_GE(polls(Seconds(40)), 30) << "the application may respond again at any moment";
    desk.advance(Seconds(30));
    EXPECT_LE(polls(Seconds(100)), 10);
    desk.desktop.setResponding("Mail", true);
    desk.advance(Seconds(15));
    EXPECT_EQ(desk.state().assignedWindowIDs->size(), 2u);
    EXPECT_LE(polls(Seconds(100)), 10);
}

/// A stale permission is granted but has no effect.
TEST_F(Announcements, AStalePermissionIsReportedAndItsRecoveryIsNoticed) {
    desk.desktop.setPermissionStale(true);
    desk.advance(Seconds(2));
    EXPECT_EQ(*desk.state().permissionState, AccessibilityPermissionState::denied);
    desk.perform(action::Arrange{});
    desk.expectMessage("Give the permission anew");
    desk.desktop.setPermissionStale(false);
    desk.advance(Seconds(2)).arrange();
    EXPECT_EQ(desk.state().assignedWindowIDs->size(), 2u);
}

TEST_F(Announcements, AreRequestedAgainAfterThePermissionWasWithdrawnAndGrantedAgain) {
    desk.desktop.setTrusted(false);
    desk.advance(Seconds(2));
    desk.desktop.setTrusted(true);
    desk.advance(Seconds(12));
    ASSERT_LE(polls(Seconds(100)), 10);
    desk.desktop.setTitle("Mail", "Inbox");
    desk.advance(Seconds(0.7));
    EXPECT_EQ(desk.controller().liveWindows().front().title, "Inbox");
}

TEST_F(Announcements, AnEnhancedUserInterfaceIsSwitchedOffOnceForASeriesOfFrames) {
    desk.desktop.setEnhancedUserInterface("Mail", true);
    (void)desk.desktop.takeJournal();
    const auto divider = desk.controller().dividers().front();
    ASSERT_TRUE(desk.controller().perform(action::BeginDividerDrag{divider}));
    for (double distance = 10; distance <= 300; distance += 10) {
        desk.controller().perform(action::UpdateDividerDrag{divider, distance});
        desk.advance(Seconds(0.1));
        EXPECT_FALSE(desk.desktop.hasEnhancedUserInterface("Mail"));
    }
    desk.controller().perform(action::EndDividerDrag{divider});
    desk.settle();
    EXPECT_TRUE(desk.desktop.hasEnhancedUserInterface("Mail"));
    const std::string journal = desk.desktop.takeJournal();
    const auto first = journal.find("AXEnhancedUserInterface false");
    ASSERT_NE(first, std::string::npos);
    EXPECT_EQ(journal.find("AXEnhancedUserInterface false", first + 1), std::string::npos);
    EXPECT_EQ(journal.find("Notes: AXEnhanced"), std::string::npos);
}

TEST_F(Announcements, APressQueriesWindowsOnlyNearATitleBarOrAnEdge) {
    OverlayBoard board;
    WindowDragCoordinator drags(desk.controller(), desk.desktop, board, desk.desktop.queue());
    drags.installMonitor();
    const auto readsOf = [&](CGPoint press, CGPoint release) {
        const int before = desk.desktop.readCount();
        desk.desktop.pressAt(press, WindowPart::nothing);
        desk.desktop.movePointer(release);
        desk.desktop.queue().runDue();
        const int reads = desk.desktop.readCount() - before;
        desk.desktop.releaseButton();
        desk.advance(Seconds(0.2));
        return reads;
    };
    EXPECT_EQ(readsOf({600, 700}, {600, 700}), 0) << "a click inside a window";
    EXPECT_EQ(readsOf({600, 700}, {615, 710}), 0) << "a short selection inside a window";
    EXPECT_GT(readsOf({600, 700}, {900, 700}), 0) << "a long movement, which the window might follow";
    EXPECT_GT(readsOf({600, 20}, {600, 20}), 0) << "a press on a title bar";
    EXPECT_GT(readsOf({16, 700}, {16, 700}), 0) << "a press on an edge";
    EXPECT_EQ(readsOf({600, 1430}, {600, 1430}), 0) << "a press on the desktop";
    // A drag by a point inside a window also puts the window into the tile under the pointer.
    desk.desktop.pressAt({1900, 700}, WindowPart::titleBar);
    for (double x = 1880; x >= 500; x -= 40) {
        desk.desktop.movePointer({x, 700});
        desk.advance(Seconds(0.05));
    }
    desk.desktop.releaseButton();
    desk.settle().expectTiles("Mail 15,15 1254x1382 + Notes | -");
}

TEST(WindowDragRegion, WindowsAreDraggedByTitleBarsAndEdges) {
    const std::vector<CGRect> frames = {makeRect(100, 100, 800, 600), makeRect(1000, 100, 300, 300)};
    const struct {
        CGPoint point;
        bool isNear;
    } cases[] = {{{500, 100}, true}, {{500, 155}, true},  {{500, 157}, false}, {{500, 400}, false}, {{500, 91}, true},
                 {{500, 89}, false}, {{109, 400}, true},  {{111, 400}, false}, {{905, 400}, true},  {{911, 400}, false},
                 {{500, 695}, true}, {{950, 250}, false}, {{1150, 120}, true}, {{1150, 300}, false}};
    for (const auto& each : cases) {
        EXPECT_EQ(isNearTitleOrEdge(each.point, frames), each.isNear) << each.point.x << "," << each.point.y;
    }
}

} // namespace

} // namespace kova
