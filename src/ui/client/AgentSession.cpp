#include "ui/client/AgentSession.h"

#include <QPointer>

#include <utility>

namespace kova::ui {

namespace {

using nlohmann::json;

Response responseIn(const json& message) {
    if (!message.contains("error")) return {message.value("result", json()), {}};
    const json& error = message["error"];
    const std::string text = error.is_object() ? error.value("message", "") : "";
    return {nullptr, text.empty() ? "The agent refused the request" : text};
}

} // namespace

AgentSession::AgentSession(std::string socketPath, QObject* parent) :
    QObject(parent), connection_(std::move(socketPath), {.connected = [this] { connected(); },
                                                         .received = [this](const auto& line) { receive(line); },
                                                         .lost = [this] { lost(); }}) {
    connection_.start();
}

AgentSession::~AgentSession() {
    blockSignals(true);
    connection_.closeConnection();
}

void AgentSession::connected() {
    for (const std::string& topic : topics_) subscribe(topic);
    Q_EMIT connectionChanged();
}

void AgentSession::lost() {
    state_ = json::object();
    const auto pending = std::exchange(pendingRequests_, {});
    for (const auto& [id, done] : pending) done({nullptr, "The agent has ended"});
    Q_EMIT connectionChanged();
}

void AgentSession::call(const QObject* context, const std::string& method, json parameters,
                        std::function<void(const Response&)> done) {
    if (!isConnected()) {
        if (done) done({nullptr, "The agent does not run"});
        return;
    }
    const std::uint64_t id = nextRequest_++;
    if (done) {
        pendingRequests_[id] = [context = QPointer<const QObject>(context),
                                act = std::move(done)](const Response& response) {
            if (context) act(response);
        };
    }
    const json message{{"jsonrpc", "2.0"}, {"id", id}, {"method", method}, {"params", std::move(parameters)}};
    connection_.send(message.dump(-1, ' ', false, json::error_handler_t::replace));
}

void AgentSession::follow(const std::string& topic) {
    if (topics_.insert(topic).second && isConnected()) subscribe(topic);
}

void AgentSession::subscribe(const std::string& topic) {
    const json parameters = topic.empty() ? json::object() : json{{"topic", topic}};
    call(this, "subscribe", parameters, [this](const Response& response) {
        if (response.result.is_object()) applyChanges(response.result.value("state", json::object()));
    });
}

void AgentSession::applyChanges(const json& changes) {
    if (!changes.is_object()) return;
    std::set<std::string> sections;
    for (const auto& section : changes.items()) {
        state_[section.key()] = section.value();
        sections.insert(section.key());
    }
    Q_EMIT changed(sections);
}

void AgentSession::receive(const std::string& line) {
    const json message = json::parse(line, nullptr, false);
    if (!message.is_object()) return;
    const auto method = message.find("method");
    const json parameters = message.value("params", json::object());
    if (method == message.end()) {
        const auto found = pendingRequests_.find(message.value("id", std::uint64_t(0)));
        if (found == pendingRequests_.end()) return;
        const auto done = std::move(found->second);
        pendingRequests_.erase(found);
        done(responseIn(message));
    } else if (*method == "changed" && parameters.contains("changes")) {
        applyChanges(parameters["changes"]);
    } else if (method->is_string()) {
        Q_EMIT notified(method->get<std::string>(), parameters);
    }
}

} // namespace kova::ui
