// The workspace as JSON of the socket. Every rectangle is in window-service space (points, origin at the top left of
// the first display, y growing downwards), except that rectangles of a layout are in the unit square.
#pragma once

#include "support/MainQueue.h"
#include "workspace/WorkspaceController.h"

#include <nlohmann/json_fwd.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kova::controlRecord {

/// Absent if the value has a fraction, or is too large to be exact.
std::optional<std::int64_t> wholeNumber(double value);
/// Writes whole numbers without a fraction, since people read them, too.
nlohmann::json number(double value);
/// "2024-02-29T12:34:56Z".
std::string time(WallTime time);
nlohmann::json rect(const CGRect& frame);
nlohmann::json size(const CGSize& size);
/// The name of the window's application; null without a window.
nlohmann::json applicationOf(const WorkspaceController& controller, const std::optional<WindowID>& windowID);
nlohmann::json window(const ManagedWindow& window, const WorkspaceController& controller);
/// Id, application and title; the last two are empty for a closed window.
nlohmann::json briefWindow(const WorkspaceController& controller, const WindowID& windowID);
/// As `briefWindow`, with the state of the window.
nlohmann::json windowInBrief(const WorkspaceController& controller, const WindowID& windowID);
/// Whether the window is in a tile of `tiles`, in front or behind another window.
bool isInOneOf(const std::vector<WorkspaceTile>& tiles, const WindowID& windowID);
/// The names of the tile and its display: "Primary on DVI-1". The tile's id if the tile does not exist any more.
std::string tileName(const WorkspaceController& controller, const TileTarget& target);
/// The names of all displays and tiles, by their ids; those of tiles as `tileName` returns them.
nlohmann::json names(const WorkspaceController& controller);
/// The focused window with its tile and display; without one the current display.
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
