// Asks the server for the settings of the desktop's scale, without waiting: the X resources on the root window, and the
// XSETTINGS manager where there is one. Guarded like the model.
#pragma once

#include "platform/x11/PendingReplies.h"
#include "platform/x11/ScaleSettings.h"

#include <optional>
#include <utility>

namespace kova::x11 {

class ScaleReader {
  public:
    /// Waits for the server. The connection must be told of the root window's properties and structure.
    explicit ScaleReader(const XConnection& connection);

    /// Whether the event says that it is time to ask.
    bool isHint(const xcb_generic_event_t& event) const;
    /// Asks anew; asked meanwhile, it starts over once the answers are in.
    void begin();
    /// Takes what has come; true when `scale` is another now.
    bool advance();
    bool isAsking() const { return !questions_.isEmpty(); }
    /// Requests were buffered since this was last asked.
    bool hasUnsent() { return std::exchange(hasUnsent_, false); }
    void wait();
    /// Pixels to a point.
    double scale() const { return scale_; }

  private:
    void takeOwner(const void* reply);

    const XConnection& connection_;
    xcb_atom_t selection_ = XCB_ATOM_NONE; // which the XSETTINGS manager owns
    PendingReplies questions_;
    xcb_window_t owner_ = kNoWindow;
    std::optional<double> resourceDotsPerInch_;
    SharedSettings shared_;
    double scale_ = 1;
    bool startsOver_ = false;
    bool hasUnsent_ = false;
};

} // namespace kova::x11
