// The agent in its login session: events of logind, its log, and its start with the session.
#include "tests/agent/Session.h"
#include "tests/desktop/TestClient.h"
#include "tests/linux/PrivateBus.h"

#include <gtest/gtest.h>
#include <unistd.h>

namespace kova::testing {
namespace {

class SystemTest : public ::testing::Test {
  protected:
    void SetUp() override {
        if (!PrivateServer::isInstalled()) GTEST_SKIP() << "Xvfb is not installed";
    }
    std::string log() const { return contentsOf(server_.folder() + "/state/kova/agent.log"); }
    bool logs(const std::string& text) const {
        return eventually([&] { return log().find(text) != std::string::npos; });
    }

    PrivateServer server_{"1280x800"};
    Session session_{server_.folder(), server_.displayName()};
};

TEST_F(SystemTest, TheWorkspaceIsSuspendedWhileTheSessionIsLocked) {
    PrivateBus bus;
    bus.start();
    bus.startLogind();
    bus.addSession("c1", getuid(), "x11");
    bus.set("c1", "LockedHint", sdbus::Variant(true));
    session_.setVariable("DBUS_SYSTEM_BUS_ADDRESS", bus.address());
    session_.setVariable("DBUS_SESSION_BUS_ADDRESS", bus.address());
    session_.startAgent();
    ASSERT_TRUE(session_.agentResponds());
    EXPECT_TRUE(logs("workspace suspended")) << log();
    bus.set("c1", "LockedHint", sdbus::Variant(false));
    EXPECT_TRUE(logs("workspace resumed")) << log();
    const auto doctor = session_.kova({"doctor"});
    EXPECT_NE(doctor.output.find("this is session c1 (x11)"), std::string::npos) << doctor.output;
    EXPECT_NE(doctor.output.find("does not switch screens off"), std::string::npos) << doctor.output;
    bus.stop();
    EXPECT_TRUE(logs("the system bus is gone")) << log();
    EXPECT_EQ(session_.kova({"status"}).exitCode, 0);
}

TEST_F(SystemTest, TitlesAreLoggedInVerboseModeOnly) {
    TestClient client(server_.displayName(), "Editor", 4242);
    client.open({.title = "Secret plan"});
    for (const bool isVerbose : {false, true}) {
        session_.startAgent(isVerbose ? std::vector<std::string>{"--verbose"} : std::vector<std::string>{});
        ASSERT_TRUE(session_.agentResponds());
        ASSERT_TRUE(eventually([&] { return !session_.query("windows").empty(); }));
        for (const auto& words : std::vector<std::vector<std::string>>{{"arrange"},
                                                                       {"explain", "Secret plan"},
                                                                       {"zoom"},
                                                                       {"zoom"},
                                                                       {"undo"},
                                                                       {"scene", "capture", "A"},
                                                                       {"scene", "open", "A"},
                                                                       {"explain", "no such window"},
                                                                       {"doctor"}}) {
            session_.kova(words);
        }
        session_.signalAgent(SIGTERM);
        ASSERT_TRUE(session_.waitForAgent());
        EXPECT_NE(log().find("workspace stopped"), std::string::npos);
        if (!isVerbose) {
            EXPECT_EQ(log().find("Secret plan"), std::string::npos) << log();
        }
        EXPECT_EQ(log().find(" debug: ") != std::string::npos, isVerbose);
    }
}

TEST_F(SystemTest, ANewUserGetsAdviceAndTheAgentStartsWithTheSessionIfSwitchedOn) {
    session_.startAgent();
    ASSERT_TRUE(session_.agentResponds());
    EXPECT_NE(session_.kova({"status"}).output.find("“kova arrange” puts every window into a tile"), std::string::npos);
    EXPECT_TRUE(logs("“kova arrange” puts every window into a tile"));
    EXPECT_EQ(session_.kova({"login", "on"}).exitCode, 0);
    const std::string entry = contentsOf(server_.folder() + "/config/autostart/kova-agent.desktop");
    EXPECT_NE(entry.find(std::string("Exec=") + KOVA_AGENT), std::string::npos) << entry;
    for (const char* argument : {"on", "off", "status"}) {
        const auto dock = session_.kova({"dock", argument});
        EXPECT_EQ(dock.exitCode, 1);
        EXPECT_NE(dock.output.find("no common preference"), std::string::npos) << dock.output;
    }
    session_.signalAgent(SIGTERM);
    ASSERT_TRUE(session_.waitForAgent());

    session_.startAgent();
    ASSERT_TRUE(session_.agentResponds());
    EXPECT_EQ(session_.kova({"status"}).output.find("first steps"), std::string::npos);
    EXPECT_NE(session_.kova({"login", "status"}).output.find("KOVA starts with the session."), std::string::npos);
    EXPECT_EQ(session_.kova({"login", "off"}).exitCode, 0);
    EXPECT_FALSE(std::filesystem::exists(server_.folder() + "/config/autostart/kova-agent.desktop"));
}

} // namespace
} // namespace kova::testing
