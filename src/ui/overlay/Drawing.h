// Shapes that several pictures share. Coordinates are pixels.
#pragma once

#include "ui/style/Style.h"

#include <QPainter>
#include <QString>
#include <QStringList>

#include <string_view>

namespace kova::ui {

inline QString textOf(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

/// Draws a rounded rectangle whose outline lies inside the area. Draws no fill if `fill` is an invalid color, and
/// no outline if `line` is an invalid color.
void drawPanel(QPainter& painter, const QRectF& area, double radius, const QColor& fill, const QColor& line,
               double lineWidth);
/// Draws one line of text, elided at its end and vertically centered. `Qt::AlignLeft` means the left side for
/// right-to-left text, too.
void drawText(QPainter& painter, const QRect& area, const QString& text, const QFont& font, const QColor& color,
              Qt::Alignment alignment = Qt::AlignLeft);
int widthOf(const QString& text, const QFont& font);
/// The text as one line, or broken between words into two lines, of which the second may be wider than `width`.
QStringList upToTwoLines(const QString& text, const QFont& font, int width);
/// The first character as a user sees it, which may be several code points; empty for a blank text.
QString firstGrapheme(const QString& text);

/// Icons of stacked windows are dim.
enum class IconTone { full, dim };
struct LetterTile {
    QColor background, letter; // their contrast is at least 4.5
};
LetterTile letterTile(std::string_view applicationName, const Palette& palette, IconTone tone);
/// Draws the application's icon; if it has none, a tile with the first letter of its name.
void drawIcon(QPainter& painter, const QRect& area, const ApplicationName& application, const Style& style,
              IconTone tone = IconTone::full);
/// Draws a plus sign.
void drawPlus(QPainter& painter, const QRect& area, const Style& style, const QColor& color);

} // namespace kova::ui
