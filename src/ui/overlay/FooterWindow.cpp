#include "ui/overlay/FooterWindow.h"

#include "ui/overlay/Pictures.h"

#include <QMouseEvent>
#include <QWheelEvent>

#include <algorithm>
#include <cstdlib>

namespace kova::ui {

namespace {
constexpr int kWheelStep = 120;           // one notch, in eighths of a degree
constexpr int kNoticeMilliseconds = 6000; // the time for which the agent publishes a notice
constexpr double kDragStartPoints = 5;
} // namespace

FooterWindow::FooterWindow(OverlayPlatform& platform, OverlayActions& actions, DragHandler dragHandler) :
    OverlayWindow(platform, Layer::footer, "KOVA footer"), actions_(actions), dragHandler_(std::move(dragHandler)) {
    QObject::connect(&noticePartTimer_, &QTimer::timeout, this, [this] {
        FooterState state = state_;
        if (++state.noticePart + 1 >= layout_.notice.parts.size()) noticePartTimer_.stop();
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
        noticePartTimer_.stop();
    }
    tile_ = tile;
    style_ = style;
    if (std::ranges::find(tile_.applications, dragged_, &StackEntry::window) == tile_.applications.end()) cancelDrag();
    if (!isSame || isFirst) {
        layout_ = layOutFooter(tile_, area.size(), style_);
        if (state_.hovered.part == FooterHit::Part::entry && !entryAt(state_.hovered)) state_.hovered = {};
        const auto parts = layout_.notice.parts.size();
        state_.noticePart = std::max<qsizetype>(0, std::min(state_.noticePart, parts - 1));
        if (state_.noticePart + 1 < parts && !noticePartTimer_.isActive())
            noticePartTimer_.start(static_cast<int>(kNoticeMilliseconds / parts));
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
    dragged_.clear();
    wheelAngle_ = 0;
    noticePartTimer_.stop();
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

void FooterWindow::cancelDrag() {
    if (dragged_.empty()) return;
    dragged_.clear();
    pressedAt_.reset();
}

void FooterWindow::turnSpinner(double turn) {
    if (layout_.pending.isEmpty()) return;
    state_.spinnerTurn = turn;
    redraw(layout_.pending);
}

void FooterWindow::paint(QPainter& painter) {
    fillOpaqueBackground(painter, size(), style_);
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
    if (event->type() == QEvent::Leave && dragged_.empty()) hover({});
    return OverlayWindow::event(event);
}

void FooterWindow::mouseMoveEvent(QMouseEvent* event) {
    const QPoint at = event->position().toPoint();
    if (!pressedAt_) return hover(layout_.at(at));
    const StackEntry* entry = entryAt(pressed_);
    if (dragged_.empty() && entry && (at - *pressedAt_).manhattanLength() > style_.px(kDragStartPoints)) {
        dragged_ = entry->window;
    }
    if (!dragged_.empty()) dragHandler_(dragged_, event->globalPosition().toPoint(), DragEvent::moved);
}

void FooterWindow::mousePressEvent(QMouseEvent* event) {
    const FooterHit hit = layout_.at(event->position().toPoint());
    if (event->button() == Qt::LeftButton) {
        pressedAt_ = event->position().toPoint();
        pressed_ = hit;
    } else if (event->button() == Qt::RightButton && isDragging()) {
        // The right button cancels a drag. Escape cannot: the overlay never has the focus and receives no keys.
        const std::string dragged = dragged_;
        cancelDrag();
        dragHandler_(dragged, event->globalPosition().toPoint(), DragEvent::canceled);
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
    if (const std::string dragged = std::exchange(dragged_, {}); !dragged.empty()) {
        return dragHandler_(dragged, event->globalPosition().toPoint(), DragEvent::dropped);
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
    wheelAngle_ += event->angleDelta().y();
    const StackStep step = wheelAngle_ < 0 ? StackStep::next : StackStep::previous;
    const int steps = std::abs(wheelAngle_) / kWheelStep;
    wheelAngle_ %= kWheelStep;
    for (int i = 0; i < steps && tile_.applications.size() > 1; ++i) actions_.stepStack(tile_.id, step);
}

} // namespace kova::ui
