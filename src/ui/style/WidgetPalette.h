// The colors of the toolkit's own widgets: menus, dialogs and windows.
#pragma once

#include "ui/style/Palette.h"

#include <QPalette>

namespace kova::ui {

/// For windows and their controls; menus differ only in the background.
QPalette widgetPalette(const Palette& colors);
/// Applies the colors to all widgets, existing and new.
void applyWidgetPalette(const Palette& colors);
/// The font of all widgets, at least one pixel high. It is set in typographic points: SVG icons with text stay blank
/// while the application's font has its size in pixels.
void applyWidgetFontHeight(int pixels);

} // namespace kova::ui
