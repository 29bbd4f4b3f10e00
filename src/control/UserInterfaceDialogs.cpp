#include "control/UserInterfaceDialogs.h"

#include <algorithm>
#include <utility>

namespace kova {

namespace {

using nlohmann::json;

} // namespace

UserInterfaceDialogs::Clients UserInterfaceDialogs::show(const std::string& what, const json& parameters) {
    return connection_ ? connection_->show(what, parameters) : Clients();
}

UserInterfaceDialogs::Clients UserInterfaceDialogs::showAlert(const Alert& alert, std::uint64_t id) {
    json applications = json::array();
    for (const AlertApplication& each : alert.applications)
        applications.push_back({{"name", each.name}, {"bundleIdentifier", each.bundleIdentifier}});
    return show("alert", {{"id", id},
                          {"title", alert.title},
                          {"text", alert.text},
                          {"confirm", alert.confirmButton},
                          {"cancel", alert.cancelButton},
                          {"applications", std::move(applications)}});
}

void UserInterfaceDialogs::inform(const Alert& alert) {
    close(false);
    if (showAlert(alert, ++lastID_).empty() && connection_) connection_->setStatusMessage(alert.text);
}

void UserInterfaceDialogs::confirm(const Alert& alert, std::function<void(bool isConfirmed)> answer) {
    close(false);
    const std::uint64_t id = ++lastID_;
    Clients clients = showAlert(alert, id);
    if (clients.empty()) return queue_.post([answer = std::move(answer)] { answer(false); });
    open_ = Question{id, std::move(clients), std::move(answer)};
}

ControlReply UserInterfaceDialogs::answer(const JsonCursor& parameters) {
    const auto id = parameters.required("id").integer();
    const bool isConfirmed = parameters.required("isConfirmed").boolean();
    const bool wasOpen = open_ && id >= 0 && open_->id == static_cast<std::uint64_t>(id);
    if (wasOpen) close(isConfirmed);
    return json{{"wasOpen", wasOpen}};
}

void UserInterfaceDialogs::close(bool isConfirmed) {
    const auto closed = std::exchange(open_, std::nullopt);
    if (closed) closed->answer(isConfirmed);
}

void UserInterfaceDialogs::clientDisconnected() {
    if (!open_) return;
    const bool isShown = std::ranges::any_of(open_->clients, [](const std::weak_ptr<ControlPeer>& each) {
        const auto client = each.lock();
        return client && client->isConnected();
    });
    if (!isShown) close(false);
}

} // namespace kova
