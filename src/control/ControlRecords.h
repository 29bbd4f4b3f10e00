// Describes the workspace in JSON, for the results of the socket's methods. Rectangles of a layout are in the unit
// square. All other rectangles are in window-service space: points, origin at the top left of the first display, y
// growing downwards.
#pragma once

#include "support/MainQueue.h"
#include "workspace/WorkspaceController.h"

#include <nlohmann/json_fwd.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kova::controlRecord {

/// The value as an integer; absent if the value has a fraction or is too large to be exact.
std::optional<std::int64_t> wholeNumber(double value);
/// Whole numbers have no ".0", since people read the JSON, too.
nlohmann::json number(double value);
/// Like "2024-02-29T12:34:56Z".
std::string time(WallTime time);
nlohmann::json rect(const CGRect& frame);
nlohmann::json size(const CGSize& size);
/// The name of the window's application; null without a window.
nlohmann::json applicationOf(const WorkspaceController& controller, const std::optional<WindowID>& windowID);
nlohmann::json window(const ManagedWindow& window, const WorkspaceController& controller);
/// Id, application and title of the window; application and title are empty if the window was closed.
nlohmann::json briefWindow(const WorkspaceController& controller, const WindowID& windowID);
/// As `briefWindow`, and whether the window is visible, focused and floating.
nlohmann::json briefWindowWithState(const WorkspaceController& controller, const WindowID& windowID);
/// True if the window is in one of the `tiles`, in front or behind another window.
bool isInOneOf(const std::vector<WorkspaceTile>& tiles, const WindowID& windowID);
/// The names of the tile and its display, like "Primary on DVI-1"; the tile's id if the tile no longer exists.
std::string tileName(const WorkspaceController& controller, const TileTarget& target);
/// An object with the name of every display and tile under its id; the name of a tile is its `tileName`.
nlohmann::json names(const WorkspaceController& controller);
/// The focused window with its tile and display. If no window has the focus, only the current display.
nlohmann::json focus(const WorkspaceController& controller);

nlohmann::json displays(const WorkspaceController& controller);
nlohmann::json windows(const WorkspaceController& controller);
nlohmann::json tiles(const WorkspaceController& controller);
nlohmann::json layouts(const WorkspaceController& controller);
/// All dividers, except on a display that a window owns in focus mode.
nlohmann::json dividers(const WorkspaceController& controller);
nlohmann::json plan(ArrangementPlan plan);
nlohmann::json focusMode(const WorkspaceController& controller);
nlohmann::json notice(const WorkspaceController& controller);
/// Applications that are being launched into tiles.
nlohmann::json pendingLaunches(const WorkspaceController& controller);
nlohmann::json settings(const WorkspaceController& controller);

} // namespace kova::controlRecord
