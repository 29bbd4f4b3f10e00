// Launches and ends real programs with the real agent and command line: from a desktop entry to a window in its tile.
#include "tests/agent/Session.h"
#include "tests/desktop/TestClient.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <map>

namespace kova::testing {
namespace {

class Launched : public ::testing::TestWithParam<Manager> {
  protected:
    void SetUp() override {
        if (!PrivateServer::isInstalled()) GTEST_SKIP() << "Xvfb is not installed";
        if (GetParam() == Manager::openbox) server_.startManager();
        install("shell", "Name=My Shell\nExec=xterm -class MyShell -T %c -e sleep 1000\nStartupWMClass=MyShell\n");
        // The class of this program's window is not in the entry, so only the process identifies the window.
        install("stranger", "Name=Stranger\nExec=xterm -T stranger -e sleep 1000\n");
        install("broken", "Name=Broken\nExec=/nowhere/program\n");
        session_.setVariable("XDG_DATA_HOME", server_.folder() + "/data");
        session_.setVariable("XDG_DATA_DIRS", server_.folder() + "/none");
        session_.startAgent();
        ASSERT_TRUE(session_.agentResponds());
        ASSERT_EQ(session_.kova({"layout", "select", "quad-grid"}).exitCode, 0);
    }
    void install(const std::string& id, const std::string& keys) {
        const auto folder = std::filesystem::path(server_.folder()) / "data/applications";
        std::filesystem::create_directories(folder);
        std::ofstream(folder / (id + ".desktop")) << "[Desktop Entry]\nType=Application\n" << keys;
    }
    /// The titles of the windows in the tiles: "title, title, -, -".
    std::string tiles() {
        std::map<std::string, std::string> titles;
        for (const auto& window : session_.query("windows")) titles[window.at("id")] = window.at("title");
        std::string text;
        for (const auto& tile : session_.query("tiles")) {
            text += (text.empty() ? "" : ", ") + (tile.at("window").is_null() ? "-" : titles[tile.at("window")]);
        }
        return text;
    }
    bool showsTiles(const std::string& expected) {
        std::string seen;
        const bool isReached = eventually([&] { return (seen = tiles()) == expected; });
        EXPECT_EQ(seen, expected);
        return isReached;
    }

    PrivateServer server_{"1600x900", ClientProcessNumbers::reported};
    Session session_{server_.folder(), server_.displayName()};
};

TEST_P(Launched, ApplicationsArePlacedInTheirTilesAndEndOnRequest) {
    EXPECT_EQ(session_.kova({"launch", "my shell", "--tile", "2"}).exitCode, 0);
    ASSERT_TRUE(showsTiles("-, My Shell, -, -"));
    EXPECT_EQ(session_.kova({"launch", "stranger", "--tile", "secondary-3", "--display", "1"}).exitCode, 0);
    ASSERT_TRUE(showsTiles("-, My Shell, -, stranger"));
    const auto broken = session_.kova({"launch", "broken", "--tile", "1"});
    EXPECT_EQ(broken.exitCode, 1);
    EXPECT_EQ(broken.output, "Broken cannot be started: there is no program “/nowhere/program”\n");

    EXPECT_EQ(session_.kova({"app", "quit", "My Shell"}).output, "Quit requested for My Shell\n");
    ASSERT_TRUE(showsTiles("-, -, -, stranger"));
    EXPECT_EQ(session_.kova({"launch", "my shell", "--tile", "1"}).exitCode, 0);
    ASSERT_TRUE(showsTiles("My Shell, -, -, stranger"));

    EXPECT_EQ(session_.kova({"force-quit-all"}).exitCode, 1) << "there is no terminal for the confirmation";
    EXPECT_EQ(session_.query("windows").size(), 2U);
    EXPECT_EQ(session_.kova({"force-quit-all", "--yes"}).output, "Force quit:\n  My Shell\n  XTerm\n");
    EXPECT_TRUE(eventually([&] { return session_.query("windows").empty(); }));
    // All started processes have been reaped.
    EXPECT_TRUE(eventually([&] {
        return session_.run({"ps", "--ppid", std::to_string(session_.agent()), "-o", "pid="}).output.empty();
    }));
}

TEST_P(Launched, ApplicationsOutliveTheAgent) {
    EXPECT_EQ(session_.kova({"launch", "my shell", "--tile", "2"}).exitCode, 0);
    ASSERT_TRUE(showsTiles("-, My Shell, -, -"));
    const pid_t shell = session_.query("windows")[0].at("process");
    EXPECT_EQ(session_.kova({"quit"}).exitCode, 0);
    EXPECT_TRUE(session_.waitForAgent());
    EXPECT_EQ(kill(shell, 0), 0);
    kill(shell, SIGKILL);
}

INSTANTIATE_TEST_SUITE_P(With, Launched, ::testing::Values(Manager::none, Manager::openbox), managerName);

} // namespace
} // namespace kova::testing
