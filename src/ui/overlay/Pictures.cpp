#include "ui/overlay/Pictures.h"

#include "ui/client/AgentTexts.h"
#include "ui/overlay/Drawing.h"
#include "ui/style/Colors.h"

#include <QBitmap>
#include <QCoreApplication>
#include <QFontMetrics>
#include <QLinearGradient>

#include <algorithm>
#include <array>

namespace kova::ui {

namespace {

QString launchText() {
    return QCoreApplication::translate("Overlay", "Launch an app in this tile");
}

QString undoText() {
    return QCoreApplication::translate("Overlay", "Undo");
}

QString dropText(const OutlinedTile& tile) {
    return QCoreApplication::translate("Overlay", "Drop on %1").arg(tile.name);
}

QFont largeFont(const Style& style, QFont::Weight weight = QFont::Normal) {
    return style.font(points::largeText, weight);
}

QRegion outline(const QRect& area, int radius, int width) {
    return roundedRegion(area, radius) -
           roundedRegion(area.adjusted(width, width, -width, -width), std::max(0, radius - width));
}

double edgeWidthOnDesktop(const Style& style) {
    return style.line(2);
}

/// Draws a line along the inside of a rounded rectangle. `dash` is the length of the dashes and of the gaps, in pixels.
void drawDashes(QPainter& painter, const QRectF& area, double radius, QPen pen, double dash) {
    const double half = pen.widthF() / 2;
    pen.setDashPattern({dash / pen.widthF(), dash / pen.widthF()});
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(pen);
    painter.drawRoundedRect(area.adjusted(half, half, -half, -half), radius, radius);
}

QRect labelArea(const OutlinedTile& tile, const Style& style) {
    const int height = style.px(points::buttonHeight);
    const int width = std::min(widthOf(dropText(tile), largeFont(style, QFont::DemiBold)) + 2 * style.px(20),
                               std::max(0, tile.area.width() - 2 * style.px(8)));
    QRect area(0, 0, width, height);
    area.moveCenter(tile.area.center());
    return area;
}

} // namespace

QRegion roundedRegion(const QRect& area, int radius) {
    if (area.isEmpty()) return {};
    radius = std::min({radius, area.width() / 2, area.height() / 2});
    if (radius <= 0) return area;
    QRegion region(area.adjusted(0, radius, 0, -radius));
    for (int row = 0; row < radius; ++row) {
        const double up = radius - row - 0.5;
        const int indent = radius - static_cast<int>(std::lround(std::sqrt(radius * radius - up * up)));
        const int width = area.width() - 2 * indent;
        region += QRect(area.left() + indent, area.top() + row, width, 1);
        region += QRect(area.left() + indent, area.bottom() - row, width, 1);
    }
    return region;
}

void fillOpaqueBackground(QPainter& painter, QSize size, const Style& style) {
    if (!style.isComposited) painter.fillRect(QRect(QPoint(0, 0), size), style.palette.panelLine);
}

void paintBackdrop(QPainter& painter, QRect area, const Style& style) {
    QLinearGradient gradient(area.topLeft(), area.bottomLeft());
    gradient.setColorAt(0, style.palette.backdropTop);
    gradient.setColorAt(1, style.palette.backdropBottom);
    painter.fillRect(area, gradient);
    if (!style.palette.grid.isValid()) return;
    const double step = points::gridStep * style.scale;
    const int width = static_cast<int>(style.line(1));
    for (double x = area.left() + step; x < area.right(); x += step) {
        painter.fillRect(QRect(static_cast<int>(std::lround(x)), area.top(), width, area.height()), style.palette.grid);
    }
    for (double y = area.top() + step; y < area.bottom(); y += step) {
        painter.fillRect(QRect(area.left(), static_cast<int>(std::lround(y)), area.width(), width), style.palette.grid);
    }
}

EmptyTileLayout layOutEmptyTile(const TileContents& tile, QSize size, const Style& style) {
    EmptyTileLayout layout;
    layout.panel = QRect(QPoint(0, 0), size);
    const int padding = style.px(points::cardPadding);
    const int widest = size.width() - 2 * padding - 2 * style.px(8);
    const QFontMetrics small(style.font(points::smallText));
    const int button = small.horizontalAdvance(launchText()) + style.px(2 * 20 + 16);
    const int nameHeight = style.px(20), gap = style.px(12), buttonHeight = style.px(points::buttonHeight);
    layout.hasButton = button <= widest && nameHeight + gap + buttonHeight + 2 * padding <= size.height();
    const int name = widthOf(textOf(tile.name), largeFont(style, QFont::Medium)) + 2;
    const int width = std::min(std::max(name, layout.hasButton ? button : 0), std::max(widest, 0));
    const int height = nameHeight + (layout.hasButton ? gap + buttonHeight : 0);
    layout.card = QRect(0, 0, width + 2 * padding, height + 2 * padding);
    layout.card.moveCenter(layout.panel.center());
    const QRect inside = layout.card.adjusted(padding, padding, -padding, -padding);
    layout.name = QRect(inside.left(), inside.top(), inside.width(), nameHeight);
    if (!layout.hasButton) return layout;
    layout.button = QRect(0, 0, button, buttonHeight);
    layout.button.moveCenter(inside.center());
    layout.button.moveTop(layout.name.bottom() + 1 + gap);
    return layout;
}

void paintEmptyTile(QPainter& painter, const TileContents& tile, const EmptyTileLayout& layout,
                    TileBackground background, bool isButtonHovered, const Style& style) {
    const Palette& palette = style.palette;
    const double line = style.line(1), radius = style.px(points::tileRadius);
    if (background == TileBackground::theme) {
        drawPanel(painter, layout.panel, radius, palette.tileFill, QColor(), 0);
        drawDashes(painter, layout.panel, radius, QPen(palette.tileLine, line), 4 * style.scale);
    } else {
        // The edge has two colors, so that at least one of them is visible on any wallpaper.
        const double edge = edgeWidthOnDesktop(style);
        drawPanel(painter, layout.panel, radius, withAlpha(palette.panel, style.isComposited ? 0.3 : 1),
                  withAlpha(palette.panel, 1), edge);
        drawDashes(painter, layout.panel, radius, QPen(palette.mutedText, edge, Qt::SolidLine, Qt::FlatCap),
                   6 * style.scale);
        drawPanel(painter, layout.card, style.px(12), palette.panel, palette.panelLine, line);
    }
    drawText(painter, layout.name, textOf(tile.name), largeFont(style, QFont::Medium), palette.mutedText,
             Qt::AlignHCenter);
    if (!layout.hasButton) return;
    drawPanel(painter, layout.button, layout.button.height() / 2.0, palette.raised,
              isButtonHovered ? palette.accentLine : palette.raisedLine, style.line(isButtonHovered ? 1.5 : 1));
    const QRect plus(layout.button.left() + style.px(16), layout.button.top(), style.px(12), layout.button.height());
    drawPlus(painter, plus, style, isButtonHovered ? palette.accentLine : palette.text);
    drawText(painter, QRect(QPoint(plus.right() + 1 + style.px(8), layout.button.top()), layout.button.bottomRight()),
             launchText(), style.font(points::smallText), palette.text);
}

QRegion emptyTileShape(const EmptyTileLayout& layout, TileBackground background, const Style& style) {
    const int radius = style.px(points::tileRadius);
    if (background == TileBackground::theme || style.isComposited) return roundedRegion(layout.panel, radius);
    return outline(layout.panel, radius, static_cast<int>(edgeWidthOnDesktop(style))) +
           roundedRegion(layout.card, style.px(12));
}

void paintDropTargets(QPainter& painter, const std::vector<OutlinedTile>& tiles, const Style& style) {
    const Palette& palette = style.palette;
    const double radius = style.px(points::tileRadius);
    for (const OutlinedTile& tile : tiles) {
        if (!tile.isTarget) {
            // The outline is opaque, since it covers the dashed outline of an empty tile.
            const QColor quiet = mixed(palette.raised, palette.accentLine, style.isComposited ? 0.5 : 1);
            drawPanel(painter, tile.area, radius, QColor(), quiet, style.line(1.5));
            continue;
        }
        drawPanel(painter, tile.area, radius, withAlpha(palette.accentLine, style.isComposited ? 0.22 : 1),
                  palette.accentLine, style.line(style.isComposited ? 2.5 : 4));
        const QRect label = labelArea(tile, style);
        drawPanel(painter, label, label.height() / 2.0, palette.raised, palette.raisedLine, style.line(1));
        drawText(painter, label.adjusted(style.px(12), 0, -style.px(12), 0), dropText(tile),
                 largeFont(style, QFont::DemiBold), palette.text, Qt::AlignHCenter);
    }
}

QRegion dropTargetShape(const std::vector<OutlinedTile>& tiles, const Style& style) {
    const int radius = style.px(points::tileRadius);
    QRegion region;
    for (const OutlinedTile& tile : tiles) {
        if (style.isComposited) {
            region += roundedRegion(tile.area, radius);
            continue;
        }
        region += outline(tile.area, radius, static_cast<int>(style.line(tile.isTarget ? 4 : 1.5)));
        if (tile.isTarget) {
            const QRect label = labelArea(tile, style);
            region += roundedRegion(label, label.height() / 2);
        }
    }
    return region;
}

QRect dividerLine(const QRect& gap, bool isVertical, const Style& style) {
    const int width = std::max(1, style.px(points::dividerLine)), end = style.px(8);
    QRect line = isVertical ? gap.adjusted(0, end, 0, -end) : gap.adjusted(end, 0, -end, 0);
    const QPoint middle = gap.center();
    if (isVertical) {
        line.setLeft(middle.x() - width / 2);
        line.setWidth(width);
    } else {
        line.setTop(middle.y() - width / 2);
        line.setHeight(width);
    }
    return line;
}

void paintDividerLine(QPainter& painter, QSize size, const Style& style) {
    painter.fillRect(QRect(QPoint(0, 0), size), style.palette.accentLine);
}

MessageLayout layOutMessage(const StatusMessage& message, int widestPixels, const Style& style) {
    MessageLayout layout;
    const QFontMetrics metrics(largeFont(style));
    const int side = style.px(20), gap = style.px(16), height = style.px(points::messageHeight);
    const int button = !message.undoMethod.empty()
                           ? widthOf(undoText(), style.font(points::largeText, QFont::DemiBold)) + 2 * style.px(16)
                           : 0;
    const int most = std::max(style.px(80), std::min(widestPixels, style.px(points::widestMessage)) - 2 * side -
                                                (button > 0 ? gap + button - style.px(12) : 0));
    const int natural = metrics.horizontalAdvance(inUsersLanguage(message.text)) + 2;
    const bool isTwoLines = natural > most;
    const int text = std::min(natural, most);
    const int panelHeight = isTwoLines ? std::max(height, 2 * metrics.lineSpacing() + 2 * style.px(8)) : height;
    layout.text = QRect(side, 0, text, panelHeight);
    int right = side + text + side;
    if (button > 0) {
        const int buttonHeight = style.px(28);
        layout.undo = QRect(side + text + gap, (panelHeight - buttonHeight) / 2, button, buttonHeight);
        right = layout.undo.right() + 1 + style.px(8);
    }
    layout.size = QSize(right, panelHeight);
    return layout;
}

void paintMessage(QPainter& painter, const StatusMessage& message, const MessageLayout& layout, bool isUndoHovered,
                  const Style& style) {
    const Palette& palette = style.palette;
    drawPanel(painter, QRect(QPoint(0, 0), layout.size), style.px(points::messageHeight) / 2.0, palette.raised,
              palette.raisedLine, style.line(1));
    const QFont font = largeFont(style);
    const QStringList lines = upToTwoLines(inUsersLanguage(message.text), font, layout.text.width());
    const int spacing = QFontMetrics(font).lineSpacing();
    const int top = (layout.size.height() - static_cast<int>(lines.size()) * spacing) / 2;
    QRect line(layout.text.left(), top, layout.text.width(), spacing);
    for (const QString& shown : lines) {
        drawText(painter, line, shown, font, palette.text);
        line.translate(0, spacing);
    }
    if (layout.undo.isEmpty()) return;
    drawPanel(painter, layout.undo, layout.undo.height() / 2.0, palette.accentFill,
              isUndoHovered ? palette.accentLine : QColor(), style.line(1));
    drawText(painter, layout.undo, undoText(), style.font(points::largeText, QFont::DemiBold), palette.accentText,
             Qt::AlignHCenter);
}

} // namespace kova::ui
