#include "control/OverlayRecords.h"

#include "control/ControlHandling.h"
#include "control/ControlRecords.h"
#include "support/Version.h"
#include "themes/ThemeCoding.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <utility>

namespace kova::overlayRecord {

namespace {

using controlRecord::rect;
using kova::orNull;
using nlohmann::json;

/// The record of a value: all members, or those that differ from a former value.
template <class T>
class Record {
  public:
    Record(const T& now, const T* before) : now_(now), before_(before) {}

    template <class Member, class Make>
    Record& add(const char* name, Member T::*member, Make make) {
        if (!before_ || now_.*member != before_->*member) out_[name] = make(now_.*member);
        return *this;
    }
    template <class Member>
    Record& add(const char* name, Member T::*member) {
        return add(name, member, [](const Member& value) { return json(value); });
    }
    /// A member that identifies the element, so it is in every record.
    template <class Name>
    Record& name(const char* name, Name T::*member) {
        out_[name] = now_.*member;
        return *this;
    }
    json take() { return std::move(out_); }

  private:
    const T& now_;
    const T* before_;
    json out_ = json::object();
};

template <class T>
using RecordOf = json (*)(const T& now, const T* before);

template <class T>
json list(const std::vector<T>& values, RecordOf<T> record) {
    json out = json::array();
    for (const T& value : values) out.push_back(record(value, nullptr));
    return out;
}

/// The elements that are new or changed, and the order of all elements if it changed.
template <class T>
json listChanges(const std::vector<T>& before, const std::vector<T>& now, RecordOf<T> record) {
    json out = json::object(), changed = json::array();
    for (std::size_t i = 0; i < now.size(); ++i) {
        const T* former = i < before.size() && before[i].id == now[i].id ? &before[i] : nullptr;
        if (!former) {
            const auto found = std::ranges::find(before, now[i].id, &T::id);
            former = found == before.end() ? nullptr : &*found;
        }
        if (!former || *former != now[i]) changed.push_back(record(now[i], former));
    }
    if (!changed.empty()) out["changed"] = std::move(changed);
    if (!std::ranges::equal(before, now, {}, &T::id, &T::id)) {
        json& order = out["order"] = json::array();
        for (const T& value : now) order.push_back(value.id);
    }
    return out;
}

json appearance(const OverlayAppearance& shown) {
    return {{"theme", shown.themeID},
            {"accentColor", shown.accentColorID},
            {"isDark", shown.isDark ? json(*shown.isDark) : json(nullptr)},
            {"palette", encode(shown.palette)},
            {"useThemeBackground", shown.useThemeBackground},
            {"showTileBackgrounds", shown.showTileBackgrounds},
            {"showBrain", shown.showBrain}};
}

json rects(const std::vector<CGRect>& frames) {
    json out = json::array();
    for (const CGRect& frame : frames) out.push_back(rect(frame));
    return out;
}

json display(const OverlayDisplay& now, const OverlayDisplay* before) {
    using Display = OverlayDisplay;
    json out = Record(now, before)
                   .name("id", &Display::id)
                   .add("number", &Display::number)
                   .add("name", &Display::name)
                   .add("frame", &Display::frame, rect)
                   .add("visibleFrame", &Display::visibleFrame, rect)
                   .add("scale", &Display::scale, controlRecord::number)
                   .add("isFocusMode", &Display::isFocusMode)
                   .add("isCurrent", &Display::isCurrent)
                   .add("floatingFrames", &Display::floatingFrames, rects)
                   .take();
    if (!before || now.layoutID != before->layoutID || now.layoutName != before->layoutName)
        out["layout"] = {{"id", now.layoutID}, {"name", now.layoutName}};
    return out;
}

json application(const OverlayApplication& known) {
    return {{"id", orNull(known.id)}, {"name", known.name}};
}

json windowsOfTile(const std::vector<OverlayWindow>& windows) {
    json out = json::array();
    for (const OverlayWindow& known : windows) {
        out.push_back({{"window", known.id},
                       {"application", application(known.application)},
                       {"title", known.title},
                       {"isFront", known.isFront},
                       {"isFocused", known.isFocused},
                       {"isMinimized", known.isMinimized}});
    }
    return out;
}

json notice(const OverlayNotice& known) {
    return {{"text", known.text}, {"application", application(known.application)}};
}

json pendingLaunch(const OverlayApplication& launched) {
    return {{"application", application(launched)}};
}

json tile(const OverlayTile& now, const OverlayTile* before) {
    using Tile = OverlayTile;
    return Record(now, before)
        .name("id", &Tile::id)
        .add("display", &Tile::displayID)
        .add("slot", &Tile::slotID)
        .add("name", &Tile::name)
        .add("covers", &Tile::coveredSlotIDs)
        .add("cell", &Tile::cell, rect)
        .add("frame", &Tile::windowFrame, rect)
        .add("footerFrame", &Tile::footerFrame, [](const auto& frame) { return orNull(frame, rect); })
        .add("isEmpty", &Tile::windows, [](const auto& windows) { return json(windows.empty()); })
        .add("applications", &Tile::windows, windowsOfTile)
        .add("pending", &Tile::pendingLaunch, [](const auto& launch) { return orNull(launch, pendingLaunch); })
        .add("notice", &Tile::notice, [](const auto& known) { return orNull(known, notice); })
        .add("isDropTarget", &Tile::isDropTarget)
        .take();
}

json divider(const OverlayDivider& now, const OverlayDivider* before) {
    using Divider = OverlayDivider;
    return Record(now, before)
        .name("id", &Divider::id)
        .add("display", &Divider::displayID)
        .add("layout", &Divider::layoutID)
        .add("split", &Divider::splitID)
        .add("boundary", &Divider::boundaryIndex)
        .add("axis", &Divider::axis,
             [](LayoutAxis axis) { return json(axis == LayoutAxis::horizontal ? "horizontal" : "vertical"); })
        .add("frame", &Divider::frame, rect)
        .add("isHovered", &Divider::isHovered)
        .add("isDragged", &Divider::isDragged)
        .take();
}

json drag(const OverlayDrag& drag) {
    return {{"window", drag.windowID}, {"display", orNull(drag.displayID)}, {"tile", orNull(drag.tileID)}};
}

json message(const OverlayMessage& message) {
    const json undo = message.undoMethod.empty() ? json(nullptr) : json(message.undoMethod);
    return {{"text", message.text}, {"display", orNull(message.displayID)}, {"undo", undo}};
}

json shownWindow(const OverlayShownWindow& window) {
    return {{"pane", orNull(window.pane)}, {"request", window.request}};
}

json windows(const OverlayWindows& shown) {
    return {{"settings", orNull(shown.settings, shownWindow)}, {"onboarding", orNull(shown.onboarding, shownWindow)}};
}

/// The sections that are not lists.
json plainSections(const OverlayContents& now, const OverlayContents* before) {
    using Contents = OverlayContents;
    return Record(now, before)
        .add("isSuspended", &Contents::isSuspended)
        .add("appearance", &Contents::appearance, appearance)
        .add("drag", &Contents::drag, [](const auto& value) { return orNull(value, drag); })
        .add("message", &Contents::message, [](const auto& value) { return orNull(value, message); })
        .add("windows", &Contents::windows, windows)
        .take();
}

} // namespace

json whole(const OverlayContents& contents) {
    json out = plainSections(contents, nullptr);
    out["displays"] = list(contents.displays, display);
    out["tiles"] = list(contents.tiles, tile);
    out["dividers"] = list(contents.dividers, divider);
    out["version"] = {{"contract", kContract}, {"agent", KOVA_VERSION}};
    return out;
}

json changes(const OverlayContents& before, const OverlayContents& now) {
    json out = plainSections(now, &before);
    const auto add = [&](const char* name, json changed) {
        if (!changed.empty()) out[name] = std::move(changed);
    };
    add("displays", listChanges(before.displays, now.displays, display));
    add("tiles", listChanges(before.tiles, now.tiles, tile));
    add("dividers", listChanges(before.dividers, now.dividers, divider));
    return out;
}

} // namespace kova::overlayRecord
