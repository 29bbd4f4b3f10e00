// A batch of requests with replies: all are sent before the first reply is awaited, and the replies are used in the
// order of the requests. A thread that may wait calls `wait`; the main thread calls `collect` whenever the connection
// was readable.
#pragma once

#include "platform/x11/XConnection.h"

#include <cstddef>
#include <functional>
#include <vector>

namespace kova::x11 {

class PendingReplies {
  public:
    /// Gets null if the request failed, for example because its window was destroyed. The reply is valid during the
    /// call only.
    using Taker = std::function<void(const void* reply)>;

    template <class Cookie>
    void add(Cookie cookie, Taker taker) {
        asked_.push_back({cookie.sequence, std::move(taker), nullptr});
    }
    bool isEmpty() const { return asked_.empty(); }

    /// Sends what is buffered and waits for all replies. Never on the main thread once the desktop is open.
    void wait(const XConnection& connection);
    /// Fetches the replies that have arrived; true when all have. Never waits.
    bool collect(const XConnection& connection);
    /// Passes all replies to their takers, once all have arrived; the batch is empty afterwards.
    void take();

  private:
    struct Asked {
        unsigned int sequence;
        Taker taker;
        XReply<void> reply;
    };
    std::vector<Asked> asked_;
    std::size_t collected_ = 0;
};

} // namespace kova::x11
