// A batch of requests whose replies are wanted: all are sent before the first is waited for, and the answers are taken
// in the order in which they were asked. A thread that may wait calls `wait`; the main thread calls `collect` whenever
// the connection had something to read.
#pragma once

#include "platform/x11/XConnection.h"

#include <cstddef>
#include <functional>
#include <vector>

namespace kova::x11 {

class PendingReplies {
  public:
    /// Gets null when the request failed, for example because its window has gone. The memory is not the taker's.
    using Taker = std::function<void(const void* reply)>;

    template <class Cookie>
    void add(Cookie cookie, Taker taker) {
        asked_.push_back({cookie.sequence, std::move(taker), nullptr});
    }
    bool isEmpty() const { return asked_.empty(); }

    /// Sends what is buffered and waits for all replies. Never on the main thread once the desktop is open.
    void wait(const XConnection& connection);
    /// Fetches the replies that have come; true when none is missing. Never waits.
    bool collect(const XConnection& connection);
    /// Hands over the replies, once all are there; the batch is empty afterwards.
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
