#include "ui/launcher/CommandPalette.h"

#include "ui/launcher/PaletteAnswers.h"
#include "ui/launcher/PaletteCommands.h"
#include "ui/windows/JsonText.h"

#include <QPainter>

#include <memory>

namespace kova::ui {

namespace {

const WindowRegistration paletteRegistration({"palette", [](WindowServices& services) -> std::unique_ptr<HostedWindow> {
                                                  return std::make_unique<CommandPalette>(services);
                                              }});

/// The objects in the array `result[key]` that have an id.
std::vector<nlohmann::json> elementsWithID(const nlohmann::json& result, const char* key) {
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
    insertAbove(picture_);
    field().setAccessibleDescription(tr("Type a part of what you want; arrow keys choose, Enter carries it out"));
    list().setAccessibleName(tr("Results"));
    list().setAccessibleDescription(tr("Applications, windows, scenes, layouts and commands, the best match first"));
}

QString CommandPalette::tileName() const {
    const OverlayContents* contents = services().overlay ? services().overlay() : nullptr;
    const TileContents* target = contents ? contents->tile(tile()) : nullptr;
    if (!target) return {};
    const QString name = QString::fromStdString(target->name);
    const DisplayContents* display = contents->displays.size() > 1 ? contents->display(target->display) : nullptr;
    return display ? tr("%1 on %2", "tile on display").arg(name, QString::fromStdString(display->name)) : name;
}

std::vector<LauncherEntry> CommandPalette::windowEntries(const nlohmann::json& result) const {
    std::vector<LauncherEntry> entries;
    for (const auto& window : elementsWithID(result, "windows")) {
        const QString application = memberText(window, "application"), title = memberText(window, "title");
        entries.push_back(
            {.title = title.isEmpty() ? application : tr("%1 — %2").arg(title, application),
             .kind = tr("bring to %1").arg(tileName()),
             .application = {memberText(window, "bundleIdentifier").toStdString(), application.toStdString()},
             .words = application,
             .method = "place",
             .parameters = {{"window", window["id"]}, {"tile", tile()}}});
    }
    return entries;
}

std::vector<LauncherEntry> CommandPalette::sceneEntries(const nlohmann::json& result) const {
    std::vector<LauncherEntry> entries;
    for (const auto& scene : elementsWithID(result, "scenes")) {
        entries.push_back({.title = memberText(scene, "name"),
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
    for (const auto& layout : elementsWithID(result, "layouts")) {
        entries.push_back({.title = memberText(layout, "name"),
                           .kind = tr("Layout"),
                           .method = "layout.select",
                           .parameters = {{"layout", layout["id"]}}});
        if (target) entries.back().parameters["display"] = target->display;
    }
    return entries;
}

const Question* CommandPalette::question() const {
    return command_ && answered_ < command_->questions.size() ? &command_->questions[answered_] : nullptr;
}

void CommandPalette::filter() {
    const Question* current = question();
    const bool isTyped = current && (current->subject == Subject::text || current->subject == Subject::number);
    if (isTyped) {
        showOnly(typedAnswer(*current, field().text()));
    } else {
        SearchWindow::filter();
    }
}

/// Shows the next question in the field, after the command's title. The title of a command with arguments ends with
/// “…”; the field shows the title without it.
void CommandPalette::askNext() {
    const Question& current = *question();
    field().setPlaceholderText(tr("%1: %2").arg(command_->title.chopped(1), current.prompt));
    field().setAccessibleName(field().placeholderText());
    field().clear();
    const unsigned generation = ++generation_;
    const std::string method = methodOf(current.subject);
    setLoading(!method.empty());
    setEntries({});
    if (method.empty()) return;
    services().agent.call(this, method, nlohmann::json::object(), [this, generation](const Response& response) {
        if (generation != generation_ || !question()) return;
        error().showReason(QString::fromStdString(response.error));
        setLoading(false);
        setEntries(answersIn(response.result, *question()));
    });
}

void CommandPalette::entryChosen(const LauncherEntry& entry) {
    if (const Question* current = question()) {
        command_->parameters.update(entry.parameters);
        if (current->subject == Subject::window) command_->application = entry.application;
        ++answered_;
    } else {
        command_ = entry;
        answered_ = 0;
    }
    if (question()) return askNext();
    // If the parameters name no window, the agent acts on the focused window, and that is the palette now.
    if (lastFocused_.is_string() && actsOnFocusedWindow(command_->method) && !command_->parameters.contains("window"))
        command_->parameters["window"] = lastFocused_;
    if (!command_->isConfirmedFirst) {
        perform(*command_);
        if (answered_ > 0) --answered_; // if the agent refuses the request, the last question can be answered again
        return;
    }
    const nlohmann::json listed{{"name", command_->application.name}, {"bundleIdentifier", command_->application.id}};
    services().show("alert", {{"title", tr("%1?").arg(command_->title.chopped(1)).toStdString()},
                              {"text", tr("Changes that were not saved are lost.").toStdString()},
                              {"confirm", tr("Force Quit").toStdString()},
                              {"cancel", tr("Cancel").toStdString()},
                              {"applications", nlohmann::json::array({listed})},
                              {"method", command_->method},
                              {"parameters", command_->parameters}});
    close();
}

void CommandPalette::goBack() {
    if (!command_) return;
    if (answered_ == 0) return load();
    --answered_;
    askNext();
}

void CommandPalette::load() {
    command_.reset();
    const unsigned generation = ++generation_;
    setLoading(false);
    error().clear();
    field().setPlaceholderText(tr("Applications, windows, scenes, layouts and commands"));
    field().setAccessibleName(tr("Search"));
    picture_->show(tile());
    picture_->setAccessibleName(tr("Acts on the tile %1").arg(tileName()));
    const OverlayContents* contents = services().overlay ? services().overlay() : nullptr;
    const TileContents* target = contents ? contents->tile(tile()) : nullptr;
    setEntries(target ? commandEntries(target->display) : std::vector<LauncherEntry>());
    const auto add = [this, generation](const char* method, auto&& entriesOf) {
        services().agent.call(this, method, nlohmann::json::object(),
                              [this, generation, entriesOf](const Response& response) {
                                  if (generation != generation_) return;
                                  if (response.error.empty()) return addEntries(entriesOf(response.result));
                                  error().showReason(QString::fromStdString(response.error));
                              });
    };
    services().agent.call(this, "query.focus", nlohmann::json::object(), [this](const Response& response) {
        const nlohmann::json last =
            response.result.is_object() ? response.result.value("last", nlohmann::json()) : nullptr;
        lastFocused_ = last.is_object() ? last.value("id", nlohmann::json()) : nullptr;
    });
    add("app.list", [this](const nlohmann::json& result) {
        auto entries = applicationEntries(result, tile());
        for (LauncherEntry& entry : entries) entry.kind = tr("Application");
        return entries;
    });
    add("query.windows", [this](const nlohmann::json& result) { return windowEntries(result); });
    add("scene.list", [this](const nlohmann::json& result) { return sceneEntries(result); });
    add("layout.list", [this](const nlohmann::json& result) { return layoutEntries(result); });
}

} // namespace kova::ui
