#include "ui/overlay/Overlay.h"

#include "ui/overlay/Drawing.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <utility>

namespace kova::ui {

namespace {

constexpr int kSpinnerMilliseconds = 80;

/// The lowest area in `room`, horizontally centered, in which the panel covers no control. If there is no such area,
/// returns the area at the bottom, where the panel covers controls.
QRect areaWithoutControls(const std::vector<QRect>& controls, QSize panel, const QRect& room, int margin) {
    QRect lowest(QPoint(0, 0), panel);
    lowest.moveCenter(room.center());
    lowest.moveBottom(room.bottom() - margin);
    QRect area = lowest;
    const auto covered = [&] {
        return std::ranges::find_if(
            controls, [&](const QRect& control) { return control.adjusted(0, -margin, 0, margin).intersects(area); });
    };
    for (auto control = covered(); control != controls.end(); control = covered()) {
        area.moveBottom(control->top() - margin - 1);
        if (area.top() < room.top()) return lowest;
    }
    return area;
}

/// Removes the windows whose ids are not in `ids`.
template <class Windows>
void keepOnly(Windows& windows, const std::set<std::string>& ids) {
    std::erase_if(windows, [&](const auto& window) { return !ids.contains(window.first); });
}

} // namespace

Overlay::Overlay(OverlayPlatform& platform, OverlayActions& actions) :
    platform_(platform), actions_(actions),
    emptyTiles_([this] { return std::make_unique<EmptyTileWindow>(platform_, actions_); }), footers_([this] {
        return std::make_unique<FooterWindow>(
            platform_, actions_, [this](const std::string& dragged, QPoint at, FooterWindow::DragEvent dragEvent) {
                dragEntry(dragged, at, dragEvent);
            });
    }),
    decoration_(platform) {
    spinner_.setInterval(kSpinnerMilliseconds);
    QObject::connect(&spinner_, &QTimer::timeout, &spinner_, [this] {
        spinnerTurn_ = std::fmod(spinnerTurn_ + 0.08, 1.0);
        for (const auto& [id, footer] : footers_.shown()) footer->turnSpinner(spinnerTurn_);
    });
}

Overlay::~Overlay() = default;

void Overlay::setDesktopStyle(DesktopStyle style) {
    desktopStyle_ = std::move(style);
    refresh();
}

void Overlay::show(const std::optional<OverlayContents>& contents) {
    contents_ = contents;
    refresh();
}

void Overlay::firstDisplayMoved() {
    refresh();
}

void Overlay::compositingChanged() {
    const auto contents = std::exchange(contents_, std::nullopt);
    refresh();
    show(contents);
}

Style Overlay::styleFor(const std::string& display) const {
    const DisplayContents* shown = contents_->display(display);
    const Compositing compositing = platform_.isComposited() ? Compositing::running : Compositing::absent;
    return {.palette = paletteFor(contents_->appearance, desktopStyle_.brightness, compositing),
            .scale = shown ? shown->scale : 1,
            .firstDisplay = platform_.firstDisplay(),
            .fontFamily = desktopStyle_.fontFamily,
            .icon = desktopStyle_.icon,
            .isComposited = compositing == Compositing::running,
            .areAnimationsEnabled = desktopStyle_.areAnimationsEnabled};
}

void Overlay::refresh() {
    if (!contents_) {
        draggedEntry_.reset();
        message_.reset();
        highlights_.clear();
        dividers_.clear();
        footers_.clear();
        emptyTiles_.clear();
        backdrops_.clear();
        decoration_.show(nullptr, {});
        return spinner_.stop();
    }
    // Footers are refreshed first, since the user works with them.
    refreshFooters();
    refreshHighlights();
    refreshDividers();
    refreshMessage();
    refreshBackdrops();
    refreshEmptyTiles();
    decoration_.show(&*contents_, [this](const std::string& display) { return styleFor(display); });
    refreshSpinner();
}

std::set<std::string> Overlay::idsOfTiles(const std::function<bool(const TileContents&)>& isIncluded) const {
    std::set<std::string> ids;
    for (const TileContents& tile : contents_->tiles) {
        if (isIncluded(tile)) ids.insert(tile.id);
    }
    return ids;
}

void Overlay::refreshBackdrops() {
    std::set<std::string> shown;
    if (contents_->appearance.useThemeBackground) {
        for (const DisplayContents& display : contents_->displays) {
            const Style style = styleFor(display.id);
            auto& window = backdrops_[display.id];
            if (!window) window = std::make_unique<BackdropWindow>(platform_);
            window->show(style.px(display.frame), style);
            shown.insert(display.id);
        }
    }
    keepOnly(backdrops_, shown);
}

bool Overlay::showsEmptyTile(const TileContents& tile) const {
    const DisplayContents* display = contents_->display(tile.display);
    if (!contents_->appearance.showTileBackgrounds || !tile.isEmpty || !display) return false;
    return !display->isFocusMode && tile.frame.size.width >= 24 && tile.frame.size.height >= 24;
}

void Overlay::refreshEmptyTiles() {
    const auto isShown = [&](const TileContents& tile) { return showsEmptyTile(tile); };
    emptyTiles_.keepOnly(idsOfTiles(isShown));
    for (const TileContents& tile : contents_->tiles) {
        if (!isShown(tile)) continue;
        const Style style = styleFor(tile.display);
        const QRect display = style.px(contents_->display(tile.display)->frame);
        const QRect backdrop = contents_->appearance.useThemeBackground ? display : QRect();
        emptyTiles_.of(tile.id).show(tile, style.px(tile.frame), backdrop, style);
    }
}

void Overlay::refreshFooters() {
    const auto isShown = [](const TileContents& tile) {
        return tile.footerFrame && tile.footerFrame->size.width >= 40;
    };
    footers_.keepOnly(idsOfTiles(isShown));
    for (const TileContents& tile : contents_->tiles) {
        if (!isShown(tile)) continue;
        const Style style = styleFor(tile.display);
        FooterWindow& window = footers_.of(tile.id);
        window.show(tile, *footerArea(tile, style), style);
    }
    endLostDrag();
    for (const auto& [id, footer] : footers_.shown()) footer->setDropTarget(draggedEntry_ && draggedEntry_->tile == id);
}

/// Ends the drag of an entry if the entry or its footer was removed, or if the workspace is suspended. A removed footer
/// gets no event when the button is released.
void Overlay::endLostDrag() {
    if (!draggedEntry_) return;
    bool isDragged = false;
    for (const auto& [id, footer] : footers_.shown()) {
        if (contents_->isSuspended) footer->cancelDrag();
        isDragged = isDragged || footer->isDragging();
    }
    if (!isDragged) draggedEntry_.reset();
}

void Overlay::refreshDividers() {
    std::set<std::string> shown;
    for (const DividerContents& divider : contents_->dividers) {
        if (!divider.isLit) continue;
        const Style style = styleFor(divider.display);
        const QRect line = dividerLine(style.px(divider.frame), divider.separatesSideBySide, style);
        if (line.isEmpty()) continue;
        auto& window = dividers_[divider.id];
        if (!window) window = std::make_unique<DividerWindow>(platform_);
        window->show(line, style);
        shown.insert(divider.id);
    }
    keepOnly(dividers_, shown);
}

void Overlay::refreshHighlights() {
    std::set<std::string> shown;
    const auto& drag = draggedEntry_ ? draggedEntry_ : contents_->drag;
    const DisplayContents* display = drag && drag->display ? contents_->display(*drag->display) : nullptr;
    if (display && !contents_->isSuspended) {
        const Style style = styleFor(display->id);
        const QRect area = style.px(display->visibleFrame);
        std::vector<OutlinedTile> tiles;
        for (const TileContents& tile : contents_->tiles) {
            if (tile.display != display->id) continue;
            const bool isTarget =
                draggedEntry_ ? draggedEntry_->tile == tile.id : tile.isDropTarget || drag->tile == tile.id;
            tiles.push_back({style.px(tile.frame).translated(-area.topLeft()), textOf(tile.name), isTarget});
        }
        auto& window = highlights_[display->id];
        if (!window) window = std::make_unique<HighlightWindow>(platform_);
        window->show(std::move(tiles), area, style);
        shown.insert(display->id);
    }
    keepOnly(highlights_, shown);
}

void Overlay::refreshMessage() {
    const auto& message = contents_->message;
    const DisplayContents* display = message ? contents_->display(message->display) : nullptr;
    if (message && !display && !contents_->displays.empty()) display = &contents_->displays.front();
    if (!display) {
        if (message_) message_->retire();
        return;
    }
    const Style style = styleFor(display->id);
    const QRect room = style.px(display->visibleFrame);
    const int widest = style.px(display->visibleFrame.size.width - 2 * points::messageMargin);
    const QRect area = areaWithoutControls(controlsOn(*display, style), layOutMessage(*message, widest, style).size,
                                           room, style.px(points::messageMargin));
    if (!message_) message_ = std::make_unique<MessageWindow>(platform_, actions_);
    message_->show(*message, area, widest, style);
}

/// The areas of footers and of the buttons of empty tiles, in pixels on the screen.
std::vector<QRect> Overlay::controlsOn(const DisplayContents& display, const Style& style) const {
    std::vector<QRect> controls;
    for (const TileContents& tile : contents_->tiles) {
        if (tile.display != display.id) continue;
        if (const auto footer = footerArea(tile, style)) controls.push_back(*footer);
        if (!showsEmptyTile(tile)) continue;
        const QRect area = style.px(tile.frame);
        const EmptyTileLayout layout = layOutEmptyTile(tile, area.size(), style);
        if (layout.hasButton) controls.push_back(layout.button.translated(area.topLeft()));
    }
    return controls;
}

void Overlay::refreshSpinner() {
    const bool isPending =
        std::ranges::any_of(contents_->tiles, [](const TileContents& tile) { return tile.pending.has_value(); });
    const bool mayTurn = isPending && desktopStyle_.areAnimationsEnabled && !contents_->isSuspended;
    if (!mayTurn) {
        spinner_.stop();
    } else if (!spinner_.isActive()) {
        spinner_.start();
    }
}

const DisplayContents* Overlay::displayAt(QPoint pixels) const {
    const auto found = std::ranges::find_if(contents_->displays, [&](const DisplayContents& display) {
        return styleFor(display.id).px(display.frame).contains(pixels);
    });
    return found == contents_->displays.end() ? nullptr : &*found;
}

const TileContents* Overlay::tileAt(QPoint pixels) const {
    for (const TileContents& tile : contents_->tiles) {
        const Style style = styleFor(tile.display);
        const auto footer = footerArea(tile, style);
        if (style.px(tile.frame).contains(pixels) || (footer && footer->contains(pixels))) return &tile;
    }
    return nullptr;
}

void Overlay::dragEntry(const std::string& window, QPoint at, FooterWindow::DragEvent dragEvent) {
    if (!contents_) return;
    const TileContents* tile = tileAt(at);
    const auto holds = [&](const StackEntry& entry) { return entry.window == window; };
    const bool isOtherTile = tile && std::ranges::none_of(tile->applications, holds);
    const std::optional<std::string> target = isOtherTile ? std::optional(tile->id) : std::nullopt;
    std::optional<WindowDrag> drag;
    if (dragEvent == FooterWindow::DragEvent::moved) {
        drag.emplace().tile = target;
        if (const DisplayContents* display = displayAt(at)) drag->display = display->id;
    }
    if (std::exchange(draggedEntry_, drag) != drag) {
        refreshFooters();
        refreshHighlights();
    }
    if (dragEvent == FooterWindow::DragEvent::dropped && target) actions_.place(window, *target);
}

} // namespace kova::ui
