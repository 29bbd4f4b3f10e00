// Arithmetic on colors: drawing one over another, and the contrast ratio of two (from 1 to 21).
#pragma once

#include "themes/ThemeRegistry.h"

#include <QColor>

#include <initializer_list>

namespace kova::ui {

QColor colorOf(const RGBAColor& color);
/// The first color with `share` (0 to 1) of the second one in it; opaque.
QColor mixed(const QColor& ground, const QColor& other, double share);
QColor withAlpha(QColor color, double alpha);
/// The visible color where a translucent color covers an opaque one.
QColor over(const QColor& ground, const QColor& cover);
double contrast(const QColor& one, const QColor& other);
/// The color nearest to `wanted`, on the way to white or to black, whose contrast with every ground is at least
/// `ratio`; white or black itself when none reaches it.
QColor legible(const QColor& wanted, std::initializer_list<QColor> grounds, double ratio);

} // namespace kova::ui
