// The displays as they are: asks the server for monitors and scale when it
// announces changes, and computes from these and the panels what is told above
// the seam. Main thread, guarded like the model; waits only in `readAll`.
#pragma once

#include "platform/x11/DisplayReader.h"
#include "platform/x11/Displays.h"
#include "platform/x11/ScaleReader.h"
#include "platform/x11/WindowModel.h"

#include <vector>

namespace kova::x11 {

class DisplayKeeper {
  public:
    /// Waits for the server.
    explicit DisplayKeeper(const XConnection& connection) : reader_(connection), scale_(connection) {}

    /// Number of the first of the events that announce changes; absent when the
    /// server knows no monitors.
    std::optional<std::uint8_t> eventBase() const { return reader_.eventBase(); }
    bool isScaleHint(const xcb_generic_event_t& event) const { return scale_.isHint(event); }
    /// All that there is to know, before the first `arrange`. Waits for the
    /// server.
    void readAll();
    /// Takes the answers that have come, and asks what the events say has
    /// changed. True when `arrange` has something new.
    bool advance(const EventEffects& effects);
    bool isAsking() const { return reader_.isAsking() || scale_.isAsking(); }
    /// Requests were buffered since this was last asked.
    bool hasUnsent();
    /// Computes the arrangement anew, by the panels of the model; true when it is
    /// another now.
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
