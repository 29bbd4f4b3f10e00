// A tile's footer: the tile's name, an entry for each of its windows, the application that is being launched, the
// notice of a placement, and the button that launches an application. These functions lay out and draw the parts, and
// find the part at a point. Coordinates are pixels in the window.
#pragma once

#include "ui/client/Contents.h"
#include "ui/style/Style.h"

#include <QPainter>
#include <QRect>
#include <QString>
#include <QStringList>

#include <optional>
#include <string>
#include <vector>

namespace kova::ui {

struct FooterHit {
    enum class Part { none, name, entry, more, launch };
    Part part = Part::none;
    std::size_t entry = 0; // index into the tile's applications
    bool operator==(const FooterHit&) const = default;
};

struct FooterLayout {
    struct Entry {
        QRect area;
        QString label; // empty if only the icon is shown
        std::size_t index = 0;
    };
    QRect panel;
    QRect name; // empty if a notice needs the space
    std::vector<Entry> entries;
    QRect more; // the number of hidden entries; empty if all entries fit
    std::size_t hiddenEntries = 0;
    QRect pending; // the application that is being launched; empty if there is none, or no space for it
    QRect remark;  // the remaining space, for “Empty” or the name of the hovered entry
    struct Notice {
        QRect area;
        QStringList parts; // shown one after the other; usually one
    };
    Notice notice; // no parts if the tile has no notice
    QRect launch;  // the button that launches an application

    FooterHit at(QPoint point) const;
};

/// The name of the entry under the pointer, if the entry itself shows only its icon or the name's beginning.
struct HoveredName {
    QRect area; // the layout's `remark` or `name`
    QString name;
};
/// Absent if no entry is hovered, or the entry shows its whole name.
std::optional<HoveredName> hoveredName(const TileContents& tile, const FooterLayout& layout, FooterHit hovered,
                                       const Style& style);

/// The footer's rectangle on the screen, in pixels; absent if the tile has no footer.
std::optional<QRect> footerArea(const TileContents& tile, const Style& style);

FooterLayout layOutFooter(const TileContents& tile, QSize size, const Style& style);

struct FooterState {
    FooterHit hovered;
    bool isDropTarget = false;
    double spinnerTurn = 0; // how far the launch indicator has turned, 0 to 1
    qsizetype noticePart = 0;
    bool operator==(const FooterState&) const = default;
};
void paintFooter(QPainter& painter, const TileContents& tile, const FooterLayout& layout, const FooterState& state,
                 const Style& style);

/// Whether the footers of both tiles look the same, apart from the state of the pointer.
bool looksTheSame(const TileContents& one, const TileContents& other);

} // namespace kova::ui
