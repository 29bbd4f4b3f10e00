#include "ui/onboarding/OnboardingPicture.h"

#include "ui/overlay/Drawing.h"

#include <QPainter>

#include <algorithm>
#include <utility>
#include <vector>

namespace kova::ui {

namespace {

/// The tiles of a display, in units of its width and height.
struct Layout {
    std::vector<QRectF> tiles;
};
const Layout kThreeTiles{{{0, 0, 0.6, 1}, {0.6, 0, 0.4, 0.5}, {0.6, 0.5, 0.4, 0.5}}};
const Layout kTwoTiles{{{0, 0, 0.5, 1}, {0.5, 0, 0.5, 1}}};

class Sketch {
  public:
    Sketch(QPainter& painter, const Palette& colors, double line) : painter_(painter), colors_(colors), line_(line) {}

    void display(const QRectF& area) {
        drawPanel(painter_, area, 4 * line_, colors_.backdropBottom, colors_.raisedLine, line_);
    }
    /// Draws a window with a title bar.
    void window(const QRectF& frame, const QColor& title) {
        drawPanel(painter_, frame, 2 * line_, colors_.raised, colors_.raisedLine, line_);
        const double height = std::min(5 * line_, frame.height() / 4);
        drawPanel(painter_, QRectF(frame.topLeft(), QSizeF(frame.width(), height)), 2 * line_, title, QColor(), line_);
    }
    /// Draws a display whose tiles contain windows.
    void tiledDisplay(const QRectF& area, const Layout& layout) {
        display(area);
        bool isFirst = true;
        for (const QRectF& tile : layout.tiles)
            window(within(tile, area), std::exchange(isFirst, false) ? accent() : muted());
    }
    /// Scales a frame in the unit square to the area, with a gap around it.
    QRectF within(const QRectF& unit, const QRectF& area) const {
        const double gap = 1.5 * line_;
        return QRectF(area.x() + unit.x() * area.width(), area.y() + unit.y() * area.height(),
                      unit.width() * area.width(), unit.height() * area.height())
            .adjusted(gap, gap, -gap, -gap);
    }
    /// Draws an arrow with a head at its end, or at both ends.
    void arrow(QPointF from, QPointF to, bool hasTwoHeads = false) {
        painter_.setPen(QPen(accent(), 2 * line_, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter_.drawLine(from, to);
        arrowhead(from, to);
        if (hasTwoHeads) arrowhead(to, from);
    }
    QColor accent() const { return colors_.accentLine; }
    QColor muted() const { return colors_.mutedText; }

  private:
    void arrowhead(QPointF from, QPointF to) {
        const QLineF shaft(to, from);
        for (const double angle : {35.0, -35.0}) {
            QLineF side = shaft;
            side.setLength(5 * line_);
            side.setAngle(shaft.angle() + angle);
            painter_.drawLine(side);
        }
    }

    QPainter& painter_;
    const Palette& colors_;
    const double line_;
};

/// Overlapping windows are placed into tiles.
void drawTiles(Sketch& sketch, const QRectF& area) {
    const double width = area.width() * 0.42, top = area.y() + area.height() * 0.2, height = area.height() * 0.6;
    const QRectF before(area.x(), top, width, height), after(area.right() - width, top, width, height);
    sketch.display(before);
    for (const QRectF& unit :
         {QRectF(0.35, 0.35, 0.6, 0.6), QRectF(0.05, 0.05, 0.5, 0.6), QRectF(0.2, 0.3, 0.5, 0.55)}) {
        sketch.window(sketch.within(unit, before), sketch.muted());
    }
    sketch.tiledDisplay(after, kThreeTiles);
    const double gap = after.left() - before.right();
    sketch.arrow({before.right() + gap * 0.2, area.center().y()}, {after.left() - gap * 0.2, area.center().y()});
}

/// The divider between two tiles is dragged.
void drawDividers(Sketch& sketch, const QRectF& area) {
    sketch.tiledDisplay(area, kThreeTiles);
    const double x = area.x() + 0.6 * area.width(), reach = area.width() * 0.13;
    sketch.arrow({x - reach, area.center().y()}, {x + reach, area.center().y()}, true);
}

/// One scene replaces another.
void drawScenes(Sketch& sketch, const QRectF& area) {
    const QSizeF size(area.width() * 0.62, area.height() * 0.62);
    const QRectF back(area.topLeft(), size);
    const QRectF front(area.bottomRight() - QPointF(size.width(), size.height()), size);
    sketch.tiledDisplay(back, kTwoTiles);
    sketch.tiledDisplay(front, kThreeTiles);
    sketch.arrow({area.right() - area.width() * 0.06, area.y() + area.height() * 0.08},
                 {area.right() - area.width() * 0.06, area.y() + area.height() * 0.3});
}

} // namespace

OnboardingPicture::OnboardingPicture(Subject subject, std::function<Palette()> palette, QWidget* parent) :
    QWidget(parent), subject_(subject), palette_(std::move(palette)) {
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

QSize OnboardingPicture::sizeHint() const {
    const int line = fontMetrics().height();
    return {16 * line, 10 * line};
}

void OnboardingPicture::paintEvent(QPaintEvent*) {
    if (!palette_) return;
    const Palette colors = palette_();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    // The picture is as large as possible and has the aspect ratio of a display.
    QSizeF size(16, 10);
    size.scale(QSizeF(rect().size()) * 0.94, Qt::KeepAspectRatio);
    QRectF area(QPointF(), size);
    area.moveCenter(QRectF(rect()).center());
    Sketch sketch(painter, colors, std::max(1.0, size.height() / 90));
    switch (subject_) {
    case Subject::tiles:
        return drawTiles(sketch, area);
    case Subject::dividers:
        return drawDividers(sketch, area);
    case Subject::scenes:
        return drawScenes(sketch, area);
    }
}

} // namespace kova::ui
