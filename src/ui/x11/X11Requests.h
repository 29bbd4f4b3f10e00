// Small helpers for talking to the X server. Names are those of its library.
#pragma once

#include "ui/x11/StackOrder.h"

#include <QRegion>

#include <xcb/shape.h>
#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>

namespace kova::ui {

/// Frees the result of a function of the X library.
template <class Reply>
using Owned = std::unique_ptr<Reply, decltype(&std::free)>;
template <class Reply>
Owned<Reply> owned(Reply* reply) {
    return {reply, &std::free};
}

/// Gives a window a shape: the part that is seen, or the part that takes clicks.
void shapeWindow(xcb_connection_t* connection, WindowNumber window, xcb_shape_kind_t kind, const QRegion& region);

} // namespace kova::ui
