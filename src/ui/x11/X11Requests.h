// Helpers for requests to the X server.
#pragma once

#include "ui/x11/StackOrder.h"

#include <QRegion>

#include <xcb/shape.h>
#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>

namespace kova::ui {

/// A result of the X library, freed with `std::free`.
template <class Reply>
using Owned = std::unique_ptr<Reply, decltype(&std::free)>;
template <class Reply>
Owned<Reply> owned(Reply* reply) {
    return {reply, &std::free};
}

/// Sets a shape of the window: the visible part or the part that receives clicks, depending on `kind`.
void shapeWindow(xcb_connection_t* connection, WindowNumber window, xcb_shape_kind_t kind, const QRegion& region);

} // namespace kova::ui
