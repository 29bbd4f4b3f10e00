// Requests the server's monitors and their identities, without waiting: first the monitors, then the names and
// identities of their outputs.
#pragma once

#include "platform/x11/Displays.h"
#include "platform/x11/SteppedReading.h"

#include <optional>
#include <vector>

namespace kova::x11 {

class DisplayReader {
  public:
    /// Waits for the server's version of the extension and selects events for changes of monitors.
    explicit DisplayReader(const XConnection& connection);

    /// The first event number of the extension; absent if the server does not support monitors.
    std::optional<std::uint8_t> eventBase() const { return eventBase_; }
    /// Starts reading. If a reading is in progress, it starts over once the replies have arrived.
    void begin();
    /// Uses the replies that have arrived; true when `monitors` has just become complete.
    bool advance();
    bool isAsking() const { return reading_.isUnderWay(); }
    /// Whether requests were buffered since the last call.
    bool hasUnsent() { return reading_.hasUnsent(); }
    void wait();
    const std::vector<Monitor>& monitors() const { return monitors_; }
    /// Whether the server reports monitors; if it reports none, all are off.
    bool isTold() const { return hasReport_; }

  private:
    void takeMonitors(const void* reply);

    const XConnection& connection_;
    std::optional<std::uint8_t> eventBase_;
    SteppedReading reading_;
    std::vector<Monitor> monitors_, coming_;
    bool hasReport_ = false;
};

} // namespace kova::x11
