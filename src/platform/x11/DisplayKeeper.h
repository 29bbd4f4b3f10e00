// Keeps the present displays: requests monitors and scale when the server announces changes, and computes the screens
// that the platform interface reports. Main thread, with the model's mutex held. Only the constructor and `readAll`
// wait for the server.
#pragma once

#include "platform/x11/DisplayReader.h"
#include "platform/x11/Displays.h"
#include "platform/x11/ScaleReader.h"
#include "platform/x11/WindowModel.h"

#include <vector>

namespace kova::x11 {

class DisplayKeeper {
  public:
    /// The constructor waits for the server.
    explicit DisplayKeeper(const XConnection& connection) : reader_(connection), scale_(connection) {}

    /// The first event number of the extension; absent if the server does not support monitors.
    std::optional<std::uint8_t> eventBase() const { return reader_.eventBase(); }
    bool isScaleHint(const xcb_generic_event_t& event) const { return scale_.isHint(event); }
    /// Reads everything and waits for the server; call before the first `arrange`.
    void readAll();
    /// Uses the replies that have arrived, and requests what the events announced as changed. True if monitors
    /// have been read or the scale has changed; then call `arrange`.
    bool advance(const EventEffects& effects);
    bool isReading() const { return reader_.isReading() || scale_.isReading(); }
    /// True if requests were buffered since the last call.
    bool hasUnsent();
    /// Computes the screens from the monitors and the model's panels; true if the screens have changed.
    bool arrange(WindowModel& model);

    const DisplayArrangement& arrangement() const { return arrangement_; }
    const PointSpace& space() const { return arrangement_.space; }

  private:
    DisplayReader reader_;
    ScaleReader scale_;
    std::vector<Monitor> monitors_;
    DisplayArrangement arrangement_;
};

} // namespace kova::x11
