// Windows in special states, with false properties, or closed suddenly; displays and their panels; the focus.
#include "tests/desktop/DesktopUnderTest.h"

#include <xcb/randr.h>
#include <xcb/xcbext.h>

#include <poll.h>

#include <algorithm>
#include <cstdlib>

namespace kova::testing {
namespace {

class Desktop : public ::testing::Test {
  protected:
    void SetUp() override {
        if (!PrivateServer::isInstalled()) GTEST_SKIP() << "Xvfb is not installed";
    }
};

TEST_F(Desktop, UnmaximizesWindowsBeforePlacingThemAndDoesNotMoveFullScreenWindows) {
    DesktopUnderTest desk(Manager::openbox);
    const auto client = desk.client("Editor", 4001);
    const auto code = client->open({.title = "Code"}), film = client->open({.title = "Film"});
    desk.openDesktop();
    ASSERT_TRUE(desk.showsExactly({"Code", "Film"}));
    client->requestState(code, "_NET_WM_STATE_MAXIMIZED_VERT", "_NET_WM_STATE_MAXIMIZED_HORZ");
    client->requestState(film, "_NET_WM_STATE_FULLSCREEN");
    ASSERT_TRUE(
        desk.runUntil([&] { return desk.window("Film").isFullScreen && client->area(code).size.width > 1200; }));
    EXPECT_FALSE(desk.window("Code").isFullScreen);
    EXPECT_TRUE(desk.isPolledAs("Film", [] { return makeRect(0, 0, 1280, 800); }));

    EXPECT_TRUE(desk.reachesFrame("Code", makeRect(20, 30, 500, 400), *client, code));
    EXPECT_EQ(client->numbers(code, "_NET_WM_STATE"), std::vector<std::uint32_t>{});
    const auto minimums = desk.reportedMinimums().size();
    desk.place(desk.window("Film"), makeRect(600, 30, 500, 400));
    desk.runFor(Seconds(0.8));
    EXPECT_EQ(text(client->area(film)), "0,0 1280x800");
    EXPECT_EQ(desk.reportedMinimums().size(), minimums);
}

// No poll runs while the placement of the window is verified.
TEST_F(Desktop, LearnsNoMinimumFromAWindowThatEntersFullScreenBetweenTwoPolls) {
    DesktopUnderTest desk(Manager::openbox);
    const auto client = desk.client("Player", 4001);
    const auto film = client->open({.title = "Film"});
    desk.openDesktop();
    ASSERT_TRUE(desk.reachesFrame("Film", makeRect(20, 30, 500, 400), *client, film));
    const auto window = desk.window("Film");
    const auto isFull = [&] { return text(client->area(film)) == "0,0 1280x800"; };
    for (const double pause : {0.0, 0.1, 0.4}) {
        desk.place(window, makeRect(600, 30, 500, 400));
        desk.runFor(Seconds(pause));
        client->requestState(film, "_NET_WM_STATE_FULLSCREEN");
        ASSERT_TRUE(desk.runUntil(isFull)) << pause;
        desk.runFor(Seconds(0.8));
        // The window is in full screen before the request.
        desk.place(window, makeRect(20, 30, 500, 400));
        desk.runFor(Seconds(0.8));
        EXPECT_TRUE(isFull()) << pause;
        EXPECT_TRUE(desk.reportedMinimums().empty()) << pause;
        client->requestState(film, "_NET_WM_STATE_FULLSCREEN", "", TestClient::StateRequest::remove);
        ASSERT_TRUE(desk.runUntil([&] { return !isFull() && !desk.window("Film").isFullScreen; })) << pause;
    }
}

TEST_F(Desktop, DistinguishesWindowsThatAreMinimizedShadedOrOnAnotherDesktop) {
    DesktopUnderTest desk(Manager::openbox);
    const auto client = desk.client("Editor", 4001);
    const auto code = client->open({.title = "Code", .frame = makeRect(20, 40, 500, 400)});
    const auto plan = client->open({.title = "Plan", .frame = makeRect(620, 40, 500, 400)});
    desk.openDesktop();
    ASSERT_TRUE(desk.showsExactly({"Code", "Plan"}));
    client->requestState(code, "_NET_WM_STATE_SHADED");
    ASSERT_TRUE(desk.runUntil([&] { return !client->numbers(code, "_NET_WM_STATE").empty(); }));
    desk.runFor(Seconds(0.3));
    EXPECT_FALSE(desk.window("Code").isMinimized);
    EXPECT_TRUE(desk.window("Code").isVisible);
    client->requestState(code, "_NET_WM_STATE_SHADED", "", TestClient::StateRequest::remove);

    client->sendToManager("_NET_NUMBER_OF_DESKTOPS", client->root(), {2});
    client->sendToManager("_NET_CURRENT_DESKTOP", client->root(), {1});
    ASSERT_TRUE(desk.runUntil([&] { return desk.window("Code").isElsewhere; }));
    for (const auto& window : desk.poll()) {
        EXPECT_FALSE(window.isMinimized || window.isVisible) << window.title;
        EXPECT_EQ(window.space, 0u) << window.title;
    }
    desk.desktop().hide(4001); // hides only windows on the current desktop
    desk.runFor(Seconds(0.5));
    client->sendToManager("_NET_WM_DESKTOP", plan, {0xFFFFFFFF});
    ASSERT_TRUE(desk.runUntil([&] { return desk.window("Plan").isVisible; }));
    EXPECT_FALSE(desk.window("Plan").isElsewhere);
    client->sendToManager("_NET_CURRENT_DESKTOP", client->root(), {0});
    EXPECT_TRUE(desk.showsExactly({"Code", "Plan"}));
}

/// Uses a fake window manager that refuses every change of a window's size.
TEST_F(Desktop, MovesAWindowThatKeepsItsSizeIntoItsTile) {
    DesktopUnderTest desk(Manager::none);
    const auto client = desk.client("Player", 4001), manager = desk.client("Manager", 4002);
    const auto film = client->open({.title = "Film", .frame = makeRect(100, 30, 300, 200)});
    const std::uint32_t redirected = XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT;
    const auto checkWindow = manager->create({.title = "Manager"});
    for (const auto window : {manager->root(), checkWindow}) {
        manager->setNumbers(window, "_NET_SUPPORTING_WM_CHECK", "WINDOW", {checkWindow});
    }
    xcb_change_window_attributes(manager->connection(), manager->root(), XCB_CW_EVENT_MASK, &redirected);
    manager->setNumbers(manager->root(), "_NET_SUPPORTED", "ATOM",
                        {manager->atom("_NET_CLIENT_LIST"), manager->atom("_NET_MOVERESIZE_WINDOW")});
    manager->setNumbers(manager->root(), "_NET_CLIENT_LIST", "WINDOW", {film});
    desk.openDesktop();
    ASSERT_TRUE(desk.showsExactly({"Film"}));

    int refusals = 0;
    const auto manage = [&] {
        while (auto* event = xcb_poll_for_event(manager->connection())) {
            const auto* message = reinterpret_cast<const xcb_client_message_event_t*>(event);
            const bool isRequest = (event->response_type & 0x7F) == XCB_CLIENT_MESSAGE &&
                                   message->type == manager->atom("_NET_MOVERESIZE_WINDOW");
            const auto& words = message->data.data32;
            if (isRequest && words[3] == 300 && words[4] == 200) {
                manager->configure(film, makeRect(words[1], words[2], words[3], words[4]));
            } else if (isRequest) {
                ++refusals;
            }
            std::free(event);
        }
    };
    const auto window = desk.window("Film");
    EXPECT_TRUE(desk.runUntil([&] {
        manage();
        if (!desk.service().pendingFrame(window.id)) desk.place(window, makeRect(150, 30, 500, 400));
        return text(client->area(film)) == "150,30 300x200";
    }));
    // KOVA requests the whole frame several times before it requests only the new position.
    EXPECT_GE(refusals, 2);
    EXPECT_TRUE(desk.isPolledAs("Film", [&] { return client->area(film); }));
}

TEST_F(Desktop, AcceptsTheFrameThatSizeIncrementsAllow) {
    DesktopUnderTest desk(Manager::openbox);
    const auto client = desk.client("Terminal", 4001);
    const auto shell = client->open({.title = "Shell", .sizeIncrements = CGSize{70, 50}});
    desk.openDesktop();
    ASSERT_TRUE(desk.showsExactly({"Shell"}));
    const auto placeShell = [&] {
        desk.place(desk.window("Shell"), makeRect(10, 10, 611, 433));
        desk.runFor(Seconds(0.75));
    };
    ASSERT_TRUE(desk.runUntil([&] {
        placeShell();
        return minX(client->outerFrame(shell)) == 10;
    }));
    const CGRect settled = client->outerFrame(shell);
    EXPECT_EQ(minY(settled), 10);
    EXPECT_NE(settled.size.width, 611);
    EXPECT_TRUE(desk.isPolledAs("Shell", [&] { return settled; }));
    // The first placements may still send requests; after that KOVA accepts the window's frame.
    for (int i = 0; i < 3; ++i) placeShell();
    client->takeConfigureCount(shell);
    placeShell();
    EXPECT_EQ(client->takeConfigureCount(shell), 0);
}

TEST_F(Desktop, IgnoresShadowsOutsideTheVisibleEdge) {
    for (const Manager manager : {Manager::none, Manager::openbox}) {
        DesktopUnderTest desk(manager);
        const auto client = desk.client("Photos", 4001);
        const auto album = client->create({.title = "Album"});
        // The properties of a program that draws its own title bar and shadow.
        client->setNumbers(album, "_MOTIF_WM_HINTS", "_MOTIF_WM_HINTS", {2, 0, 0, 0, 0});
        client->setNumbers(album, "_GTK_FRAME_EXTENTS", "CARDINAL", {26, 26, 23, 29});
        client->map(album);
        desk.openDesktop();
        ASSERT_TRUE(desk.showsExactly({"Album"}));
        const auto visibleFrame = [&] {
            const CGRect area = client->area(album);
            return makeRect(minX(area) + 26, minY(area) + 23, area.size.width - 52, area.size.height - 52);
        };
        EXPECT_TRUE(desk.isPolledAs("Album", visibleFrame));
        EXPECT_TRUE(desk.reachesFrame("Album", makeRect(100, 90, 640, 480), visibleFrame));
        EXPECT_TRUE(desk.isPolledAs("Album", visibleFrame));
    }
}

TEST_F(Desktop, ToleratesWindowsWithFalsePropertiesAndWindowsThatClose) {
    for (const Manager manager : {Manager::none, Manager::openbox}) {
        DesktopUnderTest desk(manager);
        const auto ordinary = desk.client("Ordinary", 4001), faulty = desk.client("Faulty", 4002);
        ordinary->open({.title = "Ordinary"});
        const auto invalid = faulty->create({.title = "Invalid"});
        faulty->setNumbers(invalid, "WM_NORMAL_HINTS", "WM_SIZE_HINTS",
                           {16, 0, 0, 0, 0, 0x80000000U, 0x80000000U, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0});
        for (const char* property :
             {"_NET_FRAME_EXTENTS", "_GTK_FRAME_EXTENTS", "_NET_WM_STRUT_PARTIAL", "_NET_WM_DESKTOP"}) {
            faulty->setText(invalid, property, "STRING", "nonsense");
        }
        faulty->setNumbers(invalid, "_NET_WM_PID", "STRING", {4002});
        faulty->setNumbers(invalid, "WM_TRANSIENT_FOR", "CARDINAL", {1, 2, 3});
        faulty->setText(invalid, "WM_NAME", "STRING", "L\xFCge");
        faulty->setText(invalid, "_NET_WM_NAME", "UTF8_STRING", "L\xFCge");
        faulty->map(invalid);
        const auto fleeting = faulty->open({.title = "Fleeting"});
        desk.openDesktop();
        EXPECT_TRUE(desk.showsExactly({"Fleeting", "Ordinary", "L\xEF\xBF\xBDge"}));
        faulty->remove(invalid, "_NET_WM_NAME");
        EXPECT_TRUE(desk.showsExactly({"Fleeting", "Ordinary", "Lüge"}));
        // The windows of one connection count as one application if they announce no valid process number.
        EXPECT_GT(desk.window("Lüge").processIdentifier, 4'194'304);

        // The window is closed between the poll and the requests.
        const auto window = desk.window("Fleeting");
        faulty->destroy(fleeting);
        desk.place(window, makeRect(0, 0, 300, 300));
        desk.service().minimize(window);
        desk.service().restoreAndFocus(window);
        desk.runFor(Seconds(0.7));
        EXPECT_TRUE(desk.showsExactly({"Ordinary", "Lüge"}));
        EXPECT_TRUE(desk.desktop().isProcessTrusted());
    }
}

TEST_F(Desktop, FollowsMonitorsAndPanels) {
    DesktopUnderTest desk(Manager::openbox, "2000x800");
    const auto client = desk.client("Panel", 4001);
    auto& desktop = desk.openDesktop();
    int changes = 0;
    const auto subscription = desktop.observeScreens([&] { ++changes; });
    ASSERT_EQ(desktop.screens().size(), 1U);
    EXPECT_EQ(displayID(desktop.screens()[0]), "display-0-0-2000x800");

    const auto panel = client->create({.title = "Panel", .frame = makeRect(0, 0, 2000, 30), .type = "DOCK"});
    client->setNumbers(panel, "_NET_WM_STRUT_PARTIAL", "CARDINAL", {0, 0, 30, 0, 0, 0, 0, 0, 0, 1999, 0, 0});
    client->map(panel);
    EXPECT_TRUE(desk.runUntil([&] {
        desk.poll();
        return changes > 0 && text(desktop.screens()[0].visibleFrame) == "0,0 2000x770";
    }));

    // The screen is divided: the right part becomes the first display.
    xcb_connection_t* c = client->connection();
    const auto divide = [&](const char* name, bool isPrimary, std::int16_t x, std::uint16_t width) {
        // The library's function for this request cannot write a monitor without outputs.
        struct {
            xcb_randr_set_monitor_request_t request{};
            xcb_randr_monitor_info_t monitor{};
        } whole;
        whole.request.window = client->root();
        whole.monitor.name = client->atom(name);
        whole.monitor.primary = isPrimary;
        whole.monitor.x = x;
        whole.monitor.width = width;
        whole.monitor.height = 800;
        whole.monitor.width_in_millimeters = whole.monitor.height_in_millimeters = 300;
        iovec parts[3] = {{}, {}, {&whole, sizeof whole}};
        const xcb_protocol_request_t protocol = {1, &xcb_randr_id, XCB_RANDR_SET_MONITOR, 1};
        xcb_send_request(c, 0, parts + 2, &protocol);
        client->sync();
    };
    divide("LEFT", false, 0, 1200);
    divide("RIGHT", true, 1200, 800);
    ASSERT_TRUE(desk.runUntil([&] {
        desk.poll(); // the window manager may report its work area before the panel is known
        const auto screens = desktop.screens();
        return std::ranges::any_of(screens, [](const Screen& s) { return s.localizedName == "LEFT"; }) &&
               screens.front().localizedName == "RIGHT" && text(screens.front().visibleFrame) == "0,0 800x770";
    })) << text(desktop.screens().front().visibleFrame)
        << ", panel at " << text(client->area(panel));
    const auto screens = desktop.screens();
    EXPECT_EQ(text(screens.front().frame), "0,0 800x800");
    const auto left = std::ranges::find(screens, std::string("LEFT"), &Screen::localizedName);
    EXPECT_EQ(text(left->frame), "-1200,0 1200x800");

    // Frames are reported and requested relative to the first display's corner.
    const auto window = client->open({.title = "Window", .frame = makeRect(300, 200, 400, 300)});
    ASSERT_TRUE(desk.showsExactly({"Window"}));
    const auto fromFirst = [&] {
        const CGRect outer = client->outerFrame(window);
        return makeRect(minX(outer) - 1200, minY(outer), outer.size.width, outer.size.height);
    };
    EXPECT_TRUE(desk.isPolledAs("Window", fromFirst));
    EXPECT_TRUE(desk.reachesFrame("Window", makeRect(-1100, 50, 500, 400), fromFirst));
}

TEST_F(Desktop, KnowsTheFocusedWindowAndTheStackingOrder) {
    for (const Manager manager : {Manager::none, Manager::openbox}) {
        DesktopUnderTest desk(manager);
        const auto mail = desk.client("Mail", 4001), notes = desk.client("Notes", 4002);
        const auto inbox = mail->open({.title = "Inbox", .frame = makeRect(100, 100, 400, 300)});
        const auto pad = notes->open({.title = "Pad", .frame = makeRect(200, 200, 400, 300)});
        auto& desktop = desk.openDesktop();
        ASSERT_TRUE(desk.showsExactly({"Inbox", "Pad"}));
        for (const auto& [title, window, process] :
             {std::tuple{"Inbox", inbox, 4001}, std::tuple{"Pad", pad, 4002}, std::tuple{"Inbox", inbox, 4001}}) {
            EXPECT_TRUE(desk.service().restoreAndFocus(desk.window(title)));
            TestClient& client = process == 4001 ? *mail : *notes;
            EXPECT_TRUE(desk.runUntil([&, process = process, window = window] {
                return desktop.frontmostApplication() == process && client.focus() == window;
            })) << title;
            EXPECT_EQ(desk.service().focusedWindowID(),
                      WindowID(std::to_string(process) + ":" + std::to_string(window)));
            // Both windows cover the point. The window in front is found there, and is the first of `onScreenWindows`.
            EXPECT_TRUE(desk.runUntil([&, process = process, window = window] {
                const auto under = desktop.elementAtPosition({300, 300});
                return under && under->hash == window && desktop.onScreenWindows().front().processIdentifier == process;
            })) << title;
        }
        EXPECT_FALSE(desktop.elementAtPosition({1270, 790}));
    }
}

// After each change the desktop does not read from its connection until a timer fires. Here no timer fires, so the
// focus must become known without that connection.
TEST_F(Desktop, KnowsTheFocusedWindowAtOnceWhileWindowsChange) {
    DesktopUnderTest desk(Manager::openbox);
    const auto mail = desk.client("Mail", 4001), notes = desk.client("Notes", 4002);
    const auto inbox = mail->open({.title = "Inbox"}), pad = notes->open({.title = "Pad"});
    desk.openDesktop();
    ASSERT_TRUE(desk.showsExactly({"Inbox", "Pad"}));
    desk.loop().holdTimers(true);
    for (const auto& [window, process] : {std::pair{inbox, 4001}, std::pair{pad, 4002}, std::pair{inbox, 4001}}) {
        mail->setTitle(inbox, "Inbox of " + std::to_string(process));
        desk.runFor(Seconds(0.05));
        constexpr std::uint32_t kFromPager = 2;
        notes->sendToManager("_NET_ACTIVE_WINDOW", window, {kFromPager, XCB_CURRENT_TIME, 0});
        const WindowID id(std::to_string(process) + ":" + std::to_string(window));
        EXPECT_TRUE(desk.runUntil([&] { return desk.service().focusedWindowID() == id; })) << process;
    }
}

TEST_F(Desktop, AWindowThatIsBeingRestoredKeepsTheFocusThatAnotherProgramRequestsForIt) {
    DesktopUnderTest desk(Manager::openbox);
    const auto mail = desk.client("Mail", 4001), notes = desk.client("Notes", 4002);
    const auto inbox = mail->open({.title = "Inbox"}), pad = notes->open({.title = "Pad"});
    desk.openDesktop();
    ASSERT_TRUE(desk.showsExactly({"Inbox", "Pad"}));
    desk.service().minimize(desk.window("Inbox"));
    ASSERT_TRUE(desk.runUntil([&] { return !mail->isViewable(inbox); }));
    EXPECT_TRUE(desk.service().restoreAndFocus(desk.window("Pad")));
    ASSERT_TRUE(desk.runUntil([&] { return notes->focus() == pad; }));
    desk.service().unminimize(desk.window("Inbox"));
    ASSERT_TRUE(desk.runUntil([&] { return mail->isViewable(inbox); }));
    desk.runFor(Seconds(0.3)); // if the window manager focused the window, Pad has the focus again
    ASSERT_TRUE(desk.runUntil([&] { return notes->focus() == pad; }));
    constexpr std::uint32_t kFromPager = 2;
    notes->sendToManager("_NET_ACTIVE_WINDOW", inbox, {kFromPager, XCB_CURRENT_TIME, 0});
    EXPECT_TRUE(desk.runUntil([&] { return mail->focus() == inbox; }));
    desk.runFor(Seconds(0.5));
    EXPECT_EQ(mail->focus(), inbox);
    EXPECT_EQ(desk.service().focusedWindowID(), desk.window("Inbox").id);
}

TEST_F(Desktop, TheWindowUnderThePointerIsFocusedIfTheFocusFollowsThePointer) {
    DesktopUnderTest desk(Manager::none);
    const auto mail = desk.client("Mail", 4001), notes = desk.client("Notes", 4002);
    const auto pointTo = [&](std::int16_t x, std::int16_t y) {
        xcb_warp_pointer(mail->connection(), XCB_NONE, mail->root(), 0, 0, 0, 0, x, y);
        mail->sync();
    };
    const auto isFocused = [&](const char* title) {
        const WindowID id = desk.window(title).id;
        return desk.runUntil([&] { return desk.service().focusedWindowID() == id; });
    };
    ASSERT_EQ(mail->focus(), static_cast<xcb_window_t>(XCB_INPUT_FOCUS_POINTER_ROOT));
    mail->open({.title = "Inbox", .frame = makeRect(100, 100, 400, 300)});
    pointTo(150, 150);
    desk.openDesktop();
    EXPECT_TRUE(isFocused("Inbox")) << "the pointer was there before the start";
    notes->open({.title = "Pad", .frame = makeRect(50, 50, 300, 300)});
    EXPECT_TRUE(isFocused("Pad")) << "the window opened under the pointer";
    pointTo(450, 350);
    EXPECT_TRUE(isFocused("Inbox"));
}

TEST_F(Desktop, CausesNoTrafficWhileNothingHappens) {
    DesktopUnderTest desk(Manager::openbox);
    const auto client = desk.client("Mail", 4001);
    const auto inbox = client->open({.title = "Inbox"});
    auto& desktop = desk.openDesktop();
    ASSERT_TRUE(desk.showsExactly({"Inbox"}));
    ASSERT_TRUE(desk.reachesFrame("Inbox", makeRect(10, 10, 500, 400), *client, inbox));
    ASSERT_TRUE(desk.runUntil([&] {
        desk.poll();
        const auto before = desktop.changeCount();
        desk.runFor(Seconds(0.8));
        return desktop.changeCount() == before;
    }));

    int calls = 0;
    const auto count = desktop.changeCount();
    desktop.notifyWhenChanged(*count, [&] { ++calls; });
    pollfd readable{desktop.connectionDescriptor(), POLLIN, 0};
    EXPECT_EQ(::poll(&readable, 1, 700), 0) << "the server sends nothing";
    // A poll of an unchanged desktop sends no request, so there is no reply.
    desk.poll();
    EXPECT_EQ(::poll(&readable, 1, 100), 0);
    EXPECT_EQ(desktop.changeCount(), count);
    // Properties that polls do not use do not change the count.
    client->setNumbers(inbox, "_NET_WM_USER_TIME", "CARDINAL", {1});
    client->setText(inbox, "WM_NAME", "STRING", "Not used: _NET_WM_NAME takes precedence");
    desk.runFor(Seconds(0.1));
    EXPECT_EQ(desktop.changeCount(), count);
    EXPECT_EQ(calls, 0);
    client->setTitle(inbox, "Sent");
    EXPECT_TRUE(desk.runUntil([&] { return calls == 1; }));
    EXPECT_EQ(desk.titles(), std::vector<std::string>{"Sent"});
}

TEST_F(Desktop, ReportsTheLostConnectionWhenTheServerEnds) {
    DesktopUnderTest desk(Manager::none);
    const auto client = desk.client("Mail", 4001);
    client->open({.title = "Inbox"});
    auto& desktop = desk.openDesktop();
    ASSERT_TRUE(desk.showsExactly({"Inbox"}));
    int calls = 0;
    desktop.notifyWhenChanged(*desktop.changeCount(), [&] { ++calls; });
    desk.server().end();
    EXPECT_TRUE(desk.runUntil([&] { return desk.isConnectionLost(); }));
    EXPECT_FALSE(desktop.isProcessTrusted());
    EXPECT_TRUE(desk.runUntil([&] { return calls == 1; }));
    EXPECT_EQ(desktop.diagnose().at(0).verdict, DiagnosticVerdict::wrong);
    desk.poll();
    desktop.hide(4001);
}

TEST_F(Desktop, SaysWhyItCannotBeOpened) {
    TestLoop loop;
    PlainCatalogue catalogue;
    const auto reason = [&](const std::optional<std::string>& display) {
        auto opened = X11Desktop::open({display, ""}, loop, catalogue);
        const auto* failure = std::get_if<X11Desktop::Failure>(&opened);
        return failure ? failure->reason : "it opened";
    };
    unsetenv("DISPLAY");
    unsetenv("WAYLAND_DISPLAY");
    EXPECT_NE(reason(std::nullopt).find("DISPLAY is not set"), std::string::npos);
    setenv("WAYLAND_DISPLAY", "wayland-0", 1);
    EXPECT_NE(reason(std::nullopt).find("Xorg"), std::string::npos);
    EXPECT_NE(reason(":987").find("“:987”"), std::string::npos);
    EXPECT_NE(reason("nonsense").find("not the name of a display"), std::string::npos);
}

} // namespace
} // namespace kova::testing
