#include "ui/style/LayoutPicture.h"

#include <algorithm>
#include <utility>

namespace kova::ui {

void drawTiles(QPainter& painter, const QRectF& area, const std::vector<PictureTile>& tiles, double inset,
               const Palette& palette) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette.backdropBottom);
    painter.drawRect(area);
    painter.setPen(QPen(palette.accentLine, 1));
    painter.setBrush(palette.accentFill);
    const double gap = inset * area.width();
    for (const PictureTile& tile : tiles) {
        const QRectF cell(area.x() + tile.frame.x() * area.width(), area.y() + tile.frame.y() * area.height(),
                          tile.frame.width() * area.width(), tile.frame.height() * area.height());
        // The outline is drawn inside the tile; the gap is limited so that some of the tile remains.
        const double most = (std::min(cell.width(), cell.height()) - 2) / 2;
        const double around = std::clamp(gap, 0.0, std::max(0.0, most)) + 0.5;
        const QRectF window = cell.adjusted(around, around, -around, -around);
        painter.drawRoundedRect(window, 2, 2);
        if (tile.text.isEmpty()) continue;
        painter.save();
        painter.setPen(palette.text);
        const QRectF room = window.adjusted(2, 1, -2, -1);
        painter.drawText(room, Qt::AlignCenter,
                         painter.fontMetrics().elidedText(tile.text, Qt::ElideRight, static_cast<int>(room.width())));
        painter.restore();
    }
    painter.restore();
}

LayoutPicture::LayoutPicture(std::function<Palette()> palette, QWidget* parent) :
    QWidget(parent), palette_(std::move(palette)) {}

void LayoutPicture::setTiles(std::vector<PictureTile> tiles) {
    tiles_ = std::move(tiles);
    update();
}

void LayoutPicture::setAspectRatio(double ratio) {
    aspectRatio_ = ratio > 0 ? ratio : 1;
    update();
}

void LayoutPicture::setInset(double inset) {
    inset_ = inset;
    update();
}

void LayoutPicture::paintEvent(QPaintEvent*) {
    const double fit = std::min(static_cast<double>(width()), height() * aspectRatio_);
    const QSizeF size(fit, fit / aspectRatio_);
    QPainter painter(this);
    drawTiles(painter, QRectF(QPointF((width() - size.width()) / 2, (height() - size.height()) / 2), size), tiles_,
              inset_, palette_());
}

} // namespace kova::ui
