// The windows of kova-ui on a real desktop, used only with the keyboard.
#include "tests/agent/Session.h"
#include "tests/desktop/TestClient.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>
#include <fstream>

namespace kova::testing {
namespace {

using nlohmann::json;

class KeyboardAlone : public ::testing::Test {
  protected:
    void SetUp() override {
        if (!PrivateServer::isInstalled()) GTEST_SKIP() << "Xvfb is not installed";
        server_.startManager();
        const std::string applications = server_.folder() + "/data/applications";
        std::filesystem::create_directories(applications);
        std::ofstream(applications + "/zebra.desktop")
            << "[Desktop Entry]\nType=Application\nName=Zebra\nExec=touch " << launched_ << "\n";
        session_.setVariable("XDG_DATA_HOME", server_.folder() + "/data");
        session_.setVariable("KOVA_UI", KOVA_UI_PROGRAM);
        left_ = client_.open({.title = "Left"});
        client_.open({.title = "Right", .frame = makeRect(700, 60, 400, 300)});
        session_.startAgent();
        ASSERT_TRUE(session_.agentResponds());
        ASSERT_TRUE(eventually([&] { return session_.query("windows").size() == 2; }));
        ASSERT_EQ(session_.kova({"arrange"}).exitCode, 0);
        ASSERT_EQ(session_.kova({"shortcut", "set", "openPalette", "ctrl+alt+shift+p"}).exitCode, 0);
        // The palette is refused until kova-ui has connected.
        ASSERT_TRUE(eventually([&] { return response({"theme", "list"})["isDrawn"] == true; }));
        client_.sendToManager("_NET_ACTIVE_WINDOW", left_, {2, 0, 0});
        ASSERT_TRUE(eventually([&] { return client_.focus() == left_; }));
    }

    json response(std::vector<std::string> arguments) const {
        arguments.push_back("--json");
        return json::parse(session_.kova(std::move(arguments)).output, nullptr, false);
    }
    void press(const std::string& keys) const {
        const auto finished = session_.run({"/bin/sh", "-c", "xdotool key --delay 20 " + keys});
        ASSERT_EQ(finished.exitCode, 0) << finished.output;
    }
    void type(const std::string& text) const {
        ASSERT_EQ(session_.run({"xdotool", "type", "--delay", "20", text}).exitCode, 0);
    }
    /// Presses the keys until `holds` is true, at most three times. Keys have no effect before a list is filled or a
    /// shortcut is registered, and on a busy machine their effect may take long.
    bool pressUntil(const std::string& keys, const std::function<bool()>& holds) const {
        for (int attempt = 0; attempt < 3; ++attempt) {
            press(keys);
            if (eventually(holds, std::chrono::seconds(15))) return true;
        }
        return false;
    }
    bool hasKeyboard(const std::string& title) const {
        const auto active = client_.numbers(client_.root(), "_NET_ACTIVE_WINDOW");
        const xcb_window_t window = client_.windowTitled(title);
        return window != 0 && !active.empty() && active[0] == window && client_.isViewable(window);
    }
    bool isLeftFocusedAgain() const {
        return eventually([&] { return client_.focus() == left_; });
    }
    void openPalette() const {
        ASSERT_TRUE(pressUntil("ctrl+alt+shift+p", [&] { return hasKeyboard("Palette"); }));
    }
    /// Types into the palette, presses Enter and waits until the window with the title `opened` has the focus.
    void choose(const std::string& typed, const std::string& opened) const {
        openPalette();
        type(typed);
        press("Return");
        ASSERT_TRUE(eventually([&] { return hasKeyboard(opened); })) << opened;
    }
    void showPane(int number) const {
        std::string keys = "alt+p Home";
        for (int i = 0; i < number; ++i) keys += " Down";
        press(keys);
    }
    void expectChange(const std::string& keys, const std::function<json()>& value, const std::string& what) const {
        const json before = value();
        EXPECT_TRUE(pressUntil(keys, [&] { return value() != before; })) << what << " is still " << before;
    }
    json setting(const std::string& name) const { return response({"query", "state"})["state"]["settings"][name]; }
    json keysOf(const std::string& action) const {
        const json list = response({"shortcut", "list"});
        for (const json& each : list["shortcuts"]) {
            if (each["action"] == action) return each["keys"];
        }
        return "no such action";
    }
    json sceneNames() const {
        json names;
        const json list = response({"scene", "list"});
        for (const json& each : list["scenes"]) names.push_back(each["name"]);
        return names;
    }

    PrivateServer server_{"1280x800"};
    Session session_{server_.folder(), server_.displayName()};
    TestClient client_{server_.displayName(), "Drawing", static_cast<std::uint32_t>(getpid())};
    const std::string launched_ = server_.folder() + "/launched";
    xcb_window_t left_ = 0;
};

TEST_F(KeyboardAlone, ChangesASettingInEachPane) {
    ASSERT_EQ(session_.kova({"place", "Left", "2"}).exitCode, 0); // so that a tile is learned
    choose("settings general", "KOVA Settings");
    expectChange(
        "alt+a", [&] { return setting("autoArrangeOnLaunch"); }, "arrange after launch");
    showPane(1);
    expectChange(
        "alt+d Tab End Return", [&] { return session_.query("displays")[0]["layout"]["id"]; }, "the layout");
    showPane(2);
    expectChange(
        "alt+e ctrl+a f o c u s space l e f t Tab alt+c", [&] { return keysOf("focusLeft"); }, "the shortcut");
    showPane(3);
    expectChange(
        "alt+c",
        [&] {
            return response({"rule", "list"})["isOn"];
        },
        "continuous management");
    showPane(4);
    expectChange(
        "alt+p Tab ctrl+a d e s k Return", [&] { return sceneNames(); }, "the list of scenes");
    EXPECT_EQ(sceneNames()[0], "desk");
    showPane(5);
    expectChange(
        "alt+t", [&] { return setting("showTileBackgrounds"); }, "tile backgrounds");
    showPane(6);
    expectChange(
        "alt+p Tab Home alt+f",
        [&] {
            return response({"app", "learned"});
        },
        "what was learned");
    showPane(7);
    EXPECT_TRUE(hasKeyboard("KOVA Settings"));
    press("Escape");
    EXPECT_TRUE(isLeftFocusedAgain()) << "the previous window has the focus again";
}

TEST_F(KeyboardAlone, AnswersAnAlertAndTheFilePanels) {
    for (const char* cancel : {"Escape", "Return"}) {
        openPalette();
        type("force an app");
        press("Return");
        type("left");
        ASSERT_TRUE(pressUntil("Return", [&] { return hasKeyboard("KOVA"); }));
        EXPECT_TRUE(pressUntil(cancel, [&] { return client_.focus() == left_; })) << cancel;
    }

    ASSERT_EQ(session_.kova({"scene", "capture", "desk"}).exitCode, 0);
    const std::string file = server_.folder() + "/scenes.json";
    choose("settings scenes", "KOVA Settings");
    ASSERT_TRUE(pressUntil("alt+e", [&] { return hasKeyboard("Export Scenes and Rules"); }));
    type(file);
    ASSERT_TRUE(pressUntil("Return", [&] { return std::filesystem::exists(file); }));
    ASSERT_EQ(session_.kova({"scene", "delete", "desk"}).exitCode, 0);
    ASSERT_TRUE(pressUntil("alt+i", [&] { return hasKeyboard("Import Scenes and Rules"); }));
    type(file);
    ASSERT_TRUE(pressUntil("Return", [&] { return hasKeyboard("KOVA Settings"); }));
    expectChange(
        "alt+a", [&] { return sceneNames(); }, "the list of scenes");
    EXPECT_EQ(sceneNames(), json::array({"desk"}));
    press("Escape");
    EXPECT_TRUE(isLeftFocusedAgain());
}

TEST_F(KeyboardAlone, LaunchesAnApplicationAndWalksThroughTheIntroduction) {
    choose("launch an application into", "Launch an app in this tile");
    type("zeb");
    EXPECT_TRUE(pressUntil("Return", [&] { return std::filesystem::exists(launched_); }));
    EXPECT_TRUE(isLeftFocusedAgain()) << "the previous window has the focus again";

    choose("open the intro", "Welcome to KOVA");
    press("alt+c");
    // While the button is still drawn as pressed, it handles the first Escape itself.
    EXPECT_TRUE(pressUntil("Escape", [&] { return client_.focus() == left_; }));

    openPalette();
    press("Escape");
    EXPECT_TRUE(isLeftFocusedAgain());
}

} // namespace
} // namespace kova::testing
