// The real agent, which starts the real kova-ui as at a login.
#include "tests/agent/Session.h"
#include "tests/desktop/PrivateServer.h"
#include "tests/desktop/TestClient.h"
#include "tests/linux/PrivateBus.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <unistd.h>

namespace kova::ui::testing {

using kova::testing::ClientProcessNumbers;
using kova::testing::eventually;
using kova::testing::PrivateServer;
using kova::testing::TestClient;

namespace {

class WholeSession : public ::testing::Test {
  protected:
    void SetUp() override {
        if (!PrivateServer::isInstalled()) GTEST_SKIP() << "Xvfb is missing";
        if (access("/usr/bin/openbox", X_OK) != 0) GTEST_SKIP() << "openbox is missing";
        server.startManager();
        page = editor.open({.title = "page", .frame = makeRect(40, 40, 300, 200)});
        ASSERT_TRUE(eventually([&] { return editor.isViewable(page); }));
        session.setVariable("KOVA_UI", KOVA_UI_PROGRAM);
    }
    void start() {
        session.startAgent();
        ASSERT_TRUE(session.agentResponds());
        ASSERT_TRUE(eventually([&] { return !shown("KOVA footer").empty(); }));
    }
    std::vector<xcb_window_t> shown(const std::string& title) const {
        auto windows = editor.windowsTitled(title);
        std::erase_if(windows, [&](xcb_window_t window) { return !editor.isViewable(window); });
        return windows;
    }
    /// The frames of all footers, sorted, as one text.
    std::string footers() const {
        std::vector<std::string> frames;
        for (const xcb_window_t footer : shown("KOVA footer"))
            frames.push_back(kova::testing::text(editor.area(footer)));
        std::ranges::sort(frames);
        std::string all;
        for (const std::string& frame : frames) all += frame + " | ";
        return all;
    }
    bool logs(const std::string& text) const {
        return eventually([&] {
            return kova::contentsOf(server.folder() + "/state/kova/agent.log").find(text) != std::string::npos;
        });
    }

    PrivateServer server{"1280x800", ClientProcessNumbers::reported};
    kova::testing::Session session{server.folder(), server.displayName()};
    TestClient editor{server.displayName(), "Editor", static_cast<std::uint32_t>(getpid())};
    xcb_window_t page = 0;
};

} // namespace

TEST_F(WholeSession, TheAgentDoesNotListTheOverlayAndTheOverlayEndsWithTheAgent) {
    start();
    ASSERT_EQ(session.kova({"layout", "select", "dual-split"}).exitCode, 0);
    EXPECT_NE(session.kova({"ui", "status"}).output.find("kova-ui runs"), std::string::npos);

    ASSERT_TRUE(eventually([&] { return session.kova({"arrange"}).exitCode == 0; }));
    const auto windows = session.query("windows");
    ASSERT_EQ(windows.size(), 1U) << windows;
    EXPECT_EQ(windows[0]["title"], "page");

    session.signalAgent(SIGKILL);
    ASSERT_TRUE(session.waitForAgent());
    EXPECT_TRUE(eventually([&] { return editor.windowTitled("KOVA footer") == 0; }));
    EXPECT_TRUE(editor.isViewable(page));
}

TEST_F(WholeSession, FootersStayWhileTheSessionIsLocked) {
    PrivateBus bus;
    bus.start();
    bus.startLogind();
    bus.addSession("c1", getuid(), "x11");
    session.setVariable("DBUS_SYSTEM_BUS_ADDRESS", bus.address());
    session.setVariable("DBUS_SESSION_BUS_ADDRESS", bus.address());
    start();
    ASSERT_EQ(session.kova({"layout", "select", "dual-split"}).exitCode, 0);
    const auto areSideBySide = [&] {
        const auto both = shown("KOVA footer");
        return both.size() == 2 && minY(editor.area(both[0])) == minY(editor.area(both[1])) &&
               editor.area(both[0]).size == editor.area(both[1]).size;
    };
    ASSERT_TRUE(eventually([&] { return areSideBySide() && shown("KOVA message").empty(); }));
    const std::string before = footers();

    bus.set("c1", "LockedHint", sdbus::Variant(true));
    ASSERT_TRUE(logs("workspace suspended"));
    EXPECT_NE(session.kova({"arrange"}).exitCode, 0);
    // kova-ui receives the suspension before the message of the refusal. When it shows the message, it has handled the
    // suspension.
    EXPECT_TRUE(eventually([&] { return !shown("KOVA message").empty(); }));
    EXPECT_EQ(footers(), before);

    bus.set("c1", "LockedHint", sdbus::Variant(false));
    ASSERT_TRUE(logs("workspace resumed"));
    EXPECT_TRUE(eventually([&] { return session.kova({"arrange"}).exitCode == 0; }));
    EXPECT_EQ(footers(), before);
    EXPECT_EQ(session.query("windows").size(), 1U);
}

TEST_F(WholeSession, FootersVanishWithADisplayThatIsDisconnectedAndReturnWithIt) {
    const auto plugIn = [&](const char* name, const char* place, const char* output) {
        ASSERT_EQ(session.run({"xrandr", "--setmonitor", name, place, output}).exitCode, 0);
    };
    plugIn("left", "640/170x800/212+0+0", "screen");
    plugIn("right", "640/170x800/212+640+0", "none");
    start();
    for (const char* display : {"1", "2"})
        ASSERT_EQ(session.kova({"layout", "select", "dual-split", "--display", display}).exitCode, 0);
    ASSERT_TRUE(eventually([&] { return shown("KOVA footer").size() == 4; })) << footers();
    const std::string before = footers();

    session.run({"xrandr", "--delmonitor", "right"});
    EXPECT_TRUE(eventually([&] {
        const auto left = shown("KOVA footer");
        return left.size() == 2 &&
               std::ranges::all_of(left, [&](xcb_window_t footer) { return maxX(editor.area(footer)) <= 640; });
    })) << footers();
    plugIn("right", "640/170x800/212+640+0", "none");
    EXPECT_TRUE(eventually([&] { return footers() == before; })) << footers() << "instead of " << before;
}

} // namespace kova::ui::testing
