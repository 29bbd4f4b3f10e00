// How far the visible edge of a decorated window lies inside the window manager's frame.
#pragma once

#include "platform/x11/PendingReplies.h"
#include "platform/x11/WindowModel.h"

namespace kova::x11 {

/// Asks for a window that is in a frame of another; `model` takes the answers and must be locked meanwhile. Relative
/// positions and sizes only, so that a window that is being moved meanwhile is measured as well as one that rests.
void askFrame(PendingReplies& questions, const XConnection& connection, WindowModel& model, const ClientWindow& client);

} // namespace kova::x11
