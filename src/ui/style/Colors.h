// Arithmetic on colors: mixing and blending them, and their contrast ratio (from 1 to 21).
#pragma once

#include "themes/ThemeRegistry.h"

#include <QColor>

#include <initializer_list>

namespace kova::ui {

QColor colorOf(const RGBAColor& color);
/// Mixes the background with `share` (0 to 1) of the other color; the result is opaque.
QColor mixed(const QColor& background, const QColor& other, double share);
QColor withAlpha(QColor color, double alpha);
/// The visible color where a translucent foreground covers an opaque background.
QColor over(const QColor& background, const QColor& foreground);
double contrast(const QColor& one, const QColor& other);
/// Mixes `wanted` with as little white or black as needed for a contrast of at least `ratio` with every background.
/// Returns white or black itself if no mixture has that contrast.
QColor legible(const QColor& wanted, std::initializer_list<QColor> backgrounds, double ratio);

} // namespace kova::ui
