// The real agent with the real kova-ui, as at a login.
#include "tests/agent/Session.h"
#include "tests/desktop/PrivateServer.h"
#include "tests/desktop/TestClient.h"

#include <gtest/gtest.h>

#include <csignal>
#include <unistd.h>

namespace kova::ui::testing {

using kova::testing::ClientProcessNumbers;
using kova::testing::eventually;
using kova::testing::PrivateServer;
using kova::testing::TestClient;

TEST(WholeSession, TheOverlayIsNoWindowOfTheAgentAndEndsWithIt) {
    if (!PrivateServer::isInstalled()) GTEST_SKIP() << "Xvfb is missing";
    if (access("/usr/bin/openbox", X_OK) != 0) GTEST_SKIP() << "openbox is missing";
    PrivateServer server("1280x800", ClientProcessNumbers::told);
    server.startManager();
    TestClient editor(server.displayName(), "Editor", static_cast<std::uint32_t>(getpid()));
    const xcb_window_t page = editor.open({.title = "page"});
    ASSERT_TRUE(eventually([&] { return editor.isViewable(page); }));
    kova::testing::Session session(server.folder(), server.displayName());
    session.setVariable("KOVA_UI", KOVA_UI_PROGRAM);
    session.startAgent();
    ASSERT_TRUE(session.agentAnswers());
    ASSERT_EQ(session.kova({"layout", "select", "dual-split"}).exitCode, 0);
    ASSERT_TRUE(eventually([&] {
        const xcb_window_t footer = editor.windowTitled("KOVA footer");
        return footer != 0 && editor.isViewable(footer);
    }));
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

} // namespace kova::ui::testing
