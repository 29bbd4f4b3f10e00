// Collects requests for windows during an operation and sends them together: one request for each window with its last
// position, size and stacking order, and one activation, since only the last activation would have an effect.
#pragma once

#include "platform/x11/WindowModel.h"

#include <optional>
#include <vector>

namespace kova::x11 {

class RequestQueue {
  public:
    RequestQueue(const XConnection& connection, WindowModel& model) : connection_(connection), model_(model) {}

    /// Requests `outer` (root coordinates) as the window's visible outer edge. No-op if the window is full screen, or
    /// has that edge already, or the same request is pending.
    void place(ClientWindow& client, const PixelRect& outer, Seconds now);
    void raise(const ClientWindow& client);
    void maximize(ClientWindow& client);
    /// Requests the focus for the window.
    void activate(const ClientWindow& client);
    /// Requests the focus for a window of the process. If the focus was already requested for one of its windows, that
    /// request stays. Otherwise uses the window of the process that was raised last; if none was raised, `mainWindow`
    /// (null: no window).
    void activateApplication(pid_t processIdentifier, const ClientWindow* mainWindow);

    /// The window that `send` will focus; absent if none was requested.
    std::optional<xcb_window_t> windowToActivate() const {
        return activation_ ? std::optional(activation_->window) : std::nullopt;
    }
    /// Sends an activation at once, in addition to the collected one, to restore a window.
    void sendActivation(const ClientWindow& client);

    bool isEmpty() const { return pending_.empty() && !activation_; }
    /// Buffers all requests.
    void send();

  private:
    struct WindowRequest {
        xcb_window_t window = kNoWindow;
        std::optional<PixelRect> outer;
        bool raise = false;
        bool unmaximize = false;
        bool maximize = false;
    };
    struct Activation {
        xcb_window_t window = kNoWindow;
        pid_t processIdentifier = 0;
    };

    WindowRequest& requestFor(xcb_window_t window);
    void raiseAlone(const ClientWindow& client);
    void sendDirectly(ClientWindow& client, const WindowRequest& request);
    void sendThroughManager(ClientWindow& client, const WindowRequest& request);
    void changeMaximizing(const ClientWindow& client, std::uint32_t change);

    const XConnection& connection_;
    WindowModel& model_;
    std::vector<WindowRequest> pending_; // in the order in which they are to be sent
    std::optional<Activation> activation_;
};

} // namespace kova::x11
