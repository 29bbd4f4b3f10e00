// Requests for windows, kept until the end of an operation and then sent at once: one request for a window's place,
// size and order together, however often each was written, so that each moved window is told once; and one activation,
// since only the last one would remain.
#pragma once

#include "platform/x11/WindowModel.h"

#include <optional>
#include <vector>

namespace kova::x11 {

class RequestQueue {
  public:
    RequestQueue(const XConnection& connection, WindowModel& model) : connection_(connection), model_(model) {}

    /// Requests that the visible outer edge be there; root coordinates. A full-screen window is left alone, and a
    /// window that is or will be there already is not bothered.
    void place(ClientWindow& client, const PixelRect& outer, Seconds now);
    void raise(const ClientWindow& client);
    void maximize(ClientWindow& client);
    /// The keyboard goes to the window, or to the one of its process that had been requested or raised before it.
    void activate(const ClientWindow& client);
    void activateApplication(pid_t processIdentifier, const ClientWindow* mainWindow);

    /// The window that is to have the keyboard; absent when none was requested.
    std::optional<xcb_window_t> activated() const {
        return activation_ ? std::optional(activation_->window) : std::nullopt;
    }
    /// The same at once and beside that: it comes back to the screen by it.
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
