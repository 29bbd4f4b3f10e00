// Launching and ending applications over the agent's socket.
#include "control/LaunchCounts.h"
#include "persistence/PreferenceKeys.h"
#include "tests/control/MethodCalls.h"

namespace kova {

namespace {

using nlohmann::json;

class ApplicationMethods : public MethodCalls {
  protected:
    /// The parameters of the next notification, which must be “launched”.
    json launched() {
        const json notification = connection.message();
        EXPECT_EQ(notification["method"], "launched") << notification;
        EXPECT_EQ(schemaViolation(schema, "notification:launched", notification["params"]), "");
        return notification["params"];
    }
};

} // namespace

TEST_F(ApplicationMethods, TheResponseToALaunchComesAtOnceAndItsOutcomeLaterAsANotification) {
    desk.arrange();
    EXPECT_EQ(result("app.list")["applications"][0]["id"], "/Applications/Maps");
    const json response = result("launch", {{"application", "maps"}, {"tile", "second"}});
    EXPECT_EQ(response["tile"]["id"], desk.target("A", "secondary-1"));
    const json outcome = launched();
    EXPECT_EQ(outcome["error"], nullptr);
    EXPECT_EQ(outcome["process"], desk.desktop.processIdentifier("Maps"));
    EXPECT_EQ(outcome["tile"], response["tile"]["id"]);
    desk.settle();
    EXPECT_NE(desk.tiles().find("| Maps 1291,15 1254x1382"), std::string::npos) << desk.tiles();

    desk.desktop.install("Broken", {.fails = "Broken cannot be started: no such file", .startsAfter = Seconds(0)});
    result("launch", {{"application", "broken"}, {"tile", "1"}, {"display", "1"}});
    EXPECT_EQ(launched()["error"], "Broken cannot be started: no such file");
    EXPECT_EQ(refusal("launch", {{"application", "maps"}, {"tile", "basement"}}).substr(0, 46),
              "There is no tile “basement”. There is:\n  1");
    EXPECT_EQ(call("launch", {{"tile", "1"}})["error"]["code"], controlCode::invalidParameters);

    desk.desktop.setTrusted(false);
    desk.settle();
    EXPECT_EQ(call("launch", {{"application", "maps"}, {"tile", "1"}})["error"]["code"], controlCode::noPermission);
    EXPECT_EQ(call("app.quit", {{"window", "mail"}})["error"]["code"], controlCode::noPermission);
}

TEST_F(ApplicationMethods, LaunchesAreCountedAndTheLauncherPrefersAnEmptyTile) {
    desk.arrange();
    auto starting = client(); // gets the notifications “launched”, which `connection` must not get
    for (const char* tile : {"basement", "second", "second"})
        call(starting, "launch", {{"application", "maps"}, {"tile", tile}});
    EXPECT_EQ(result("app.list")["applications"][0]["launches"], 2);
    EXPECT_EQ(LaunchCounts(desk.preferences).of("/Applications/Maps"), 0) << "this store does not have the counts";
    EXPECT_EQ(LaunchCounts(disk).of("/Applications/Maps"), 2) << "the counts are stored";
    disk.setValue(preferenceKey::launchCounts, PreferenceData{R"({"a": -1})"});
    EXPECT_EQ(LaunchCounts(disk).of("a"), 0) << "a negative count is ignored";

    EXPECT_EQ(refusal("ui.launcher"),
              "The program that draws the overlay is not connected. Start it with “kova ui restart”");
    auto drawing = client();
    call(drawing, "subscribe", {{"topic", "overlay"}});
    const auto shown = [&](const char* method, json parameters = json::object()) {
        const json response = result(method, std::move(parameters));
        json notification;
        while (notification["method"] != "show") notification = drawing.message();
        EXPECT_EQ(schemaViolation(schema, "notification:show", notification["params"]), "");
        EXPECT_EQ(notification["params"]["tile"], response["tile"]);
        return notification["params"]["what"].get<std::string>() + " " + response["tile"].get<std::string>();
    };
    const std::string first = desk.target("A", "focus-main").text(), second = desk.target("A", "secondary-1").text();
    EXPECT_EQ(shown("ui.launcher", {{"tile", "1"}}), "launcher " + first);
    desk.settle();
    result("focus.window", {{"window", "notes"}});
    desk.settle();
    const bool isFirst = desk.tiles().starts_with("Notes");
    EXPECT_EQ(shown("ui.palette"), "palette " + (isFirst ? first : second)) << "the tile of the focused window";
    EXPECT_EQ(shown("ui.launcher"), "launcher " + (isFirst ? first : second)) << "no tile is empty";
    for (const char* window : {"terminal", "maps"}) result("float", {{"window", window}}); // Mail has no tile
    EXPECT_EQ(shown("ui.launcher"), "launcher " + (isFirst ? second : first)) << "the empty tile";
}

TEST_F(ApplicationMethods, AnApplicationIsEndedByNamingItsWindow) {
    EXPECT_EQ(result("app.quit", {{"window", "mail"}})["message"], "Quit requested for Mail");
    EXPECT_EQ(result("app.forceQuit", {{"window", "notes"}})["message"], "Force quit requested for Notes");
    desk.settle();
    EXPECT_FALSE(desk.desktop.isRunning("Mail"));
    EXPECT_FALSE(desk.desktop.isRunning("Notes"));
    desk.desktop.launch("Files", {.isPartOfDesktop = true});
    desk.opens("Files").settle();
    EXPECT_EQ(refusal("app.forceQuit", {{"window", "files"}}), "Files belongs to the desktop and stays open");
    desk.desktop.launch("Maps", {.isVerified = false});
    desk.opens("Maps").settle();
    const std::string reason = "Maps was not force quit: its process is not known";
    EXPECT_EQ(refusal("app.forceQuit", {{"window", "maps"}}), reason);
    const json maps = result("forceQuitAll")["applications"][0];
    EXPECT_EQ(refusal("forceQuitAll", {{"confirmed", {maps}}}), "No open applications were force quit\n" + reason);
}

TEST_F(ApplicationMethods, WhatWasLearnedAboutAnApplicationIsListedAndForgotten) {
    EXPECT_EQ(result("app.learned")["applications"], json::array());
    desk.arrange();
    result("layout.prefer", {{"tile", "focus-main"}, {"application", "Terminal"}});
    result("place", {{"window", "notes"}, {"tile", "1"}});
    desk.opens("Zoom", {.unannouncedMinimumSize = {{1500, 400}}}).settle();
    result("place", {{"window", "zoom"}, {"tile", "2"}});
    desk.settleFully();
    const auto learned = [&](const std::string& name) {
        const json list = result("app.learned");
        for (const json& each : list["applications"]) {
            if (each["name"] == name) return each;
        }
        return json();
    };
    EXPECT_EQ(learned("Terminal")["preferredSlots"], json::array({"focus-main"}));
    EXPECT_EQ(learned("Terminal")["preferredTiles"], json::array({"Primary"}));
    const json notes = learned("Notes");
    EXPECT_EQ(notes["role"], "productivity");
    const json& places = notes["places"];
    const auto chosen =
        std::find_if(places.begin(), places.end(), [](const json& place) { return place["isByUser"] == true; });
    ASSERT_NE(chosen, places.end()) << notes;
    EXPECT_EQ((*chosen)["slot"], "focus-main");
    EXPECT_EQ((*chosen)["layout"]["id"], "jarvis.dual-split");
    EXPECT_EQ(learned("Zoom")["minimumSize"]["width"], 1500) << learned("Zoom");

    result("app.forget", {{"application", notes["key"]}});
    EXPECT_TRUE(learned("Notes").is_null());
    EXPECT_EQ(result("app.forget", {{"application", "mail"}})["message"], "Forgot the minimum sizes and tiles of Mail");
    result("app.forget", {{"application", "terminal"}});
    EXPECT_TRUE(learned("Terminal").is_null()) << "its preferred tile is forgotten, too";
    EXPECT_EQ(refusal("app.forget", {{"application", "nothing"}}), "Nothing was learned of an application “nothing”");
}

TEST_F(ApplicationMethods, AConfirmationIsCanceledWhenTheProgramThatShowsItDisconnects) {
    result("menu.choose", {{"id", "force-quit-all"}});
    desk.settle();
    EXPECT_TRUE(desk.desktop.isRunning("Mail")) << "no client asks the user, so nothing is confirmed";
    EXPECT_EQ(refusal("menu.choose", {{"id", "export"}}), "The menu has no such entry, or it is not enabled now");

    std::optional<SocketClient> drawing(client());
    call(*drawing, "subscribe", {{"topic", "overlay"}});
    const auto question = [&] {
        result("menu.choose", {{"id", "force-quit-all"}});
        json notification;
        while (notification["method"] != "show") notification = drawing->message();
        EXPECT_EQ(schemaViolation(schema, "notification:show", notification["params"]), "");
        EXPECT_EQ(notification["params"]["what"], "alert");
        return notification["params"];
    };
    const json first = question();
    EXPECT_EQ(first["applications"][0]["name"], "Mail");
    EXPECT_EQ(first["text"],
              "This immediately closes 3 applications. Unsaved changes will be lost. KOVA and Finder will "
              "stay open.");
    const json second = question();
    EXPECT_EQ(result("ui.answer", {{"id", first["id"]}, {"isConfirmed", true}})["wasOpen"], false)
        << "the second question has replaced the first one";
    drawing.reset();
    const auto isOpen = [&] { return dialogs.isQuestionOpen(); };
    EXPECT_TRUE(isOpen());
    EXPECT_TRUE(waitUntil([&] { runAgentOnce(); }, [&] { return !isOpen(); }))
        << "without delay: no simulated time has passed";
    EXPECT_EQ(result("ui.answer", {{"id", second["id"]}, {"isConfirmed", true}})["wasOpen"], false);
    desk.settle();
    EXPECT_TRUE(desk.desktop.isRunning("Mail"));
}

TEST_F(ApplicationMethods, AnAlertBecomesTheStatusMessageWhenNoProgramDrawsTheOverlay) {
    result("forceQuitAll", {{"confirmed", result("forceQuitAll")["applications"]}});
    desk.settle();
    result("menu.choose", {{"id", "force-quit-all"}});
    EXPECT_EQ(desk.state().lastActionMessage->value_or(""),
              "There are no regular applications to close. KOVA and Finder are always kept open.");
}

TEST_F(ApplicationMethods, OnlyConfirmedApplicationsAreForceQuit) {
    const json plan = result("forceQuitAll");
    EXPECT_EQ(plan["isDone"], false);
    EXPECT_EQ(plan["question"]["title"], "Force Quit All Open Applications?");
    ASSERT_EQ(plan["applications"].size(), 3u);
    desk.settle();
    EXPECT_TRUE(desk.desktop.isRunning("Mail")) << "the request without a confirmation ends nothing";

    json otherProcess = plan["applications"][1];
    otherProcess["bundleIdentifier"] = "another.one";
    const json confirmed = {plan["applications"][0], otherProcess};
    EXPECT_EQ(result("forceQuitAll", {{"confirmed", confirmed}})["applications"],
              json::array({plan["applications"][0]}));
    desk.settle();
    EXPECT_FALSE(desk.desktop.isRunning("Mail"));
    EXPECT_TRUE(desk.desktop.isRunning("Notes"));
    EXPECT_EQ(refusal("forceQuitAll", {{"confirmed", confirmed}}), "No open applications were force quit");
    for (const json& nonsense : {json("all"), json(true), json{1, 2}, json::array({json{{"name", "Notes"}}})}) {
        EXPECT_EQ(call("forceQuitAll", {{"confirmed", nonsense}})["error"]["code"], controlCode::invalidParameters);
    }
    EXPECT_TRUE(desk.desktop.isRunning("Notes"));
}

} // namespace kova
