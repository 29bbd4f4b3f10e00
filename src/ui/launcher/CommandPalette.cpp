#include "ui/launcher/CommandPalette.h"

#include "ui/launcher/PaletteCommands.h"

#include <QPainter>

#include <memory>

namespace kova::ui {

namespace {

const WindowRegistration registration({"palette", [](WindowServices& services) -> std::unique_ptr<HostedWindow> {
                                           return std::make_unique<CommandPalette>(services);
                                       }});

QString textOf(const nlohmann::json& object, const char* key) {
    const auto found = object.find(key);
    return found != object.end() && found->is_string() ? QString::fromStdString(found->get<std::string>()) : QString();
}

/// Objects of the array under `key` that have an id.
std::vector<nlohmann::json> identified(const nlohmann::json& result, const char* key) {
    std::vector<nlohmann::json> found;
    for (const auto& each : result.value(key, nlohmann::json::array())) {
        if (each.is_object() && each.contains("id") && each["id"].is_string()) found.push_back(each);
    }
    return found;
}

} // namespace

TilePicture::TilePicture(WindowServices& services) : services_(services) {
    setObjectName(QStringLiteral("tilePicture"));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void TilePicture::show(const std::string& tile) {
    tile_ = tile;
    update();
}

QSize TilePicture::sizeHint() const {
    return {fontMetrics().height() * 8, fontMetrics().height() * 4};
}

void TilePicture::paintEvent(QPaintEvent*) {
    const OverlayContents* contents = services_.overlay ? services_.overlay() : nullptr;
    const TileContents* target = contents ? contents->tile(tile_) : nullptr;
    const DisplayContents* display = target ? contents->display(target->display) : nullptr;
    if (!display || display->frame.size.width <= 0 || display->frame.size.height <= 0) return;
    const CGRect& whole = display->frame;
    const double scale = std::min(width() / whole.size.width, height() / whole.size.height);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate((width() - whole.size.width * scale) / 2, (height() - whole.size.height * scale) / 2);
    const Palette colors = services_.palette();
    const double line = fontMetrics().height() / 12.0, inset = 2 * line;
    for (const TileContents& tile : contents->tiles) {
        if (tile.display != display->id) continue;
        const QRectF place((tile.frame.origin.x - whole.origin.x) * scale,
                           (tile.frame.origin.y - whole.origin.y) * scale, tile.frame.size.width * scale,
                           tile.frame.size.height * scale);
        const bool isTarget = tile.id == tile_;
        painter.setPen(QPen(isTarget ? colors.accentLine : colors.mutedText, isTarget ? 2 * line : line));
        painter.setBrush(isTarget ? QBrush(colors.accentFill) : QBrush(Qt::NoBrush));
        painter.drawRoundedRect(place.adjusted(inset, inset, -inset, -inset), inset, inset);
    }
}

CommandPalette::CommandPalette(WindowServices& services) : SearchWindow(services), picture_(new TilePicture(services)) {
    setWindowTitle(tr("Palette"));
    putAbove(picture_);
    field().setPlaceholderText(tr("Applications, windows, scenes, layouts and commands"));
    field().setAccessibleName(tr("Search"));
    field().setAccessibleDescription(tr("Type a part of what you want; arrow keys choose, Enter carries it out"));
    list().setAccessibleName(tr("Results"));
    list().setAccessibleDescription(tr("Applications, windows, scenes, layouts and commands, the best match first"));
}

QString CommandPalette::tileName() const {
    const OverlayContents* contents = services().overlay ? services().overlay() : nullptr;
    const TileContents* target = contents ? contents->tile(tile()) : nullptr;
    return target ? QString::fromStdString(target->name) : QString();
}

std::vector<LauncherEntry> CommandPalette::windowEntries(const nlohmann::json& result) const {
    std::vector<LauncherEntry> entries;
    for (const auto& window : identified(result, "windows")) {
        const QString application = textOf(window, "application"), title = textOf(window, "title");
        entries.push_back({.title = title.isEmpty() ? application : tr("%1 — %2").arg(title, application),
                           .kind = tr("bring to %1").arg(tileName()),
                           .application = {textOf(window, "bundleIdentifier").toStdString(), application.toStdString()},
                           .words = application,
                           .method = "place",
                           .parameters = {{"window", window["id"]}, {"tile", tile()}}});
    }
    return entries;
}

std::vector<LauncherEntry> CommandPalette::sceneEntries(const nlohmann::json& result) const {
    std::vector<LauncherEntry> entries;
    for (const auto& scene : identified(result, "scenes")) {
        entries.push_back({.title = textOf(scene, "name"),
                           .kind = tr("Scene"),
                           .method = "scene.open",
                           .parameters = {{"scene", scene["id"]}}});
    }
    return entries;
}

std::vector<LauncherEntry> CommandPalette::layoutEntries(const nlohmann::json& result) const {
    const OverlayContents* contents = services().overlay ? services().overlay() : nullptr;
    const TileContents* target = contents ? contents->tile(tile()) : nullptr;
    std::vector<LauncherEntry> entries;
    for (const auto& layout : identified(result, "layouts")) {
        entries.push_back({.title = textOf(layout, "name"),
                           .kind = tr("Layout"),
                           .method = "layout.select",
                           .parameters = {{"layout", layout["id"]}}});
        if (target) entries.back().parameters["display"] = target->display;
    }
    return entries;
}

void CommandPalette::load() {
    picture_->show(tile());
    picture_->setAccessibleName(tr("Acts on the tile %1").arg(tileName()));
    const OverlayContents* contents = services().overlay ? services().overlay() : nullptr;
    const TileContents* target = contents ? contents->tile(tile()) : nullptr;
    offer(target ? commandEntries(target->display) : std::vector<LauncherEntry>());
    const auto ask = [this](const char* method, auto&& entriesOf) {
        services().agent.call(this, method, nlohmann::json::object(), [this, entriesOf](const Answer& answer) {
            if (answer.error.empty()) offerMore(entriesOf(answer.result));
        });
    };
    ask("app.list", [this](const nlohmann::json& result) {
        auto entries = applicationEntries(result, tile());
        for (LauncherEntry& entry : entries) entry.kind = tr("Application");
        return entries;
    });
    ask("query.windows", [this](const nlohmann::json& result) { return windowEntries(result); });
    ask("scene.list", [this](const nlohmann::json& result) { return sceneEntries(result); });
    ask("layout.list", [this](const nlohmann::json& result) { return layoutEntries(result); });
}

} // namespace kova::ui
