#include "ui/overlay/PictureWindows.h"

#include <QMouseEvent>

#include <utility>

namespace kova::ui {

namespace {

QRect wholeOf(QSize size) {
    return {QPoint(0, 0), size};
}

} // namespace

bool drawsAlike(const Style& one, const Style& other) {
    return one.palette == other.palette && one.scale == other.scale && one.fontFamily == other.fontFamily &&
           one.isComposited == other.isComposited;
}

void BackdropWindow::show(const QRect& area, const Style& style) {
    const bool isSame = isShown_ && drawsAlike(style, style_);
    style_ = style;
    isShown_ = true;
    const bool isNewSize = area.size() != size();
    present(area, wholeOf(area.size()), QRegion());
    if (!isSame && !isNewSize) redraw();
}

void BackdropWindow::paint(QPainter& painter) {
    paintBackdrop(painter, wholeOf(size()), style_);
}

void EmptyTileWindow::show(const TileContents& tile, const QRect& area, const QRect& backdrop, const Style& style) {
    const QRect backdropInWindow = backdrop.translated(-area.topLeft());
    const bool isSame =
        tile.name == tile_.name && drawsAlike(style, style_) && backdropInWindow == backdrop_ && area.size() == size();
    if (isSame) {
        tile_ = tile;
        return present(area, emptyTileShape(layout_, background(), style_),
                       roundedRegion(layout_.button, layout_.button.height() / 2));
    }
    tile_ = tile;
    style_ = style;
    backdrop_ = backdropInWindow;
    layout_ = layOutEmptyTile(tile, area.size(), style);
    const bool isNewSize = area.size() != size();
    present(area, emptyTileShape(layout_, background(), style),
            roundedRegion(layout_.button, layout_.button.height() / 2));
    if (!isNewSize) redraw();
}

void EmptyTileWindow::paint(QPainter& painter) {
    fillOpaqueBackground(painter, size(), style_);
    if (background() == TileBackground::theme) paintBackdrop(painter, backdrop_, style_);
    paintEmptyTile(painter, tile_, layout_, background(), isHovered_, style_);
}

void EmptyTileWindow::hover(bool isHovered) {
    if (std::exchange(isHovered_, isHovered) != isHovered) redraw(layout_.button);
}

bool EmptyTileWindow::event(QEvent* event) {
    if (event->type() == QEvent::Leave) hover(false);
    return OverlayWindow::event(event);
}

void EmptyTileWindow::mouseMoveEvent(QMouseEvent* event) {
    hover(layout_.button.contains(event->position().toPoint()));
}

void EmptyTileWindow::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !layout_.button.contains(event->position().toPoint())) return;
    actions_.chooseApplication(tile_.id);
}

void DividerWindow::show(const QRect& line, const Style& style) {
    style_ = style;
    setAppearsGradually(style.areAnimationsEnabled);
    present(line, wholeOf(line.size()), QRegion());
}

void DividerWindow::paint(QPainter& painter) {
    paintDividerLine(painter, size(), style_);
}

void HighlightWindow::show(std::vector<OutlinedTile> tiles, const QRect& area, const Style& style) {
    const bool isNewSize = area.size() != size();
    const bool isSame = tiles == tiles_ && drawsAlike(style, style_);
    // Contains only the tiles whose drawing has changed.
    QRegion dirty;
    for (std::size_t i = 0; i < std::max(tiles.size(), tiles_.size()); ++i) {
        const bool isKept = i < tiles.size() && i < tiles_.size() && tiles[i] == tiles_[i];
        if (!isKept && i < tiles.size()) dirty += tiles[i].area;
        if (!isKept && i < tiles_.size()) dirty += tiles_[i].area;
    }
    tiles_ = std::move(tiles);
    style_ = style;
    setAppearsGradually(style.areAnimationsEnabled);
    present(area, dropTargetShape(tiles_, style_), QRegion());
    if (!isSame && !isNewSize) redraw(dirty);
}

void HighlightWindow::paint(QPainter& painter) {
    fillOpaqueBackground(painter, size(), style_);
    paintDropTargets(painter, tiles_, style_);
}

void MessageWindow::show(const StatusMessage& message, const QRect& area, int widestPixels, const Style& style) {
    const bool isSame = message == message_ && drawsAlike(style, style_);
    message_ = message;
    style_ = style;
    layout_ = layOutMessage(message, widestPixels, style);
    const bool isNewSize = area.size() != size();
    const QRegion shape = roundedRegion(wholeOf(area.size()), style.px(points::messageHeight) / 2);
    setAppearsGradually(style.areAnimationsEnabled);
    present(area, shape, roundedRegion(layout_.undo, layout_.undo.height() / 2));
    if (!isSame && !isNewSize) redraw();
}

void MessageWindow::paint(QPainter& painter) {
    fillOpaqueBackground(painter, size(), style_);
    paintMessage(painter, message_, layout_, isHovered_, style_);
}

void MessageWindow::hover(bool isHovered) {
    if (std::exchange(isHovered_, isHovered) != isHovered) redraw(layout_.undo);
}

bool MessageWindow::event(QEvent* event) {
    if (event->type() == QEvent::Leave) hover(false);
    return OverlayWindow::event(event);
}

void MessageWindow::mouseMoveEvent(QMouseEvent* event) {
    hover(layout_.undo.contains(event->position().toPoint()));
}

void MessageWindow::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && layout_.undo.contains(event->position().toPoint()))
        actions_.undo(message_.undoMethod);
}

} // namespace kova::ui
