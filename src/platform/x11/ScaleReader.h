// Requests the settings of the desktop's scale, without waiting: the X resources on the root window, and the settings
// of the XSETTINGS manager if there is one. Call with the model's mutex held.
#pragma once

#include "platform/x11/ScaleSettings.h"
#include "platform/x11/SteppedReading.h"

#include <optional>

namespace kova::x11 {

class ScaleReader {
  public:
    /// The constructor waits for the server. The connection must select property and structure events of the root
    /// window.
    explicit ScaleReader(const XConnection& connection);

    /// True if the event may announce new settings; then call `begin`.
    bool isHint(const xcb_generic_event_t& event) const;
    /// Starts a reading. A reading that is in progress already starts over once its replies have arrived.
    void begin() { reading_.begin(); }
    /// Uses the replies that have arrived; true if `scale` has changed.
    bool advance();
    bool isReading() const { return reading_.isUnderWay(); }
    /// True if requests were buffered since the last call.
    bool hasUnsent() { return reading_.hasUnsent(); }
    /// Waits for the server until the reading is complete.
    void wait();
    /// In pixels per point.
    double scale() const { return scale_; }

  private:
    void addRequests(PendingReplies& replies);
    void takeOwner(const void* reply);

    const XConnection& connection_;
    xcb_atom_t selection_ = XCB_ATOM_NONE; // owned by the XSETTINGS manager
    SteppedReading reading_;
    xcb_window_t owner_ = kNoWindow;
    std::optional<double> resourceDotsPerInch_;
    SharedSettings shared_;
    double scale_ = 1;
};

} // namespace kova::x11
