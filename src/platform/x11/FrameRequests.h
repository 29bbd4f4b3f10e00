// Measures how far the visible edge of a decorated window lies inside the window manager's frame.
#pragma once

#include "platform/x11/PendingReplies.h"
#include "platform/x11/WindowModel.h"

namespace kova::x11 {

/// Requests sizes and relative positions of the client and of the window manager's frame that contains it; `model` uses
/// the replies. The caller holds the lock of `model` while the replies are handled. Absolute positions are not used,
/// so that a window can be measured while it is moved.
void requestFrame(PendingReplies& batch, const XConnection& connection, WindowModel& model, const ClientWindow& client);

} // namespace kova::x11
