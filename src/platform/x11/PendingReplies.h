// A batch of requests with replies. All requests are sent before the first reply is awaited, and the replies are
// handled in the order of the requests. A thread that may wait calls `wait`; the main thread calls `collect` whenever
// the connection was readable. When all replies have arrived, call `take`.
#pragma once

#include "platform/x11/XConnection.h"

#include <cstddef>
#include <functional>
#include <vector>

namespace kova::x11 {

class PendingReplies {
  public:
    /// `reply` is null if the request failed, for example because its window was destroyed. It is valid during the call
    /// only.
    using Handler = std::function<void(const void* reply)>;

    template <class Cookie>
    void add(Cookie cookie, Handler handler) {
        requests_.push_back({cookie.sequence, std::move(handler), nullptr});
    }
    bool isEmpty() const { return requests_.empty(); }

    /// Sends the buffered requests and waits for all replies. Never call on the main thread once the desktop is open.
    void wait(const XConnection& connection);
    /// Fetches the replies that have arrived; true once all have arrived. Never waits.
    bool collect(const XConnection& connection);
    /// Passes all replies to their handlers. Afterwards the batch contains only requests that the handlers added.
    void take();

  private:
    struct Request {
        unsigned int sequence;
        Handler handler;
        XReply<void> reply;
    };
    std::vector<Request> requests_;
    std::size_t collected_ = 0;
};

} // namespace kova::x11
