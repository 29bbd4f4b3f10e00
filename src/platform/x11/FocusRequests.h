// Queries the focused window from the server. Needed only without a window manager: a window manager announces the
// focused window.
#pragma once

#include "platform/x11/PendingReplies.h"
#include "platform/x11/WindowModel.h"

namespace kova::x11 {

/// Queries the focused window, and the window under the pointer: without a window manager the focus may follow the
/// pointer. The caller holds the lock of `model` while the replies are handled.
void queryFocus(PendingReplies& pending, const XConnection& connection, WindowModel& model);

} // namespace kova::x11
