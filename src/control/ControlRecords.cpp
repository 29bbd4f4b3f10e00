#include "control/ControlRecords.h"

#include "control/ControlHandling.h"
#include <nlohmann/json.hpp>

#include <array>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <ctime>
#include <utility>

namespace kova::controlRecord {

namespace {

using nlohmann::json;

double firstScreenMaxY(const WorkspaceController& controller) {
    const auto& screens = *controller.state().screens;
    return screens.empty() ? 0 : maxY(screens.front().frame);
}

/// The user's choice of a layout for the display: "automatic" or a layout's id; null without a choice.
json selection(const WorkspaceProfile& profile, const DisplayID& displayID) {
    const auto found = profile.layoutSelectionsByDisplay.find(displayID);
    if (found == profile.layoutSelectionsByDisplay.end()) return nullptr;
    return found->second.layoutID.value_or("automatic");
}

json brief(const ManagedWindow& window) {
    return {{"id", window.id}, {"application", window.applicationName}, {"title", window.title}};
}

} // namespace

std::optional<std::int64_t> wholeNumber(double value) {
    constexpr double kExactIntegers = 9007199254740992;
    if (std::trunc(value) != value || std::abs(value) >= kExactIntegers) return std::nullopt;
    return static_cast<std::int64_t>(value);
}

json number(double value) {
    const auto whole = wholeNumber(value);
    return whole ? json(*whole) : json(value);
}

std::string time(WallTime time) {
    const std::time_t seconds = std::chrono::system_clock::to_time_t(time);
    std::tm parts{};
    if (!gmtime_r(&seconds, &parts)) return "";
    std::array<char, 40> text{};
    const auto length = std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &parts);
    return std::string(text.data(), length);
}

json applicationOf(const WorkspaceController& controller, const std::optional<WindowID>& windowID) {
    for (const ManagedWindow& window : controller.liveWindows()) {
        if (window.id == windowID) return window.applicationName;
    }
    return nullptr;
}

json rect(const CGRect& frame) {
    return {{"x", number(frame.origin.x)},
            {"y", number(frame.origin.y)},
            {"width", number(frame.size.width)},
            {"height", number(frame.size.height)}};
}

json size(const CGSize& size) {
    return {{"width", number(size.width)}, {"height", number(size.height)}};
}

json briefWindow(const WorkspaceController& controller, const WindowID& windowID) {
    const ManagedWindow* window = controller.windowOrFocused(windowID);
    return window ? brief(*window) : json{{"id", windowID}, {"application", ""}, {"title", ""}};
}

bool isInOneOf(const std::vector<WorkspaceTile>& tiles, const WindowID& windowID) {
    return std::any_of(tiles.begin(), tiles.end(), [&](const WorkspaceTile& tile) {
        return tile.windowID == windowID ||
               std::find(tile.stack.begin(), tile.stack.end(), windowID) != tile.stack.end();
    });
}

std::string tileName(const WorkspaceController& controller, const TileTarget& target) {
    for (const WorkspaceTile& tile : controller.tiles()) {
        if (tile.target != target) continue;
        for (const Screen& screen : *controller.state().screens) {
            if (displayID(screen) == tile.displayID) return tile.slot.name + " on " + screen.localizedName;
        }
    }
    return target.text();
}

json names(const WorkspaceController& controller) {
    json out = json::object();
    for (const Screen& screen : *controller.state().screens) out[displayID(screen).text()] = screen.localizedName;
    for (const WorkspaceTile& tile : controller.tiles()) {
        const std::string display = out.value(tile.displayID.text(), tile.displayID.text());
        out[tile.target.text()] = tile.slot.name + " on " + display;
    }
    return out;
}

json briefWindowWithState(const WorkspaceController& controller, const WindowID& windowID) {
    json out = briefWindow(controller, windowID);
    const ManagedWindow* window = controller.windowOrFocused(windowID);
    const auto stateOf = [](const ManagedWindow& known) {
        if (known.isFullScreen) return "fullScreen";
        if (known.isMinimized) return "minimized";
        if (known.isElsewhere) return "elsewhere";
        return known.isVisible ? "visible" : "notVisible";
    };
    const ManagedWindow* focused = controller.focusedWindow();
    out["state"] = window ? stateOf(*window) : "notVisible";
    out["isFocused"] = focused && focused->id == windowID;
    out["isFloating"] = controller.state().floatingWindowIDs->contains(windowID);
    return out;
}

json focus(const WorkspaceController& controller) {
    const ManagedWindow* window = controller.focusedWindow();
    if (!window) return {{"window", nullptr}, {"tile", nullptr}, {"display", orNull(controller.currentDisplayID())}};
    const auto display = controller.displayIDOfWindow(window->id);
    return {{"window", brief(*window)},
            {"tile", orNull(controller.assignments().targetOf(window->id))},
            {"display", orNull(display ? display : controller.currentDisplayID())}};
}

json window(const ManagedWindow& window, const WorkspaceController& controller) {
    const TileAssignments& assignments = controller.assignments();
    const ManagedWindow* focused = controller.focusedWindow();
    const auto front = assignments.targetOf(window.id);
    return {{"id", window.id},
            {"application", window.applicationName},
            {"bundleIdentifier", orNull(window.bundleIdentifier)},
            {"title", window.title},
            {"process", window.processIdentifier},
            {"frame", window.frame ? rect(*window.frame) : json(nullptr)},
            {"minimumSize", window.minimumSize ? size(*window.minimumSize) : json(nullptr)},
            {"isMinimized", window.isMinimized},
            {"isVisible", window.isVisible},
            {"isFullScreen", window.isFullScreen},
            {"isMaximized", window.isMaximized},
            {"dialogOf", orNull(window.parentID)},
            {"isElsewhere", window.isElsewhere},
            {"tile", orNull(front ? front : assignments.stackTargetOf(window.id))},
            {"isFront", front.has_value()},
            {"isFocused", focused && focused->id == window.id},
            {"isFloating", controller.state().floatingWindowIDs->contains(window.id)}};
}

json displays(const WorkspaceController& controller) {
    json out = json::array();
    const double maximumY = firstScreenMaxY(controller);
    for (const Screen& screen : *controller.state().screens) {
        const DisplayID id = displayID(screen);
        const LayoutDefinition* layout = controller.resolvedLayout(id);
        out.push_back({{"id", id},
                       {"number", out.size() + 1},
                       {"name", screen.localizedName},
                       {"frame", rect(flipped(screen.frame, maximumY))},
                       {"visibleFrame", rect(flipped(screen.visibleFrame, maximumY))},
                       {"displayClass", rawValue(classifyDisplay(screen.frame.size, screen.visibleFrame.size))},
                       {"layout", layout ? json{{"id", layout->id}, {"name", layout->name}} : json(nullptr)},
                       {"selection", selection(*controller.state().profile, id)}});
    }
    return out;
}

json windows(const WorkspaceController& controller) {
    json out = json::array();
    for (const ManagedWindow& live : controller.liveWindows()) out.push_back(window(live, controller));
    for (const ManagedWindow& dialog : controller.dialogs().all()) out.push_back(window(dialog, controller));
    return out;
}

json tiles(const WorkspaceController& controller) {
    json out = json::array();
    const double maximumY = firstScreenMaxY(controller);
    for (const WorkspaceTile& tile : controller.tiles()) {
        out.push_back({{"id", tile.target},
                       {"display", tile.displayID},
                       {"slot", tile.slot.id},
                       {"name", tile.slot.name},
                       {"cell", rect(flipped(tile.frameOnScreen, maximumY))},
                       {"frame", rect(tile.frameForWindowService)},
                       {"window", orNull(tile.windowID)},
                       {"application", applicationOf(controller, tile.windowID)},
                       {"stack", tile.stack}});
    }
    return out;
}

json layouts(const WorkspaceController& controller) {
    json out = json::array();
    for (const LayoutDefinition& layout : controller.catalogue()) {
        json slots = json::array();
        for (const TileSlot& slot : layout.slots) {
            slots.push_back({{"id", slot.id}, {"name", slot.name}, {"frame", rect(slot.normalizedFrame)}});
        }
        json shownOn = json::array();
        for (const Screen& screen : *controller.state().screens) {
            const LayoutDefinition* resolved = controller.resolvedLayout(displayID(screen));
            if (!resolved || resolved->id != layout.id) continue;
            shownOn.push_back({{"id", displayID(screen)}, {"name", screen.localizedName}});
        }
        out.push_back({{"id", layout.id},
                       {"name", layout.name},
                       {"displayClass", rawValue(layout.displayClass)},
                       {"referenceSize", size(referenceSize(layout.displayClass))},
                       {"slots", std::move(slots)},
                       {"displays", std::move(shownOn)}});
    }
    return out;
}

json dividers(const WorkspaceController& controller) {
    json out = json::array();
    for (const DisplayLayoutDivider& on : controller.dividers()) {
        const LayoutDivider& divider = on.divider;
        const auto frame = controller.dividerFrameOnScreen(on);
        if (!frame) continue;
        const auto first = static_cast<std::size_t>(divider.boundaryIndex);
        // The minimum sizes of the neighbors limit the movement. It is 0 if they need more than their present lengths.
        double least = divider.branchMinimumLengths[first] - divider.branchLengths[first];
        double most = divider.branchLengths[first + 1] - divider.branchMinimumLengths[first + 1];
        if (least > most) least = most = 0;
        out.push_back({{"display", on.displayID},
                       {"layout", on.layoutID},
                       {"split", divider.splitID},
                       {"boundary", divider.boundaryIndex},
                       {"axis", divider.axis == LayoutAxis::horizontal ? "horizontal" : "vertical"},
                       {"frame", rect(flipped(*frame, firstScreenMaxY(controller)))},
                       {"least", number(least)},
                       {"most", number(most)}});
    }
    return out;
}

json plan(ArrangementPlan plan) {
    json placements = json::array();
    for (AutoArrangePlacement& placement : plan.placements) {
        if (placement.isDeferred) placement.explanation += "; it has to be brought back first";
    }
    for (const AutoArrangePlacement& placement : plan.placements) {
        json covered = json::array();
        for (const DisplayTileTarget& target : placement.claimedTargets) covered.push_back(target.id());
        placements.push_back({{"window", brief(placement.window)},
                              {"tile", placement.target.id()},
                              {"covers", std::move(covered)},
                              {"isFront", placement.isPrimary},
                              {"isDeferred", placement.isDeferred},
                              {"explanation", placement.explanation}});
    }
    json surplus = json::array();
    for (const ArrangementSurplusWindow& left : plan.surplus) {
        surplus.push_back({{"window", brief(left.window)}, {"explanation", left.explanation}});
    }
    json leftAlone = json::array();
    for (const ArrangementLeftAloneWindow& left : plan.leftAlone) {
        leftAlone.push_back({{"window", brief(left.window)}, {"explanation", left.explanation}});
    }
    return {{"placements", std::move(placements)},
            {"surplus", std::move(surplus)},
            {"leftAlone", std::move(leftAlone)},
            {"explanation", plan.explanation()}};
}

json focusMode(const WorkspaceController& controller) {
    const auto& mode = *controller.state().focusMode;
    if (!mode) return nullptr;
    return {{"display", mode->displayID},
            {"tile", mode->anchor},
            {"window", mode->windowID},
            {"application", applicationOf(controller, mode->windowID)}};
}

json notice(const WorkspaceController& controller) {
    const auto& notice = *controller.state().placementNotice;
    if (!notice) return nullptr;
    return {{"id", notice->id.string()},
            {"application", notice->applicationName},
            {"additionalTiles", notice->additionalTileCount},
            {"frame", rect(flipped(notice->claimedFrame, firstScreenMaxY(controller)))}};
}

json pendingLaunches(const WorkspaceController& controller) {
    json out = json::array();
    for (const auto& [tile, application] : *controller.state().pendingLaunches) {
        out.push_back({{"tile", tile}, {"application", {{"id", application.identifier}, {"name", application.name}}}});
    }
    return out;
}

json settings(const WorkspaceController& controller) {
    const WorkspaceState& state = controller.state();
    json preferred = json::object();
    for (const auto& [slot, key] : state.profile->preferredApplications) preferred[slot.text()] = key;
    return {{"theme", state.profile->themeID},
            {"accentColor", *state.accentColorID},
            {"layout", state.profile->layoutID},
            {"tileInset", number(state.profile->tileInset)},
            {"autoArrangeOnLaunch", state.profile->autoArrangeOnLaunch},
            {"preferredApplications", std::move(preferred)},
            {"continuousManagement", *state.continuousManagementEnabled},
            {"bringsNextForward", *state.bringsNextForward},
            {"useThemeBackground", *state.useThemeBackground},
            {"showBrain", *state.showBrain},
            {"showTileBackgrounds", *state.showTileBackgrounds}};
}

} // namespace kova::controlRecord
