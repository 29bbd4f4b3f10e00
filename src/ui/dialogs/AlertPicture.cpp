#include "ui/dialogs/AlertPicture.h"

#include "ui/style/Colors.h"

#include <QPainter>
#include <QPainterPath>

#include <utility>

namespace kova::ui {

namespace {

const QColor kWarningFill(0xf5, 0xb3, 0x2e), kWarningMark(0x2a, 0x20, 0x08);

// Both signs are drawn on a square of 48 units.
constexpr double kUnits = 48;

void drawWarning(QPainter& painter, const Palette& colors) {
    QPainterPath triangle;
    triangle.moveTo(24, 7);
    triangle.lineTo(44, 41);
    triangle.lineTo(4, 41);
    triangle.closeSubpath();
    painter.setBrush(kWarningFill);
    painter.setPen(QPen(kWarningFill, 6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(triangle);
    const QColor edge = legible(kWarningFill, {colors.panel}, 3);
    if (edge != kWarningFill) { // the sign is too pale on the background and needs an edge
        QPainterPathStroker around;
        around.setWidth(6);
        around.setJoinStyle(Qt::RoundJoin);
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(edge, 1));
        painter.drawPath(around.createStroke(triangle).united(triangle).simplified());
    }
    painter.setPen(QPen(kWarningMark, 4.5, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(24, 18), QPointF(24, 28));
    painter.drawPoint(QPointF(24, 36));
}

void drawInformation(QPainter& painter, const Palette& colors) {
    painter.setBrush(colors.accentFill);
    painter.setPen(QPen(colors.accentLine, 2.5));
    painter.drawEllipse(QPointF(24, 24), 20, 20);
    painter.setPen(QPen(colors.accentText, 4.5, Qt::SolidLine, Qt::RoundCap));
    painter.drawPoint(QPointF(24, 14.5));
    painter.drawLine(QPointF(24, 23), QPointF(24, 33.5));
}

} // namespace

AlertPicture::AlertPicture(std::function<Palette()> palette) : palette_(std::move(palette)) {
    const int side = fontMetrics().height() * 3;
    setFixedSize(side, side);
}

void AlertPicture::show(AlertKind kind) {
    kind_ = kind;
    update();
}

void AlertPicture::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(width() / kUnits, height() / kUnits);
    const Palette colors = palette_ ? palette_() : Palette();
    kind_ == AlertKind::warning ? drawWarning(painter, colors) : drawInformation(painter, colors);
}

} // namespace kova::ui
