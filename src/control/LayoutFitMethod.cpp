#include "control/LayoutFitMethod.h"

#include "control/ControlRecords.h"
#include "control/NameLookup.h"
#include "layout/LayoutFit.h"
#include "workspace/VisibleArea.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace kova {

namespace {

using nlohmann::json;

struct ConstrainedWindow {
    const ManagedWindow* window;
    CGSize minimumSize; // points
};

CGSize largerOf(CGSize one, CGSize other) {
    return {std::max(one.width, other.width), std::max(one.height, other.height)};
}

/// The windows on the display whose minimum size is known.
std::vector<ConstrainedWindow> constrainedWindowsOn(const WorkspaceController& controller, const Screen& screen) {
    const WorkspaceState& state = controller.state();
    const double firstMaxY = maxY(state.screens->front().frame);
    std::vector<ConstrainedWindow> constrained;
    for (const ManagedWindow& window : *state.windows) {
        const Screen* shownOn =
            window.frame ? screenShowing(*state.screens, flipped(*window.frame, firstMaxY)) : nullptr;
        if (!shownOn || displayID(*shownOn) != displayID(screen)) continue;
        CGSize least = window.minimumSize.value_or(CGSize{});
        if (const auto seen = state.observedMinimumSizes->find(window.id); seen != state.observedMinimumSizes->end())
            least = largerOf(least, seen->second);
        const auto& learned = state.profile->applicationMinimumSizes;
        const auto known = learned.find(applicationKey(window.applicationName, window.bundleIdentifier));
        if (known != learned.end()) least = largerOf(least, known->second);
        if (least.width > 0 || least.height > 0) constrained.push_back({&window, least});
    }
    return constrained;
}

/// The window that lacks the most points, width plus height, in its tile, and these points; null if every window fits.
json shortfall(const LayoutDefinition& layout, const std::vector<ConstrainedWindow>& windows, CGSize area,
               double inset) {
    std::vector<CGSize> needed;
    for (const ConstrainedWindow& each : windows) needed.push_back(each.minimumSize);
    const auto lacking = shortfalls(layout, needed, area, inset);
    json worst;
    double most = 0;
    for (std::size_t i = 0; i < windows.size(); ++i) {
        if (lacking[i].width + lacking[i].height <= most) continue;
        most = lacking[i].width + lacking[i].height;
        worst = {{"width", std::ceil(lacking[i].width)},
                 {"height", std::ceil(lacking[i].height)},
                 {"window", windows[i].window->id},
                 {"application", windows[i].window->applicationName}};
    }
    return worst;
}

json choicesOn(const WorkspaceController& controller, const Screen& screen) {
    const auto windows = constrainedWindowsOn(controller, screen);
    const LayoutDefinition* inForce = controller.resolvedLayout(displayID(screen));
    const CGSize area = screen.visibleFrame.size;
    const double inset = controller.state().profile->tileInset;
    json choices = json::array();
    for (const LayoutDefinition& layout : controller.catalogue()) {
        json tiles = json::array();
        for (const TileSlot& slot : solveDefinition(layout, {}, area, inset).slots) {
            tiles.push_back(
                {{"id", slot.id}, {"name", slot.name}, {"frame", controlRecord::rect(slot.normalizedFrame)}});
        }
        choices.push_back({{"id", layout.id},
                           {"name", layout.name},
                           {"isInForce", inForce && inForce->id == layout.id},
                           {"tiles", std::move(tiles)},
                           {"shortfall", shortfall(layout, windows, area, inset)}});
    }
    return choices;
}

} // namespace

ControlReply fitLayouts(const WorkspaceController& controller, const JsonCursor& parameters) {
    std::optional<DisplayID> wanted;
    if (parameters.optional("display")) {
        const auto found = wantedDisplay(controller, parameters);
        if (!found) return found.error();
        wanted = *found;
    }
    json displays = json::array();
    for (const Screen& screen : *controller.state().screens) {
        const DisplayID id = displayID(screen);
        if (wanted && id != *wanted) continue;
        displays.push_back({{"id", id},
                            {"name", screen.localizedName},
                            {"area", controlRecord::size(screen.visibleFrame.size)},
                            {"hasOwnSizes", controller.state().profile->layoutWeightsByDisplay.contains(id)},
                            {"layouts", choicesOn(controller, screen)}});
    }
    return json{{"displays", std::move(displays)}};
}

} // namespace kova
