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

Trouble trouble(const ConnectionFailure& failure) {
    // Only where nobody listens would it help to start an agent.
    const bool isMissing = failure.trouble == ConnectionTrouble::noAgent;
    return {ExitCode::noAgent, failure.message + (isMissing ? kHowToStart : ".")};
}

Trouble refusal(const json& error) {
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

} // namespace

std::variant<Agent, Trouble> Agent::connect() {
    std::string path = controlSocketPlace().path;
    auto connected = ControlClient::connect(path);
    if (const auto* failure = std::get_if<ConnectionFailure>(&connected)) return trouble(*failure);
    return Agent(std::get<ControlClient>(std::move(connected)), std::move(path));
}

std::variant<json, Trouble> Agent::ask(std::string_view method, const json& parameters,
                                       std::chrono::milliseconds patience) {
    json request = {{"jsonrpc", "2.0"}, {"id", 1}, {"method", method}};
    if (!parameters.empty()) request["params"] = parameters;
    client_.setPatience(patience);
    // What a terminal hands over need not be UTF-8; the agent then knows no such name and says so.
    if (const auto failure = client_.send(request.dump(-1, ' ', false, json::error_handler_t::replace)))
        return trouble(*failure);
    auto reply = receive();
    auto* message = std::get_if<json>(&reply);
    // What the agent tells by itself meanwhile is no answer, and is heard later.
    while (message && message->contains("method")) {
        told_.push_back(std::move(*message));
        reply = receive();
        message = std::get_if<json>(&reply);
    }
    if (!message) return reply;
    if (message->contains("error")) return refusal((*message)["error"]);
    if (!message->contains("result")) return Trouble{ExitCode::refused, "The agent's answer makes no sense"};
    json& result = (*message)["result"];
    if (const std::string unsaved = result.is_object() ? result.value("unsaved", "") : ""; !unsaved.empty()) {
        std::fprintf(stderr, "kova: not saved yet: %s. The change is in memory only; writing is tried again.\n",
                     printable(unsaved).c_str());
    }
    return std::move(result);
}

std::variant<json, Trouble> Agent::next(std::chrono::milliseconds patience) {
    if (!told_.empty()) {
        json first = std::move(told_.front());
        told_.pop_front();
        return first;
    }
    client_.setPatience(patience);
    return receive();
}

std::variant<json, Trouble> Agent::receive() {
    const auto received = client_.receive();
    if (const auto* failure = std::get_if<ConnectionFailure>(&received)) return trouble(*failure);
    json message = json::parse(std::get<std::string>(received), nullptr, false);
    if (!message.is_object()) return Trouble{ExitCode::refused, "The agent's answer makes no sense"};
    return message;
}

} // namespace kova::cli
