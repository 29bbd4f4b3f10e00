// What the agent does and answers, asked over its socket.
#include "control/client/ControlCodes.h"
#include "tests/control/AgentStage.h"
#include "tests/control/JsonSchema.h"

#include <gtest/gtest.h>

#include <set>

namespace kova {

namespace {

using nlohmann::json;

class AgentMethods : public testing::Test, public AgentStage {
  protected:
    json call(const std::string& method, json parameters = json::object()) {
        return connection.ask(
            json{{"jsonrpc", "2.0"}, {"id", 1}, {"method", method}, {"params", std::move(parameters)}}.dump());
    }
    json result(const std::string& method, json parameters = json::object()) {
        const json reply = call(method, std::move(parameters));
        EXPECT_TRUE(reply.contains("result")) << method << ": " << reply;
        json found = reply.value("result", json());
        EXPECT_EQ(schemaViolation(schema, "result:" + method, found), "");
        return found;
    }
    json error(const std::string& method, json parameters = json::object()) {
        const json reply = call(method, std::move(parameters));
        EXPECT_TRUE(reply.contains("error")) << method << ": " << reply;
        return reply.value("error", json{{"code", 0}, {"message", ""}, {"data", nullptr}});
    }
    const json schema = controlSchema();
    SocketClient connection = client();
};

} // namespace

TEST_F(AgentMethods, EveryMethodIsDocumentedWithAnExampleThatWorks) {
    std::set<std::string> documented;
    for (const std::string& request : documentedLines(KOVA_DOCS "/control.md", "jsonrpc", "→ ")) {
        const json parsed = json::parse(request);
        const std::string method = parsed["method"];
        json reply = connection.ask(request);
        while (reply.value("method", "") == "changed") reply = connection.message();
        ASSERT_TRUE(reply.contains("result")) << request << reply;
        EXPECT_EQ(schemaViolation(schema, "result:" + method, reply["result"]), "") << request;
        documented.insert(method);
    }
    const json known = error("no such method")["data"]["methods"];
    EXPECT_EQ(documented, std::set<std::string>(known.begin(), known.end()));
    EXPECT_TRUE(hasQuit);
}

TEST_F(AgentMethods, ArrangeMovesWhatADryRunOnlyAnnounced) {
    const json planned = result("arrange", {{"dryRun", true}});
    EXPECT_EQ(desk.tiles(), "- | -");
    const json carriedOut = result("arrange");
    EXPECT_EQ(carriedOut["placements"], planned["placements"]);
    EXPECT_EQ(carriedOut["surplus"], planned["surplus"]);
    EXPECT_EQ(carriedOut["message"], "Windows arranged into zones — Undo is available");
    ASSERT_EQ(carriedOut["surplus"].size(), 1u);
    desk.settle();

    // What is told of windows and tiles is what is so.
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

TEST_F(AgentMethods, LayoutsAreFoundByWhateverNamesThem) {
    desk.display(1920, 1080, "Beamer");
    const auto selected = [&](json parameters) {
        return result("layout.select", std::move(parameters))["layout"]["id"];
    };
    EXPECT_EQ(selected({{"layout", "jarvis.quad-grid"}}), "jarvis.quad-grid");
    EXPECT_EQ(selected({{"layout", "dual split (2)"}}), "jarvis.dual-split");
    EXPECT_EQ(selected({{"layout", "ULTRA"}, {"display", "2"}}), "jarvis.super-ultrawide-5120x1440");
    EXPECT_EQ(selected({{"layout", "automatic"}, {"display", "beam"}}), "jarvis.compact-16-by-9");
    EXPECT_EQ(result("query.displays")["displays"][1]["selection"], "automatic");
    EXPECT_EQ(result("layout.show", {{"display", "1"}})["tiles"].size(), 2u);
    EXPECT_EQ(result("layout.next")["layout"]["id"], "jarvis.dual-stack");
    EXPECT_EQ(result("layout.previous")["layout"]["id"], "jarvis.dual-split");

    const json shown = result("layout.show", {{"layout", "six grid (3"}, {"display", "Beamer"}});
    EXPECT_FALSE(shown["isInForce"].get<bool>());
    EXPECT_EQ(shown["tiles"].size(), 6u);
    result("layout.setInset", {{"points", 20}});
    EXPECT_EQ(result("query.state")["state"]["settings"]["tileInset"], 20);
}

TEST_F(AgentMethods, RefusesWhatDoesNotExistWithAListOfWhatDoes) {
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
    EXPECT_EQ(desk.tiles(), "- | -") << "a refused request moved something";
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
    EXPECT_EQ(result("explain")["lines"].size(), 4u);
    const json primary = result("query.tiles")["tiles"][0];
    EXPECT_NE(explained(primary["window"].get<std::string>().c_str())
                  .find("is in Primary on A.\nThe last arrangement decided: "),
              std::string::npos);
    desk.opens("Film").settle();
    desk.desktop.setFullScreen("Film", true);
    desk.settle();
    EXPECT_NE(explained("film").find("full screen"), std::string::npos);
}

TEST_F(AgentMethods, SubscribersHearNumberedChangesAndEndUpWithTheState) {
    constexpr std::string_view kSubscribe = R"({"jsonrpc":"2.0","id":1,"method":"subscribe"})";
    auto listener = client();
    const json start = listener.ask(kSubscribe)["result"];
    std::uint64_t last = start["sequence"];
    json state = start["state"];
    const auto heard = [&] {
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
    const json truth = client().ask(kSubscribe)["result"];
    EXPECT_EQ(schemaViolation(schema, "result:subscribe", truth), "");
    while (last < truth["sequence"]) EXPECT_FALSE(heard().empty());
    EXPECT_EQ(state, truth["state"]);
    EXPECT_GT(last, 3u);

    // What one action touches is told in one line.
    result("layout.setInset", {{"points", 30}});
    const json changes = heard();
    EXPECT_EQ(changes["settings"]["tileInset"], 30);
    EXPECT_EQ(changes["tiles"][0]["frame"]["x"], 40) << changes;
    EXPECT_FALSE(changes.contains("displays")) << "what stayed the same is told again";
}

TEST_F(AgentMethods, WithoutPermissionSaysSo) {
    desk.desktop.setTrusted(false);
    desk.settle();
    EXPECT_EQ(result("status")["permission"], "denied");
    EXPECT_EQ(error("arrange")["code"], controlCode::noPermission);
    EXPECT_EQ(error("arrange", {{"dryRun", true}})["code"], controlCode::noPermission);
    EXPECT_EQ(error("explain", {{"window", "Mail"}})["code"], controlCode::noPermission);
    const json report = result("doctor");
    EXPECT_FALSE(report["isHealthy"].get<bool>());
    desk.desktop.setTrusted(true);
    desk.settle();
    EXPECT_TRUE(result("doctor")["isHealthy"].get<bool>());
    desk.desktop.removeDisplay("A");
    desk.desktop.queue().runDue();
    EXPECT_EQ(error("layout.next")["code"], controlCode::refused);
    EXPECT_EQ(error("layout.show")["message"], "No display is connected");
    EXPECT_FALSE(result("doctor")["isHealthy"].get<bool>());
}

} // namespace kova
