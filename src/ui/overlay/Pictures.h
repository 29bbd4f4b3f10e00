// The other pictures of the overlay: backdrop, empty tiles, the tiles while a window is dragged, divider lines, the
// message. Areas are pixels, with the origin at the top left of the window that is drawn.
#pragma once

#include "ui/client/Contents.h"
#include "ui/style/Style.h"

#include <QPainter>
#include <QRect>
#include <QRegion>

#include <vector>

namespace kova::ui {

/// The theme's background: a quiet gradient, with a grid in the neon theme.
void paintBackdrop(QPainter& painter, QRect area, const Style& style);

/// Whether the theme's background is drawn behind an empty tile; otherwise the desktop shows there.
enum class Ground { theme, desktop };

struct EmptyTileLayout {
    QRect panel;
    QRect card; // around name and button; drawn where the ground is the desktop's
    QRect name;
    QRect button;
    bool hasButton = true; // not in tiles that are too small for it
};
EmptyTileLayout layOutEmptyTile(const TileContents& tile, QSize size, const Style& style);
void paintEmptyTile(QPainter& painter, const TileContents& tile, const EmptyTileLayout& layout, Ground ground,
                    bool isButtonHovered, const Style& style);
/// The visible parts of the window without a compositor: everything on the theme's background, else outline and card.
QRegion emptyTileShape(const EmptyTileLayout& layout, Ground ground, const Style& style);

/// A tile as it is shown while a window is dragged over its display.
struct CarriedOver {
    QRect area; // in the window
    QString name;
    bool isTarget = false;
    bool operator==(const CarriedOver&) const = default;
};
void paintDropTargets(QPainter& painter, const std::vector<CarriedOver>& tiles, const Style& style);
/// Without a compositor: the outlines and the label of the target.
QRegion dropTargetShape(const std::vector<CarriedOver>& tiles, const Style& style);

/// The line inside the gap of a divider, in the coordinates of the gap.
QRect dividerLine(const QRect& gap, bool isVertical, const Style& style);
void paintDividerLine(QPainter& painter, QSize size, const Style& style);

struct MessageLayout {
    QSize size;
    QRect text;
    QRect undo; // empty when there is nothing to undo
};
/// At most `widestPixels` wide.
MessageLayout layOutMessage(const StatusMessage& message, int widestPixels, const Style& style);
void paintMessage(QPainter& painter, const StatusMessage& message, const MessageLayout& layout, bool isUndoHovered,
                  const Style& style);

/// Without a compositor, gives the corners that the shape of a window cuts off the color of its line, since the edges
/// of lines are blended with the pixels below them. No-op with a compositor.
void fillUnmixed(QPainter& painter, QSize size, const Style& style);

/// A rounded rectangle as a region, for windows that are shaped.
QRegion roundedRegion(const QRect& area, int radius);

} // namespace kova::ui
