// A client that calls the agent's methods, and checks each response against the schema.
#pragma once

#include "control/client/ControlCodes.h"
#include "tests/control/AgentStage.h"
#include "tests/control/JsonSchema.h"

#include <gtest/gtest.h>

#include <string>

namespace kova {

class MethodCalls : public testing::Test, public AgentStage {
  protected:
    using json = nlohmann::json;

    static json call(SocketClient& by, const std::string& method, json parameters = json::object()) {
        return by.request(
            json{{"jsonrpc", "2.0"}, {"id", 1}, {"method", method}, {"params", std::move(parameters)}}.dump());
    }
    json call(const std::string& method, json parameters = json::object()) {
        return call(connection, method, std::move(parameters));
    }
    /// Expects that the method succeeds; returns its result.
    json result(const std::string& method, json parameters = json::object()) {
        const json reply = call(method, std::move(parameters));
        EXPECT_TRUE(reply.contains("result")) << method << ": " << reply;
        json found = reply.value("result", json());
        EXPECT_EQ(schemaViolation(schema, "result:" + method, found), "");
        return found;
    }
    /// Expects that the method fails with this code; returns the error message.
    std::string refusal(const std::string& method, json parameters = json::object(), int code = controlCode::refused) {
        const json reply = call(method, std::move(parameters));
        EXPECT_EQ(reply["error"]["code"], code) << reply;
        return reply["error"].value("message", "");
    }
    /// Expects that the method fails; returns the error.
    json error(const std::string& method, json parameters = json::object()) {
        const json reply = call(method, std::move(parameters));
        EXPECT_TRUE(reply.contains("error")) << method << ": " << reply;
        return reply.value("error", json{{"code", 0}, {"message", ""}, {"data", nullptr}});
    }

    const json schema = controlSchema();
    SocketClient connection = client();
};

} // namespace kova
