#include "tests/ui/FakeAgent.h"

#include "control/client/ControlSocket.h"

#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <stdexcept>

namespace kova::ui::testing {

FakeAgent::FakeAgent(std::string path) : path_(std::move(path)) {
    const auto address = controlSocketAddress(path_);
    listener_ = socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK, 0);
    unlink(path_.c_str());
    if (!address || bind(listener_, reinterpret_cast<const sockaddr*>(&*address), sizeof *address) != 0 ||
        listen(listener_, 4) != 0) {
        throw std::runtime_error("cannot listen at " + path_);
    }
}

FakeAgent::~FakeAgent() {
    disconnect();
    close(listener_);
    unlink(path_.c_str());
}

void FakeAgent::disconnect() {
    if (client_ >= 0) close(client_);
    client_ = -1;
    received_.clear();
}

void FakeAgent::serve() {
    if (client_ < 0) client_ = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
    if (client_ < 0) return;
    std::array<char, 4096> piece;
    ssize_t length = 0;
    while ((length = recv(client_, piece.data(), piece.size(), MSG_DONTWAIT)) > 0) {
        received_.append(piece.data(), static_cast<std::size_t>(length));
    }
    for (auto end = received_.find('\n'); end != std::string::npos; end = received_.find('\n')) {
        const std::string line = received_.substr(0, end);
        received_.erase(0, end + 1);
        respond(line);
    }
    if (length == 0) disconnect();
}

void FakeAgent::respond(const std::string& line) {
    const nlohmann::json request = nlohmann::json::parse(line);
    const std::string method = request["method"];
    nlohmann::json result = nlohmann::json::object();
    if (method == "subscribe") {
        ++subscriptions_;
        result = {{"topic", "overlay"}, {"sequence", sequence_}, {"state", state_}};
    } else if (method == "menu") {
        result = {{"entries", nlohmann::json::array()}};
    } else if (method != "ui.status") { // kova-ui looks for another instance when it starts
        calls_.emplace_back(method, request.value("params", nlohmann::json::object()));
    }
    sendMessage({{"id", request["id"]}, {"result", result}});
}

void FakeAgent::change(const std::string& section, nlohmann::json value, int skipped) {
    state_[section] = std::move(value);
    sequence_ += 1 + skipped;
    nlohmann::json published = state_[section];
    if (published.is_array()) {
        nlohmann::json order = nlohmann::json::array();
        for (const auto& element : published) order.push_back(element["id"]);
        published = {{"changed", published}, {"order", order}};
    }
    sendMessage({{"method", "changed"},
                 {"params", {{"topic", "overlay"}, {"sequence", sequence_}, {"changes", {{section, published}}}}}});
}

void FakeAgent::sendMessage(const nlohmann::json& message) {
    nlohmann::json whole = message;
    whole["jsonrpc"] = "2.0";
    const std::string line = whole.dump() + "\n";
    if (client_ >= 0) send(client_, line.data(), line.size(), MSG_NOSIGNAL);
}

} // namespace kova::ui::testing
