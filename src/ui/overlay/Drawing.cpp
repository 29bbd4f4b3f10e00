#include "ui/overlay/Drawing.h"

#include "ui/style/Colours.h"

#include <QFontMetrics>
#include <QTextLayout>

#include <cstdint>

namespace kova::ui {

namespace {

/// The same at every start, which the toolkit's own hashes are not.
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

void drawIcon(QPainter& painter, const QRect& area, const ApplicationName& application, const Style& style,
              double opacity) {
    painter.save();
    painter.setOpacity(painter.opacity() * opacity);
    const QPixmap icon = style.icon ? style.icon(application, area.width()) : QPixmap();
    if (!icon.isNull()) {
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawPixmap(area, icon);
    } else {
        // The hue follows from the name, so that an application has the same tile everywhere.
        const int hue = hueOf(application.name);
        const QColor ground = QColor::fromHsl(hue, 115, style.palette.isDark ? 95 : 120);
        drawPanel(painter, area, area.width() / 4.0, ground, QColor(), 0);
        const QString letter = textOf(application.name).trimmed().left(1).toUpper();
        QFont font(style.fontFamily);
        font.setPixelSize(std::max(1, area.height() * 10 / 16));
        font.setWeight(QFont::DemiBold);
        drawText(painter, area, letter, font, legible(Qt::white, {ground}, 4.5), Qt::AlignHCenter);
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
