#include "ui/client/AgentSession.h"

#include <QPointer>

#include <utility>

namespace kova::ui {

namespace {

using nlohmann::json;

Answer answerIn(const json& message) {
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
    connection_.lose();
}

void AgentSession::connected() {
    for (const std::string& topic : topics_) subscribe(topic);
    Q_EMIT connectionChanged();
}

void AgentSession::lost() {
    state_ = json::object();
    const auto waiting = std::exchange(waiting_, {});
    for (const auto& [id, done] : waiting) done({nullptr, "The agent has ended"});
    Q_EMIT connectionChanged();
}

void AgentSession::call(const QObject* context, const std::string& method, json parameters,
                        std::function<void(const Answer&)> done) {
    if (!isConnected()) {
        if (done) done({nullptr, "The agent does not run"});
        return;
    }
    const std::uint64_t id = nextRequest_++;
    if (done) {
        waiting_[id] = [context = QPointer<const QObject>(context), act = std::move(done)](const Answer& answer) {
            if (context) act(answer);
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
    call(this, "subscribe", parameters, [this](const Answer& answer) {
        if (answer.result.is_object()) take(answer.result.value("state", json::object()));
    });
}

void AgentSession::take(const json& news) {
    if (!news.is_object()) return;
    std::set<std::string> sections;
    for (const auto& section : news.items()) {
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
        const auto found = waiting_.find(message.value("id", std::uint64_t(0)));
        if (found == waiting_.end()) return;
        const auto done = std::move(found->second);
        waiting_.erase(found);
        done(answerIn(message));
    } else if (*method == "changed" && parameters.contains("changes")) {
        take(parameters["changes"]);
    } else if (method->is_string()) {
        Q_EMIT notified(method->get<std::string>(), parameters);
    }
}

} // namespace kova::ui
