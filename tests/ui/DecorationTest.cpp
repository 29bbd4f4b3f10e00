#include "tests/ui/Sample.h"

#include "ui/overlay/Battery.h"
#include "ui/overlay/DesktopActivity.h"
#include "ui/tray/MenuBuilder.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace kova::ui::testing {

TEST(Decoration, MovesOnlyWhileItIsVisibleAndAnimationsAreEnabled) {
    struct Case {
        const char* what;
        bool isMoving;
        std::function<void(nlohmann::json&, DesktopStyle&)> change;
    };
    const auto frame = [](int x, int y, int width, int height) {
        return nlohmann::json{{"x", x}, {"y", y}, {"width", width}, {"height", height}};
    };
    const std::vector<Case> cases{
        {"between empty tiles", true, [](auto&, auto&) {}},
        {"switched off", false, [](auto& state, auto&) { state["appearance"]["showBrain"] = false; }},
        {"suspended", false, [](auto& state, auto&) { state["isSuspended"] = true; }},
        {"reduced motion", false, [](auto&, auto& style) { style.areAnimationsEnabled = false; }},
        {"focus mode", false, [](auto& state, auto&) { state["displays"][0]["isFocusMode"] = true; }},
        {"covered by tiles", false,
         [&](auto& state, auto&) {
             for (auto& tile : state["tiles"]) {
                 tile["isEmpty"] = false;
                 tile["frame"] = frame(0, 0, 800, 500);
             }
         }},
        {"covered by a window in full screen", false,
         [&](auto& state, auto&) {
             state["displays"][0]["floatingFrames"] = nlohmann::json::array({frame(0, 0, 800, 500)});
         }},
        {"covered by floating windows together", false,
         [&](auto& state, auto&) {
             state["displays"][0]["floatingFrames"] = {frame(0, 0, 420, 500), frame(410, 0, 390, 500)};
         }},
        {"half covered by two windows, one above the other", true,
         [&](auto& state, auto&) {
             state["displays"][0]["floatingFrames"] = {frame(0, 0, 410, 500), frame(0, 0, 400, 500)};
         }},
    };
    for (const Case& each : cases) {
        auto state = sampleState({.windows = 0, .hasMessage = false});
        state["appearance"]["showBrain"] = true;
        DesktopStyle style = desktopStyleOf(ThemeVariant::dark);
        style.areAnimationsEnabled = true;
        each.change(state, style);
        PicturePlatform platform;
        RecordedActions actions;
        Overlay overlay(platform, actions);
        overlay.setDesktopStyle(style);
        overlay.show(contentsOf(state));
        EXPECT_EQ(overlay.isMoving(), each.isMoving) << each.what;
    }
}

TEST(Decoration, TheDesktopIsIdleAMinuteAfterTheLastChangeOfWindowsOrFocus) {
    using namespace std::chrono_literals;
    DesktopActivity activity;
    auto state = sampleState();
    const auto isIdleAfter = [&](DesktopActivity::Time now) {
        activity.update(contentsOf(state), now);
        return activity.isIdle(now);
    };
    EXPECT_FALSE(isIdleAfter(10s));
    EXPECT_FALSE(isIdleAfter(70s));
    state["tiles"][0]["applications"][1]["title"] = "make: 7 of 9";
    EXPECT_TRUE(isIdleAfter(71s)) << "a changed title does not count";
    state["tiles"][0]["applications"][0]["isFocused"] = false;
    EXPECT_FALSE(isIdleAfter(72s));
    EXPECT_TRUE(isIdleAfter(133s));
}

TEST(Decoration, DetectsThatTheMachineRunsOnBattery) {
    QTemporaryDir folder;
    const std::string path = folder.path().toStdString();
    const auto write = [&](const std::string& supply, const std::string& name, const std::string& text) {
        std::filesystem::create_directories(path + "/" + supply);
        std::ofstream(path + "/" + supply + "/" + name) << text << "\n";
    };
    EXPECT_FALSE(runsOnBattery(path)) << "there is no battery";
    write("AC", "type", "Mains");
    write("mouse", "type", "Battery");
    write("mouse", "scope", "Device");
    write("mouse", "status", "Discharging");
    EXPECT_FALSE(runsOnBattery(path));
    write("BAT0", "type", "Battery");
    write("BAT0", "status", "Charging");
    EXPECT_FALSE(runsOnBattery(path));
    write("BAT0", "status", "Discharging");
    EXPECT_TRUE(runsOnBattery(path));
}

TEST(Menu, ShowsTheAgentsEntriesAndReportsTheChosenEntry) {
    const auto items = decodeMenu(JsonCursor(nlohmann::json::parse(R"({"entries": [
        {"kind": "heading", "id": "", "title": "Display A", "entries": []},
        {"kind": "command", "id": "arrange", "title": "Cut & Paste", "shortcut": "Ctrl+Alt+A"},
        {"kind": "command", "id": "undo", "title": "Undo", "isEnabled": false, "shortcut": null},
        {"kind": "separator"},
        {"kind": "submenu", "title": "Layouts", "entries": [{"kind": "command", "id": "quad", "title": "Quad", "isChecked": true}]}]})"),
                                             ""));
    QMenu menu;
    std::vector<std::string> chosen;
    for (int times = 0; times < 2; ++times) fillMenu(menu, items, [&](const std::string& id) { chosen.push_back(id); });
    const auto actions = menu.actions();
    ASSERT_EQ(actions.size(), 5);
    EXPECT_EQ(actions[1]->text(), QStringLiteral("Cut && Paste\tCtrl+Alt+A"));
    EXPECT_FALSE(actions[0]->isEnabled());
    EXPECT_FALSE(actions[2]->isEnabled());
    EXPECT_TRUE(actions[3]->isSeparator());
    QAction* quad = actions[4]->menu()->actions().front();
    EXPECT_TRUE(quad->isChecked());
    actions[1]->trigger();
    quad->trigger();
    EXPECT_EQ(chosen, (std::vector<std::string>{"arrange", "quad"}));
}

} // namespace kova::ui::testing
