// The colors of the toolkit's own widgets: menus, dialogs and windows.
#pragma once

#include "ui/style/Palette.h"

#include <QPalette>

namespace kova::ui {

/// Of windows and their controls; menus differ in their ground only.
QPalette widgetPalette(const Palette& colors);
/// Has all widgets, existing and new, use the colors.
void applyWidgetPalette(const Palette& colors);

} // namespace kova::ui
