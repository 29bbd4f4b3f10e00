#include "control/OverlayRecords.h"

#include "control/ControlRecords.h"
#include "support/Version.h"
#include "themes/ThemeCoding.h"

#include <nlohmann/json.hpp>

namespace kova::overlayRecord {

namespace {

using controlRecord::rect;
using nlohmann::json;

json orNull(const std::optional<std::string>& text) {
    return text ? json(*text) : json(nullptr);
}

template <class T>
json orNull(const std::optional<T>& value, json (*record)(const T&)) {
    return value ? record(*value) : json(nullptr);
}

template <class T>
json list(const std::vector<T>& values, json (*record)(const T&)) {
    json out = json::array();
    for (const T& value : values) out.push_back(record(value));
    return out;
}

json appearance(const OverlayAppearance& look) {
    return {{"theme", look.themeID},
            {"accentColor", look.accentColorID},
            {"isDark", look.isDark ? json(*look.isDark) : json(nullptr)},
            {"palette", encode(look.palette)},
            {"useThemeBackground", look.useThemeBackground},
            {"showTileBackgrounds", look.showTileBackgrounds},
            {"showBrain", look.showBrain}};
}

json displays(const std::vector<OverlayDisplay>& all) {
    json out = json::array();
    for (const OverlayDisplay& display : all) {
        out.push_back({{"id", display.id},
                       {"number", out.size() + 1},
                       {"name", display.name},
                       {"frame", rect(display.frame)},
                       {"visibleFrame", rect(display.visibleFrame)},
                       {"scale", controlRecord::number(display.scale)},
                       {"layout", {{"id", display.layoutID}, {"name", display.layoutName}}},
                       {"isFocusMode", display.isFocusMode},
                       {"isCurrent", display.isCurrent}});
    }
    return out;
}

json application(const OverlayApplication& known) {
    return {{"id", orNull(known.id)}, {"name", known.name}};
}

json window(const OverlayWindow& known) {
    return {{"window", known.id},           {"application", application(known.application)},
            {"title", known.title},         {"isFront", known.isFront},
            {"isFocused", known.isFocused}, {"isMinimized", known.isMinimized}};
}

json notice(const OverlayNotice& known) {
    return {{"text", known.text}, {"application", application(known.application)}};
}

json pendingLaunch(const OverlayApplication& launched) {
    return {{"application", application(launched)}};
}

json tile(const OverlayTile& tile) {
    return {{"id", tile.id},
            {"display", tile.displayID},
            {"slot", tile.slotID},
            {"name", tile.name},
            {"covers", tile.coveredSlotIDs},
            {"cell", rect(tile.cell)},
            {"frame", rect(tile.windowFrame)},
            {"footerFrame", orNull(tile.footerFrame, rect)},
            {"isEmpty", tile.windows.empty()},
            {"applications", list(tile.windows, window)},
            {"pending", orNull(tile.pendingLaunch, pendingLaunch)},
            {"notice", orNull(tile.notice, notice)},
            {"isDropTarget", tile.isDropTarget}};
}

json divider(const OverlayDivider& divider) {
    return {{"id", divider.id},
            {"display", divider.displayID},
            {"layout", divider.layoutID},
            {"split", divider.splitID},
            {"boundary", divider.boundaryIndex},
            {"axis", divider.axis == LayoutAxis::horizontal ? "horizontal" : "vertical"},
            {"frame", rect(divider.frame)},
            {"isHovered", divider.isHovered},
            {"isDragged", divider.isDragged}};
}

json drag(const OverlayDrag& drag) {
    return {{"window", drag.windowID}, {"display", orNull(drag.displayID)}, {"tile", orNull(drag.tileID)}};
}

json message(const OverlayMessage& message) {
    return {{"text", message.text}, {"display", orNull(message.displayID)}, {"canUndo", message.canUndo}};
}

json shownWindow(const OverlayShownWindow& window) {
    return {{"pane", orNull(window.pane)}, {"request", window.request}};
}

json windows(const OverlayWindows& shown) {
    return {{"settings", orNull(shown.settings, shownWindow)}, {"onboarding", orNull(shown.onboarding, shownWindow)}};
}

/// Of the sections that `before` has in the same form, or of all without it.
json record(const OverlayContents& now, const OverlayContents* before) {
    json out = json::object();
    const auto add = [&](const char* name, auto member, auto make) {
        if (!before || now.*member != before->*member) out[name] = make(now.*member);
    };
    add("isSuspended", &OverlayContents::isSuspended, [](bool is) { return json(is); });
    add("appearance", &OverlayContents::appearance, appearance);
    add("displays", &OverlayContents::displays, displays);
    add("tiles", &OverlayContents::tiles, [](const auto& all) { return list(all, tile); });
    add("dividers", &OverlayContents::dividers, [](const auto& all) { return list(all, divider); });
    add("drag", &OverlayContents::drag, [](const auto& value) { return orNull(value, drag); });
    add("message", &OverlayContents::message, [](const auto& value) { return orNull(value, message); });
    add("windows", &OverlayContents::windows, windows);
    return out;
}

} // namespace

json whole(const OverlayContents& contents) {
    json out = record(contents, nullptr);
    out["version"] = {{"contract", kContract}, {"agent", KOVA_VERSION}};
    return out;
}

json changes(const OverlayContents& before, const OverlayContents& now) {
    return record(now, &before);
}

} // namespace kova::overlayRecord
