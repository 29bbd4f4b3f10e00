#include "ui/overlay/FooterWindow.h"

#include "ui/overlay/Pictures.h"

#include <QMouseEvent>
#include <QWheelEvent>

#include <cstdlib>

namespace kova::ui {

namespace {
constexpr int kWheelStep = 120;
constexpr int kNoticePartMilliseconds = 3000; // half of the time for which the agent shows a notice
constexpr double kDragStartPoints = 5;
} // namespace

FooterWindow::FooterWindow(OverlayPlatform& platform, OverlayActions& actions, CarryEntry carry) :
    OverlayWindow(platform, Layer::footer, "KOVA footer"), actions_(actions), carry_(std::move(carry)) {
    noticePartEnd_.setSingleShot(true);
    noticePartEnd_.setInterval(kNoticePartMilliseconds);
    QObject::connect(&noticePartEnd_, &QTimer::timeout, this, [this] {
        FooterState state = state_;
        state.noticePart = 1;
        setState(state);
    });
}

void FooterWindow::show(const TileContents& tile, const QRect& area, const Style& style) {
    const bool isSame = looksTheSame(tile, tile_) && style.palette == style_.palette && style.scale == style_.scale &&
                        style.fontFamily == style_.fontFamily && style.isComposited == style_.isComposited &&
                        area.size() == size();
    const bool isFirst = tile_.id.empty();
    if (tile.notice != tile_.notice) {
        state_.noticePart = 0;
        noticePartEnd_.stop();
    }
    tile_ = tile;
    style_ = style;
    if (!isSame || isFirst) {
        layout_ = layOutFooter(tile_, area.size(), style_);
        if (state_.hovered.part == FooterHit::Part::entry && !entryAt(state_.hovered)) state_.hovered = {};
        if (layout_.notice.parts.size() > 1 && state_.noticePart == 0 && !noticePartEnd_.isActive())
            noticePartEnd_.start();
    }
    const QRegion shape = roundedRegion(QRect(QPoint(0, 0), area.size()), style.px(points::footerRadius));
    const bool isNewSize = area.size() != size();
    present(area, shape, shape);
    if (!isSame && !isFirst && !isNewSize) redraw();
}

void FooterWindow::forget() {
    tile_ = {};
    state_ = {};
    pressedAt_.reset();
    carried_.clear();
    wheelRest_ = 0;
    noticePartEnd_.stop();
}

void FooterWindow::setState(const FooterState& state) {
    if (state == state_) return;
    state_ = state;
    redraw();
}

void FooterWindow::setDropTarget(bool isDropTarget) {
    FooterState state = state_;
    state.isDropTarget = isDropTarget;
    setState(state);
}

void FooterWindow::turnSpinner(double turn) {
    if (!tile_.pending) return;
    state_.spinnerTurn = turn;
    redraw(layout_.pending);
}

void FooterWindow::paint(QPainter& painter) {
    fillUnmixed(painter, size(), style_);
    paintFooter(painter, tile_, layout_, state_, style_);
}

void FooterWindow::hover(FooterHit hit) {
    FooterState state = state_;
    state.hovered = hit;
    setState(state);
}

const StackEntry* FooterWindow::entryAt(FooterHit hit) const {
    const bool isEntry = hit.part == FooterHit::Part::entry && hit.entry < tile_.applications.size();
    return isEntry ? &tile_.applications[hit.entry] : nullptr;
}

bool FooterWindow::event(QEvent* event) {
    if (event->type() == QEvent::Leave && carried_.empty()) hover({});
    return OverlayWindow::event(event);
}

void FooterWindow::mouseMoveEvent(QMouseEvent* event) {
    const QPoint at = event->position().toPoint();
    if (!pressedAt_) return hover(layout_.at(at));
    const StackEntry* entry = entryAt(pressed_);
    if (carried_.empty() && entry && (at - *pressedAt_).manhattanLength() > style_.px(kDragStartPoints)) {
        carried_ = entry->window;
    }
    if (!carried_.empty()) carry_(carried_, event->globalPosition().toPoint(), false);
}

void FooterWindow::mousePressEvent(QMouseEvent* event) {
    const FooterHit hit = layout_.at(event->position().toPoint());
    if (event->button() == Qt::LeftButton) {
        pressedAt_ = event->position().toPoint();
        pressed_ = hit;
    } else if (event->button() == Qt::RightButton) {
        const StackEntry* entry = entryAt(hit);
        if (!entry && hit.part == FooterHit::Part::name && !tile_.applications.empty())
            entry = &tile_.applications.front();
        if (entry) actions_.showEntryMenu(tile_.id, entry->window, event->globalPosition().toPoint());
    }
}

void FooterWindow::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !pressedAt_) return;
    pressedAt_.reset();
    if (const std::string carried = std::exchange(carried_, {}); !carried.empty()) {
        return carry_(carried, event->globalPosition().toPoint(), true);
    }
    const FooterHit hit = layout_.at(event->position().toPoint());
    if (hit == pressed_) click(hit, event->globalPosition().toPoint());
}

void FooterWindow::click(FooterHit hit, QPoint at) {
    switch (hit.part) {
    case FooterHit::Part::none:
        return;
    case FooterHit::Part::name:
        if (!tile_.applications.empty()) actions_.bringForward(tile_.applications.front().window);
        return;
    case FooterHit::Part::entry:
        if (const StackEntry* entry = entryAt(hit)) actions_.bringForward(entry->window);
        return;
    case FooterHit::Part::more:
        return actions_.showStackMenu(tile_.id, at);
    case FooterHit::Part::launch:
        return actions_.chooseApplication(tile_.id);
    }
}

void FooterWindow::wheelEvent(QWheelEvent* event) {
    wheelRest_ += event->angleDelta().y();
    if (std::abs(wheelRest_) < kWheelStep) return;
    const StackStep step = wheelRest_ < 0 ? StackStep::next : StackStep::previous;
    wheelRest_ %= kWheelStep;
    if (tile_.applications.size() > 1) actions_.stepStack(tile_.id, step);
}

} // namespace kova::ui
