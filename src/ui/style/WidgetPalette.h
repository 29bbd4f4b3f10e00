// The colors of the toolkit's own widgets: menus, dialogs and windows.
#pragma once

#include "ui/style/Palette.h"

#include <QPalette>

namespace kova::ui {

/// The colors of windows and their controls; menus have other background colors. The texts of disabled controls have a
/// contrast of at least 3.
QPalette widgetPalette(const Palette& colors);
/// Applies the colors to all widgets, existing and new.
void applyWidgetPalette(const Palette& colors);
/// Sets the height of the font of all widgets, at least one pixel. The size is set in typographic points: if it were
/// set in pixels, the toolkit would not draw the text in SVG icons.
void applyWidgetFontHeight(int pixels);

} // namespace kova::ui
