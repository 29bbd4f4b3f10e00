// Requests the focused window from the server, for when no window manager announces it.
#pragma once

#include "platform/x11/PendingReplies.h"
#include "platform/x11/WindowModel.h"

namespace kova::x11 {

/// Requests the focus and, since without a window manager the focus may follow the pointer, the window under the
/// pointer. `model` takes the replies and must be locked when they are used.
void askFocus(PendingReplies& questions, const XConnection& connection, WindowModel& model);

} // namespace kova::x11
