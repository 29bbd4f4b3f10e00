#include "tests/ui/Sample.h"

#include "themes/ThemeCoding.h"

#include <QApplication>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

/// Suppresses reports of leaks inside Qt and its libraries.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
    return "leak:libfontconfig\nleak:libQt6\nleak:libglib\nleak:libdbus\n";
}

namespace kova::ui::testing {

using nlohmann::json;

namespace {

/// Owns the QApplication, on the offscreen platform. SetUp creates it, so that listing the tests needs no QApplication.
class Toolkit : public ::testing::Environment {
  public:
    void SetUp() override {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        qputenv("QT_ENABLE_HIGHDPI_SCALING", "0");
        application_ = std::make_unique<QApplication>(count_, arguments_);
    }
    void TearDown() override { application_.reset(); }

  private:
    int count_ = 1;
    char name_[8] = "ui_test";
    char* arguments_[2] = {name_, nullptr};
    std::unique_ptr<QApplication> application_;
};

const auto* const toolkit = ::testing::AddGlobalTestEnvironment(new Toolkit);

json rect(double x, double y, double width, double height) {
    return {{"x", x}, {"y", y}, {"width", width}, {"height", height}};
}

const std::vector<std::string> kNames{"Code",
                                      "Terminal",
                                      "Notes",
                                      "Mail",
                                      "Browser",
                                      "Calendar",
                                      "Files",
                                      "Музыка",
                                      "Запись",
                                      "متصفح الويب",
                                      "A name that is much too long",
                                      "Chat"};

struct Cell {
    std::string slot, name;
    double x, y, width, height;
};

json tile(const Cell& cell, const std::vector<int>& windows, bool isFocused) {
    json applications = json::array();
    for (const int window : windows) {
        applications.push_back({{"window", std::to_string(window)},
                                {"application", {{"id", nullptr}, {"name", kNames[static_cast<std::size_t>(window)]}}},
                                {"title", "a title"},
                                {"isFront", window == windows.front()},
                                {"isFocused", window == windows.front() && isFocused},
                                {"isMinimized", windows.size() > 2 && window == windows[2]}});
    }
    return {{"id", "d1::" + cell.slot},
            {"display", "d1"},
            {"slot", cell.slot},
            {"name", cell.name},
            {"frame", rect(cell.x + 5, cell.y + 5, cell.width - 10, cell.height - 10)},
            {"footerFrame", rect(cell.x, cell.y + cell.height, cell.width, 28)},
            {"isEmpty", windows.empty()},
            {"applications", applications},
            {"pending", nullptr},
            {"notice", nullptr},
            {"isDropTarget", false}};
}

void writeRightToLeft(json& state) {
    const std::vector<std::string> names{"متصفح الويب السريع والآمن من المؤسسة", "טרמינל", "Notes (ملاحظات)"};
    for (json& tile : state["tiles"]) {
        tile["name"] = tile["slot"] == "secondary" ? "المكان الثاني الذي اسمه أطول من أن يُعرض" : "ראשי";
        std::size_t next = 0;
        for (json& window : tile["applications"]) window["application"]["name"] = names[next++ % names.size()];
    }
    if (!state["message"].is_null()) state["message"]["text"] = "Moved متصفح الويب to ראשי";
}

void addSpan(json& state) {
    json& tiles = state["tiles"];
    tiles[0]["frame"] = rect(15, 15, 470, 442);
    tiles[0]["footerFrame"] = rect(10, 462, 480, 28);
    tiles[2]["frame"]["width"] = 170;
    tiles[2]["footerFrame"]["width"] = 180;
    for (const json& entry : tiles[0]["applications"]) {
        tiles[2]["applications"].push_back(entry);
        tiles[2]["applications"].back()["isFront"] = false;
    }
    tiles.erase(1);
}

} // namespace

json sampleState(const Sample& sample) {
    std::vector<std::vector<int>> stacks(4);
    for (int window = 0; window < sample.windows; ++window) {
        const int stack = window < 3 || window > 6 ? 0 : window < 5 ? 2 : 3;
        stacks[static_cast<std::size_t>(stack)].push_back(window);
    }
    json tiles = json::array();
    const std::vector<Cell> cells{{"primary", "Primary", 10, 10, 480, 280},
                                  {"utility", "Utility", 10, 330, 480, 132},
                                  {"reference", "Reference", 502, 10, 288, 206},
                                  {"secondary", "Secondary", 502, 256, 288, 206}};
    for (std::size_t i = 0; i < cells.size(); ++i) tiles.push_back(tile(cells[i], stacks[i], i == 0));
    for (const int index : {0, 2}) {
        if (!sample.hasNotice) break;
        tiles[static_cast<std::size_t>(index)]["notice"] = {
            {"text", kNames[static_cast<std::size_t>(index)] +
                         " did not fit in the selected tile, so KOVA automatically claimed 2 additional tiles"},
            {"application", {{"id", nullptr}, {"name", kNames[static_cast<std::size_t>(index)]}}}};
    }
    json dividers = json::array();
    if (sample.isBusy) {
        for (const std::size_t i : {1U, 3U}) {
            tiles[i]["pending"] = {{"application", {{"id", nullptr}, {"name", i == 1 ? "Maps" : "Photographs"}}}};
        }
        dividers.push_back({{"id", "middle"},
                            {"display", "d1"},
                            {"axis", "horizontal"},
                            {"frame", rect(490, 10, 12, 452)},
                            {"isHovered", true},
                            {"isDragged", false}});
    }
    ThemeRegistry registry;
    const std::string theme = sample.theme == ThemeVariant::neon ? "jarvis.neon-cyan" : "kova.native";
    json state{{"version", {{"contract", kOverlayContract}, {"agent", "0.1.0"}}},
               {"isSuspended", false},
               {"appearance",
                {{"theme", theme},
                 {"isDark", sample.theme == ThemeVariant::neon ? json(true) : json()},
                 {"palette", encode(registry.palette(theme, kDefaultAccentColorID))},
                 {"useThemeBackground", sample.useThemeBackground},
                 {"showTileBackgrounds", true},
                 {"showBrain", sample.hasBrain}}},
               {"displays",
                {{{"id", "d1"},
                  {"name", "Screen"},
                  {"frame", rect(0, 0, 800, 500)},
                  {"visibleFrame", rect(0, 0, 800, 500)},
                  {"scale", sample.scale},
                  {"isFocusMode", false}}}},
               {"tiles", tiles},
               {"dividers", dividers},
               {"drag", nullptr},
               {"message", nullptr}};
    if (sample.isDragging) state["drag"] = {{"window", "3"}, {"display", "d1"}, {"tile", "d1::secondary"}};
    if (sample.hasMessage) {
        state["message"] = {
            {"text", "Windows arranged into zones — Undo is available"}, {"display", "d1"}, {"undo", "undo"}};
    }
    if (sample.isRightToLeft) writeRightToLeft(state);
    if (sample.hasSpan) addSpan(state);
    return state;
}

OverlayContents contentsOf(const json& state) {
    OverlayContents contents;
    applySections(contents, JsonCursor(state, "state"));
    return contents;
}

DesktopStyle desktopStyleOf(ThemeVariant theme) {
    return {.brightness = theme == ThemeVariant::light ? Brightness::light : Brightness::dark,
            .areAnimationsEnabled = false,
            .fontFamily = QStringLiteral("DejaVu Sans"),
            .icon = nullptr};
}

void PicturePlatform::shape(OverlayWindow& window, const QRegion& visible, const QRegion& clickable) {
    windows_.at(&window).visible = visible;
    windows_.at(&window).clickable = clickable;
}

void PicturePlatform::draw(OverlayWindow& window, const QRegion&) {
    WindowRecord& shown = windows_.at(&window);
    ++shown.drawings;
    shown.picture = QImage(window.size(), QImage::Format_ARGB32_Premultiplied);
    shown.picture.fill(Qt::transparent);
    QPainter painter(&shown.picture);
    window.paint(painter);
}

int PicturePlatform::drawings() const {
    int sum = 0;
    for (const auto& [window, shown] : windows_) sum += shown.drawings;
    return sum;
}

int PicturePlatform::windowCountOf(Layer layer) const {
    return static_cast<int>(std::ranges::count_if(
        windows_, [&](const auto& shown) { return shown.first->layer() == layer && !shown.second.isConcealed; }));
}

QImage PicturePlatform::screen(QSize size, const QBrush& wallpaper) const {
    std::vector<OverlayWindow*> windows;
    for (const auto& [window, shown] : windows_) {
        if (!shown.isConcealed) windows.push_back(window);
    }
    std::ranges::sort(windows, {}, [](const OverlayWindow* window) { return window->layer(); });
    QImage screen(size, QImage::Format_RGB32);
    QPainter painter(&screen);
    painter.fillRect(screen.rect(), wallpaper);
    for (OverlayWindow* window : windows) {
        const WindowRecord& shown = windows_.at(window);
        painter.setClipRegion(shown.visible.translated(window->position()));
        painter.drawImage(window->position(), shown.picture);
    }
    return screen;
}

} // namespace kova::ui::testing
