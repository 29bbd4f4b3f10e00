// The agent's methods over its socket: their effects and results.
#include "tests/control/MethodCalls.h"

#include <fstream>
#include <set>
#include <string>

namespace kova {

namespace {

using nlohmann::json;

class AgentMethods : public MethodCalls {};

} // namespace

TEST_F(AgentMethods, EveryMethodHasExamplesThatWorkAndAResultThatFitsTheSchema) {
    std::ifstream file(KOVA_DOCS "/control-schema.json");
    const auto listed = nlohmann::ordered_json::parse(file).at("methods"); // the examples work in this order
    auto observer = client();
    const auto observed = [&] {
        json seen = call(observer, "query.state")["result"]["state"];
        // These sections also change without a request.
        for (const char* section : {"windows", "tiles", "message", "notice", "focus", "pendingLaunches"})
            seen.erase(section);
        for (const char* list : {"scene.list", "rule.list", "shortcut.list"}) seen[list] = call(observer, list);
        return seen;
    };
    std::set<std::string> described;
    for (const auto& [method, entry] : listed.items()) {
        SCOPED_TRACE(method);
        described.insert(method);
        const bool isReadOnly = entry.value("isReadOnly", false);
        EXPECT_FALSE(entry.at("examples").empty());
        for (const json example : entry.at("examples")) {
            reopen();
            const json before = isReadOnly ? observed() : json();
            json reply = call(method, example);
            while (reply.contains("method")) reply = connection.message(); // notifications
            ASSERT_TRUE(reply.contains("result")) << example << reply;
            EXPECT_EQ(schemaViolation(schema, "result:" + method, reply["result"]), "") << example;
            if (isReadOnly) {
                EXPECT_EQ(observed(), before) << example;
            }
        }
    }
    const json known = error("no such method")["data"]["methods"];
    EXPECT_EQ(described, std::set<std::string>(known.begin(), known.end()));
    EXPECT_TRUE(hasQuit);
}

TEST_F(AgentMethods, TheRequestsInTheDocumentationWork) {
    const auto requests = documentedLines(KOVA_DOCS "/control.md", "jsonrpc", "→ ");
    EXPECT_FALSE(requests.empty());
    for (const std::string& request : requests) {
        reopen();
        json reply = connection.request(request);
        while (reply.contains("method")) reply = connection.message(); // notifications
        EXPECT_TRUE(reply.contains("result")) << request << reply;
    }
}

TEST_F(AgentMethods, WaitForAPollSoThatNewWindowsAreKnown) {
    desk.opens("Codex");
    EXPECT_TRUE(result("place", {{"window", "Codex"}, {"tile", "1"}, {"dryRun", true}}).contains("message"));
    desk.opens("Firefox");
    const json plan = result("arrange", {{"dryRun", true}});
    EXPECT_EQ(plan["placements"].size() + plan["surplus"].size(), 5u) << plan;
}

TEST_F(AgentMethods, ArrangeAndItsDryRunAreRefusedWhenThereIsNoWindow) {
    for (const char* label : {"Mail", "Notes", "Terminal"}) desk.desktop.close(label);
    desk.settle();
    for (const bool isDryRun : {true, false}) {
        EXPECT_EQ(error("arrange", {{"dryRun", isDryRun}})["message"], "There is no window to arrange");
    }
}

TEST_F(AgentMethods, ArrangeCarriesOutThePlanThatItsDryRunReturns) {
    const json planned = result("arrange", {{"dryRun", true}});
    EXPECT_EQ(desk.tiles(), "- | -");
    const json carriedOut = result("arrange");
    EXPECT_EQ(carriedOut["placements"], planned["placements"]);
    EXPECT_EQ(carriedOut["surplus"], planned["surplus"]);
    EXPECT_EQ(carriedOut["message"], "Windows arranged into zones — Undo is available");
    ASSERT_EQ(carriedOut["surplus"].size(), 1u);
    desk.settle();

    // The queries of windows and of tiles agree with each other.
    const json windows = result("query.windows")["windows"];
    int tiled = 0;
    const json tiles = result("query.tiles")["tiles"];
    for (const json& tile : tiles) {
        for (const json& window : windows) {
            if (window["id"] != tile["window"]) continue;
            EXPECT_EQ(window["frame"], tile["frame"]);
            EXPECT_EQ(window["tile"], tile["id"]);
            ++tiled;
        }
    }
    EXPECT_EQ(tiled, 2);
    EXPECT_EQ(result("status")["windowsInTiles"], 2);
}

TEST_F(AgentMethods, ResponsesToChangesOfStoredDataAreSentWhenTheDataIsOnDisk) {
    const std::pair<const char*, json> changes[] = {{"scene.capture", {{"name", "Work"}}},
                                                    {"scene.rename", {{"scene", "Work"}, {"newName", "Desk"}}},
                                                    {"scene.open", {{"scene", "Study"}}},
                                                    {"rule.add", {{"application", "mail"}, {"disposition", "float"}}},
                                                    {"rule.disable", {{"rule", "1"}}},
                                                    {"rules.on", json::object()},
                                                    {"shortcut.clear", {{"action", "undo"}}},
                                                    {"accent.select", {{"accentColor", "emerald"}}},
                                                    {"theme.brain", {{"isOn", true}}},
                                                    {"arrangeAfterLaunch", {{"isOn", true}}},
                                                    {"bringForward", {{"isOn", false}}},
                                                    {"layout.setInset", {{"points", 7}}},
                                                    {"layout.prefer", {{"tile", "2"}, {"application", "Mail"}}},
                                                    {"app.forget", {{"application", "Mail"}}},
                                                    {"menu.choose", {{"id", "scene-save"}}},
                                                    {"login.on", json::object()}};
    auto other = client();
    for (const auto& [method, parameters] : changes) {
        disk.isHeld = true;
        connection.send(json{{"jsonrpc", "2.0"}, {"id", 1}, {"method", method}, {"params", parameters}}.dump() + "\n");
        for (const char* atOnce : {"scene.list", "shortcut.list", "arrange"}) {
            EXPECT_TRUE(call(other, atOnce).contains("result")) << atOnce << " does not wait for the disk";
        }
        ASSERT_EQ(disk.waiting.size(), 1U) << method << " waits for the disk";
        std::exchange(disk.waiting, {}).front()(std::nullopt);
        json reply = connection.message();
        ASSERT_TRUE(reply.contains("result")) << method << reply;
        EXPECT_FALSE(reply["result"].contains("unsaved"));
        disk.isHeld = false;
        disk.problem = "cannot write preferences.json: No space left on device";
        // The scene cannot be renamed in the same way twice.
        const bool renames = std::string(method) == "scene.rename";
        const json secondParameters = renames ? json{{"scene", "Desk"}, {"newName", "Study"}} : parameters;
        EXPECT_EQ(result(method, secondParameters)["unsaved"], *disk.problem);
        EXPECT_EQ(result("status")["preferenceProblems"], json::array({*disk.problem}));
        disk.problem.reset();
    }
    EXPECT_TRUE(result("status")["preferenceProblems"].empty());
}

TEST_F(AgentMethods, LayoutsAreFoundByIdNameOrPart) {
    desk.display(1920, 1080, "Beamer");
    const auto selected = [&](json parameters) {
        return result("layout.select", std::move(parameters))["layout"]["id"];
    };
    EXPECT_EQ(selected({{"layout", "jarvis.quad-grid"}}), "jarvis.quad-grid");
    EXPECT_EQ(selected({{"layout", "Six-Grid"}}), "jarvis.six-grid") << "preferred to jarvis.six-grid-portrait";
    EXPECT_EQ(selected({{"layout", "dual split (2)"}}), "jarvis.dual-split");
    EXPECT_EQ(selected({{"layout", "ULTRA"}, {"display", "2"}}), "jarvis.super-ultrawide-5120x1440");
    EXPECT_EQ(selected({{"layout", "automatic"}, {"display", "beam"}}), "jarvis.compact-16-by-9");
    EXPECT_EQ(result("query.displays")["displays"][1]["selection"], "automatic");
    EXPECT_EQ(result("layout.show", {{"display", "1"}})["tiles"].size(), 2u);
    EXPECT_EQ(result("layout.next")["layout"]["id"], "jarvis.dual-stack");
    EXPECT_EQ(result("layout.previous")["layout"]["id"], "jarvis.dual-split");
    const std::string beamer = result("query.displays")["displays"][1]["id"];
    EXPECT_EQ(result("layout.next", {{"display", "beam"}})["display"], beamer);
    desk.desktop.userMoves("Notes", makeRect(2700, 100, 500, 400));
    desk.settle();
    EXPECT_EQ(result("layout.previous", {{"window", "Notes"}})["display"], beamer);
    EXPECT_EQ(result("query.displays")["displays"][1]["layout"]["id"], "jarvis.compact-16-by-9");

    const json shown = result("layout.show", {{"layout", "six grid (3"}, {"display", "Beamer"}});
    EXPECT_FALSE(shown["isInForce"].get<bool>());
    EXPECT_EQ(shown["tiles"].size(), 6u);
    result("layout.setInset", {{"points", 20}});
    EXPECT_EQ(result("query.state")["state"]["settings"]["tileInset"], 20);

    desk.desktop.renameDisplay("Beamer", "Wall 4");
    desk.settle();
    EXPECT_EQ(selected({{"layout", "quad-grid"}, {"display", "wall 4"}}), "jarvis.quad-grid");
    EXPECT_EQ(error("layout.select", {{"layout", "quad-grid"}, {"display", "4"}})["code"], controlCode::refused)
        << "there is no fourth display";
}

TEST_F(AgentMethods, RefusesUnknownNamesAndListsTheKnownOnes) {
    struct Case {
        std::string method;
        json parameters;
        int code;
        std::string says;
        std::size_t choices;
    };
    const std::vector<Case> cases = {
        {"layout.select", {{"layout", "hexagons"}}, controlCode::refused, "jarvis.quad-grid", 12},
        {"layout.select", {{"layout", "quad"}}, controlCode::refused, "more than one layout", 2},
        {"layout.select", {{"layout", "quad-grid"}, {"display", "7"}}, controlCode::refused, "1  A", 1},
        {"layout.show", {{"layout", std::string("a\0b", 3)}}, controlCode::refused, "There is no layout", 12},
        {"layout.resetSizes", {{"display", "nowhere"}}, controlCode::refused, "There is no display “nowhere”", 1},
        {"explain", {{"window", "Solitaire"}}, controlCode::refused, "Notes", 3},
        {"explain", {{"window", std::string(100'000, 'x')}}, controlCode::refused, "…”", 3},
        {"divider.drag", {{"split", "trunk"}, {"boundary", 0}, {"points", 5}}, controlCode::refused, "trunk 0”", 1},
        {"divider.drag", {{"split", "root"}, {"boundary", -1}, {"points", 5}}, controlCode::refused, "\n  root 0", 1},
        {"divider.drag", {{"split", "root"}, {"boundary", 0}, {"points", 1e6}}, controlCode::invalidParameters, "", 0},
        {"divider.drag", {{"split", "root"}, {"points", 5}}, controlCode::invalidParameters, "boundary: is missing", 0},
        {"focus", {{"direction", "sideways"}}, controlCode::invalidParameters, "expected left, right, up or down", 0},
        {"move", json::object(), controlCode::invalidParameters, "direction: is missing", 0},
        {"layout.select", json::object(), controlCode::invalidParameters, "layout: is missing", 0},
        {"layout.select", {{"layout", 5}}, controlCode::invalidParameters, "layout: expected a string", 0},
        {"layout.setInset", {{"points", -1}}, controlCode::invalidParameters, "points: expected", 0},
        {"layout.setInset", {{"points", 100.5}}, controlCode::invalidParameters, "points: expected", 0},
        {"layout.setInset", {{"points", "8"}}, controlCode::invalidParameters, "points: expected a number", 0},
        {"arrange", {{"dryrun", true}}, controlCode::invalidParameters, "dryrun: there is no such parameter", 0},
        {"arrange", {{"dryRun", 1}}, controlCode::invalidParameters, "dryRun: expected true or false", 0},
        {"arrange", json::array({true}), controlCode::invalidParameters, "expected an object", 0},
    };
    for (const Case& c : cases) {
        const json found = error(c.method, c.parameters);
        SCOPED_TRACE(c.method + " " + c.parameters.dump().substr(0, 100));
        EXPECT_EQ(found["code"], c.code);
        EXPECT_NE(found["message"].get<std::string>().find(c.says), std::string::npos) << found["message"];
        EXPECT_EQ(found.contains("data") ? found["data"]["choices"].size() : 0, c.choices);
        EXPECT_LE(found["message"].get<std::string>().size(), 2000u);
    }
    EXPECT_EQ(desk.tiles(), "- | -") << "a refused request moves no window";
}

TEST_F(AgentMethods, QueryWindowAtReturnsTheWindowAtAPoint) {
    desk.arrange();
    const json windows = result("query.windows")["windows"];
    int found = 0;
    for (const json& window : windows) {
        if (window["isFront"] != true) continue;
        const json& frame = window["frame"];
        const json there =
            result("query.windowAt", {{"x", frame["x"].get<double>() + 40}, {"y", frame["y"].get<double>() + 40}});
        EXPECT_EQ(there["window"]["id"], window["id"]);
        ++found;
    }
    EXPECT_EQ(found, 2);
    EXPECT_TRUE(result("query.windowAt", {{"x", 1}, {"y", 1}})["window"].is_null());
}

TEST_F(AgentMethods, ReportTheMissingPermissionAndRefuseToAskWhereTheSystemHasNoDialog) {
    EXPECT_EQ(result("permission.ask")["permission"], "granted");
    desk.desktop.setTrusted(false);
    desk.settle();
    const json status = result("permission.status");
    EXPECT_EQ(status["problem"], "Accessibility permission is required");
    EXPECT_EQ(status["canAsk"], false);
    EXPECT_EQ(refusal("permission.ask"), "Accessibility permission is required");
}

TEST_F(AgentMethods, ExplainsEachWindow) {
    EXPECT_TRUE(result("explain")["lines"].empty());
    const auto explained = [&](const char* window) {
        std::string all;
        const json lines = result("explain", {{"window", window}})["lines"];
        for (const json& line : lines) all += line.get<std::string>() + "\n";
        return all;
    };
    EXPECT_NE(explained("Mail").find("Mail “Inbox” is in no tile.\nArranging now would decide: Mail “Inbox” → "),
              std::string::npos);
    desk.arrange();
    const auto explanation = [&] {
        std::string all;
        const json told = result("explain");
        for (const json& line : told["lines"]) all += line.get<std::string>() + "\n";
        return all;
    };
    EXPECT_EQ(result("explain")["lines"].size(), 3u);
    EXPECT_EQ(explanation().find("no longer"), std::string::npos);
    const json primary = result("query.tiles")["tiles"][0];
    EXPECT_NE(explained(primary["window"].get<std::string>().c_str())
                  .find("is in Primary on A.\nThe last arrangement decided: "),
              std::string::npos);
    desk.opens("Film").settle();
    desk.desktop.setFullScreen("Film", true);
    desk.settle();
    EXPECT_NE(explained("film").find("full screen"), std::string::npos);

    // If a decision of the arrangement no longer holds, the explanation says where the window is now.
    const std::string front = desk.desktop.labelOfID(WindowID(primary["window"].get<std::string>()));
    desk.desktop.close(front);
    result("rule.add", {{"application", "Film"}, {"disposition", "float"}});
    result("layout.prefer", {{"tile", "2"}, {"application", "Film"}});
    EXPECT_EQ(explanation().find("is left alone"), std::string::npos) << "rules are off";
    EXPECT_NE(explanation().find("Rules are off; “kova rules on” lets them act.\n"), std::string::npos);
    result("rules.on");
    desk.settle();
    EXPECT_NE(explanation().find(" (no longer: it is closed)\n"), std::string::npos) << explanation();
    EXPECT_NE(explanation().find("The tile Secondary 1 is offered to Film first.\n"), std::string::npos);
    EXPECT_NE(explanation().find("Film “Film” is left alone: the rule “Film floats” says float.\n"), std::string::npos);
    EXPECT_NE(explained("film").find("Rule “Film floats” decides: float"), std::string::npos);
    result("layout.prefer", {{"tile", "secondary-1"}});
    EXPECT_EQ(explanation().find("is offered to"), std::string::npos);
    desk.opens("Tip", {.frame = makeRect(10, 10, 100, 50)}).settle();
    EXPECT_EQ(explained("tip"), "Tip “Tip” is not managed: it is smaller than 120 × 80 points.\n");
    desk.desktop.close("Tip");
    desk.settle();
    EXPECT_NE(error("explain", {{"window", "tip"}})["message"], "");
}

TEST_F(AgentMethods, ExplanationsDescribeThePresentState) {
    const auto explanation = [&] {
        std::string all;
        const json told = result("explain");
        for (const json& line : told["lines"]) all += line.get<std::string>() + "\n";
        return all;
    };
    const auto says = [](const std::string& text, const char* part) { return text.find(part) != std::string::npos; };
    desk.arrange(); // one of the three windows is minimized
    const WindowID front(result("query.tiles")["tiles"][1]["window"].get<std::string>());
    desk.desktop.close(desk.desktop.labelOfID(front));
    desk.settle();
    EXPECT_TRUE(says(result("arrange", {{"dryRun", true}}).dump(), "; it has to be brought back first"));
    EXPECT_TRUE(says(result("arrange").dump(), "; it has to be brought back first"));
    desk.settle();
    EXPECT_FALSE(says(explanation(), "brought back")) << explanation();
    EXPECT_FALSE(says(explanation(), "no longer")) << explanation();
    const json left = result("query.tiles")["tiles"][0]["window"], right = result("query.tiles")["tiles"][1]["window"];
    const std::string minimized = desk.desktop.labelOfID(WindowID(right.get<std::string>()));
    desk.desktop.userMinimizes(minimized);
    desk.settle();
    EXPECT_TRUE(says(explanation(), " (no longer: it is minimized)\n")) << explanation();
    desk.desktop.userMinimizes(minimized, false);

    // The tile of a stacked window gets another front window.
    desk.opens("Film").settle();
    result("place", {{"window", "Film"}, {"tile", "2"}});
    result("arrange");
    desk.settle();
    EXPECT_TRUE(says(explanation(), " → behind Film “Film” in Secondary on A: it was stacked there\n"))
        << explanation();
    result("place", {{"window", left}, {"tile", "2"}});
    EXPECT_FALSE(says(explanation(), "it was stacked there\n")) << explanation();
    EXPECT_TRUE(says(explanation(), "it was stacked there (no longer: it is behind ")) << explanation();
    desk.settle();
    EXPECT_FALSE(says(result("explain", {{"window", "Film"}}).dump(), "left alone"))
        << "KOVA itself hides a stacked window";
}

TEST_F(AgentMethods, ArrangeAfterLaunchIsSwitchedOnAndOff) {
    EXPECT_EQ(result("arrangeAfterLaunch", {{"isOn", true}})["isOn"], true);
    desk.settle();
    EXPECT_EQ(desk.tiles(), "- | -") << "the setting applies from the next start on";
    EXPECT_EQ(result("query.state")["state"]["settings"]["autoArrangeOnLaunch"], true);
    EXPECT_EQ(result("arrangeAfterLaunch", {{"isOn", false}})["isOn"], false);
    EXPECT_EQ(result("query.state")["state"]["settings"]["autoArrangeOnLaunch"], false);
}

TEST_F(AgentMethods, EachActionIsCarriedOutOrRefusedWithAReason) {
    const auto said = [&](const char* method, json parameters = json::object()) {
        const json message = result(method, std::move(parameters))["message"];
        return message.is_string() ? message.get<std::string>() : "";
    };
    const auto refused = [&](const char* method, json parameters = json::object()) {
        const json found = error(method, std::move(parameters));
        EXPECT_EQ(found["code"], controlCode::refused);
        return found["message"].get<std::string>();
    };
    EXPECT_EQ(refused("move", {{"direction", "left"}}),
              "Terminal is in no tile. Put it into one with “kova tile” or “kova place”");
    desk.arrange().expectTiles("Terminal 15,15 1254x1382 | Notes 1291,15 1254x1382");
    // The reason is not the message of the earlier arrangement.
    EXPECT_EQ(refused("stack"), "No other window waits behind it in its tile");
    EXPECT_EQ(refused("focus", {{"direction", "up"}}), "No occupied zone up of the focused window");
    EXPECT_EQ(said("focus", {{"direction", "right"}}), "Focused Notes");
    EXPECT_EQ(refused("move", {{"direction", "right"}}), "No zone right of the focused window");
    EXPECT_EQ(said("move", {{"direction", "left"}}), "Moved Notes to the left zone");
    EXPECT_EQ(said("stack"), "Terminal is now active");

    const json zoomed = result("zoom");
    EXPECT_EQ(zoomed["message"], "Focus Mode — Terminal owns this display");
    EXPECT_EQ(zoomed["focusMode"]["tile"], desk.target("A", "focus-main"));
    EXPECT_TRUE(result("divider.list")["dividers"].empty());
    EXPECT_EQ(said("zoom"), "Focus Mode closed — workspace restored");

    const json entries = result("history")["entries"];
    ASSERT_EQ(entries.size(), 4u);
    EXPECT_EQ(entries[0]["action"], "cycle stack");
    EXPECT_EQ(entries[1]["windows"], json::array({"Notes"}));
    EXPECT_EQ(entries[2]["action"], "arrange");
    EXPECT_EQ(entries[3]["action"], "layout Dual Split (2)");
    EXPECT_EQ(entries[2]["time"].get<std::string>().size(), std::string_view("2024-02-29T12:34:56Z").size());
    for (int i = 0; i < 4; ++i) {
        const json undone = result("undo");
        EXPECT_EQ(undone["message"], "Last window action undone");
        EXPECT_EQ(undone["canUndo"], i < 3);
    }
    EXPECT_EQ(refused("undo"), "There is nothing to undo");
    desk.desktop.quit("Terminal");
    desk.desktop.quit("Notes");
    desk.desktop.quit("Mail");
    desk.settle();
    EXPECT_EQ(refused("zoom"), "No managed window has the focus");
}

TEST_F(AgentMethods, DividersStopAtTheMinimumSizesOfTheirNeighbors) {
    desk.desktop.quit("Mail");
    desk.desktop.quit("Notes");
    desk.opens("Sheet", {.minimumSize = CGSize{900, 400}}).arrange();
    const auto drag = [&](double points) { return json{{"split", "root"}, {"boundary", 0}, {"points", points}}; };
    const json divider = result("divider.list")["dividers"].at(0);
    EXPECT_EQ(divider["axis"], "horizontal");
    EXPECT_EQ(divider["split"], "root");
    EXPECT_EQ(divider["before"], json::array({"Primary"}));
    EXPECT_EQ(divider["after"], json::array({"Secondary"}));
    const double least = divider["least"];
    result("zoom");
    EXPECT_EQ(result("divider.drag", drag(least - 500))["points"], least) << "stops at the minimum size of a neighbor";
    EXPECT_TRUE(result("status")["focusMode"].is_null()) << "an action ends focus mode first";
    EXPECT_EQ(result("divider.list")["dividers"][0]["least"], 0);
    EXPECT_EQ(error("divider.drag", drag(-10))["message"], "The divider has no room to move that way");
    EXPECT_EQ(result("history")["entries"].size(), 3u) << "an action that changed nothing is no undo step";
    EXPECT_EQ(result("divider.drag", drag(0))["points"], 0);
    EXPECT_EQ(result("history")["entries"][0]["action"], "drag divider");
    desk.settle();
    const json where{{"split", "root"}, {"boundary", 0}};
    EXPECT_EQ(result("divider.reset", where)["split"], "root");
    EXPECT_EQ(result("divider.list")["dividers"][0], divider) << "the reset has the effect of a double click";
    EXPECT_EQ(error("divider.reset", where)["message"], "The divider is where its layout puts it");
    EXPECT_EQ(error("divider.reset", {{"split", "trunk"}, {"boundary", 0}})["data"]["choices"], json{"root 0"});
    result("undo");
    result("undo");
    EXPECT_EQ(result("divider.list")["dividers"][0], divider);
}

TEST_F(AgentMethods, CommandsForOneWindowHaveTheResultOfTheirDryRun) {
    desk.arrange().expectTiles("Terminal 15,15 1254x1382 | Notes 1291,15 1254x1382");
    const json commands = {{{"method", "place"}, {"params", {{"window", "Mail"}, {"tile", "2"}}}},
                           {{"method", "swap"}, {"params", {{"with", "right"}, {"display", "A"}}}},
                           {{"method", "float"}, {"params", {{"window", "Notes"}}}},
                           {{"method", "tile"}, {"params", {{"window", "Notes"}}}}};
    for (const json& command : commands) {
        const std::string before = desk.tiles();
        const std::size_t steps = result("history")["entries"].size();
        json parameters = command["params"];
        parameters["dryRun"] = true;
        const json planned = result(command["method"], parameters);
        EXPECT_EQ(desk.tiles(), before) << command;
        EXPECT_EQ(result("history")["entries"].size(), steps);
        const json done = result(command["method"], command["params"]);
        EXPECT_EQ(done["steps"], planned["steps"]);
        EXPECT_EQ(done["message"], planned["message"]);
        EXPECT_EQ(desk.state().lastActionMessage->value_or(""), done["message"].get<std::string>());
        desk.settle();
        result("undo");
        desk.settle();
        EXPECT_EQ(desk.tiles(), before) << command;
        result(command["method"], command["params"]);
        desk.settle();
    }
    EXPECT_EQ(result("query.windows")["windows"][1]["isFloating"], false);
    EXPECT_EQ(result("windows")["displays"][0]["tiles"][1]["window"]["application"], "Notes");
    EXPECT_EQ(error("swap", {{"with", "left"}, {"display", "Beamer"}})["data"]["choices"].size(), 1u);
}

TEST_F(AgentMethods, WindowsOfADisconnectedDisplayAreListedAsWithoutATile) {
    desk.arrange().desktop.removeDisplay("A");
    desk.settle();
    EXPECT_EQ(result("status")["windowsInTiles"], 0);
    EXPECT_EQ(result("windows")["others"].size(), desk.controller().liveWindows().size());
}

TEST_F(AgentMethods, AreRefusedWithTheReasonWhyNoWindowCanBeManaged) {
    desk.desktop.setUnavailableReason("This is a Wayland session. Log in to an X11 session instead.");
    desk.settle();
    EXPECT_EQ(error("arrange")["message"], "This is a Wayland session. Log in to an X11 session instead.");
    EXPECT_EQ(error("arrange")["code"], controlCode::noPermission);
    EXPECT_EQ(result("status")["problem"], "This is a Wayland session. Log in to an X11 session instead.");
    for (const char* method : {"move", "place", "zoom"}) {
        json parameters = {{"window", "mail"}};
        if (method == std::string("move")) parameters["direction"] = "left";
        if (method == std::string("place")) parameters["tile"] = "1";
        EXPECT_EQ(error(method, parameters)["code"], controlCode::noPermission) << method;
    }
    EXPECT_EQ(result("doctor").dump().find("permission"), std::string::npos);
}

TEST_F(AgentMethods, AreRefusedWithoutThePermissionToManageWindows) {
    desk.desktop.setTrusted(false);
    desk.settle();
    EXPECT_EQ(result("status")["permission"], "denied");
    EXPECT_EQ(error("arrange")["code"], controlCode::noPermission);
    EXPECT_EQ(error("arrange", {{"dryRun", true}})["code"], controlCode::noPermission);
    EXPECT_EQ(error("explain", {{"window", "Mail"}})["code"], controlCode::noPermission);
    for (const char* method : {"undo", "zoom", "stack"}) EXPECT_EQ(error(method)["code"], controlCode::noPermission);
    EXPECT_EQ(error("divider.drag", {{"split", "root"}, {"boundary", 0}, {"points", 9}})["code"],
              controlCode::noPermission);
    const json report = result("doctor");
    EXPECT_FALSE(report["isHealthy"].get<bool>());
    desk.desktop.setTrusted(true);
    desk.settle();
    EXPECT_TRUE(result("doctor")["isHealthy"].get<bool>());
    desk.desktop.removeDisplay("A");
    desk.desktop.queue().runDue();
    EXPECT_EQ(error("layout.next")["code"], controlCode::refused);
    EXPECT_EQ(error("layout.show")["message"], "No display is connected");
    EXPECT_EQ(error("arrange")["message"], "No display is connected");
    EXPECT_EQ(error("scene.capture")["message"], "No display is connected");
    EXPECT_FALSE(result("doctor")["isHealthy"].get<bool>());
}

} // namespace kova
