// What the overlay shows, as the agent publishes it. Rectangles are in points in window-service space: the origin is
// the top left of the first display, y grows downwards. Plain values without a toolkit.
#pragma once

#include "support/Geometry.h"
#include "support/JsonDecoding.h"
#include "themes/ThemeRegistry.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kova::ui {

/// The version of the overlay topic that this program supports.
inline constexpr int kOverlayContract = 2;

struct AgentVersion {
    int contract = 0;
    std::string agent;
    bool operator==(const AgentVersion&) const = default;
};

struct Appearance {
    std::string theme;
    std::optional<bool> isDark; // absent: as the desktop prefers
    ThemePalette palette;
    bool useThemeBackground = false;
    bool showTileBackgrounds = false;
    bool showBrain = false;
    bool operator==(const Appearance&) const = default;
};

struct DisplayContents {
    std::string id;
    std::string name;
    CGRect frame{};
    CGRect visibleFrame{};
    double scale = 1; // the toolkit's units in a point: pixels, but for the Mac
    bool isFocusMode = false;
    bool isCurrent = false;
    bool operator==(const DisplayContents&) const = default;
};

struct ApplicationName {
    std::string id; // empty when it is not known
    std::string name;
    bool operator==(const ApplicationName&) const = default;
};

struct StackEntry {
    std::string window; // its id, as methods take it
    ApplicationName application;
    std::string title;
    bool isFront = false;
    bool isFocused = false;
    bool isMinimized = false;
    bool operator==(const StackEntry&) const = default;
};

struct PlacementNotice {
    std::string text;
    ApplicationName application;
    bool operator==(const PlacementNotice&) const = default;
};

struct TileContents {
    std::string id; // display::slot
    std::string display;
    std::string name;
    CGRect frame{};
    std::optional<CGRect> footerFrame; // absent where focus mode owns the display
    bool isEmpty = true;
    bool isDropTarget = false;
    std::vector<StackEntry> applications; // front first
    std::optional<ApplicationName> pending;
    std::optional<PlacementNotice> notice;
    bool operator==(const TileContents&) const = default;
};

struct DividerContents {
    std::string id;
    std::string display;
    CGRect frame{};                   // the whole gap between the two sides
    bool separatesSideBySide = false; // the line in it is vertical
    bool isLit = false;               // under the pointer, or dragged
    bool operator==(const DividerContents&) const = default;
};

struct WindowDrag {
    std::optional<std::string> display; // under the pointer
    std::optional<std::string> tile;
    bool operator==(const WindowDrag&) const = default;
};

struct StatusMessage {
    std::string text;
    std::string display;
    std::string undoMethod; // of the agent, which reverts the reported action; empty: it cannot be reverted
    bool operator==(const StatusMessage&) const = default;
};

/// A window that is to be open.
struct ShownWindow {
    std::optional<std::string> pane; // absent: the one that it showed last
    std::int64_t request = 0;        // another number: a new request to show it
    bool operator==(const ShownWindow&) const = default;
};

struct OverlayContents {
    AgentVersion version;
    bool isSuspended = false;
    Appearance appearance;
    std::vector<DisplayContents> displays;
    std::vector<TileContents> tiles;
    std::vector<DividerContents> dividers;
    std::optional<WindowDrag> drag;
    std::optional<StatusMessage> message;
    std::map<std::string, ShownWindow> windows; // by name, as `show` names them
    bool operator==(const OverlayContents&) const = default;

    /// Null when there is no such display.
    const DisplayContents* display(std::string_view id) const;
    const TileContents* tile(std::string_view id) const;
};

/// Updates the sections of the first state (`sections`, an object) with the changed ones. A changed list has its
/// changed elements with their new members and, if it is another one, the order of all. Throws `DecodingError`, and
/// `sections` may then be half changed.
void mergeChanges(nlohmann::json& sections, const JsonCursor& changes);

/// Replaces the sections that are members of `sections`; unknown members are ignored. Throws
/// `DecodingError`, and `contents` may then be half changed.
void applySections(OverlayContents& contents, const JsonCursor& sections);

struct MenuItem {
    enum class Kind { command, submenu, separator, heading };
    Kind kind = Kind::command;
    std::string id;
    std::string title;
    bool isEnabled = true;
    bool isChecked = false;
    std::string shortcut;          // shown only; empty when there is none
    std::vector<MenuItem> entries; // of a submenu
    bool operator==(const MenuItem&) const = default;
};

/// The result of the method `menu`. Throws `DecodingError`.
std::vector<MenuItem> decodeMenu(const JsonCursor& result);

} // namespace kova::ui
