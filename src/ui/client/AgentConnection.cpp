#include "ui/client/AgentConnection.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace kova::ui {

std::chrono::milliseconds delayBeforeAttempt(int failedAttempts) {
    return std::min(std::chrono::milliseconds(100) * (1 << std::clamp(failedAttempts, 0, 10)),
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
        if (!received) return closeConnection();
        const std::optional<std::string>& line = *received;
        if (!line) return;
        failedAttempts_ = 0;
        handlers_.received(*line);
    }
}

void AgentConnection::send(std::string lines) {
    if (client_ && client_->send(std::move(lines))) closeConnection();
}

void AgentConnection::closeConnection() {
    if (!client_) return;
    // The notifier is destroyed later, since this may be called while the notifier emits its signal.
    readable_->setEnabled(false);
    readable_.release()->deleteLater();
    client_.reset();
    retry();
    handlers_.lost();
}

void AgentConnection::retry() {
    retry_.start(delayBeforeAttempt(failedAttempts_++));
}

} // namespace kova::ui
