// The contents of the overlay, as the agent publishes them. Rectangles are in points in window-service space: the
// origin is the top left of the first display, y grows downwards. Plain values, independent of the toolkit.
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
    std::optional<bool> isDark; // absent: the desktop's preference decides
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
    double scale = 1; // toolkit units per point; a toolkit unit is a pixel, but a point on a Mac
    bool isFocusMode = false;
    bool isCurrent = false;
    std::vector<CGRect> floatingFrames{}; // the frames of windows outside tiles; empty unless the decoration is shown
    bool operator==(const DisplayContents&) const = default;
};

struct ApplicationName {
    std::string id; // empty if unknown
    std::string name;
    bool operator==(const ApplicationName&) const = default;
};

struct StackEntry {
    std::string window; // the window's id as text, as the agent's methods expect it
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
    std::optional<CGRect> footerFrame; // absent while the display is in focus mode
    bool isEmpty = true;
    bool isDropTarget = false;
    std::vector<StackEntry> applications;   // front first
    std::optional<ApplicationName> pending; // the application that is being launched into the tile
    std::optional<PlacementNotice> notice;
    bool operator==(const TileContents&) const = default;
};

struct DividerContents {
    std::string id;
    std::string display;
    CGRect frame{};                   // the whole gap between the tiles
    bool separatesSideBySide = false; // the tiles lie side by side, so the divider's line is vertical
    bool isLit = false;               // the line is drawn, since the divider is hovered or dragged
    bool operator==(const DividerContents&) const = default;
};

struct WindowDrag {
    std::optional<std::string> display; // the display under the pointer
    std::optional<std::string> tile;    // the drop target
    bool operator==(const WindowDrag&) const = default;
};

struct StatusMessage {
    std::string text;
    std::string display;
    std::string undoMethod; // the agent's method that reverts the reported action; empty if it cannot be reverted
    bool operator==(const StatusMessage&) const = default;
};

/// A window of kova-ui that is in the agent's list of windows to show.
struct ShownWindow {
    std::optional<std::string> pane; // absent: the pane that was shown last
    std::int64_t request = 0;        // changes with each request to show the window
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
    std::map<std::string, ShownWindow> windows; // the keys are the names in the notification `show`
    bool operator==(const OverlayContents&) const = default;

    /// Null if there is no such display or tile.
    const DisplayContents* display(std::string_view id) const;
    const TileContents* tile(std::string_view id) const;
};

/// Merges `changes` into `sections`, the sections of the whole state. The change of a list contains the new elements
/// and, of each changed element, at least the changed members. If elements were added, removed or moved, the change
/// also contains the ids of all elements in order. Throws `DecodingError`; `sections` may then be partly changed.
void mergeChanges(nlohmann::json& sections, const JsonCursor& changes);

/// Replaces the parts of `contents` that are members of `sections`; unknown members are ignored. Throws
/// `DecodingError`; `contents` may then be partly changed.
void applySections(OverlayContents& contents, const JsonCursor& sections);

struct MenuItem {
    enum class Kind { command, submenu, separator, heading };
    Kind kind = Kind::command;
    std::string id;
    std::string title;
    bool isEnabled = true;
    bool isChecked = false;
    std::string shortcut;          // only displayed, since the agent handles the keys; empty if there is none
    std::vector<MenuItem> entries; // the entries of a submenu
    bool operator==(const MenuItem&) const = default;
};

/// The result of the method `menu`. Throws `DecodingError`.
std::vector<MenuItem> decodeMenu(const JsonCursor& result);

} // namespace kova::ui
