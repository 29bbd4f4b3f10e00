// Windows of real clients on a real server, with and without a window manager.
#include "tests/desktop/DesktopUnderTest.h"

#include <algorithm>

namespace kova::testing {
namespace {

class Windows : public ::testing::TestWithParam<Manager> {
  protected:
    void SetUp() override {
        if (!PrivateServer::isInstalled()) GTEST_SKIP() << "Xvfb is not installed";
    }
};

TEST_P(Windows, AreListedWithTheirProperties) {
    DesktopUnderTest desk(GetParam());
    const auto mail = desk.client("Mail", 4001);
    mail->open({.title = "Inbox"});
    mail->open({.title = "Delete all?", .frame = makeRect(300, 300, 200, 100), .type = "DIALOG"});
    mail->open({.title = "Panel", .frame = makeRect(0, 0, 1280, 90), .type = "DOCK"});
    mail->open({.title = "Tooltip", .frame = makeRect(60, 60, 300, 200), .isOverrideRedirect = true});
    const auto notes = desk.client("Notes", 4002);
    const auto pad =
        notes->open({.title = "Pad", .frame = makeRect(500, 100, 500, 400), .minimumSize = CGSize{420, 310}});
    auto& desktop = desk.openDesktop();

    EXPECT_TRUE(desk.showsExactly({"Delete all?", "Inbox", "Pad"}));
    const auto window = desk.window("Pad");
    EXPECT_EQ(window.processIdentifier, 4002);
    EXPECT_EQ(window.id, WindowID("4002:" + std::to_string(pad)));
    EXPECT_EQ(window.applicationName, "Notes");
    EXPECT_EQ(window.bundleIdentifier, "test.Notes");
    EXPECT_TRUE(window.isVisible);
    ASSERT_TRUE(window.frame && window.minimumSize);
    EXPECT_TRUE(desk.isPolledAs("Pad", [&] { return notes->outerFrame(pad); }));
    const CGRect area = notes->area(pad);
    EXPECT_EQ(window.minimumSize->width, 420 + window.frame->size.width - area.size.width);
    EXPECT_EQ(window.minimumSize->height, 310 + window.frame->size.height - area.size.height);

    // Later changes are reported by events and found by the next poll.
    const auto count = desktop.changeCount();
    const auto list = notes->open({.title = "List", .frame = makeRect(200, 200, 300, 300)});
    notes->setTitle(pad, "Grüße");
    EXPECT_TRUE(desk.showsExactly({"Delete all?", "Grüße", "Inbox", "List"}));
    EXPECT_NE(desktop.changeCount(), count);
    notes->destroy(list);
    EXPECT_TRUE(desk.showsExactly({"Delete all?", "Grüße", "Inbox"}));
}

TEST_P(Windows, AreMovedToTheirFrameWithOneEvent) {
    DesktopUnderTest desk(GetParam());
    const auto client = desk.client("Editor", 4001);
    const auto left = client->open({.title = "Left"}), right = client->open({.title = "Right", .border = 3});
    const auto large =
        client->open({.title = "Large", .frame = makeRect(100, 100, 700, 500), .minimumSize = CGSize{650, 450}});
    desk.openDesktop();
    EXPECT_TRUE(desk.showsExactly({"Large", "Left", "Right"}));
    client->takeConfigureCount(std::vector{left, right, large});

    // KOVA repeats a request that does not take effect promptly. So the test counts the events of the first request
    // that takes effect promptly.
    bool wasPrompt = false;
    for (int y = 7; y < 47 && !wasPrompt; ++y) {
        const Seconds start = desk.loop().uptime();
        desk.place(desk.window("Left"), makeRect(5, y, 630, 386));
        desk.place(desk.window("Right"), makeRect(645, y, 630, 386));
        desk.service().flush();
        const auto hasArrived = [&](xcb_window_t window, double x, double border) {
            const CGRect requested = makeRect(x + border, y + border, 630 - 2 * border, 386 - 2 * border);
            return text(client->outerFrame(window)) == text(requested);
        };
        // A window manager removes the borders of its windows.
        const double border = GetParam() == Manager::none ? 3 : 0;
        ASSERT_TRUE(desk.runUntil([&] { return hasArrived(left, 5, 0) && hasArrived(right, 645, border); }));
        wasPrompt = desk.loop().uptime() - start < Seconds(0.05);
        desk.runFor(Seconds(0.8));
        const int eventsLeft = client->takeConfigureCount(left), eventsRight = client->takeConfigureCount(right);
        EXPECT_TRUE(desk.isPolledAs("Left", [&] { return makeRect(5, y, 630, 386); }));
        EXPECT_TRUE(desk.isPolledAs("Right", [&] { return makeRect(645, y, 630, 386); }));
        EXPECT_EQ(client->takeConfigureCount(large), 0);
        if (!wasPrompt) continue;
        EXPECT_EQ(eventsLeft, 1);
        EXPECT_EQ(eventsRight, 1);
    }
    EXPECT_TRUE(wasPrompt);

    // No request is sent for a window that has the frame already.
    desk.place(desk.window("Left"), *desk.window("Left").frame);
    desk.service().flush();
    desk.runFor(Seconds(0.2));
    EXPECT_EQ(client->takeConfigureCount(left), 0);

    // If a program moved the window away, the same frame can be requested again.
    for (int i = 0; i < 8; ++i) {
        client->configure(left, makeRect(200, 200, 300, 300));
        ASSERT_TRUE(desk.runUntil([&] { return text(*desk.window("Left").frame) != "5,7 630x386"; }));
        desk.place(desk.window("Left"), makeRect(5, 7, 630, 386));
        ASSERT_TRUE(desk.runUntil([&] { return text(client->outerFrame(left)) == "5,7 630x386"; })) << i;
        desk.service().cancelPlacement(desk.window("Left").id);
    }

    // A window manager enforces minimum sizes, and KOVA learns them; the server alone does not enforce them.
    if (GetParam() == Manager::none) {
        EXPECT_TRUE(desk.reachesFrame("Large", makeRect(10, 300, 300, 300), *client, large));
        return;
    }
    const auto placeAndCountMinimums = [&] {
        const auto before = desk.reportedMinimums().size();
        desk.place(desk.window("Large"), makeRect(10, 300, 300, 300));
        desk.service().flush();
        desk.runFor(Seconds(0.8));
        return desk.reportedMinimums().size() - before;
    };
    ASSERT_TRUE(desk.runUntil([&] {
        placeAndCountMinimums();
        return minX(client->outerFrame(large)) == 10;
    }));
    EXPECT_EQ(placeAndCountMinimums(), 1U);
    EXPECT_EQ(text(desk.reportedMinimums().back()), text(client->outerFrame(large)));
}

TEST_P(Windows, TakeTheLargestFrameThatTheirHintsAllow) {
    DesktopUnderTest desk(GetParam());
    const auto client = desk.client("Player", 4001);
    const auto film = client->open({.title = "Film"}),
               shell = client->open({.title = "Shell", .sizeIncrements = CGSize{7, 13}});
    constexpr std::uint32_t kAspect = 1U << 7;
    client->setNumbers(film, "WM_NORMAL_HINTS", "WM_SIZE_HINTS",
                       {kAspect, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 16, 9, 16, 9, 0, 0, 0});
    desk.openDesktop();
    EXPECT_TRUE(desk.showsExactly({"Film", "Shell"}));
    const CGRect tile = makeRect(20, 30, 900, 250);
    for (const auto& [title, window] : {std::pair{"Film", film}, std::pair{"Shell", shell}}) {
        ASSERT_TRUE(desk.window(title).sizeHints);
        const CGRect requested = largestFrameWithin(tile, *desk.window(title).sizeHints);
        desk.place(desk.window(title), requested);
        desk.service().flush();
        EXPECT_TRUE(desk.runUntil([&, id = window] {
            const CGRect frame = client->outerFrame(id);
            return nearlyEqual(frame, requested, 2) && containsWithin(tile, frame, 0);
        })) << title;
        desk.runFor(Seconds(0.8));
    }
    EXPECT_TRUE(desk.reportedMinimums().empty());
}

TEST_P(Windows, AreMinimizedAndRestored) {
    DesktopUnderTest desk(GetParam());
    const auto client = desk.client("Editor", 4001);
    const auto draft = client->open({.title = "Draft"});
    desk.openDesktop();
    EXPECT_TRUE(desk.showsExactly({"Draft"}));
    const auto window = desk.window("Draft");
    desk.service().minimize(window);
    EXPECT_TRUE(desk.runUntil([&] { return desk.isMinimized("Draft"); }));
    EXPECT_TRUE(desk.runUntil([&] { return !client->isViewable(draft) && !desk.window("Draft").isVisible; }));

    desk.service().restoreAndFocus(window);
    EXPECT_TRUE(desk.runUntil([&] { return !desk.isMinimized("Draft") && desk.window("Draft").isVisible; }));
    EXPECT_TRUE(client->isViewable(draft));
    EXPECT_TRUE(
        desk.runUntil([&] { return desk.service().focusedWindowID() == window.id && client->focus() == draft; }));
}

// Window managers animate the frame of a window while they minimize or restore it.
TEST_P(Windows, KeepTheirFrameInPollsDuringAnimations) {
    DesktopUnderTest desk(GetParam());
    const auto client = desk.client("Editor", 4001);
    const auto draft = client->open({.title = "Draft"});
    desk.openDesktop();
    const CGRect left = makeRect(20, 30, 500, 400), right = makeRect(600, 30, 400, 300);
    ASSERT_TRUE(desk.reachesFrame("Draft", left, *client, draft));
    const auto window = desk.window("Draft");
    std::string seen; // every frame that a poll found, without repetitions
    const auto pollsUntil = [&](const auto& condition) {
        return desk.runUntil([&] {
            const auto windows = desk.poll();
            const std::string frame = windows.size() == 1 && windows[0].frame ? text(*windows[0].frame) : "missing";
            if (!seen.ends_with(frame)) seen += (seen.empty() ? "" : " | ") + frame;
            return condition(windows);
        });
    };
    const auto isAway = [&](const auto& windows) {
        return !client->isViewable(draft) && windows.size() == 1 && windows[0].isMinimized;
    };
    const auto pollsFor = [&](Seconds time) {
        const Seconds end = desk.loop().uptime() + time;
        pollsUntil([&](const auto&) { return desk.loop().uptime() > end; });
    };
    for (int i = 0; i < 3; ++i) {
        desk.service().minimize(window);
        ASSERT_TRUE(pollsUntil(isAway));
        pollsFor(Seconds(i * 0.2)); // also while the restored window is animated
        desk.service().restoreAndFocus(window);
        EXPECT_FALSE(desk.poll().at(0).isMinimized)
            << "the request counts before the window manager has restored the window";
        ASSERT_TRUE(pollsUntil([&](const auto& windows) {
            return client->isViewable(draft) && text(client->outerFrame(draft)) == text(left) && windows.size() == 1 &&
                   !windows[0].isMinimized && client->focus() == draft;
        }));
    }
    EXPECT_EQ(seen, text(left));

    desk.service().minimize(window);
    ASSERT_TRUE(pollsUntil(isAway));
    desk.service().restoreAndFocus(window);
    desk.place(window, right);
    EXPECT_TRUE(pollsUntil([&](const auto&) { return text(client->outerFrame(draft)) == text(right); }));
    pollsFor(Seconds(0.8));
    EXPECT_EQ(seen, text(left) + " | " + text(right));
    EXPECT_TRUE(desk.reportedMinimums().empty());
}

// A busy window manager carries out requests late. The last request decides, whatever state polls read before.
TEST(WindowsOfASlowManager, FollowTheLastOfOverlappingRequests) {
    if (!PrivateServer::isInstalled()) GTEST_SKIP() << "Xvfb is not installed";
    DesktopUnderTest desk(Manager::openbox);
    const auto client = desk.client("Editor", 4001);
    const auto draft = client->open({.title = "Draft"});
    desk.openDesktop();
    EXPECT_TRUE(desk.showsExactly({"Draft"}));
    const auto window = desk.window("Draft");
    const auto isAsRequested = [&](char last) {
        const bool isAway = last == 'm' || last == 'h';
        return client->isViewable(draft) != isAway && desk.isMinimized("Draft") == (last == 'm') &&
               desk.isHidden(4001) == (last == 'h');
    };
    const auto carryOut = [&](char request) {
        if (request == 'm') desk.service().minimize(window);
        if (request == 'r') desk.service().unminimize(window);
        if (request == 'h') desk.desktop().hide(4001);
        if (request == 'u') desk.desktop().unhide(4001);
    };
    // The probe windows belong to another application, since an application with a visible window is not hidden.
    const auto other = desk.client("Probe", 4002);
    int probes = 0;
    // 'm' minimizes, 'r' restores, 'h' hides the application, 'u' shows it. KOVA assumes the effect of a request only
    // for a short time; a poll after that time reads the real state before the next request.
    for (const std::string requests : {"m", "r", "mr", "mrm", "rm", "r", "mrmr", "m", "rmr", "mrm", "rmrm", "rh", "u",
                                       "huh", "uh", "uhu", "m", "rhuh", "u"}) {
        desk.server().pauseManager();
        for (const char request : requests) {
            carryOut(request);
            desk.service().flush();
            desk.runFor(Seconds(0.06));
            desk.poll();
        }
        desk.server().resumeManager();
        // When the window manager shows a later window, it has handled all earlier requests.
        const auto probe = other->open({.title = "Probe " + std::to_string(probes++)});
        ASSERT_TRUE(desk.runUntil([&] { return other->isViewable(probe); })) << requests;
        ASSERT_TRUE(desk.runUntil([&] { return isAsRequested(requests.back()); })) << requests;
        other->destroy(probe);
    }
}

INSTANTIATE_TEST_SUITE_P(With, Windows, ::testing::Values(Manager::none, Manager::openbox), managerName);

} // namespace
} // namespace kova::testing
