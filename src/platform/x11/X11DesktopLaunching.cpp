// Starting applications and ending them.
#include "platform/x11/LocalProcesses.h"
#include "platform/x11/X11Parts.h"

#include <algorithm>
#include <cstring>

namespace kova {

using namespace x11;

namespace {

constexpr std::uint32_t kMostProtocols = 32;

/// Sends the message to the window, as a window manager does for its close button.
void sendProtocol(const XConnection& connection, xcb_window_t window, xcb_atom_t protocol) {
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = connection.atoms()[Atom::wmProtocols];
    event.data.data32[0] = protocol;
    event.data.data32[1] = XCB_CURRENT_TIME;
    xcb_send_event(connection.get(), 0, window, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<const char*>(&event));
}

} // namespace

std::vector<LaunchableApplication> X11Desktop::launchableApplications() const {
    return parts_->launcher ? parts_->launcher->launchableApplications() : std::vector<LaunchableApplication>{};
}

std::optional<LaunchableApplication> X11Desktop::launchableApplication(const BundleID& bundleIdentifier) const {
    return parts_->launcher ? parts_->launcher->launchableApplication(bundleIdentifier) : std::nullopt;
}

void X11Desktop::launch(const LaunchableApplication& application, LaunchActivation activation,
                        LaunchCompletion completion) {
    // The launcher outlives the desktop, but the object that gets the outcome may not.
    if (parts_->launcher) {
        return parts_->launcher->launch(application, activation, parts_->lifetime.guard(std::move(completion)));
    }
    parts_->queue.post(parts_->lifetime.guard(
        [text = application.name + " cannot be launched here", completion = std::move(completion)] {
            completion({.error = text, .processIdentifier = std::nullopt});
        }));
}

bool X11Desktop::hasLaunchedProcessSucceeded(pid_t processIdentifier) const {
    return parts_->launcher && parts_->launcher->hasLaunchedProcessSucceeded(processIdentifier);
}

bool X11Desktop::terminate(pid_t processIdentifier) {
    const MutexLock lock(parts_->mutex);
    PendingReplies batch;
    for (const xcb_window_t window : parts_->model.clientOrder()) {
        const ClientWindow* client = parts_->model.client(window);
        if (!client || client->processIdentifier != processIdentifier || client->isInputOnly) continue;
        const WindowKind kind = client->kind();
        if (kind == WindowKind::dock || kind == WindowKind::desktop) continue;
        // Windows without this protocol are skipped: a window manager would disconnect their program from the server.
        const XConnection& connection = *parts_->connection;
        batch.add(connection.requestProperty(window, connection.atoms()[Atom::wmProtocols], kMostProtocols),
                  [parts = parts_.get(), window](const void* reply) {
                      const auto known =
                          numbersIn(viewOf(static_cast<const xcb_get_property_reply_t*>(reply)), XCB_ATOM_ATOM);
                      const auto protocol = parts->connection->atoms()[Atom::wmDeleteWindow];
                      if (std::ranges::find(known, protocol) == known.end()) return;
                      sendProtocol(*parts->connection, window, protocol);
                      parts->mustFlush = true;
                  });
    }
    if (batch.isEmpty()) return false;
    parts_->pendingReplies.push_back(std::move(batch));
    parts_->mustFlush = true;
    parts_->sendSoon();
    return true;
}

std::optional<std::string> X11Desktop::forceTerminate(pid_t processIdentifier) {
    const auto found = parts_->applications.find(processIdentifier);
    if (!found) return "it does not run any more";
    if (found->isPartOfDesktop) return "it belongs to the desktop";
    std::vector<OwnerEvidence> evidence;
    {
        const MutexLock lock(parts_->mutex);
        for (const xcb_window_t window : parts_->model.windowsOf(processIdentifier)) {
            if (const ClientWindow* client = parts_->model.client(window)) evidence.push_back(evidenceOf(*client));
        }
    }
    // If the application has no window any more, its process number may belong to another process by now.
    if (evidence.empty()) return "it has no window any more";
    // The server must confirm the process for each window.
    const auto innerNumber = innerProcessNumber(processIdentifier);
    for (const OwnerEvidence& ofWindow : evidence) {
        if (auto doubt = whyUnverified(ofWindow, innerNumber)) return doubt;
    }
    return killProcess(processIdentifier);
}

} // namespace kova
