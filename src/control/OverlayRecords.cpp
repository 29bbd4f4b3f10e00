#include "control/OverlayRecords.h"

#include "control/ControlHandling.h"
#include "control/JsonText.h"
#include "support/Version.h"
#include "themes/ThemeCoding.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

namespace kova::overlayRecord {

namespace {

using kova::orNull;
using nlohmann::json;

void write(JsonText& out, bool value) {
    out.boolean(value);
}

void write(JsonText& out, int value) {
    out.integer(value);
}

void write(JsonText& out, double value) {
    out.number(value);
}

void write(JsonText& out, const std::string& value) {
    out.text(value);
}

template <class Tag>
void write(JsonText& out, const Identifier<Tag>& id) {
    out.text(id.text());
}

void write(JsonText& out, const TileTarget& target) {
    out.text(target.text());
}

void write(JsonText& out, LayoutAxis axis) {
    out.text(axis == LayoutAxis::horizontal ? "horizontal" : "vertical");
}

void write(JsonText& out, const CGRect& frame) {
    out.beginObject();
    out.name("x");
    out.number(frame.origin.x);
    out.name("y");
    out.number(frame.origin.y);
    out.name("width");
    out.number(frame.size.width);
    out.name("height");
    out.number(frame.size.height);
    out.endObject();
}

json applicationTree(const OverlayApplication& known) {
    return {{"id", orNull(known.id)}, {"name", known.name}};
}

void write(JsonText& out, const OverlayNotice& notice) {
    out.tree({{"text", notice.text}, {"application", applicationTree(notice.application)}});
}

/// Writes the launch that a tile waits for.
void write(JsonText& out, const OverlayApplication& launched) {
    out.tree({{"application", applicationTree(launched)}});
}

void write(JsonText& out, const OverlayWindow& window) {
    out.tree({{"window", window.id},
              {"application", applicationTree(window.application)},
              {"title", window.title},
              {"isFront", window.isFront},
              {"isFocused", window.isFocused},
              {"isMinimized", window.isMinimized}});
}

void write(JsonText& out, const OverlayAppearance& shown) {
    out.tree({{"theme", shown.themeID},
              {"accentColor", shown.accentColorID},
              {"isDark", shown.isDark ? json(*shown.isDark) : json(nullptr)},
              {"palette", encode(shown.palette)},
              {"useThemeBackground", shown.useThemeBackground},
              {"showTileBackgrounds", shown.showTileBackgrounds},
              {"showBrain", shown.showBrain}});
}

void write(JsonText& out, const OverlayDrag& drag) {
    out.tree({{"window", drag.windowID}, {"display", orNull(drag.displayID)}, {"tile", orNull(drag.tileID)}});
}

void write(JsonText& out, const OverlayMessage& message) {
    const json undo = message.undoMethod.empty() ? json(nullptr) : json(message.undoMethod);
    out.tree({{"text", message.text}, {"display", orNull(message.displayID)}, {"undo", undo}});
}

json shownWindow(const OverlayShownWindow& window) {
    return {{"pane", orNull(window.pane)}, {"request", window.request}};
}

void write(JsonText& out, const OverlayWindows& shown) {
    out.tree(
        {{"settings", orNull(shown.settings, shownWindow)}, {"onboarding", orNull(shown.onboarding, shownWindow)}});
}

template <class T>
void write(JsonText& out, const std::optional<T>& value) {
    value ? write(out, *value) : out.null();
}

template <class T>
void write(JsonText& out, const std::vector<T>& values) {
    out.beginArray();
    for (const T& value : values) write(out, value);
    out.endArray();
}

/// Writes the members of a value: only those that differ from `before`, or all if `before` is null.
template <class T>
class Members {
  public:
    Members(JsonText& out, const T& now, const T* before) : out_(out), now_(now), before_(before) {}

    template <class Member>
    bool differs(Member T::*member) const {
        return !before_ || now_.*member != before_->*member;
    }
    template <class Member>
    Members& add(const char* name, Member T::*member) {
        return differs(member) ? addAlways(name, member) : *this;
    }
    /// Writes the member even if it does not differ. For the member that identifies the value.
    template <class Member>
    Members& addAlways(const char* name, Member T::*member) {
        out_.name(name);
        write(out_, now_.*member);
        return *this;
    }

  private:
    JsonText& out_;
    const T& now_;
    const T* before_;
};

void writeMembers(JsonText& out, const OverlayDisplay& now, const OverlayDisplay* before) {
    using Display = OverlayDisplay;
    Members members(out, now, before);
    members.addAlways("id", &Display::id)
        .add("number", &Display::number)
        .add("name", &Display::name)
        .add("frame", &Display::frame)
        .add("visibleFrame", &Display::visibleFrame)
        .add("scale", &Display::scale)
        .add("isFocusMode", &Display::isFocusMode)
        .add("isCurrent", &Display::isCurrent)
        .add("floatingFrames", &Display::floatingFrames);
    if (!members.differs(&Display::layoutID) && !members.differs(&Display::layoutName)) return;
    out.name("layout");
    out.tree({{"id", now.layoutID}, {"name", now.layoutName}});
}

void writeMembers(JsonText& out, const OverlayTile& now, const OverlayTile* before) {
    using Tile = OverlayTile;
    Members members(out, now, before);
    members.addAlways("id", &Tile::id)
        .add("display", &Tile::displayID)
        .add("slot", &Tile::slotID)
        .add("name", &Tile::name)
        .add("covers", &Tile::coveredSlotIDs)
        .add("cell", &Tile::cell)
        .add("frame", &Tile::windowFrame)
        .add("footerFrame", &Tile::footerFrame)
        .add("applications", &Tile::windows)
        .add("pending", &Tile::pendingLaunch)
        .add("notice", &Tile::notice)
        .add("isDropTarget", &Tile::isDropTarget);
    if (!members.differs(&Tile::windows)) return;
    out.name("isEmpty");
    out.boolean(now.windows.empty());
}

void writeMembers(JsonText& out, const OverlayDivider& now, const OverlayDivider* before) {
    using Divider = OverlayDivider;
    Members(out, now, before)
        .addAlways("id", &Divider::id)
        .add("display", &Divider::displayID)
        .add("layout", &Divider::layoutID)
        .add("split", &Divider::splitID)
        .add("boundary", &Divider::boundaryIndex)
        .add("axis", &Divider::axis)
        .add("frame", &Divider::frame)
        .add("isHovered", &Divider::isHovered)
        .add("isDragged", &Divider::isDragged);
}

/// Writes the sections that are not lists.
void writeMembers(JsonText& out, const OverlayContents& now, const OverlayContents* before) {
    using Contents = OverlayContents;
    Members(out, now, before)
        .add("isSuspended", &Contents::isSuspended)
        .add("appearance", &Contents::appearance)
        .add("drag", &Contents::drag)
        .add("message", &Contents::message)
        .add("windows", &Contents::windows);
}

template <class T>
void writeRecord(JsonText& out, const T& now, const T* before) {
    out.beginObject();
    writeMembers(out, now, before);
    out.endObject();
}

template <class T>
void writeList(JsonText& out, const char* name, const std::vector<T>& values) {
    out.name(name);
    out.beginArray();
    for (const T& value : values) writeRecord<T>(out, value, nullptr);
    out.endArray();
}

/// The element of `before` with the same id as `value`; null if there is none. Usually it has the same index.
template <class T>
const T* formerOf(const T& value, std::size_t index, const std::vector<T>& before) {
    if (index < before.size() && before[index].id == value.id) return &before[index];
    const auto found = std::ranges::find(before, value.id, &T::id);
    return found == before.end() ? nullptr : &*found;
}

/// Writes the elements that are new or changed, and the ids of all elements if their order changed. Writes nothing if
/// the lists are equal.
template <class T>
void writeChanges(JsonText& out, const char* name, const std::vector<T>& before, const std::vector<T>& now) {
    if (before == now) return;
    out.name(name);
    out.beginObject();
    const std::size_t start = out.length();
    out.name("changed");
    out.beginArray();
    const std::size_t empty = out.length();
    for (std::size_t i = 0; i < now.size(); ++i) {
        const T* former = formerOf(now[i], i, before);
        if (!former || *former != now[i]) writeRecord(out, now[i], former);
    }
    out.length() == empty ? out.cutTo(start) : out.endArray();
    if (!std::ranges::equal(before, now, {}, &T::id, &T::id)) {
        out.name("order");
        out.beginArray();
        for (const T& value : now) write(out, value.id);
        out.endArray();
    }
    out.endObject();
}

} // namespace

std::string whole(const OverlayContents& contents) {
    JsonText out;
    out.beginObject();
    writeMembers(out, contents, nullptr);
    writeList(out, "displays", contents.displays);
    writeList(out, "tiles", contents.tiles);
    writeList(out, "dividers", contents.dividers);
    out.name("version");
    out.tree({{"contract", kContract}, {"agent", KOVA_VERSION}});
    out.endObject();
    return out.take();
}

std::string changes(const OverlayContents& before, const OverlayContents& now) {
    JsonText out;
    out.beginObject();
    const std::size_t empty = out.length();
    writeMembers(out, now, &before);
    writeChanges(out, "displays", before.displays, now.displays);
    writeChanges(out, "tiles", before.tiles, now.tiles);
    writeChanges(out, "dividers", before.dividers, now.dividers);
    if (out.length() == empty) return {};
    out.endObject();
    return out.take();
}

} // namespace kova::overlayRecord
