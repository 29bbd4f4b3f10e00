// The pictures of the overlay other than the footers: the backdrop, empty tiles, outlines of tiles during a drag,
// divider lines and the message. Areas are in pixels, with the origin at the top left of the window that is drawn.
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

/// What is behind an empty tile: the theme's background, which its window draws, or the desktop.
enum class TileBackground { theme, desktop };

struct EmptyTileLayout {
    QRect panel;
    QRect card; // around name and button; drawn only over the desktop
    QRect name;
    QRect button;
    bool hasButton = true; // false if the tile is too small for it
};
EmptyTileLayout layOutEmptyTile(const TileContents& tile, QSize size, const Style& style);
void paintEmptyTile(QPainter& painter, const TileContents& tile, const EmptyTileLayout& layout,
                    TileBackground background, bool isButtonHovered, const Style& style);
/// The visible parts of the window. Over the desktop, if no compositor runs, these are only the outline and the card;
/// otherwise they are the whole tile.
QRegion emptyTileShape(const EmptyTileLayout& layout, TileBackground background, const Style& style);

/// A tile whose outline is shown while a window is dragged over the tile's display.
struct OutlinedTile {
    QRect area; // in the window
    QString name;
    bool isTarget = false;
    bool operator==(const OutlinedTile&) const = default;
};
void paintDropTargets(QPainter& painter, const std::vector<OutlinedTile>& tiles, const Style& style);
/// The visible parts of the window. If no compositor runs, these are only the outlines of the tiles and the target's
/// label; otherwise they are the whole tiles.
QRegion dropTargetShape(const std::vector<OutlinedTile>& tiles, const Style& style);

/// The divider's line inside `gap`, in the same coordinates.
QRect dividerLine(const QRect& gap, bool isVertical, const Style& style);
void paintDividerLine(QPainter& painter, QSize size, const Style& style);

struct MessageLayout {
    QSize size;
    QRect text;
    QRect undo; // the button; empty if the action cannot be undone
};
/// The layout of the message, at most `widestPixels` wide.
MessageLayout layOutMessage(const StatusMessage& message, int widestPixels, const Style& style);
void paintMessage(QPainter& painter, const StatusMessage& message, const MessageLayout& layout, bool isUndoHovered,
                  const Style& style);

/// Without a compositor, fills the window with the color of outlines before it is drawn: the antialiased edges of its
/// rounded shape blend with this color. No-op with a compositor.
void fillOpaqueBackground(QPainter& painter, QSize size, const Style& style);

/// A rounded rectangle as a region, for the shape of a window.
QRegion roundedRegion(const QRect& area, int radius);

} // namespace kova::ui
