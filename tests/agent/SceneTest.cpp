// A scene of four real applications: two of them end, the layout changes, and opening the scene brings all of it back.
#include "tests/agent/Session.h"
#include "tests/desktop/TestClient.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <set>

namespace kova::testing {
namespace {

/// For each slot the title of the front window, with a remark if the window is not at the tile's origin.
using Picture = std::map<std::string, std::string>;

class Scenes : public ::testing::TestWithParam<Manager> {
  protected:
    void SetUp() override {
        if (!PrivateServer::isInstalled()) GTEST_SKIP() << "Xvfb is not installed";
        observer_.emplace(server_.displayName(), "Watcher", static_cast<std::uint32_t>(getpid()));
        if (GetParam() == Manager::openbox) server_.startManager();
        for (const char* name : {"Mail", "Notes", "Music", "Plans"}) install(name);
        session_.setVariable("XDG_DATA_HOME", server_.folder() + "/data");
        session_.setVariable("XDG_DATA_DIRS", server_.folder() + "/none");
        session_.startAgent();
        ASSERT_TRUE(session_.agentResponds());
        ASSERT_EQ(session_.kova({"layout", "select", "quad-grid"}).exitCode, 0);
    }
    /// Each start of the program appends a line to `startsFile`.
    void install(const std::string& name) {
        const auto folder = std::filesystem::path(server_.folder()) / "data/applications";
        std::filesystem::create_directories(folder);
        const std::string starter = server_.folder() + "/" + name;
        std::ofstream(starter) << "#!/bin/sh\necho " << name << " >>'" << startsFile() << "'\nexec xterm -bw 0 -class "
                               << name << " -T " << name << " -e sleep 1000\n";
        std::filesystem::permissions(starter, std::filesystem::perms::owner_all);
        std::ofstream(folder / (name + ".desktop")) << "[Desktop Entry]\nType=Application\nName=" << name
                                                    << "\nExec=" << starter << "\nStartupWMClass=" << name << "\n";
    }
    std::string startsFile() const { return server_.folder() + "/starts"; }
    std::multiset<std::string> starts() const {
        std::ifstream file(startsFile());
        std::multiset<std::string> names;
        for (std::string line; std::getline(file, line);) names.insert(line);
        return names;
    }
    /// Windows and tiles of the same moment.
    nlohmann::json state() { return session_.query("state"); }
    Picture pictureIn(const nlohmann::json& state) {
        std::map<std::string, const nlohmann::json*> windows;
        for (const auto& window : state.at("windows")) windows[window.at("id")] = &window;
        Picture picture;
        for (const auto& tile : state.at("tiles")) {
            if (tile.at("window").is_null()) continue;
            const CGRect place = placeOf(tile.at("window"));
            const bool isThere = minX(place) == tile.at("frame").at("x") && minY(place) == tile.at("frame").at("y");
            const std::string title = windows.at(tile.at("window"))->at("title");
            picture[tile.at("slot")] = title + (isThere ? "" : " outside its tile");
        }
        return picture;
    }
    bool shows(const Picture& expected) {
        Picture seen;
        const bool isReached = eventually([&] { return (seen = pictureIn(state())) == expected; });
        EXPECT_EQ(seen, expected);
        return isReached;
    }
    /// The frame of the window according to the X server, not to the agent.
    CGRect placeOf(const std::string& id) const {
        return observer_->outerFrame(static_cast<xcb_window_t>(std::stoul(id.substr(id.find(':') + 1))));
    }
    std::map<std::string, CGRect> placesByWindow() {
        std::map<std::string, CGRect> places;
        const auto now = state();
        for (const auto& window : now.at("windows")) places[window.at("id")] = placeOf(window.at("id"));
        return places;
    }
    void killApplication(const std::string& title) {
        const auto now = state();
        for (const auto& window : now.at("windows")) {
            if (window.at("title") == title) kill(window.at("process").get<pid_t>(), SIGKILL);
        }
    }
    void launch(const std::string& name, const std::string& slot) {
        const auto launched = session_.kova({"launch", name, "--tile", slot});
        ASSERT_EQ(launched.exitCode, 0) << launched.output;
    }

    PrivateServer server_{"1600x900"};
    std::optional<TestClient> observer_;
    Session session_{server_.folder(), server_.displayName()};
};

TEST_P(Scenes, EndedApplicationsAreLaunchedAndAllWindowsAreInTheirTiles) {
    const Picture whole{
        {"focus-main", "Mail"}, {"secondary-1", "Notes"}, {"secondary-2", "Music"}, {"secondary-3", "Plans"}};
    for (const auto& [slot, name] : whole) launch(name, slot);
    ASSERT_TRUE(shows(whole));
    const auto captured = session_.kova({"scene", "capture", "Work"});
    EXPECT_EQ(captured.output, "Scene “Work” captured\n");

    killApplication("Notes");
    killApplication("Plans");
    ASSERT_TRUE(eventually([&] { return state().at("windows").size() == 2; }));
    ASSERT_EQ(session_.kova({"layout", "select", "dual-stack"}).exitCode, 0);
    ASSERT_EQ(session_.kova({"arrange"}).exitCode, 0);

    const auto opened = session_.kova({"scene", "open", "work"});
    EXPECT_EQ(opened.output, "Restoring Scene “Work” — waiting for 2 app windows\n");
    ASSERT_TRUE(shows(whole));
    EXPECT_EQ(starts(), (std::multiset<std::string>{"Mail", "Music", "Notes", "Notes", "Plans", "Plans"}));
    EXPECT_EQ(session_.kova({"scene", "diff", "Work"}).output, "Nothing differs from scene “Work”.\n");

    const auto places = placesByWindow();
    EXPECT_EQ(session_.kova({"scene", "open", "Work"}).output, "Scene “Work” restored\n");
    // Opening the scene must not move a window. Requests that the agent might have sent take effect before the window
    // “Late” opens.
    const auto late = server_.start({"xterm", "-T", "Late", "-e", "sleep", "1000"});
    ASSERT_TRUE(eventually([&] { return placesByWindow().size() == 5; }));
    for (const auto& [id, place] : places) EXPECT_EQ(placeOf(id), place) << id;
    EXPECT_EQ(pictureIn(state()), whole);
    EXPECT_EQ(starts().size(), 6U) << "nothing is launched twice";
}

TEST_P(Scenes, ScenesAndRulesOutliveTheAgent) {
    launch("Mail", "focus-main");
    ASSERT_TRUE(shows({{"focus-main", "Mail"}}));
    ASSERT_EQ(session_.kova({"scene", "capture", "Work"}).exitCode, 0);
    ASSERT_EQ(session_.kova({"rule", "add", "--app", "Notes", "tile", "secondary-3"}).exitCode, 0);
    ASSERT_EQ(session_.kova({"rules", "on"}).exitCode, 0);
    ASSERT_EQ(session_.kova({"quit"}).exitCode, 0);
    ASSERT_TRUE(session_.waitForAgent());
    session_.startAgent();
    ASSERT_TRUE(session_.agentResponds());

    // The rule decides the tile of an application that the user starts.
    const auto notes = server_.start({"xterm", "-bw", "0", "-class", "Notes", "-T", "Notes", "-e", "sleep", "1000"});
    ASSERT_TRUE(eventually([&] { return pictureIn(state())["secondary-3"] == "Notes"; }));
    ASSERT_EQ(session_.kova({"scene", "open", "Work"}).exitCode, 0);
    EXPECT_TRUE(eventually([&] { return pictureIn(state())["focus-main"] == "Mail"; }));
}

INSTANTIATE_TEST_SUITE_P(With, Scenes, ::testing::Values(Manager::none, Manager::openbox), managerName);

} // namespace
} // namespace kova::testing
