// Controls send requests to a complete agent and show its errors.
#include "ui/windows/FieldError.h"
#include "tests/ui/WindowStage.h"
#include "ui/windows/Translations.h"

#include <memory>

namespace kova::ui::testing {

namespace {

using Controls = WindowStage;

} // namespace

TEST_F(Controls, ShowTheAgentsErrors) {
    desk.arrange();
    AgentSession agent(socketPath());
    FieldError error;
    int done = 0, refused = 0;
    const Reactions reactions{[&](const nlohmann::json&) { ++done; }, [&] { ++refused; }};
    callFor(error, agent, "launch", {{"application", "maps"}, {"tile", "basement"}}, reactions);
    ASSERT_TRUE(until([&] { return refused == 1; }));
    EXPECT_TRUE(error.text().startsWith(QStringLiteral("There is no tile “basement”."))) << error.text().toStdString();
    EXPECT_FALSE(error.isHidden());
    const auto& message = link.contents()->message;
    EXPECT_FALSE(message && message->text == error.text().toStdString()) << "the overlay must not show the error, too";

    callFor(error, agent, "layout.setInset", {{"points", 20}}, reactions);
    ASSERT_TRUE(until([&] { return done == 1; }));
    EXPECT_TRUE(error.isHidden());

    auto destroyed = std::make_unique<FieldError>();
    callFor(*destroyed, agent, "launch", {{"application", "maps"}, {"tile", "basement"}}, reactions);
    destroyed.reset();
    callFor(error, agent, "status", nlohmann::json::object(), reactions);
    ASSERT_TRUE(until([&] { return done == 2; }));
    EXPECT_EQ(refused, 1) << "a destroyed control gets no response";

    agent.follow();
    ASSERT_TRUE(until([&] { return agent.state().contains("settings"); }));
    EXPECT_EQ(agent.state()["settings"]["tileInset"], 20);
    ask("layout.setInset", {{"points", 12}});
    EXPECT_TRUE(until([&] { return agent.state()["settings"]["tileInset"] == 12; }));

    endServer();
    callFor(error, agent, "undo", nlohmann::json::object(), reactions);
    ASSERT_TRUE(until([&] { return refused == 2; }));
    EXPECT_EQ(error.text(), QStringLiteral("The agent has ended"));
}

} // namespace kova::ui::testing
