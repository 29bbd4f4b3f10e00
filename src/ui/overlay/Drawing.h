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

/// A rounded rectangle whose line is inside of it, sharp on the pixel grid. Invalid colors are left out.
void drawPanel(QPainter& painter, const QRectF& area, double radius, const QColor& fill, const QColor& line,
               double lineWidth);
/// One line of text, elided at its end, vertically centered. Whatever its writing direction, it starts at the left.
void drawText(QPainter& painter, const QRect& area, const QString& text, const QFont& font, const QColor& color,
              Qt::Alignment alignment = Qt::AlignLeft);
int widthOf(const QString& text, const QFont& font);
/// The text on one line, or on two, broken between words; the second one may be wider than `width`.
QStringList upToTwoLines(const QString& text, const QFont& font, int width);
/// The first character as it is read, which may be several code points; empty without one.
QString firstGrapheme(const QString& text);

/// Windows that wait behind another one are dim.
enum class IconTone { full, dim };
struct LetterTile {
    QColor ground, letter; // with a contrast of at least 4.5
};
LetterTile letterTile(std::string_view applicationName, const Palette& palette, IconTone tone);
/// The application's icon, else a tile with the first letter of its name.
void drawIcon(QPainter& painter, const QRect& area, const ApplicationName& application, const Style& style,
              IconTone tone = IconTone::full);
/// A cross of two lines.
void drawPlus(QPainter& painter, const QRect& area, const Style& style, const QColor& color);

} // namespace kova::ui
