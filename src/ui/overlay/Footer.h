// A tile's footer: its name, the strip of its applications, what is being launched, the notice of a placement. Computes
// where its parts are and which part is at a point, and draws it. Coordinates are pixels in the footer's window, which
// is the panel that is seen.
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
        QString label; // empty: only the icon
        std::size_t index = 0;
    };
    QRect panel;
    QRect name; // empty where a notice needs its place
    std::vector<Entry> entries;
    QRect more; // empty when all entries fit
    std::size_t hiddenEntries = 0;
    QRect pending; // empty when nothing is being launched, or nothing fits
    QRect remark;  // what is left, for saying that the tile is empty or how the entry under the pointer is named
    struct Notice {
        QRect area;
        QStringList parts; // shown one after the other; mostly one
    };
    Notice notice; // without parts when there is none
    QRect launch;

    FooterHit at(QPoint point) const;
};

/// The name of the entry under the pointer, where the strip shows only its icon or the beginning.
struct HoveredName {
    QRect area; // either the one of the remark or the one of the tile's name
    QString name;
};
/// Absent where no entry is hovered, or its name is shown whole.
std::optional<HoveredName> hoveredName(const TileContents& tile, const FooterLayout& layout, FooterHit hovered,
                                       const Style& style);

/// The footer's rectangle on the screen, in pixels; absent if the tile has no footer.
std::optional<QRect> footerArea(const TileContents& tile, const Style& style);

FooterLayout layOutFooter(const TileContents& tile, QSize size, const Style& style);

struct FooterState {
    FooterHit hovered;
    bool isDropTarget = false;
    double spinnerTurn = 0; // of the launch indicator, 0 to 1
    qsizetype noticePart = 0;
    bool operator==(const FooterState&) const = default;
};
void paintFooter(QPainter& painter, const TileContents& tile, const FooterLayout& layout, const FooterState& state,
                 const Style& style);

/// The part of a tile that its footer shows; a change of anything else needs no repaint.
bool looksTheSame(const TileContents& one, const TileContents& other);

} // namespace kova::ui
