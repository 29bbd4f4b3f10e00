#include "ui/style/PaintedIcon.h"

#include <QIconEngine>
#include <QPixmap>

#include <utility>

namespace kova::ui {

namespace {

using Draw = std::function<void(QPainter& painter, const QRectF& area)>;

class PaintedIconEngine final : public QIconEngine {
  public:
    explicit PaintedIconEngine(Draw draw) : draw_(std::move(draw)) {}

    QIconEngine* clone() const override { return new PaintedIconEngine(draw_); }
    void paint(QPainter* painter, const QRect& area, QIcon::Mode mode, QIcon::State) override {
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        if (mode == QIcon::Disabled) painter->setOpacity(painter->opacity() / 2);
        draw_(*painter, area);
        painter->restore();
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap picture(size);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        paint(&painter, picture.rect(), mode, state);
        return picture;
    }

  private:
    Draw draw_;
};

} // namespace

QIcon paintedIcon(Draw draw) {
    return QIcon(new PaintedIconEngine(std::move(draw)));
}

} // namespace kova::ui
