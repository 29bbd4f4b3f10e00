#include "ui/overlay/Drawing.h"

#include "ui/style/Colors.h"

#include <QFontMetrics>
#include <QTextBoundaryFinder>
#include <QTextLayout>

#include <cmath>
#include <cstdint>

namespace kova::ui {

namespace {

constexpr double kDimOpacity = 0.6; // of dim icons from the theme, whose colors cannot be adapted

/// The hue for a name, from 0 to 359; it is the same each time this program runs. Therefore the toolkit's hash
/// functions are not used, since their results vary between runs.
int hueOf(std::string_view name) {
    std::uint32_t hash = 2166136261u;
    for (const char byte : name) hash = (hash ^ static_cast<unsigned char>(byte)) * 16777619u;
    return static_cast<int>(hash % 360);
}

} // namespace

void drawPanel(QPainter& painter, const QRectF& area, double radius, const QColor& fill, const QColor& line,
               double lineWidth) {
    painter.setRenderHint(QPainter::Antialiasing);
    const double half = line.isValid() ? lineWidth / 2 : 0;
    painter.setBrush(fill.isValid() ? QBrush(fill) : QBrush(Qt::NoBrush));
    painter.setPen(line.isValid() ? QPen(line, lineWidth) : QPen(Qt::NoPen));
    painter.drawRoundedRect(area.adjusted(half, half, -half, -half), radius - half, radius - half);
}

void drawText(QPainter& painter, const QRect& area, const QString& text, const QFont& font, const QColor& color,
              Qt::Alignment alignment) {
    painter.setFont(font);
    painter.setPen(color);
    const QString shown = QFontMetrics(font).elidedText(text, Qt::ElideRight, area.width());
    painter.drawText(area, static_cast<int>(alignment | Qt::AlignAbsolute | Qt::AlignVCenter) | Qt::TextSingleLine,
                     shown);
}

int widthOf(const QString& text, const QFont& font) {
    return QFontMetrics(font).horizontalAdvance(text);
}

QStringList upToTwoLines(const QString& text, const QFont& font, int width) {
    QTextLayout layout(text, font);
    layout.beginLayout();
    QTextLine first = layout.createLine();
    if (first.isValid()) first.setLineWidth(width);
    layout.endLayout();
    const auto length = first.isValid() ? first.textLength() : 0;
    if (length >= text.size()) return {text};
    return {text.left(length).trimmed(), text.mid(length).trimmed()};
}

QString firstGrapheme(const QString& text) {
    const QString trimmed = text.trimmed();
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, trimmed);
    const auto end = finder.toNextBoundary();
    return end < 0 ? QString() : trimmed.left(end);
}

LetterTile letterTile(std::string_view name, const Palette& palette, IconTone tone) {
    // The hue depends on the name only, so that an application looks the same everywhere.
    const QColor full = QColor::fromHsl(hueOf(name), 115, palette.isDark ? 95 : 120);
    const QColor background = tone == IconTone::full ? full : mixed(over(palette.raised, palette.panel), full, 0.4);
    return {background, legible(tone == IconTone::full ? QColor(Qt::white) : palette.mutedText, {background}, 4.5)};
}

void drawIcon(QPainter& painter, const QRect& area, const ApplicationName& application, const Style& style,
              IconTone tone) {
    painter.save();
    const int pixels = static_cast<int>(std::ceil(area.width() * painter.device()->devicePixelRatioF()));
    const QPixmap icon = style.icon ? style.icon(application, pixels) : QPixmap();
    if (!icon.isNull()) {
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        if (tone == IconTone::dim) painter.setOpacity(painter.opacity() * kDimOpacity);
        painter.drawPixmap(area, icon);
    } else {
        const LetterTile tile = letterTile(application.name, style.palette, tone);
        drawPanel(painter, area, area.width() / 4.0, tile.background, QColor(), 0);
        const QString letter = firstGrapheme(textOf(application.name)).toUpper();
        QFont font(style.fontFamily);
        font.setPixelSize(std::max(1, area.height() * 10 / 16));
        font.setWeight(QFont::DemiBold);
        drawText(painter, area, letter, font, tile.letter, Qt::AlignHCenter);
    }
    painter.restore();
}

void drawPlus(QPainter& painter, const QRect& area, const Style& style, const QColor& color) {
    painter.setRenderHint(QPainter::Antialiasing, false);
    const int arm = style.px(4), width = static_cast<int>(style.line(1.25));
    const int x = area.center().x() - width / 2, y = area.center().y() - width / 2;
    painter.fillRect(QRect(x - arm, y, 2 * arm + width, width), color);
    painter.fillRect(QRect(x, y - arm, width, 2 * arm + width), color);
}

} // namespace kova::ui
