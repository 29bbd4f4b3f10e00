#include "ui/Instance.h"

#include "control/client/ControlClient.h"

#include <QCoreApplication>

#include <nlohmann/json.hpp>

#include <chrono>

namespace kova::ui {

namespace {

using nlohmann::json;

constexpr std::chrono::milliseconds kTimeout{500};

/// The result of the request; null if the agent refuses it or does not respond.
json query(ControlClient& agent, const char* method) {
    if (agent.send(json{{"jsonrpc", "2.0"}, {"id", 1}, {"method", method}}.dump())) return nullptr;
    const auto line = agent.receive();
    const json response = line ? json::parse(*line, nullptr, false) : json();
    return response.is_object() ? response.value("result", json()) : json();
}

} // namespace

bool activateRunningInstance(const std::string& socketPath) {
    auto agent = ControlClient::connect(socketPath);
    if (!agent) return false;
    agent->setTimeout(kTimeout);
    const json status = query(*agent, "ui.status");
    const json process = status.is_object() ? status.value("process", json()) : json();
    if (!process.is_number_integer() || process == QCoreApplication::applicationPid()) return false;
    return query(*agent, "settings.show").is_object();
}

} // namespace kova::ui
