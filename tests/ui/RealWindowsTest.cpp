// The overlay's windows on a real X server, under several window managers and without one.
#include "tests/desktop/PrivateServer.h"
#include "tests/desktop/TestClient.h"
#include "tests/ui/FakeAgent.h"
#include "tests/ui/Sample.h"

#include <gtest/gtest.h>

#include <unistd.h>
#include <xcb/shape.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <ostream>
#include <thread>

namespace kova::ui::testing {

using kova::testing::ChildProcess;
using kova::testing::ClientProcessNumbers;
using kova::testing::PrivateServer;
using kova::testing::TestClient;

namespace {

using Windows = std::vector<xcb_window_t>;

struct Session {
    std::string name;
    std::vector<std::string> manager;    // empty: none
    std::vector<std::string> compositor; // empty: none
    bool needsBus = false;               // needs a session bus; the bus of the test starts no services
    bool drawsUnmanagedOnTop = false;    // draws unmanaged windows above all others, whatever the stacking order is
    bool raisesUnmanaged = false;        // moves unmanaged windows above all others again and again
};
void PrintTo(const Session& session, std::ostream* out) {
    *out << session.name;
}
const std::vector<std::string> kPicom{"/usr/bin/picom", "--backend", "xrender"};
const std::vector<Session> kSessions{
    {"none", {}, {}},
    {"none and picom", {}, kPicom},
    {"openbox", {"/usr/bin/openbox", "--sm-disable"}, {}},
    {"openbox and picom", {"/usr/bin/openbox", "--sm-disable"}, kPicom},
    {"xfwm4", {"/usr/bin/xfwm4", "--compositor=off"}, {}},
    {"xfwm4 and picom", {"/usr/bin/xfwm4", "--compositor=off"}, kPicom},
    {"metacity", {"/usr/bin/metacity", "--no-composite"}, {}, false, false, true},
    {"metacity and picom", {"/usr/bin/metacity", "--no-composite"}, kPicom, false, false, true},
    {"mutter", {"/usr/bin/mutter", "--x11"}, {}, true, true}, // composites by itself, as KWin does
    {"kwin", {"/usr/bin/kwin_x11"}, {}, true, true},
};

constexpr const char* kBusConfiguration =
    R"(<busconfig><type>session</type><listen>unix:path=%1</listen><policy context="default">)"
    R"(<allow send_destination="*" eavesdrop="true"/><allow eavesdrop="true"/><allow own="*"/></policy></busconfig>)";

class Desktop {
  public:
    explicit Desktop(const Session& session, const std::string& size = "800x500") :
        server(size, ClientProcessNumbers::reported), session_(session) { // Mutter crashes without process numbers
        agent.setState(sampleState({.hasMessage = true}));
        if (session.needsBus) startBus();
        startManager();
        if (!session.compositor.empty()) compositor_ = server.start(session.compositor);
        ui_ = server.start({KOVA_UI_PROGRAM, "--socket", socket_});
    }

    void startManager() {
        if (session_.manager.empty()) return;
        std::vector<std::string> command = session_.manager;
        if (session_.needsBus) {
            const std::string variables[] = {"/usr/bin/env", "DBUS_SESSION_BUS_ADDRESS=unix:path=" + busPath(),
                                             "XDG_RUNTIME_DIR=" + server.folder(), "QT_LOGGING_RULES=*=false"};
            command.insert(command.begin(), std::begin(variables), std::end(variables));
        }
        manager_ = server.start(command);
        EXPECT_TRUE(TestClient(server.displayName(), "Probe", 1).waitForManager())
            << "the window manager did not start";
    }
    void endManager() { manager_.end(); }
    bool hasManager() const { return !session_.manager.empty(); }

    bool until(const std::function<bool()>& condition) {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
        while (std::chrono::steady_clock::now() < deadline) {
            agent.serve();
            if (condition()) return true;
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        return false;
    }

    Windows children(xcb_window_t parent) const {
        auto* tree = xcb_query_tree_reply(client.connection(), xcb_query_tree(client.connection(), parent), nullptr);
        if (!tree) return {};
        const auto* all = xcb_query_tree_children(tree);
        Windows windows(all, all + xcb_query_tree_children_length(tree));
        std::free(tree);
        return windows;
    }
    std::string titleOf(xcb_window_t window) const {
        auto* reply = xcb_get_property_reply(
            client.connection(),
            xcb_get_property(client.connection(), 0, window, XCB_ATOM_WM_NAME, XCB_GET_PROPERTY_TYPE_ANY, 0, 64),
            nullptr);
        if (!reply) return {};
        std::string title(static_cast<const char*>(xcb_get_property_value(reply)),
                          static_cast<std::size_t>(xcb_get_property_value_length(reply)));
        std::free(reply);
        return title;
    }
    /// The mapped windows of the overlay whose title begins with `title`, bottom first.
    Windows overlay(const std::string& title = "KOVA ") const {
        Windows found;
        for (const xcb_window_t window : children(client.root())) {
            if (titleOf(window).starts_with(title) && client.isViewable(window)) found.push_back(window);
        }
        return found;
    }
    /// The position of a window, or of the frame around it, among the root window's children; 0 is the bottom.
    std::size_t stackPosition(xcb_window_t window) const {
        for (;;) {
            auto* tree =
                xcb_query_tree_reply(client.connection(), xcb_query_tree(client.connection(), window), nullptr);
            const xcb_window_t parent = tree ? tree->parent : client.root();
            std::free(tree);
            if (parent == client.root()) break;
            window = parent;
        }
        const Windows all = children(client.root());
        return static_cast<std::size_t>(std::ranges::find(all, window) - all.begin());
    }
    /// Whether a window's shape contains that point of the screen.
    bool hasPoint(xcb_window_t window, CGPoint point) const {
        auto* reply = xcb_shape_get_rectangles_reply(
            client.connection(), xcb_shape_get_rectangles(client.connection(), window, XCB_SHAPE_SK_BOUNDING), nullptr);
        if (!reply) return false;
        const CGRect area = client.area(window);
        const auto* parts = xcb_shape_get_rectangles_rectangles(reply);
        const bool has = std::any_of(
            parts, parts + xcb_shape_get_rectangles_rectangles_length(reply), [&](const xcb_rectangle_t& part) {
                return containsPoint(makeRect(minX(area) + part.x, minY(area) + part.y, part.width, part.height),
                                     point);
            });
        std::free(reply);
        return has;
    }
    /// Whether no part of the overlay is drawn over these windows, which must be within the screen.
    bool areUncovered(const Windows& applications) const {
        if (!session_.drawsUnmanagedOnTop && !session_.raisesUnmanaged) return true;
        return std::ranges::all_of(applications, [&](xcb_window_t window) {
            const CGRect area = client.area(window);
            const Windows below = underlay();
            return std::ranges::none_of(below, [&](xcb_window_t overlay) {
                return hasPoint(overlay, center(area)) || hasPoint(overlay, {minX(area) + 1, maxY(area) - 1});
            });
        });
    }
    bool isBelow(const Windows& lower, const Windows& upper) const {
        return std::ranges::all_of(lower, [&](xcb_window_t low) {
            return std::ranges::all_of(upper,
                                       [&](xcb_window_t high) { return stackPosition(low) < stackPosition(high); });
        });
    }
    /// Whether the overlay is below the applications, or leaves them free where its order is not kept.
    bool isUnderlayBelow(const Windows& applications) const {
        return (session_.raisesUnmanaged || isBelow(underlay(), applications)) && areUncovered(applications);
    }
    /// The child of the root window that receives a click at that point.
    xcb_window_t clickedAt(int x, int y) const {
        auto* reply = xcb_translate_coordinates_reply(
            client.connection(),
            xcb_translate_coordinates(client.connection(), client.root(), client.root(), static_cast<std::int16_t>(x),
                                      static_cast<std::int16_t>(y)),
            nullptr);
        const xcb_window_t child = reply ? reply->child : xcb_window_t{XCB_WINDOW_NONE};
        std::free(reply);
        return child;
    }
    void lower(xcb_window_t window) {
        const std::uint32_t below = XCB_STACK_MODE_BELOW;
        xcb_configure_window(client.connection(), window, XCB_CONFIG_WINDOW_STACK_MODE, &below);
        xcb_flush(client.connection());
    }
    /// The overlay's windows below applications: all except the message.
    Windows underlay() const {
        Windows windows = overlay();
        std::erase_if(windows, [&](xcb_window_t window) { return titleOf(window) == "KOVA message"; });
        return windows;
    }

    PrivateServer server;
    TestClient client{server.displayName(), "Editor", 4711};

  private:
    std::string busPath() const { return server.folder() + "/bus"; }
    void startBus() {
        const std::string path = server.folder() + "/bus.conf";
        std::ofstream(path)
            << QString::fromLatin1(kBusConfiguration).arg(QString::fromStdString(busPath())).toStdString();
        bus_ = server.start({"/usr/bin/dbus-daemon", "--nofork", "--config-file=" + path});
        EXPECT_TRUE(until([&] { return access(busPath().c_str(), F_OK) == 0; })) << "the bus did not start";
    }

    const Session& session_;
    const std::string socket_ = server.folder() + "/agent.sock";

  public:
    FakeAgent agent{socket_};

  private:
    ChildProcess bus_, manager_, compositor_, ui_;
};

class RealWindows : public ::testing::TestWithParam<Session> {
  protected:
    void SetUp() override {
        const Session& session = GetParam();
        for (const auto& command : {session.manager, session.compositor}) {
            if (!command.empty() && access(command.front().c_str(), X_OK) != 0)
                GTEST_SKIP() << command.front() << " is missing";
        }
        if (!PrivateServer::isInstalled()) GTEST_SKIP() << "Xvfb is missing";
    }
};

class RealManagers : public RealWindows {}; // only the sessions with a window manager

} // namespace

TEST_P(RealWindows, OverlayStaysBelowApplicationsOutOfWindowListsAndWithoutFocus) {
    Desktop desktop(GetParam());
    const TestClient& seen = desktop.client;
    const Windows wallpaper{
        desktop.client.open({.title = "wallpaper", .frame = makeRect(0, 0, 800, 500), .type = "DESKTOP"})};
    const Windows applications{desktop.client.open({.title = "editor", .frame = makeRect(20, 150, 300, 200)}),
                               desktop.client.open({.title = "mail", .frame = makeRect(100, 180, 300, 250)})};
    for (const xcb_window_t window : applications) {
        ASSERT_TRUE(desktop.until([&] { return seen.isViewable(window); }));
    }
    const auto isInOrder = [&] {
        return desktop.underlay().size() == 6 && desktop.isBelow(wallpaper, desktop.underlay()) &&
               desktop.isUnderlayBelow(applications);
    };
    ASSERT_TRUE(desktop.until(isInOrder))
        << desktop.underlay().size() << " windows instead of a backdrop, four footers and an empty tile";
    EXPECT_EQ(desktop.overlay("KOVA message").size(), 1u);

    // An application is lowered below all other windows.
    desktop.lower(applications[1]);
    desktop.lower(wallpaper[0]);
    ASSERT_TRUE(
        desktop.until([&] { return desktop.stackPosition(applications[1]) < desktop.stackPosition(applications[0]); }));
    EXPECT_TRUE(desktop.until(isInOrder));
    const xcb_window_t late = desktop.client.open({.title = "late", .frame = makeRect(500, 200, 200, 200)});
    ASSERT_TRUE(desktop.until([&] { return seen.isViewable(late); }));
    EXPECT_TRUE(desktop.until([&] { return isInOrder() && desktop.isUnderlayBelow({late}); }));

    // The overlay is in no window list and does not take the focus.
    const Windows overlayWindows = desktop.overlay();
    if (desktop.hasManager()) {
        EXPECT_TRUE(desktop.until(
            [&] { return std::ranges::count(seen.numbers(seen.root(), "_NET_CLIENT_LIST_STACKING"), late) == 1; }));
    }
    for (const char* list : {"_NET_CLIENT_LIST", "_NET_CLIENT_LIST_STACKING"}) {
        const auto listed = seen.numbers(seen.root(), list);
        for (const xcb_window_t window : overlayWindows) EXPECT_EQ(std::ranges::count(listed, window), 0) << list;
    }
    const xcb_window_t focus = seen.focus();
    desktop.server.start({"/usr/bin/xdotool", "mousemove", "30", "303", "mousemove", "90", "476", "click", "1"}).wait();
    desktop.server.start({"/usr/bin/xdotool", "mousemove", "725", "229", "click", "1"}).wait();
    EXPECT_TRUE(desktop.until([&] { return !desktop.agent.calls().empty(); }))
        << "the click on a footer's entry calls a method";
    EXPECT_EQ(std::ranges::count(overlayWindows, seen.focus()), 0) << "before, the focus was on window " << focus;

    // Clicks on a footer, on the button of the empty tile, beside the button, and on the backdrop.
    const Windows emptyTile = desktop.overlay("KOVA empty tile"), footers = desktop.overlay("KOVA footer");
    ASSERT_EQ(emptyTile.size(), 1u);
    desktop.client.unmap(late);
    desktop.client.unmap(applications[0]);
    desktop.client.unmap(applications[1]);
    EXPECT_TRUE(desktop.until([&] { return std::ranges::count(footers, desktop.clickedAt(300, 475)) == 1; }));
    EXPECT_TRUE(desktop.until([&] { return desktop.clickedAt(250, 412) == emptyTile[0]; }));
    for (const auto& [x, y] : {std::pair(30, 340), std::pair(300, 100), std::pair(3, 3), std::pair(496, 200)}) {
        EXPECT_EQ(std::ranges::count(overlayWindows, desktop.clickedAt(x, y)), 0) << x << ", " << y;
    }

    desktop.agent.disconnect();
    desktop.agent.setState(nullptr); // a state that kova-ui cannot decode
    EXPECT_TRUE(desktop.until([&] { return desktop.overlay().empty(); })) << "without an agent nothing is shown";
    EXPECT_TRUE(desktop.until([&] {
        const xcb_window_t alert = seen.windowTitled("KOVA");
        return alert != 0 && seen.isViewable(alert);
    })) << "a window gives the user the reason";
}

TEST_P(RealManagers, OverlayKeepsItsOrderWhenTheWindowManagerRestarts) {
    Desktop desktop(GetParam());
    const Windows applications{desktop.client.open({.title = "editor", .frame = makeRect(20, 150, 300, 200)}),
                               desktop.client.open({.title = "mail", .frame = makeRect(100, 180, 300, 250)})};
    const auto isInOrder = [&] {
        return desktop.underlay().size() == 6 &&
               std::ranges::all_of(applications,
                                   [&](xcb_window_t window) { return desktop.client.isViewable(window); }) &&
               desktop.isUnderlayBelow(applications);
    };
    ASSERT_TRUE(desktop.until([&] { return isInOrder(); }));
    desktop.endManager();
    EXPECT_TRUE(desktop.until(isInOrder));
    desktop.startManager();
    EXPECT_TRUE(desktop.until([&] { return isInOrder(); }));

    // The screen is locked and unlocked: overlay windows stay where they are.
    for (const bool isSuspended : {true, false}) {
        desktop.agent.change("isSuspended", isSuspended);
        const xcb_window_t late = desktop.client.open({.title = "late", .frame = makeRect(500, 200, 200, 200)});
        EXPECT_TRUE(desktop.until([&] { return isInOrder() && desktop.client.isViewable(late); }));
        desktop.client.destroy(late);
    }
    // The display is disconnected and connected again.
    const auto displays = sampleState()["displays"], tiles = sampleState()["tiles"];
    for (const char* section : {"tiles", "displays"}) desktop.agent.change(section, nlohmann::json::array());
    EXPECT_TRUE(desktop.until([&] { return desktop.overlay().empty(); }));
    desktop.agent.change("displays", displays);
    desktop.agent.change("tiles", tiles);
    EXPECT_TRUE(desktop.until(isInOrder));
}

TEST_P(RealWindows, HighlightIsAboveApplicationsAndTransparentToClicks) {
    Desktop desktop(GetParam());
    const xcb_window_t editor = desktop.client.open({.title = "editor", .frame = makeRect(20, 60, 300, 200)});
    ASSERT_TRUE(desktop.until([&] { return desktop.client.isViewable(editor) && desktop.underlay().size() == 6; }));
    desktop.agent.change("drag", {{"window", "1"}, {"display", "d1"}, {"tile", "d1::primary"}});
    ASSERT_TRUE(desktop.until([&] { return desktop.overlay("KOVA drop target").size() == 1; }));
    const Windows highlight = desktop.overlay("KOVA drop target");
    EXPECT_TRUE(desktop.until([&] { return desktop.isBelow({editor}, highlight); }));
    EXPECT_NE(desktop.clickedAt(160, 160), highlight[0]);
    desktop.agent.change("drag", nullptr);
    EXPECT_TRUE(desktop.until([&] { return desktop.overlay("KOVA drop target").empty(); }));
}

TEST(RealDisplays, OverlayIsWhereTheFirstDisplayIs) {
    if (!PrivateServer::isInstalled()) GTEST_SKIP() << "Xvfb is missing";
    Desktop desktop(kSessions.front(), "1600x500");
    const auto run = [&](std::vector<std::string> command) { ASSERT_EQ(desktop.server.start(command).wait(), 0); };
    const auto isOnDisplayAt = [&](double left) {
        const Windows overlay = desktop.overlay();
        const bool isThere = std::ranges::all_of(overlay, [&](xcb_window_t window) {
            const CGRect area = desktop.client.area(window);
            return minX(area) >= left && maxX(area) <= left + 800;
        });
        return overlay.size() == 7 && isThere;
    };
    EXPECT_TRUE(desktop.until([&] { return isOnDisplayAt(0); })) << "there is one display";
    run({"xrandr", "--setmonitor", "left", "800/200x500/125+0+0", "screen"});
    run({"xrandr", "--setmonitor", "*right", "800/200x500/125+800+0", "none"});
    EXPECT_TRUE(desktop.until([&] { return isOnDisplayAt(800); })) << "the primary display is on the right";
    run({"xrandr", "--delmonitor", "right"});
    EXPECT_TRUE(desktop.until([&] { return isOnDisplayAt(0); })) << "only the left display is connected";
}

const auto nameOf = [](const auto& session) {
    std::string name = session.param.name;
    std::ranges::replace(name, ' ', '_');
    return name;
};
INSTANTIATE_TEST_SUITE_P(Desktops, RealWindows, ::testing::ValuesIn(kSessions), nameOf);
INSTANTIATE_TEST_SUITE_P(Desktops, RealManagers, ::testing::ValuesIn(kSessions.begin() + 2, kSessions.end()), nameOf);

} // namespace kova::ui::testing
