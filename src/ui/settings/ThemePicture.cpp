#include "ui/settings/ThemePicture.h"

#include "ui/overlay/Drawing.h"
#include "ui/style/Colors.h"

#include <QLinearGradient>
#include <QPainterPath>

namespace kova::ui {

void drawTheme(QPainter& painter, const QRectF& area, const Palette& colors) {
    // The coordinates are on a grid of 32 by 20 units.
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(area.topLeft());
    painter.scale(area.width() / 32, area.height() / 20);
    QPainterPath display;
    display.addRoundedRect(QRectF(0.25, 0.25, 31.5, 19.5), 2, 2);
    QLinearGradient backdrop(0, 0, 0, 20);
    backdrop.setColorAt(0, colors.backdropTop);
    backdrop.setColorAt(1, colors.backdropBottom);
    painter.fillPath(display, backdrop);
    if (colors.grid.isValid()) {
        painter.setPen(QPen(withAlpha(colors.grid, 0.25), 0.3)); // the grid is too faint at this size
        for (const double at : {4.0, 8.0, 12.0, 16.0, 20.0, 24.0, 28.0}) {
            painter.drawLine(QPointF(at, 0.5), QPointF(at, 19.5));
            if (at < 20) painter.drawLine(QPointF(0.5, at), QPointF(31.5, at));
        }
    }
    const auto bar = [&](const QRectF& place, const QColor& fill) {
        drawPanel(painter, place, place.height() / 2, fill, QColor(), 0);
    };
    drawPanel(painter, QRectF(2, 2, 18, 11), 1, colors.raised, colors.raisedLine, 0.4);
    bar(QRectF(4, 4.5, 9, 1.2), colors.text);
    bar(QRectF(4, 7, 13, 1.2), colors.mutedText);
    bar(QRectF(4, 9.5, 11, 1.2), colors.mutedText);
    drawPanel(painter, QRectF(2, 14.2, 18, 3.8), 1, colors.panel, colors.panelLine, 0.4);
    drawPanel(painter, QRectF(3, 14.9, 8, 2.4), 0.7, colors.raised, colors.accentLine, 0.6);
    bar(QRectF(12.5, 15.6, 4, 1), colors.mutedText);
    drawPanel(painter, QRectF(22, 2, 8, 16), 1, colors.tileFill, colors.tileLine, 0.4);
    painter.fillRect(QRectF(24.5, 9.7, 3, 0.6), colors.accentLine);
    painter.fillRect(QRectF(25.7, 8.5, 0.6, 3), colors.accentLine);
    painter.strokePath(display, QPen(colors.raisedLine, 0.5));
    painter.restore();
}

void drawAccent(QPainter& painter, const QRectF& area, const QColor& accent, const QColor& secondaryAccent) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    drawPanel(painter, area, area.height() / 4, accent, QColor(), 0);
    painter.setClipRect(area.adjusted(area.width() * 0.7, 0, 0, 0));
    drawPanel(painter, area, area.height() / 4, secondaryAccent, QColor(), 0);
    painter.restore();
}

} // namespace kova::ui
