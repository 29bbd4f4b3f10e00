#include "ui/client/AgentLink.h"

#include <utility>

namespace kova::ui {

AgentLink::AgentLink(std::string socketPath, OverlayMirror::Listener listener) :
    mirror_(std::move(listener)),
    connection_(std::move(socketPath), {.connected = [this] { connection_.send(mirror_.connected()); },
                                        .received =
                                            [this](const std::string& line) {
                                                if (std::string reply = mirror_.receive(line); !reply.empty())
                                                    connection_.send(std::move(reply));
                                            },
                                        .lost = [this] { mirror_.disconnected(); }}) {}

void AgentLink::call(const std::string& method, nlohmann::json parameters, std::function<void(const Response&)> done) {
    if (!isConnected()) {
        if (done) done({nullptr, "The agent does not run"});
        return;
    }
    connection_.send(mirror_.request(method, std::move(parameters), std::move(done)));
}

} // namespace kova::ui
