#include "ui/client/Contents.h"

#include "themes/ThemeCoding.h"

#include <algorithm>

namespace kova::ui {

namespace {

CGRect rectangle(const JsonCursor& at) {
    return makeRect(at.required("x").number(), at.required("y").number(), at.required("width").number(),
                    at.required("height").number());
}

std::string text(const JsonCursor& at, std::string_view key) {
    const auto member = at.optional(key);
    return member ? member->string() : std::string();
}

/// The member; false if absent.
bool isTrue(const JsonCursor& at, std::string_view key) {
    const auto member = at.optional(key);
    return member && member->boolean();
}

template <class Value>
std::vector<Value> all(const JsonCursor& at, Value (*decode)(const JsonCursor&)) {
    std::vector<Value> values;
    for (const JsonCursor& element : at.elements()) values.push_back(decode(element));
    return values;
}

template <class Value>
std::optional<Value> unlessNull(const JsonCursor& at, Value (*decode)(const JsonCursor&)) {
    if (at.value().is_null()) return std::nullopt;
    return decode(at);
}

template <class Value>
std::optional<Value> member(const JsonCursor& at, std::string_view key, Value (*decode)(const JsonCursor&)) {
    const auto found = at.optional(key);
    if (!found) return std::nullopt;
    return decode(*found);
}

std::string textAt(const JsonCursor& at) {
    return at.string();
}

bool booleanAt(const JsonCursor& at) {
    return at.boolean();
}

Appearance appearance(const JsonCursor& at) {
    return {.theme = at.required("theme").string(),
            .isDark = member(at, "isDark", booleanAt),
            .palette = decodePalette(at.required("palette")),
            .useThemeBackground = isTrue(at, "useThemeBackground"),
            .showTileBackgrounds = isTrue(at, "showTileBackgrounds"),
            .showBrain = isTrue(at, "showBrain")};
}

DisplayContents display(const JsonCursor& at) {
    DisplayContents decoded{.id = at.required("id").string(),
                            .name = text(at, "name"),
                            .frame = rectangle(at.required("frame")),
                            .visibleFrame = rectangle(at.required("visibleFrame")),
                            .scale = 1,
                            .isFocusMode = isTrue(at, "isFocusMode"),
                            .isCurrent = isTrue(at, "isCurrent")};
    if (const auto scale = at.optional("scale")) decoded.scale = scale->number();
    if (const auto frames = at.optional("floatingFrames")) decoded.floatingFrames = all(*frames, rectangle);
    if (!(decoded.scale >= 0.25 && decoded.scale <= 16)) at.fail("scale is out of range");
#if defined(__APPLE__)
    decoded.scale = 1; // the toolkit's unit is a point on a Mac; the system scales the drawing
#endif
    return decoded;
}

ApplicationName application(const JsonCursor& at) {
    return {text(at, "id"), at.required("name").string()};
}

StackEntry stackEntry(const JsonCursor& at) {
    // The overlay topic sends window ids as text; numbers are accepted too, since other topics use them.
    const JsonCursor window = at.required("window");
    return {.window = window.value().is_number_integer() ? std::to_string(window.integer()) : window.string(),
            .application = application(at.required("application")),
            .title = text(at, "title"),
            .isFront = isTrue(at, "isFront"),
            .isFocused = isTrue(at, "isFocused"),
            .isMinimized = isTrue(at, "isMinimized")};
}

ApplicationName pendingLaunch(const JsonCursor& at) {
    return application(at.required("application"));
}

PlacementNotice notice(const JsonCursor& at) {
    return {at.required("text").string(), member(at, "application", application).value_or(ApplicationName{})};
}

TileContents tile(const JsonCursor& at) {
    return {.id = at.required("id").string(),
            .display = at.required("display").string(),
            .name = at.required("name").string(),
            .frame = rectangle(at.required("frame")),
            .footerFrame = member(at, "footerFrame", rectangle),
            .isEmpty = isTrue(at, "isEmpty"),
            .isDropTarget = isTrue(at, "isDropTarget"),
            .applications = all(at.required("applications"), stackEntry),
            .pending = member(at, "pending", pendingLaunch),
            .notice = member(at, "notice", notice)};
}

DividerContents divider(const JsonCursor& at) {
    return {.id = at.required("id").string(),
            .display = at.required("display").string(),
            .frame = rectangle(at.required("frame")),
            .separatesSideBySide = at.required("axis").string() == "horizontal",
            .isLit = isTrue(at, "isHovered") || isTrue(at, "isDragged")};
}

WindowDrag drag(const JsonCursor& at) {
    return {member(at, "display", textAt), member(at, "tile", textAt)};
}

StatusMessage message(const JsonCursor& at) {
    return {at.required("text").string(), text(at, "display"), text(at, "undo")};
}

MenuItem menuItem(const JsonCursor& at) {
    const std::string kind = at.required("kind").string();
    MenuItem item;
    if (kind == "submenu") {
        item.kind = MenuItem::Kind::submenu;
    } else if (kind == "separator") {
        item.kind = MenuItem::Kind::separator;
    } else if (kind == "heading") {
        item.kind = MenuItem::Kind::heading;
    }
    item.id = text(at, "id");
    item.title = text(at, "title");
    item.isEnabled = !at.optional("isEnabled") || isTrue(at, "isEnabled");
    item.isChecked = isTrue(at, "isChecked");
    item.shortcut = text(at, "shortcut");
    if (const auto entries = at.optional("entries")) item.entries = all(*entries, menuItem);
    return item;
}

std::map<std::string, ShownWindow> shownWindows(const JsonCursor& at) {
    std::map<std::string, ShownWindow> windows;
    for (const auto& [name, window] : at.members()) {
        if (window.value().is_null()) continue;
        ShownWindow& shown = windows[name];
        shown.request = window.required("request").integer();
        if (const auto pane = window.optional("pane")) shown.pane = pane->string();
    }
    return windows;
}

/// The element with that id; null if there is none.
nlohmann::json* elementOf(nlohmann::json& list, const std::string& id) {
    const auto found = std::ranges::find_if(
        list, [&](const auto& element) { return element.is_object() && element.value("id", nlohmann::json()) == id; });
    return found == list.end() ? nullptr : &*found;
}

void mergeList(nlohmann::json& list, const JsonCursor& change) {
    if (const auto changed = change.optional("changed")) {
        for (const JsonCursor& element : changed->elements()) {
            nlohmann::json* known = elementOf(list, element.required("id").string());
            if (known) {
                known->update(element.value());
            } else {
                list.push_back(element.value());
            }
        }
    }
    const auto order = change.optional("order");
    if (!order) return;
    nlohmann::json ordered = nlohmann::json::array();
    for (const JsonCursor& id : order->elements()) {
        nlohmann::json* known = elementOf(list, id.string());
        if (!known) id.fail("there is no such element");
        ordered.push_back(*known);
    }
    list = std::move(ordered);
}

} // namespace

void mergeChanges(nlohmann::json& sections, const JsonCursor& changes) {
    for (const auto& [name, change] : changes.members()) {
        nlohmann::json& section = sections[name];
        if (section.is_array()) {
            mergeList(section, change);
        } else {
            section = change.value();
        }
    }
}

const DisplayContents* OverlayContents::display(std::string_view id) const {
    const auto found = std::ranges::find(displays, id, &DisplayContents::id);
    return found == displays.end() ? nullptr : &*found;
}

const TileContents* OverlayContents::tile(std::string_view id) const {
    const auto found = std::ranges::find(tiles, id, &TileContents::id);
    return found == tiles.end() ? nullptr : &*found;
}

void applySections(OverlayContents& contents, const JsonCursor& sections) {
    for (const auto& [name, at] : sections.members()) {
        if (name == "version") {
            contents.version = {static_cast<int>(at.required("contract").integer()), text(at, "agent")};
        } else if (name == "isSuspended") {
            contents.isSuspended = at.boolean();
        } else if (name == "appearance") {
            contents.appearance = appearance(at);
        } else if (name == "displays") {
            contents.displays = all(at, display);
        } else if (name == "tiles") {
            contents.tiles = all(at, tile);
        } else if (name == "dividers") {
            contents.dividers = all(at, divider);
        } else if (name == "drag") {
            contents.drag = unlessNull(at, drag);
        } else if (name == "message") {
            contents.message = unlessNull(at, message);
        } else if (name == "windows") {
            contents.windows = shownWindows(at);
        }
    }
}

std::vector<MenuItem> decodeMenu(const JsonCursor& result) {
    return all(result.required("entries"), menuItem);
}

} // namespace kova::ui
