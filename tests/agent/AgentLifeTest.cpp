// The real agent, from its start to its end, in each way in which it can end.
#include "support/Version.h"
#include "tests/agent/Session.h"
#include "tests/desktop/TestClient.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <random>
#include <thread>

namespace kova::testing {
namespace {

class AgentLife : public ::testing::Test {
  protected:
    void SetUp() override {
        if (!PrivateServer::isInstalled()) GTEST_SKIP() << "Xvfb is not installed";
    }
};

TEST_F(AgentLife, ALimitOnFileSizesDoesNotEndTheAgent) {
#ifdef __SANITIZE_THREAD__
    GTEST_SKIP() << "the thread sanitizer itself cannot start with such a limit";
#endif
    PrivateServer server("800x600");
    Session session(server.folder(), server.displayName());
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit none{0, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &none); // the agent inherits it
    session.startAgent();
    setrlimit(RLIMIT_FSIZE, &before);
    ASSERT_TRUE(session.agentResponds());
    EXPECT_EQ(session.kova({"layout", "select", "dual-split"}).exitCode, 0);
    std::this_thread::sleep_for(std::chrono::milliseconds(1500)); // longer than the delay before the change is written
    EXPECT_EQ(session.kova({"status"}).exitCode, 0);
}

/// Each agent has its own runtime folder, and therefore its own socket.
TEST_F(AgentLife, OnlyOneAgentManagesAnXServer) {
    PrivateServer server("800x600", ClientProcessNumbers::reported);
    Session session(server.folder(), server.displayName());
    const pid_t agent = session.startAgent();
    ASSERT_TRUE(session.agentResponds());
    const std::string other = server.folder() + "/other";
    std::filesystem::create_directory(other);
    std::filesystem::permissions(other, std::filesystem::perms::owner_all);
    const auto second = session.run({"env", "XDG_RUNTIME_DIR=" + other, "XDG_STATE_HOME=" + other, KOVA_AGENT});
    EXPECT_EQ(second.exitCode, 5);
    EXPECT_EQ(second.output, "kova-agent: process " + std::to_string(agent) + " already manages the X display “" +
                                 server.displayName() + "”\n");
    session.signalAgent(SIGKILL);
    ASSERT_TRUE(session.waitForAgent());
    session.startAgent(); // the server was free again when the first agent ended
    EXPECT_TRUE(session.agentResponds());
}

TEST_F(AgentLife, OnlyOneAgentManagesASessionAndSignalsEndItCleanly) {
    PrivateServer server("800x600");
    Session session(server.folder(), server.displayName());
    for (const int signal : {SIGTERM, SIGINT, SIGHUP, 0}) {
        const pid_t agent = session.startAgent();
        ASSERT_TRUE(session.agentResponds());
        const auto second = session.run({KOVA_AGENT});
        EXPECT_EQ(second.exitCode, 5);
        EXPECT_EQ(second.output, "kova-agent: process " + std::to_string(agent) + " already manages this session\n");
        EXPECT_EQ(session.kova({"status"}).exitCode, 0); // the first agent still runs

        if (signal != 0) {
            session.signalAgent(signal);
        } else {
            EXPECT_EQ(session.kova({"quit"}).exitCode, 0);
        }
        const auto ended = session.waitForAgent();
        ASSERT_TRUE(ended) << signal;
        EXPECT_EQ(ended->exitCode, 0) << signal;
        EXPECT_EQ(ended->output, "");
        EXPECT_FALSE(std::filesystem::exists(session.socket()));
        EXPECT_EQ(session.kova({"status"}).exitCode, 3);
    }
}

TEST_F(AgentLife, TheFirstCommandFindsExistingWindows) {
    PrivateServer server("800x600");
    TestClient client(server.displayName(), "Drawing", static_cast<std::uint32_t>(getpid()));
    for (int i = 0; i < 40; ++i) client.open({.title = std::to_string(i)});
    for (int start = 0; start < 5; ++start) {
        // Each agent has a new home, so that it does not restore an earlier session.
        const std::string home = server.folder() + "/" + std::to_string(start);
        std::filesystem::create_directory(home);
        Session session(home, server.displayName());
        session.startAgent();
        session.run({"/bin/sh", "-c", "until " KOVA_COMMAND " arrange; do :; done"});
        const auto tiles = session.query("tiles");
        EXPECT_TRUE(std::ranges::any_of(tiles, [](const auto& tile) { return !tile.at("window").is_null(); }));
        EXPECT_EQ(session.kova({"quit"}).exitCode, 0);
        session.waitForAgent();
    }
}

TEST_F(AgentLife, AKilledAgentHasStoredTheLastValueThatItAcknowledged) {
    PrivateServer server("800x600");
    Session session(server.folder(), server.displayName());
    const auto seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    int value = 0; // the last value that an agent acknowledged
    for (int round = 0; round < 8; ++round) {
        session.startAgent();
        ASSERT_TRUE(session.agentResponds());
        const std::string reported = session.query("state").at("settings").at("tileInset").dump();
        const double kept = std::stod(reported);
        // A change that was not acknowledged yet may have been stored as well.
        EXPECT_TRUE(round == 0 || kept == value || kept == (value + 1) % 100) << kept << " for " << value;
        const auto set = [&](int points) {
            return session.kova({"layout", "inset", std::to_string(points)}).exitCode == 0;
        };
        value = (static_cast<int>(kept) + 1) % 100;
        ASSERT_TRUE(set(value));
        const auto killedAfter = std::chrono::milliseconds(std::uniform_int_distribution(0, 150)(random));
        std::thread killing([&] {
            std::this_thread::sleep_for(killedAfter);
            session.signalAgent(SIGKILL);
        });
        while (set((value + 1) % 100)) value = (value + 1) % 100;
        killing.join();
        ASSERT_TRUE(session.waitForAgent());
    }
}

TEST_F(AgentLife, PreferencesOutliveTheAgentAndDamageIsReported) {
    PrivateServer server("800x600");
    Session session(server.folder(), server.displayName());
    const auto inset = [&] {
        std::ifstream file(session.preferences());
        return nlohmann::json::parse(file).at("KOVA.workspaceProfile.v1").at("tileInset").get<double>();
    };
    session.startAgent();
    ASSERT_TRUE(session.agentResponds());
    EXPECT_EQ(session.kova({"layout", "inset", "17"}).exitCode, 0);
    session.signalAgent(SIGTERM);
    ASSERT_TRUE(session.waitForAgent());
    EXPECT_EQ(inset(), 17);

    std::ofstream(session.preferences()) << "{ \"half a";
    session.startAgent({"--foreground"});
    ASSERT_TRUE(session.agentResponds());
    const auto doctor = session.kova({"doctor"});
    EXPECT_EQ(doctor.exitCode, 1);
    EXPECT_NE(doctor.output.find("preferences.json.damaged-"), std::string::npos) << doctor.output;
    session.signalAgent(SIGTERM);
    EXPECT_NE(session.waitForAgent()->output.find("preferences.json.damaged-"), std::string::npos);
    EXPECT_EQ(inset(), 5);
}

TEST_F(AgentLife, EndsWhenTheXServerEnds) {
    PrivateServer server("800x600");
    Session session(server.folder(), server.displayName());
    session.startAgent();
    ASSERT_TRUE(session.agentResponds());
    server.end();
    const auto ended = session.waitForAgent();
    ASSERT_TRUE(ended);
    EXPECT_EQ(ended->exitCode, 1);
    EXPECT_NE(ended->output.find("X server"), std::string::npos) << ended->output;
    EXPECT_FALSE(std::filesystem::exists(session.socket()));
}

TEST_F(AgentLife, WithoutXTheAgentSaysWhyItCannotMoveWindows) {
    const PrivateServer unusedServer("640x480"); // only its folder is used
    {
        Session session(unusedServer.folder(), "");
        session.startAgent();
        const auto ended = session.waitForAgent();
        ASSERT_TRUE(ended);
        EXPECT_EQ(ended->exitCode, 1);
        EXPECT_NE(ended->output.find("DISPLAY"), std::string::npos) << ended->output;
    }
    Session session(unusedServer.folder(), "");
    session.setVariable("WAYLAND_DISPLAY", "wayland-0");
    session.startAgent();
    ASSERT_TRUE(session.agentResponds());
    EXPECT_EQ(session.kova({"arrange"}).exitCode, 4);
    const auto doctor = session.kova({"doctor"});
    EXPECT_EQ(doctor.exitCode, 1);
    EXPECT_NE(doctor.output.find("Wayland"), std::string::npos) << doctor.output;
    session.signalAgent(SIGTERM);
    EXPECT_EQ(session.waitForAgent()->exitCode, 0);
}

TEST_F(AgentLife, InAWaylandSessionStatusSaysThatOnlyXWindowsAreManaged) {
    for (const auto& [variable, value] :
         {std::pair{"WAYLAND_DISPLAY", "wayland-0"}, std::pair{"XDG_SESSION_TYPE", "wayland"}}) {
        PrivateServer server("800x600");
        Session session(server.folder(), server.displayName());
        session.setVariable(variable, value);
        session.startAgent();
        ASSERT_TRUE(session.agentResponds());
        for (const char* verb : {"status", "doctor"}) {
            const auto output = session.kova({verb}).output;
            EXPECT_NE(output.find("This is a Wayland session: only windows of X11"), std::string::npos) << output;
        }
    }
}

TEST_F(AgentLife, PrintsItsVersionAndItsHelpAndRefusesWrongArguments) {
    const PrivateServer unusedServer("640x480");
    const Session session(unusedServer.folder(), "");
    EXPECT_EQ(session.run({KOVA_AGENT, "--version"}).output, "kova-agent " KOVA_VERSION "\n");
    const auto help = session.run({KOVA_AGENT, "--help"});
    EXPECT_EQ(help.exitCode, 0);
    for (const char* option : {"--foreground", "--verbose", "--version", "--help"}) {
        EXPECT_NE(help.output.find(option), std::string::npos) << option;
    }
    const auto wrong = session.run({KOVA_AGENT, "--verbos"});
    EXPECT_EQ(wrong.exitCode, 2);
    EXPECT_NE(wrong.output.find("--verbos"), std::string::npos);
}

} // namespace
} // namespace kova::testing
