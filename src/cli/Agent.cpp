#include "cli/Agent.h"

#include "cli/Terminal.h"
#include "control/client/ControlCodes.h"
#include "control/client/ControlSocket.h"

#include <cstdio>

namespace kova::cli {

namespace {

using nlohmann::json;

#if defined(__APPLE__)
constexpr const char* kHowToStart = ".\nStart it by opening KOVA.app.";
#else
constexpr const char* kHowToStart = ".\nStart it with “kova-agent”.";
#endif

CommandError commandError(const ConnectionFailure& failure) {
    // The advice to start an agent helps only if no process listens on the socket.
    const bool isMissing = failure.kind == ConnectionFailure::Kind::noAgent;
    return {ExitCode::noAgent, failure.message + (isMissing ? kHowToStart : ".")};
}

CommandError refusal(const json& error) {
    const int code = error.value("code", controlCode::internalError);
    const std::string message = error.value("message", "The agent refused without saying why");
    std::vector<std::string> choices;
    if (const auto data = error.find("data"); data != error.end() && data->contains("choices")) {
        for (const json& choice : data->at("choices")) choices.push_back(choice.get<std::string>());
    }
    switch (code) {
    case controlCode::invalidParameters:
        return {ExitCode::wrongUsage, message, std::move(choices)};
    case controlCode::noPermission:
        return {ExitCode::noPermission, message, std::move(choices)};
    default:
        return {ExitCode::refused, message, std::move(choices)};
    }
}

void warnIfUnsaved(const json& result) {
    const std::string unsaved = result.is_object() ? result.value("unsaved", "") : "";
    if (unsaved.empty()) return;
    std::fprintf(stderr, "kova: not saved yet: %s. The change is in memory only; writing is tried again.\n",
                 printable(unsaved).c_str());
}

CommandError unexpectedResponse() {
    return {ExitCode::refused, "Unexpected response from the agent"};
}

} // namespace

CommandResult<Agent> Agent::connect() {
    std::string path = controlSocketPlace().path;
    auto client = ControlClient::connect(path);
    if (!client) return commandError(client.error());
    return Agent(std::move(*client), std::move(path));
}

CommandResult<json> Agent::ask(std::string_view method, const json& parameters, std::chrono::milliseconds timeout) {
    json request = {{"jsonrpc", "2.0"}, {"id", 1}, {"method", method}};
    if (!parameters.empty()) request["params"] = parameters;
    client_.setTimeout(timeout);
    // Words from a terminal may not be UTF-8. Invalid bytes are replaced, and the agent reports an unknown name.
    if (const auto failure = client_.send(request.dump(-1, ' ', false, json::error_handler_t::replace)))
        return commandError(*failure);
    auto reply = receive();
    // Notifications that arrive before the response are kept for `next`.
    while (reply && reply->contains("method")) {
        notifications_.push_back(std::move(*reply));
        reply = receive();
    }
    if (!reply) return reply;
    if (reply->contains("error")) return refusal((*reply)["error"]);
    if (!reply->contains("result")) return unexpectedResponse();
    json& result = (*reply)["result"];
    warnIfUnsaved(result);
    return std::move(result);
}

CommandResult<json> Agent::next(std::string_view method, std::chrono::milliseconds timeout) {
    client_.setTimeout(timeout);
    while (true) {
        if (notifications_.empty()) {
            auto received = receive();
            if (!received) return received;
            notifications_.push_back(std::move(*received));
        }
        json message = std::move(notifications_.front());
        notifications_.pop_front();
        if (message.value("method", "") != method) continue;
        warnIfUnsaved(message.at("params"));
        return std::move(message.at("params"));
    }
}

CommandResult<json> Agent::receive() {
    const auto received = client_.receive();
    if (!received) return commandError(received.error());
    json message = json::parse(*received, nullptr, false);
    if (!message.is_object()) return unexpectedResponse();
    return message;
}

CommandResult<json> askAgent(std::string_view method, const json& parameters) {
    auto agent = Agent::connect();
    if (!agent) return agent.error();
    return agent->ask(method, parameters);
}

} // namespace kova::cli
