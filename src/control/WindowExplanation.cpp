#include "control/WindowExplanation.h"

#include <algorithm>
#include <optional>

namespace kova {

namespace {

std::string nameOf(const ManagedWindow& window) {
    return window.title.empty() ? window.applicationName : window.applicationName + " “" + window.title + "”";
}

/// What the plan says about the window; absent when the window takes no part in it.
std::optional<std::string> decisionIn(const ArrangementPlan& plan, const std::string& windowID) {
    for (const auto& placement : plan.placements) {
        if (placement.window.id == windowID) return placement.explanation;
    }
    for (const auto& left : plan.surplus) {
        if (left.window.id == windowID) return left.explanation;
    }
    return std::nullopt;
}

std::string placeOf(const WorkspaceController& controller, const std::string& targetID) {
    for (const WorkspaceTile& tile : controller.tiles()) {
        if (tile.targetID != targetID) continue;
        for (const Screen& screen : *controller.state().screens) {
            if (displayID(screen) == tile.displayID) return tile.slot.name + " on " + screen.localizedName;
        }
    }
    return targetID;
}

std::string whereItIs(const WorkspaceController& controller, const ManagedWindow& window) {
    const TileAssignments& assignments = controller.assignments();
    const auto& mode = *controller.state().focusMode;
    if (mode && mode->windowID == window.id) return nameOf(window) + " has the whole display to itself (focus mode).";
    const std::string filling = window.isMaximized    ? " It was maximized by hand and goes back there when that ends."
                                : window.isFullScreen ? " It is in full screen and goes back there when that ends."
                                                      : "";
    if (const auto front = assignments.targetOf(window.id)) {
        const std::size_t more = assignments.targetsOf(window.id).size() - 1;
        const std::string span =
            more == 0 ? "" : ", and " + std::to_string(more) + " more, because it does not fit one tile";
        return nameOf(window) + " is in " + placeOf(controller, *front) + span + "." + filling;
    }
    if (const auto stacked = assignments.stackTargetOf(window.id)) {
        return nameOf(window) + " is behind another window in " + placeOf(controller, *stacked) + ".";
    }
    return nameOf(window) + " is in no tile.";
}

std::string whyLeftOut(const ManagedWindow& window) {
    if (window.isFullScreen) return "An arrangement leaves it alone while it is in full screen.";
    if (window.isElsewhere || (!window.isVisible && !window.isMinimized))
        return "An arrangement leaves it alone while it is on another desktop.";
    return "An arrangement leaves it alone.";
}

} // namespace

std::vector<std::string> explainWindow(const WorkspaceController& controller, const ManagedWindow& window) {
    if (const ManagedWindow* owner = controller.windowOfDialog(window)) {
        return {nameOf(window) + " is a dialog of " + nameOf(*owner) +
                ": it takes no tile of its own and moves along with that window."};
    }
    std::vector<std::string> lines{whereItIs(controller, window)};
    const auto then = decisionIn(controller.lastArrangement(), window.id);
    if (then) lines.push_back("The last arrangement decided: " + *then);
    const auto now = decisionIn(controller.planArrangement(), window.id);
    if (!now) {
        lines.push_back(whyLeftOut(window));
    } else if (now != then) {
        lines.push_back("Arranging now would decide: " + *now);
    } else {
        lines.push_back("Arranging now would decide the same.");
    }
    return lines;
}

} // namespace kova
