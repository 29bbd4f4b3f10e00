// The small pictures of themes and accent colors in the settings.
#pragma once

#include "ui/style/Palette.h"

#include <QPainter>

namespace kova::ui {

/// Draws a display with a window, its footer and an empty tile, in these colors.
void drawTheme(QPainter& painter, const QRectF& area, const Palette& colors);
/// Draws both colors of an accent side by side.
void drawAccent(QPainter& painter, const QRectF& area, const QColor& accent, const QColor& secondaryAccent);

} // namespace kova::ui
