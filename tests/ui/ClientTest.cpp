#include "support/Version.h"
#include "tests/ui/FakeAgent.h"
#include "tests/ui/Sample.h"

#include "ui/client/AgentLink.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <chrono>

namespace kova::ui::testing {

namespace {

using namespace std::chrono_literals;

struct LinkStage {
    LinkStage() { agent = std::make_unique<FakeAgent>(path); }

    void startAgent() {
        agent = std::make_unique<FakeAgent>(path);
        agent->setState(sampleState());
    }
    template <class Condition>
    bool until(Condition condition) {
        QElapsedTimer clock;
        clock.start();
        while (!condition() && clock.elapsed() < 20000) {
            if (agent) agent->serve();
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        }
        return condition();
    }
    bool hasContents() const { return link.contents().has_value(); }

    QTemporaryDir folder;
    const std::string path = folder.filePath(QStringLiteral("agent.sock")).toStdString();
    std::unique_ptr<FakeAgent> agent;
    std::vector<std::string> shown, problems;
    int changes = 0;
    AgentLink link{path,
                   {.contentsChanged = [this] { ++changes; },
                    .showRequested = [this](const std::string& what, const nlohmann::json&) { shown.push_back(what); },
                    .contentsRejected = [this](const std::string& reason) { problems.push_back(reason); }}};
};

} // namespace

TEST(AgentLink, MirrorsChangesAndRequestsTheWholeStateAfterAGap) {
    LinkStage stage;
    stage.agent->setState(sampleState());
    stage.link.start();
    ASSERT_TRUE(stage.until([&] { return stage.hasContents(); }));
    EXPECT_EQ(stage.link.contents()->tiles.size(), 4u);
    stage.agent->change("message", nullptr);
    ASSERT_TRUE(stage.until([&] { return !stage.link.contents()->message; }));
    stage.agent->change("isSuspended", true, 3);
    ASSERT_TRUE(stage.until([&] { return stage.link.contents()->isSuspended; }));
    EXPECT_EQ(stage.agent->subscriptions(), 2) << "sequence numbers are missing, so the whole state is requested again";
    stage.agent->change("isSuspended", false);
    ASSERT_TRUE(stage.until([&] { return !stage.link.contents()->isSuspended; }));
    EXPECT_EQ(stage.agent->subscriptions(), 2);
    EXPECT_EQ(stage.changes, 4);
    EXPECT_TRUE(stage.problems.empty());
}

TEST(OverlayMirror, AppliesChangedNewAndRemovedElementsOfLists) {
    OverlayMirror mirror({.contentsChanged = [] {},
                          .showRequested = nullptr,
                          .contentsRejected = [](const std::string& reason) { ADD_FAILURE() << reason; }});
    const auto id = nlohmann::json::parse(mirror.connected())["id"];
    const nlohmann::json state = sampleState();
    mirror.receive(nlohmann::json{{"id", id}, {"result", {{"sequence", 0}, {"state", state}}}}.dump());
    int sequence = 0;
    const auto tiles = [&](nlohmann::json change) {
        const nlohmann::json parameters{{"sequence", ++sequence}, {"changes", {{"tiles", std::move(change)}}}};
        mirror.receive(nlohmann::json{{"method", "changed"}, {"params", parameters}}.dump());
        std::string updated;
        for (const TileContents& tile : mirror.contents()->tiles) {
            updated += (updated.empty() ? "" : " ") + tile.name + ":" + std::to_string(tile.applications.size());
        }
        return updated;
    };
    nlohmann::json fifth = state["tiles"][0];
    fifth["id"] = "d1::fifth";
    fifth["name"] = "Fifth";
    EXPECT_EQ(tiles({{"changed", {{{"id", "d1::reference"}, {"applications", nlohmann::json::array()}}}}}),
              "Primary:3 Utility:0 Reference:0 Secondary:1");
    EXPECT_EQ(tiles({{"changed", {fifth}}, {"order", {"d1::secondary", "d1::fifth", "d1::primary"}}}),
              "Secondary:1 Fifth:3 Primary:3");
    EXPECT_EQ(tiles({{"order", nlohmann::json::array()}}), "");
}

TEST(AgentLink, ConnectsWhenTheAgentStartsAndWhenItRestarts) {
    LinkStage stage;
    stage.agent.reset();
    stage.link.start();
    EXPECT_FALSE(stage.link.isConnected());
    stage.startAgent();
    ASSERT_TRUE(stage.until([&] { return stage.hasContents(); }));
    std::string error;
    stage.link.call("undo", nlohmann::json::object(), [&](const Response& response) { error = response.error; });
    stage.agent.reset(); // the agent ends before it has responded
    ASSERT_TRUE(stage.until([&] { return !stage.hasContents(); }));
    EXPECT_EQ(error, "The agent has ended");
    stage.link.call("undo", nlohmann::json::object(), [&](const Response& response) { error = response.error; });
    EXPECT_EQ(error, "The agent does not run");
    stage.startAgent();
    EXPECT_TRUE(stage.until([&] { return stage.hasContents(); }));
}

TEST(AgentLink, DelaysBetweenAttemptsGrowToFiveSeconds) {
    EXPECT_EQ(delayBeforeAttempt(0), 100ms);
    EXPECT_EQ(delayBeforeAttempt(3), 800ms);
    EXPECT_EQ(delayBeforeAttempt(1000), 5000ms);
}

TEST(OverlayMirror, ReportsContentsThatItCannotDecode) {
    const auto stateWith = [](const char* section, nlohmann::json value) {
        nlohmann::json state = sampleState();
        state[section] = std::move(value);
        return state;
    };
    struct Case {
        nlohmann::json response;
        std::string problem;
    };
    const nlohmann::json newer{{"contract", kOverlayContract + 1}, {"agent", "9.0"}};
    const std::string doesNotFit =
        "kova-ui " KOVA_VERSION
        " does not fit kova-agent 9.0. Install the same version of both, then run “kova ui restart”";
    const std::vector<Case> cases{
        {{{"result", {{"sequence", 0}, {"state", stateWith("version", newer)}}}}, doesNotFit},
        {{{"result", {{"sequence", 0}, {"state", {{"version", newer}, {"tiles", "of another kind"}}}}}}, doesNotFit},
        {{{"error", {{"code", -32602}, {"message", "unknown parameter: topic"}}}},
         "The agent publishes no overlay: unknown parameter: topic"},
        {{{"result", {{"sequence", 0}, {"state", stateWith("tiles", 3)}}}},
         "The overlay contents that the agent sent cannot be decoded: state.tiles: expected an array"},
    };
    for (Case each : cases) {
        std::vector<std::string> problems;
        OverlayMirror mirror({.contentsChanged = [] { ADD_FAILURE() << "the contents must stay absent"; },
                              .showRequested = nullptr,
                              .contentsRejected = [&](const std::string& reason) { problems.push_back(reason); }});
        each.response["id"] = nlohmann::json::parse(mirror.connected())["id"];
        const auto report = nlohmann::json::parse(mirror.receive(each.response.dump()));
        EXPECT_EQ(report["method"], "ui.report");
        EXPECT_EQ(report["params"], (nlohmann::json{{"problem", each.problem}}));
        EXPECT_EQ(problems, std::vector<std::string>{each.problem});
        EXPECT_EQ(mirror.receive(R"({"method":"changed","params":{"sequence":1,"changes":{"message":null}}})"), "");
    }
}

TEST(OverlayMirror, IgnoresUnknownMessagesTopicsAndSections) {
    int changes = 0;
    std::string requestedWindow;
    OverlayMirror mirror(
        {.contentsChanged = [&] { ++changes; },
         .showRequested = [&](const std::string& what, const nlohmann::json&) { requestedWindow = what; },
         .contentsRejected = [](const std::string& reason) { ADD_FAILURE() << reason; }});
    const auto id = nlohmann::json::parse(mirror.connected())["id"];
    mirror.receive(nlohmann::json{{"id", id}, {"result", {{"sequence", 7}, {"state", sampleState()}}}}.dump());
    EXPECT_EQ(changes, 1);
    for (const char* line : {"not JSON", "[]", R"({"id":99,"result":{}})", R"({"method":"other"})",
                             R"({"method":"changed","params":{"topic":"windows","sequence":4,"changes":{}}})",
                             R"({"method":"changed","params":{"sequence":8,"changes":{"unknown":1}}})"}) {
        EXPECT_EQ(mirror.receive(line), "") << line;
    }
    EXPECT_EQ(changes, 1);
    mirror.receive(R"({"method":"show","params":{"what":"menu"}})");
    EXPECT_EQ(requestedWindow, "menu");
    EXPECT_NE(mirror.receive(R"({"method":"changed","params":{"sequence":10,"changes":{}}})"), "")
        << "change 9 is missing, so the whole state is requested again";
}

} // namespace kova::ui::testing
