#include "ui/client/AgentConnection.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace kova::ui {

std::chrono::milliseconds pauseBeforeAttempt(int attempts) {
    return std::min(std::chrono::milliseconds(100) * (1 << std::clamp(attempts, 0, 10)),
                    std::chrono::milliseconds(5000));
}

AgentConnection::AgentConnection(std::string socketPath, Handlers handlers) :
    socketPath_(std::move(socketPath)), handlers_(std::move(handlers)) {
    retry_.setSingleShot(true);
    connect(&retry_, &QTimer::timeout, this, [this] { start(); });
}

void AgentConnection::start() {
    auto connected = ControlClient::connect(socketPath_);
    if (!connected) return retry();
    client_ = std::make_unique<ControlClient>(std::move(*connected));
    readable_ = std::make_unique<QSocketNotifier>(client_->descriptor(), QSocketNotifier::Read);
    connect(readable_.get(), &QSocketNotifier::activated, this, [this] { read(); });
    handlers_.connected();
}

void AgentConnection::read() {
    while (client_) {
        auto received = client_->receiveAvailable();
        if (!received) return lose();
        const std::optional<std::string>& line = *received;
        if (!line) return;
        attempts_ = 0;
        handlers_.received(*line);
    }
}

void AgentConnection::send(std::string lines) {
    if (client_ && client_->send(std::move(lines))) lose();
}

void AgentConnection::lose() {
    if (!client_) return;
    // This may be called by the notifier: it is destroyed after it has returned.
    readable_->setEnabled(false);
    readable_.release()->deleteLater();
    client_.reset();
    retry();
    handlers_.lost();
}

void AgentConnection::retry() {
    retry_.start(pauseBeforeAttempt(attempts_++));
}

} // namespace kova::ui
