// A small picture of the tiles of a layout, a scene or a setting. Main thread only.
#pragma once

#include "ui/style/Palette.h"

#include <QPainter>
#include <QRectF>
#include <QString>
#include <QWidget>

#include <functional>
#include <vector>

namespace kova::ui {

struct PictureTile {
    QRectF frame; // in the unit square
    QString text{};
};

/// Draws the tiles into `area`. `inset` is the gap around each tile as a share of the area's width.
void drawTiles(QPainter& painter, const QRectF& area, const std::vector<PictureTile>& tiles, double inset,
               const Palette& palette);

class LayoutPicture final : public QWidget {
    Q_OBJECT

  public:
    explicit LayoutPicture(std::function<Palette()> palette, QWidget* parent = nullptr);
    void setTiles(std::vector<PictureTile> tiles);
    /// The aspect ratio (width by height) of the area that the unit square represents.
    void setAspectRatio(double ratio);
    /// The gap around each tile, as a share of the width.
    void setInset(double inset);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    std::function<Palette()> palette_;
    std::vector<PictureTile> tiles_;
    double aspectRatio_ = 16.0 / 9;
    double inset_ = 0.01;
};

} // namespace kova::ui
