#include "ui/client/AgentLink.h"

#include <algorithm>

namespace kova::ui {

std::chrono::milliseconds pauseBeforeAttempt(int attempts) {
    return std::min(std::chrono::milliseconds(100) * (1 << std::clamp(attempts, 0, 10)),
                    std::chrono::milliseconds(5000));
}

AgentLink::AgentLink(std::string socketPath, OverlayMirror::Listener listener) :
    socketPath_(std::move(socketPath)), mirror_(std::move(listener)) {
    retry_.setSingleShot(true);
    connect(&retry_, &QTimer::timeout, this, [this] { connectNow(); });
}

void AgentLink::start() {
    connectNow();
}

void AgentLink::connectNow() {
    auto connected = ControlClient::connect(socketPath_);
    if (!connected) {
        retry_.start(pauseBeforeAttempt(attempts_++));
        return;
    }
    client_ = std::make_unique<ControlClient>(std::move(*connected));
    readable_ = std::make_unique<QSocketNotifier>(client_->descriptor(), QSocketNotifier::Read);
    connect(readable_.get(), &QSocketNotifier::activated, this, [this] { read(); });
    send(mirror_.connected());
}

void AgentLink::read() {
    while (client_) {
        auto received = client_->receiveAvailable();
        if (!received) return lose();
        const std::optional<std::string>& line = *received;
        if (!line) return;
        attempts_ = 0;
        if (std::string reply = mirror_.receive(*line); !reply.empty()) send(std::move(reply));
    }
}

void AgentLink::send(std::string lines) {
    if (client_ && client_->send(std::move(lines))) lose();
}

void AgentLink::call(const std::string& method, nlohmann::json parameters, std::function<void(const Answer&)> done) {
    if (!client_) {
        if (done) done({nullptr, "The agent does not run"});
        return;
    }
    send(mirror_.request(method, std::move(parameters), std::move(done)));
}

void AgentLink::lose() {
    if (!client_) return;
    // The notifier may be the one that calls: it goes when it has returned.
    readable_->setEnabled(false);
    readable_.release()->deleteLater();
    client_.reset();
    retry_.start(pauseBeforeAttempt(attempts_++));
    mirror_.disconnected();
}

} // namespace kova::ui
