// Asks which window has the keyboard where no window manager says so.
#pragma once

#include "platform/x11/PendingReplies.h"
#include "platform/x11/WindowModel.h"

namespace kova::x11 {

/// Asks for the focus and, as a server of its own gives the keyboard to whatever lies under the pointer, for that as
/// well; `model` takes the answers and must be locked meanwhile.
void askFocus(PendingReplies& questions, const XConnection& connection, WindowModel& model);

} // namespace kova::x11
