#include "ui/overlay/Footer.h"

#include "ui/client/AgentTexts.h"
#include "ui/overlay/Drawing.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>

namespace kova::ui {

namespace {

const QString kContinued = QStringLiteral(" …"); // follows each part of a notice but the last

/// The application's name, or the window's title if the tile has several windows of the application.
QString labelOf(const TileContents& tile, const StackEntry& entry) {
    const auto sameName = [&](const StackEntry& other) { return other.application.name == entry.application.name; };
    const bool isAmbiguous = std::ranges::count_if(tile.applications, sameName) > 1;
    return textOf(isAmbiguous && !entry.title.empty() ? entry.title : entry.application.name);
}

QFont smallFont(const Style& style) {
    return style.font(points::smallText);
}

int entryWidth(int textWidth, const Style& style) {
    const int icon = style.px(points::iconSize), padding = style.px(points::entryPadding);
    return textWidth == 0 ? icon + 2 * style.px(4) : padding + icon + style.px(points::iconGap) + textWidth + padding;
}

/// The width of each entry's text; 0 if the entry shows only its icon. To make the entries fit, this first elides long
/// texts more and more, then leaves out the texts of the last entries.
std::vector<int> textWidths(const std::vector<QString>& labels, int available, const Style& style) {
    std::vector<int> natural;
    for (const QString& label : labels) natural.push_back(widthOf(label, smallFont(style)) + 1);
    const auto total = [&](const std::vector<int>& widths) {
        int sum = -style.px(points::entryGap);
        for (const int width : widths) sum += entryWidth(width, style) + style.px(points::entryGap);
        return sum;
    };
    std::vector<int> widths;
    for (const double limit : {points::widestEntryText, 112.0, 80.0, points::leastEntryText}) {
        widths.clear();
        for (const int width : natural) widths.push_back(std::min(width, style.px(limit)));
        if (total(widths) <= available) return widths;
    }
    for (std::size_t i = widths.size(); i-- > 1 && total(widths) > available;) widths[i] = 0;
    return widths;
}

/// The minimum width of the entries: the icon of the front window, and the number of the other entries.
int leastWidth(std::size_t entries, const Style& style) {
    if (entries == 0) return 0;
    return entryWidth(0, style) + (entries > 1 ? style.px(points::entryGap + points::hiddenChip) : 0);
}

void layOutEntries(FooterLayout& layout, const TileContents& tile, QRect strip, const Style& style) {
    std::vector<QString> labels;
    for (const StackEntry& entry : tile.applications) labels.push_back(labelOf(tile, entry));
    std::vector<int> widths = textWidths(labels, strip.width(), style);
    const int gap = style.px(points::entryGap), chip = style.px(points::hiddenChip);
    if (!widths.empty()) {
        const int others = widths.size() > 1 ? gap + chip : 0;
        if (entryWidth(widths[0], style) + others > strip.width()) widths[0] = 0;
    }
    int x = strip.left();
    for (std::size_t i = 0; i < labels.size(); ++i) {
        const int width = entryWidth(widths[i], style);
        const bool isLast = i + 1 == labels.size();
        if (x + width > strip.right() + 1 - (isLast ? 0 : gap + chip)) {
            layout.hiddenEntries = labels.size() - i;
            const int room = strip.right() + 1 - x;
            if (room >= style.px(16)) layout.more = QRect(x, strip.top(), std::min(chip, room), strip.height());
            x += layout.more.width() + gap;
            break;
        }
        layout.entries.push_back(
            {QRect(x, strip.top(), width, strip.height()), widths[i] > 0 ? labels[i] : QString(), i});
        x += width + gap;
    }
    layout.remark = QRect(QPoint(x, strip.top()), QPoint(strip.right(), strip.bottom()));
}

int ringWidth(const Style& style) {
    return entryWidth(0, style);
}

/// Lays out the entries and, after them, the application that is being launched. Entries take precedence: in a narrow
/// strip only the ring of the launch indicator is shown.
void layOutPending(FooterLayout& layout, const TileContents& tile, QRect strip, const Style& style) {
    const int gap = style.px(points::entryGap);
    const int labeledWidth = style.px(points::entryPadding + points::iconSize + points::iconGap) + style.px(4) +
                             widthOf(textOf(tile.pending->name) + QStringLiteral("…"), smallFont(style));
    const std::size_t count = tile.applications.size();
    const int room = strip.width() - (count > 0 ? gap + leastWidth(count, style) : 0);
    const bool hasLabel = count == 0 || room - labeledWidth >= style.px(points::leastEntryText + points::iconGap);
    const int width = std::min(hasLabel ? labeledWidth : ringWidth(style), room);
    const bool isShown = width >= style.px(points::iconSize);
    QRect entries = strip;
    if (isShown) entries.setWidth(std::max(0, strip.width() - width - gap));
    layOutEntries(layout, tile, entries, style);
    const int left = layout.remark.left();
    if (isShown) layout.pending = QRect(left, strip.top(), width, strip.height());
    layout.remark = QRect(QPoint(isShown ? left + width + gap : left, strip.top()), strip.bottomRight());
}

QRect textArea(const FooterLayout::Entry& place, const Style& style) {
    const int left = style.px(points::entryPadding) + style.px(points::iconSize) + style.px(points::iconGap);
    return place.area.adjusted(left, 0, 1 - style.px(points::entryPadding), 0);
}

void paintEntry(QPainter& painter, const StackEntry& entry, const FooterLayout::Entry& place, bool isHovered,
                const Style& style) {
    const Palette& palette = style.palette;
    const double radius = style.px(points::entryRadius);
    if (entry.isFront) {
        drawPanel(painter, place.area, radius, palette.raised,
                  entry.isFocused ? palette.accentLine : palette.raisedLine, style.line(entry.isFocused ? 1.5 : 1));
    }
    if (isHovered) drawPanel(painter, place.area, radius, palette.hovered, QColor(), 0);
    const int icon = style.px(points::iconSize);
    const bool showsOnlyIcon = place.label.isEmpty();
    const QRect iconArea(place.area.left() +
                             (showsOnlyIcon ? (place.area.width() - icon) / 2 : style.px(points::entryPadding)),
                         place.area.top() + (place.area.height() - icon) / 2, icon, icon);
    drawIcon(painter, iconArea, entry.application, style, entry.isFront || isHovered ? IconTone::full : IconTone::dim);
    const QColor color = entry.isFront ? palette.text : palette.mutedText;
    if (entry.isMinimized) {
        const int height = static_cast<int>(style.line(2));
        painter.fillRect(
            QRect(iconArea.left() + style.px(3), place.area.bottom() + 1 - height, icon - 2 * style.px(3), height),
            color);
    }
    if (showsOnlyIcon) return;
    drawText(painter, textArea(place, style), place.label, smallFont(style), color);
}

void paintPending(QPainter& painter, const ApplicationName& application, const QRect& area, double turn,
                  const Style& style) {
    const int size = style.px(points::iconSize);
    const bool showsOnlyIcon = area.width() <= ringWidth(style);
    const QRect icon(area.left() + (showsOnlyIcon ? (area.width() - size) / 2 : style.px(points::entryPadding)),
                     area.top() + (area.height() - size) / 2, size, size);
    drawIcon(painter, icon.adjusted(style.px(3), style.px(3), -style.px(3), -style.px(3)), application, style);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    const double width = style.line(1.5);
    const QRectF ring = QRectF(icon).adjusted(width / 2, width / 2, -width / 2, -width / 2);
    painter.setPen(QPen(style.palette.panelLine, width));
    painter.drawEllipse(ring);
    painter.setPen(QPen(style.palette.accentLine, width, Qt::SolidLine, Qt::RoundCap));
    painter.drawArc(ring, static_cast<int>((90 - 360 * turn) * 16), -100 * 16);
    if (showsOnlyIcon) return;
    drawText(painter, area.adjusted(icon.right() + 1 - area.left() + style.px(points::iconGap), 0, 0, 0),
             textOf(application.name) + QStringLiteral("…"), smallFont(style), style.palette.mutedText);
}

int noticeIconWidth(const Style& style) {
    return style.px(points::entryPadding / 2 + points::iconSize + points::iconGap);
}

/// Breaks a text between words into as few parts as possible, at most three; the last part may be too wide.
QStringList upToThreeParts(const QString& text, int width, const Style& style) {
    QStringList parts{text};
    while (parts.size() < 3) {
        const QStringList broken = upToTwoLines(parts.back(), smallFont(style), width);
        if (broken.size() == 1) break;
        parts.back() = broken.front();
        parts.append(broken.back());
    }
    return parts;
}

/// Places the notice beside the tile's name. If there is no space for both, the notice replaces the name; if the notice
/// alone is too wide, it is split into parts.
void layOutNotice(FooterLayout& layout, const QString& text, QRect strip, const Style& style) {
    const int needed = widthOf(text, smallFont(style)) + 1 + noticeIconWidth(style);
    layout.notice = {strip, {text}};
    if (needed <= strip.width()) return;
    layout.name = QRect();
    layout.notice.area.setLeft(style.px(points::entryPadding / 2));
    if (needed <= layout.notice.area.width()) return;
    const int width = layout.notice.area.width() - noticeIconWidth(style) - widthOf(kContinued, smallFont(style));
    layout.notice.parts = upToThreeParts(text, width, style);
}

void paintNotice(QPainter& painter, const ApplicationName& application, const FooterLayout::Notice& notice,
                 qsizetype part, const Style& style) {
    const int size = style.px(points::iconSize);
    const QRect icon(notice.area.left() + style.px(points::entryPadding / 2),
                     notice.area.top() + (notice.area.height() - size) / 2, size, size);
    drawIcon(painter, icon, application, style);
    const bool isLast = part + 1 >= notice.parts.size();
    drawText(painter, notice.area.adjusted(noticeIconWidth(style), 0, 0, 0),
             isLast ? notice.parts.back() : notice.parts[part] + kContinued, smallFont(style), style.palette.text);
}

} // namespace

std::optional<QRect> footerArea(const TileContents& tile, const Style& style) {
    if (!tile.footerFrame) return std::nullopt;
    // The footer is as wide as the window above it, which is inset within the tile.
    const CGRect& strip = *tile.footerFrame;
    const double left = std::max(minX(strip), minX(tile.frame)), right = std::min(maxX(strip), maxX(tile.frame));
    const double margin = (strip.size.height - points::footerPanelHeight) / 2;
    if (right - left < 40 || margin < 0) return style.px(strip);
    return style.px(makeRect(left, minY(strip) + margin, right - left, points::footerPanelHeight));
}

FooterLayout layOutFooter(const TileContents& tile, QSize size, const Style& style) {
    FooterLayout layout;
    layout.panel = QRect(QPoint(0, 0), size);
    const int height = style.px(points::entryHeight), top = (size.height() - height) / 2, margin = style.px(4);
    layout.launch = QRect(size.width() - margin - height, top, height, height);
    const QFont nameFont = style.font(points::smallText, QFont::Medium);
    const int nameLeft = style.px(12);
    const int widest = std::max(0, (layout.launch.left() - nameLeft) * 2 / 5);
    layout.name = QRect(nameLeft, top, std::min(widthOf(textOf(tile.name), nameFont) + 1, widest), height);
    const QRect strip(QPoint(layout.name.right() + 1 + style.px(12), top),
                      QPoint(layout.launch.left() - 1 - style.px(8), top + height - 1));
    if (strip.width() <= 0) return layout;
    layout.remark = strip;
    if (tile.notice) {
        layOutNotice(layout, inUsersLanguage(tile.notice->text), strip, style);
        return layout;
    }
    if (tile.pending) {
        layOutPending(layout, tile, strip, style);
    } else {
        layOutEntries(layout, tile, strip, style);
    }
    return layout;
}

std::optional<HoveredName> hoveredName(const TileContents& tile, const FooterLayout& layout, FooterHit hovered,
                                       const Style& style) {
    if (hovered.part != FooterHit::Part::entry || hovered.entry >= tile.applications.size()) return std::nullopt;
    const auto place = std::ranges::find(layout.entries, hovered.entry, &FooterLayout::Entry::index);
    if (place == layout.entries.end()) return std::nullopt;
    const QString name = labelOf(tile, tile.applications[hovered.entry]);
    const bool isWhole = !place->label.isEmpty() && widthOf(name, smallFont(style)) <= textArea(*place, style).width();
    if (isWhole) return std::nullopt;
    return HoveredName{layout.remark.width() > layout.name.width() ? layout.remark : layout.name, name};
}

FooterHit FooterLayout::at(QPoint point) const {
    if (launch.contains(point)) return {FooterHit::Part::launch, 0};
    if (more.contains(point)) return {FooterHit::Part::more, 0};
    for (const Entry& entry : entries) {
        if (entry.area.contains(point)) return {FooterHit::Part::entry, entry.index};
    }
    if (panel.contains(point) && point.x() <= name.right()) return {FooterHit::Part::name, 0};
    return {};
}

void paintFooter(QPainter& painter, const TileContents& tile, const FooterLayout& layout, const FooterState& state,
                 const Style& style) {
    using Part = FooterHit::Part;
    const Palette& palette = style.palette;
    const bool isTarget = state.isDropTarget || tile.isDropTarget;
    drawPanel(painter, layout.panel, style.px(points::footerRadius), palette.panel,
              isTarget ? palette.accentLine : palette.panelLine, style.line(isTarget ? 1.5 : 1));
    const auto hovered = tile.notice ? std::nullopt : hoveredName(tile, layout, state.hovered, style);
    if (!hovered || hovered->area != layout.name) {
        drawText(painter, layout.name, textOf(tile.name), style.font(points::smallText, QFont::Medium),
                 state.hovered.part == Part::name ? palette.text : palette.mutedText);
    }
    if (hovered) drawText(painter, hovered->area, hovered->name, smallFont(style), palette.text);
    if (tile.notice) {
        paintNotice(painter, tile.notice->application, layout.notice, state.noticePart, style);
    } else {
        for (const FooterLayout::Entry& place : layout.entries) {
            const bool isHovered = state.hovered == FooterHit{Part::entry, place.index};
            paintEntry(painter, tile.applications[place.index], place, isHovered, style);
        }
        if (!layout.more.isEmpty()) {
            const bool isHovered = state.hovered.part == Part::more;
            if (isHovered) drawPanel(painter, layout.more, style.px(points::entryRadius), palette.hovered, QColor(), 0);
            drawText(painter, layout.more, QStringLiteral("+%1").arg(layout.hiddenEntries), smallFont(style),
                     isHovered ? palette.text : palette.mutedText, Qt::AlignHCenter);
        }
        if (!layout.pending.isEmpty()) paintPending(painter, *tile.pending, layout.pending, state.spinnerTurn, style);
        if (tile.applications.empty() && !tile.pending) {
            drawText(painter, layout.remark, QCoreApplication::translate("Overlay", "Empty"), smallFont(style),
                     palette.mutedText);
        }
    }
    const bool isHovered = state.hovered.part == Part::launch;
    if (isHovered) drawPanel(painter, layout.launch, style.px(points::entryRadius), palette.hovered, QColor(), 0);
    drawPlus(painter, layout.launch, style, isHovered ? palette.text : palette.mutedText);
}

bool looksTheSame(const TileContents& one, const TileContents& other) {
    return one.name == other.name && one.applications == other.applications && one.pending == other.pending &&
           one.notice == other.notice && one.isDropTarget == other.isDropTarget;
}

} // namespace kova::ui
