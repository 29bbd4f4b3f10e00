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
    /// Selects events for changes of monitors. The constructor waits for the server, to learn the extension's version.
    explicit DisplayReader(const XConnection& connection);

    /// The first event number of the extension; absent if the server does not support monitors.
    std::optional<std::uint8_t> eventBase() const { return eventBase_; }
    /// Starts a reading. A reading that is in progress already starts over once its replies have arrived.
    void begin();
    /// Uses the replies that have arrived; true if `monitors` has just been replaced.
    bool advance();
    bool isReading() const { return reading_.isUnderWay(); }
    /// True if requests were buffered since the last call.
    bool hasUnsent() { return reading_.hasUnsent(); }
    /// Waits for the server until the reading is complete.
    void wait();
    const std::vector<Monitor>& monitors() const { return monitors_; }
    /// True if the server has reported its monitors. If it has and `monitors` is empty, all monitors are off.
    bool hasReport() const { return hasReport_; }

  private:
    void takeMonitors(const void* reply);

    const XConnection& connection_;
    std::optional<std::uint8_t> eventBase_;
    SteppedReading reading_;
    std::vector<Monitor> monitors_, newMonitors_;
    bool hasReport_ = false;
};

} // namespace kova::x11
