// Notifications to subscribers, and the methods for a client that draws the overlay.
#include "tests/control/MethodCalls.h"

namespace kova {

namespace {

using nlohmann::json;

class Subscriptions : public MethodCalls {};

/// Applies a change from a notification to a section of the overlay's contents.
void applyChange(json& section, const json& change) {
    if (!section.is_array()) {
        section = change;
        return;
    }
    std::map<std::string, json> elements;
    json order = json::array();
    for (const json& element : section) {
        elements[element["id"]] = element;
        order.push_back(element["id"]);
    }
    for (const json& element : change.value("changed", json::array())) elements[element["id"]].update(element);
    section = json::array();
    for (const json& id : change.value("order", order)) section.push_back(elements.at(id));
}

} // namespace

TEST_F(Subscriptions, SubscribersGetNumberedChangesThatAddUpToTheState) {
    constexpr std::string_view kSubscribe = R"({"jsonrpc":"2.0","id":1,"method":"subscribe"})";
    auto listener = client();
    const json start = listener.request(kSubscribe)["result"];
    std::uint64_t last = start["sequence"];
    json state = start["state"];
    const auto nextChanges = [&] {
        const json message = listener.message();
        EXPECT_EQ(schemaViolation(schema, "notification:changed", message["params"]), "");
        EXPECT_EQ(message["params"]["sequence"], last + 1);
        last = message["params"]["sequence"];
        state.update(message["params"]["changes"]);
        return message["params"]["changes"];
    };
    desk.arrange();
    desk.desktop.addDisplay({.name = "Beamer"});
    desk.settle();
    desk.opens("Film").settle();
    desk.undo().advance(Seconds(5));
    const json truth = client().request(kSubscribe)["result"];
    EXPECT_EQ(schemaViolation(schema, "result:subscribe", truth), "");
    while (last < truth["sequence"]) EXPECT_FALSE(nextChanges().empty());
    EXPECT_EQ(state, truth["state"]);
    EXPECT_GT(last, 3u);

    // First only the title of a window changes. Then a window enters and leaves focus mode.
    desk.desktop.setTitle("Terminal", "make");
    desk.settle();
    EXPECT_EQ(nextChanges()["windows"][2]["title"], "make");
    result("zoom");
    EXPECT_TRUE(nextChanges()["focusMode"].is_object());
    result("zoom");
    EXPECT_TRUE(nextChanges()["focusMode"].is_null());

    // Subscribers are notified of a new focus even if nothing else changes.
    desk.desktop.userFocuses("Notes");
    desk.settle();
    const json focus = nextChanges()["focus"];
    EXPECT_EQ(focus["window"]["application"], "Notes");
    json now = result("query.focus");
    EXPECT_EQ(now["last"], focus["window"]);
    now.erase("last");
    EXPECT_EQ(focus, now);

    // Changes of one action arrive in one notification.
    result("layout.setInset", {{"points", 30}});
    const json changes = nextChanges();
    EXPECT_EQ(changes["settings"]["tileInset"], 30);
    EXPECT_EQ(changes["tiles"][0]["frame"]["x"], 40) << changes;
    EXPECT_FALSE(changes.contains("displays")) << "an unchanged section is not sent again";
}

TEST_F(Subscriptions, OverlaySubscribersGetTheChangesOfAnActionTogether) {
    const json topic = {{"topic", "overlay"}};
    EXPECT_EQ(error("subscribe", {{"topic", "windows"}})["code"], controlCode::invalidParameters);
    auto drawing = client();
    auto plain = client();
    call(plain, "subscribe");
    const json start = call(drawing, "subscribe", topic)["result"];
    EXPECT_EQ(schemaViolation(schema, "result:subscribe", start), "");
    json state = start["state"];
    std::uint64_t last = start["sequence"];
    const auto nextChanges = [&] {
        const json params = drawing.message()["params"];
        EXPECT_EQ(schemaViolation(schema, "notification:changed", params), "");
        EXPECT_EQ(params.value("topic", ""), "overlay");
        EXPECT_EQ(params["sequence"], ++last);
        for (const auto& [section, change] : params["changes"].items()) applyChange(state[section], change);
        return params["changes"];
    };
    result("arrange");
    json changes = nextChanges();
    EXPECT_TRUE(changes.contains("tiles") && changes.contains("message"))
        << "the changes arrive in one notification: " << changes;
    EXPECT_FALSE(changes.contains("displays")) << changes;
    desk.settle();
    result("focus", {{"direction", "right"}});
    desk.settle();
    do changes = nextChanges();
    while (changes.is_object() && !changes.contains("tiles"));
    EXPECT_FALSE(changes["tiles"].contains("order")) << changes;
    EXPECT_EQ(changes["tiles"]["changed"].size(), 2u) << "the tile that lost the focus and the one that got it";
    for (const json& tile : changes["tiles"]["changed"]) EXPECT_FALSE(tile.contains("frame")) << tile;
    desk.settle();
    desk.zoom().zoom();
    result("theme.select", {{"theme", "neon"}});
    desk.desktop.addDisplay({.name = "Beamer"});
    desk.settle();
    json truth = call("subscribe", topic)["result"];
    while (last < truth["sequence"]) EXPECT_FALSE(nextChanges().empty());
    EXPECT_EQ(state, truth["state"]);
    EXPECT_FALSE(plain.message()["params"].contains("topic"));
}

TEST_F(Subscriptions, TheSettingsTopicReportsEveryChangeOfASetting) {
    const json topic = {{"topic", "settings"}};
    auto window = client();
    const json start = call(window, "subscribe", topic)["result"];
    EXPECT_EQ(schemaViolation(schema, "result:subscribe", start), "");
    struct Case {
        const char* method;
        json parameters;
        std::set<std::string> sections;
    };
    const std::vector<Case> cases{
        {"layout.setInset", {{"points", 9}}, {"settings"}},
        {"layout.select", {{"layout", "quad-grid"}}, {"displays", "layouts"}},
        {"login.on", json::object(), {"login"}},
        {"dock.on", json::object(), {"dock"}},
        {"ui.off", json::object(), {"userInterface"}},
        {"shortcut.clear", {{"action", "focusLeft"}}, {"shortcuts"}},
        {"theme.select", {{"theme", "neon"}}, {"settings", "themes"}},
        {"accent.select", {{"accentColor", "reactor-amber"}}, {"settings", "themes", "accentColors"}},
        {"rule.add", {{"application", "mail"}, {"disposition", "float"}}, {"rules"}},
        {"scene.capture", {{"name", "Work"}}, {"scenes"}},
    };
    json state = start["state"];
    std::uint64_t last = start["sequence"];
    for (const Case& each : cases) {
        SCOPED_TRACE(each.method);
        result(each.method, each.parameters);
        const json notification = window.message()["params"];
        EXPECT_EQ(schemaViolation(schema, "notification:changed", notification), "");
        EXPECT_EQ(notification["sequence"], ++last);
        std::set<std::string> sections;
        for (const auto& [name, value] : notification["changes"].items()) sections.insert(name);
        EXPECT_EQ(sections, each.sections);
        state.update(notification["changes"]);
    }
    EXPECT_EQ(state, call("subscribe", topic)["result"]["state"]);
    EXPECT_EQ(state["login"]["isOn"], true);
}

TEST_F(Subscriptions, TheSettingsWindowIsOpenUntilItIsClosedOrTheUserInterfaceIsSwitchedOff) {
    EXPECT_EQ(error("settings.show")["code"], controlCode::refused) << "no client can show the settings";
    auto drawing = client();
    const auto shown = [&] {
        auto other = client();
        return call(other, "subscribe", {{"topic", "overlay"}})["result"]["state"]["windows"]["settings"];
    };
    call(drawing, "subscribe", {{"topic", "overlay"}});
    EXPECT_EQ(shown(), json());
    EXPECT_EQ(error("settings.show", {{"pane", "colors"}})["code"], controlCode::invalidParameters);
    result("settings.show", {{"pane", "shortcuts"}});
    EXPECT_EQ(shown(), (json{{"pane", "shortcuts"}, {"request", 1}}));
    result("ui.show", {{"what", "settings"}});
    EXPECT_EQ(shown(), (json{{"pane", nullptr}, {"request", 2}})) << "each request has a new number";
    result("ui.hide", {{"what", "settings"}});
    EXPECT_EQ(shown(), json());
    result("settings.show");
    result("ui.off");
    EXPECT_EQ(shown(), json()) << "the window does not open again when kova-ui is restarted";
}

TEST_F(Subscriptions, WhatTheOverlayAndTheMenuOfferIsAvailableAsMethods) {
    desk.arrange().expectTiles("Terminal 15,15 1254x1382 | Notes 1291,15 1254x1382");
    const std::string left = desk.target("A", "focus-main").text(), right = desk.target("A", "secondary-1").text();
    result("place", {{"window", desk.desktop.windowIDOf("Notes")}, {"tile", left}});
    desk.settle().expectTiles("Notes 15,15 1254x1382 + Terminal | -");
    // A click on a window's entry in the footer calls this method.
    const json terminal = {{"window", desk.desktop.windowIDOf("Terminal")}};
    const json planned = result("focus.window", {{"window", terminal["window"]}, {"dryRun", true}});
    EXPECT_EQ(result("focus.window", terminal)["steps"], planned["steps"]);
    desk.settle().expectTiles("Terminal 15,15 1254x1382 + Notes | -");
    desk.expectFocus("Terminal");
    EXPECT_EQ(result("history")["entries"][0]["action"], "bring to front");
    desk.desktop.userFocuses("Notes");
    result("stack", {{"step", "next"}, {"tile", left}});
    desk.settle().expectTiles("Notes 15,15 1254x1382 + Terminal | -");
    EXPECT_EQ(result("launch", {{"application", "maps"}, {"tile", right}})["tile"]["id"], right);
    EXPECT_EQ(connection.message()["method"], "launched");
    EXPECT_EQ(result("query.state")["state"]["pendingLaunches"][0]["tile"], right);
    desk.settle();
    EXPECT_EQ(result("query.state")["state"]["pendingLaunches"], json::array());

    json undo;
    const json entries = result("menu")["entries"];
    for (const json& entry : entries) {
        if (entry["id"] == "undo") undo = entry;
    }
    EXPECT_EQ(undo["title"], "Undo Window Action");
    EXPECT_TRUE(undo["isEnabled"].get<bool>() && undo["shortcut"].is_string()) << undo;
    result("menu.choose", {{"id", "undo"}});
    desk.settle();
    EXPECT_EQ(error("menu.choose", {{"id", "layout-reset"}})["code"], controlCode::refused) << "no divider was moved";

    EXPECT_EQ(error("ui.show", {{"what", "menu"}})["code"], controlCode::refused) << "no client can show the menu";
    EXPECT_FALSE(result("theme.list")["isDrawn"].get<bool>());
    {
        auto drawing = client();
        call(drawing, "subscribe", {{"topic", "overlay"}});
        EXPECT_TRUE(result("theme.list")["isDrawn"].get<bool>());
        const json refusal = call(drawing, "zoom", {{"window", "no such window"}})["error"];
        EXPECT_EQ(desk.state().lastActionMessage->value_or(""), refusal["message"].get<std::string>());
        result("ui.show", {{"what", "menu"}});
        json shown = drawing.message();
        while (shown.value("method", "") == "changed") shown = drawing.message();
        EXPECT_EQ(schemaViolation(schema, "notification:show", shown["params"]), "");
    }
    result("ui.report", {{"problem", "It does not fit"}});
    EXPECT_EQ(result("ui.status")["problem"], "It does not fit");
    EXPECT_EQ(error("ui.report", {{"problem", std::string(1001, 'x')}})["message"],
              "problem: expected a text of at most 1000 bytes");
    result("ui.off");
    EXPECT_EQ(error("ui.restart")["message"], "kova-ui is switched off. Switch it on with “kova ui on”");
}

} // namespace kova
