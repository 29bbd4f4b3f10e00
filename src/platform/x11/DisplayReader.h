// Asks the server for its monitors and their identities, without waiting: first the monitors, then, with their outputs
// known, names and identities.
#pragma once

#include "platform/x11/Displays.h"
#include "platform/x11/PendingReplies.h"

#include <optional>
#include <utility>
#include <vector>

namespace kova::x11 {

class DisplayReader {
  public:
    /// Waits for the server's answer whether it knows monitors; from then on the connection is told of their changes.
    explicit DisplayReader(const XConnection& connection);

    /// Number of the first of the events that announce changes; absent when the server knows no monitors.
    std::optional<std::uint8_t> eventBase() const { return eventBase_; }
    /// Asks anew; asked meanwhile, it starts over once the answers are in.
    void begin();
    /// Takes what has come; true when `monitors` has just become complete.
    bool advance();
    bool isAsking() const { return !questions_.isEmpty(); }
    /// Requests were buffered since this was last asked.
    bool hasUnsent() { return std::exchange(hasUnsent_, false); }
    void wait();
    const std::vector<Monitor>& monitors() const { return monitors_; }
    /// Whether the server tells of monitors; if it tells of none, all are off.
    bool isTold() const { return isTold_; }

  private:
    void takeMonitors(const void* reply);

    const XConnection& connection_;
    std::optional<std::uint8_t> eventBase_;
    PendingReplies questions_;
    std::vector<Monitor> monitors_, coming_;
    bool startsOver_ = false;
    bool hasUnsent_ = false;
    bool isTold_ = false;
};

} // namespace kova::x11
