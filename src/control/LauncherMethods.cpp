#include "control/LauncherMethods.h"

#include "control/MethodTable.h"
#include "control/NameLookup.h"
#include "control/OverlayBroadcast.h"
#include "control/Refusal.h"
#include "control/WindowCommandMethods.h"
#include "workspace/WorkspaceController.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

namespace kova {

namespace {

using nlohmann::json;

/// Which tile to take if the parameters name no tile. The launcher takes an empty tile for the application, or else the
/// tile of the focused window; the palette takes the tile of the focused window, or else an empty tile.
enum class Preferred { emptyTile, focusedTile };

ControlResult<TileTarget> tileFor(const WorkspaceController& controller, const JsonCursor& parameters,
                                  Preferred preferred) {
    if (const auto tile = parameters.optional("tile"))
        return wantedTile(controller, parameters, tile->string(), std::nullopt);
    const auto display = wantedDisplay(controller, parameters);
    if (!display) return display.error();
    std::vector<WorkspaceTile> tiles = controller.tiles();
    std::erase_if(tiles, [&](const WorkspaceTile& tile) { return tile.displayID != *display; });
    if (tiles.empty()) return refusal("The display has no tiles");
    const auto& focused = *controller.state().focusedWindowID;
    const auto isFocused = [&](const WorkspaceTile& tile) { return focused && tile.windowID == focused; };
    const auto isEmpty = [](const WorkspaceTile& tile) { return !tile.windowID && tile.stack.empty(); };
    const auto where = [&](const auto& holds) { return std::ranges::find_if(tiles, holds); };
    auto found = preferred == Preferred::emptyTile ? where(isEmpty) : where(isFocused);
    if (found == tiles.end()) found = preferred == Preferred::emptyTile ? where(isFocused) : where(isEmpty);
    return (found == tiles.end() ? tiles.front() : *found).target;
}

ControlReply showAtTile(OverlayBroadcast* overlay, const std::string& what, const ControlResult<TileTarget>& tile) {
    if (!tile) return tile.error();
    if (!overlay || !overlay->show(what, {{"tile", *tile}}))
        return refusal("The program that draws the overlay is not connected. Start it with “kova ui restart”");
    return json{{"what", what}, {"tile", *tile}};
}

} // namespace

void addLauncherMethods(MethodTable& methods, const WorkspaceController& controller, OverlayBroadcast* overlay) {
    methods.add("ui.launcher", {"tile", "display"}, [&controller, overlay](const MethodCall& call) {
        return showAtTile(overlay, "launcher", tileFor(controller, call.parameters, Preferred::emptyTile));
    });
    methods.add("ui.palette", {"tile", "display"}, [&controller, overlay](const MethodCall& call) {
        return showAtTile(overlay, "palette", tileFor(controller, call.parameters, Preferred::focusedTile));
    });
}

} // namespace kova
