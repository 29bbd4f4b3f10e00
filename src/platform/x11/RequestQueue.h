// Requests for windows, collected during an operation and sent together: one request for a window's position, size and
// order, however often each was set, and one activation, since only the last one would have an effect.
#pragma once

#include "platform/x11/WindowModel.h"

#include <optional>
#include <vector>

namespace kova::x11 {

class RequestQueue {
  public:
    RequestQueue(const XConnection& connection, WindowModel& model) : connection_(connection), model_(model) {}

    /// Requests `outer` (root coordinates) as the window's visible outer edge. Nothing for a full-screen window, or one
    /// that has or will have that edge already.
    void place(ClientWindow& client, const PixelRect& outer, Seconds now);
    void raise(const ClientWindow& client);
    void maximize(ClientWindow& client);
    /// Focuses the window, or the one of its process that was requested or raised before.
    void activate(const ClientWindow& client);
    void activateApplication(pid_t processIdentifier, const ClientWindow* mainWindow);

    /// The window that will be focused; absent when none was requested.
    std::optional<xcb_window_t> activated() const {
        return activation_ ? std::optional(activation_->window) : std::nullopt;
    }
    /// Sends an activation at once, beside the collected one, to restore a window.
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
