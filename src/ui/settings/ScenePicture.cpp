#include "ui/settings/ScenePicture.h"

#include "ui/overlay/Drawing.h"

#include <QPainter>

#include <algorithm>
#include <string>
#include <vector>

namespace kova::ui {

namespace {

using nlohmann::json;

QRectF within(const json& unitFrame, const QRectF& area) {
    return {area.x() + unitFrame.value("x", 0.0) * area.width(), area.y() + unitFrame.value("y", 0.0) * area.height(),
            unitFrame.value("width", 0.0) * area.width(), unitFrame.value("height", 0.0) * area.height()};
}

/// The application of the front window in the tile with that slot, on the display with that number. The name is empty
/// if the tile is empty.
ApplicationName frontOf(const json& scene, const json& number, const json& slot) {
    for (const json& placement : scene.value("placements", json::array())) {
        if (placement.value("display", json()) != number || !placement.value("isFront", false)) continue;
        const json covered = placement.value("covers", json::array());
        if (std::ranges::find(covered, slot) == covered.end()) continue;
        const json id = placement.value("bundleIdentifier", json());
        return {id.is_string() ? id.get<std::string>() : "", placement.value("application", "")};
    }
    return {};
}

void drawDisplay(QPainter& painter, const QRectF& area, const json& scene, const json& display, const Style& style) {
    const Palette& colors = style.palette;
    const double line = std::max(1.0, area.height() / 60), gap = area.height() / 40;
    drawPanel(painter, area, 3 * line, colors.backdropBottom, colors.raisedLine, line);
    for (const json& tile : display.value("tiles", json::array())) {
        const QRectF tileArea = within(tile.value("frame", json::object()), area).adjusted(gap, gap, -gap, -gap);
        const ApplicationName front = frontOf(scene, display.value("number", json()), tile.value("slot", json()));
        const bool isTaken = !front.name.empty();
        drawPanel(painter, tileArea, 2 * line, isTaken ? colors.raised : QColor(), colors.raisedLine, line);
        if (!isTaken) continue;
        const int icon = static_cast<int>(std::min(tileArea.width(), tileArea.height()) * 0.6);
        QRect square(0, 0, icon, icon);
        square.moveCenter(tileArea.center().toPoint());
        drawIcon(painter, square, front, style);
    }
}

} // namespace

void drawScene(QPainter& painter, const QRectF& area, const json& scene, const WindowServices& services) {
    const json displays = scene.value("displays", json::array());
    if (displays.empty() || !services.palette) return;
    Style style;
    style.palette = services.palette();
    style.fontFamily = painter.font().family();
    if (services.icon) style.icon = services.icon;
    const double gap = area.height() / 12;
    double ratios = 0;
    for (const json& display : displays) ratios += display.value("aspectRatio", 1.0);
    const double room = area.width() - gap * static_cast<double>(displays.size() - 1);
    const double height = std::min(area.height(), room / ratios);
    QPointF at(area.x(), area.center().y() - height / 2);
    for (const json& display : displays) {
        const QSizeF size(height * display.value("aspectRatio", 1.0), height);
        drawDisplay(painter, QRectF(at, size), scene, display, style);
        at.rx() += size.width() + gap;
    }
}

void ScenePictures::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
    QStyledItemDelegate::paint(painter, option, index); // draws the selection
    const auto shown = scenes_.find(index.data(kIDRole).toString());
    if (shown == scenes_.end()) return;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    const int margin = option.fontMetrics.height() / 3;
    drawScene(*painter, QRectF(option.rect).adjusted(margin, margin, -margin, -margin), shown->second, services_);
    painter->restore();
}

QSize ScenePictures::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const {
    const int line = option.fontMetrics.height();
    return {7 * line, 4 * line};
}

} // namespace kova::ui
