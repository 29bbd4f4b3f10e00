// Reads from the server in steps, without waiting: the replies of one step add the requests of the next step. If
// `begin` is called during a reading, the reading starts over once it is complete. Main thread, with the model's mutex
// held.
#pragma once

#include "platform/x11/PendingReplies.h"

#include <functional>
#include <utility>

namespace kova::x11 {

class SteppedReading {
  public:
    /// `addFirst` adds the requests of the first step. The connection outlives the reading.
    SteppedReading(const XConnection& connection, std::function<void(PendingReplies&)> addFirst) :
        connection_(connection), addFirst_(std::move(addFirst)) {}

    void begin() {
        startsOver_ = isUnderWay();
        if (startsOver_) return;
        hasUnsent_ = true;
        addFirst_(replies_);
    }
    /// Uses the replies that have arrived. True if the last step is complete now.
    bool advance() {
        if (!isUnderWay() || !replies_.collect(connection_)) return false;
        replies_.take();
        if (isUnderWay()) {
            hasUnsent_ = true; // the requests of the next step
            return false;
        }
        if (!std::exchange(startsOver_, false)) return true;
        begin();
        return false;
    }
    bool isUnderWay() const { return !replies_.isEmpty(); }
    /// True if requests were buffered since the last call.
    bool hasUnsent() { return std::exchange(hasUnsent_, false); }
    /// Sends and waits for the replies of one step; `advance` uses them.
    void waitForStep() { replies_.wait(connection_); }
    /// Add the requests of the next step here.
    PendingReplies& replies() { return replies_; }

  private:
    const XConnection& connection_;
    const std::function<void(PendingReplies&)> addFirst_;
    PendingReplies replies_;
    bool startsOver_ = false;
    bool hasUnsent_ = false;
};

} // namespace kova::x11
