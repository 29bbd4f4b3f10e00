// Icons that are drawn whenever they are shown. So they are sharp at every size and pixel ratio, and have the current
// colors.
#pragma once

#include <QIcon>
#include <QPainter>

#include <functional>

namespace kova::ui {

/// `draw` is called whenever the icon is painted, as long as the icon exists.
QIcon paintedIcon(std::function<void(QPainter& painter, const QRectF& area)> draw);

} // namespace kova::ui
