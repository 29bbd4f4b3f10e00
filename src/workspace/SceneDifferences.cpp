#include "workspace/SceneDifferences.h"

#include "layout/TileTarget.h"
#include "themes/ThemeRegistry.h"
#include "workspace/SceneRestoration.h"
#include "workspace/WindowMatching.h"
#include "workspace/WindowNames.h"

#include <algorithm>
#include <iomanip>
#include <map>
#include <sstream>

namespace kova {

namespace {

std::string plain(double number) {
    std::ostringstream text;
    text << number;
    return text.str();
}

/// Four digits distinguish shares that differ by one pixel.
std::string percentage(double share) {
    std::ostringstream text;
    text << std::setprecision(4) << share * 100;
    return text.str();
}

/// The slot's name, or its id if another slot of the layout has the same name.
std::string nameOfSlot(const std::vector<TileSlot>& slots, const SlotID& id) {
    const auto slot = std::ranges::find(slots, id, &TileSlot::id);
    if (slot == slots.end() || std::ranges::count(slots, slot->name, &TileSlot::name) > 1) return id.text();
    return slot->name;
}

std::string describeSizes(const LayoutDefinition& layout, const LayoutWeightOverrides& weights) {
    if (weights.splits.empty()) return "the layout's own";
    const std::vector<TileSlot> slots = applying(layout, weights).slots;
    std::string text;
    for (const TileSlot& slot : slots) {
        const CGSize size = slot.normalizedFrame.size;
        text += (text.empty() ? "" : ", ") + nameOfSlot(slots, slot.id) + " " + percentage(size.width) + " × " +
                percentage(size.height) + " %";
    }
    return text;
}

class Comparison {
  public:
    Comparison(const WorkspaceScene& scene, const WorkspaceNow& now) : scene_(scene), now_(now) {}

    std::vector<SceneDifference> compare() {
        const ThemeRegistry themes;
        note("theme", themes.theme(scene_.themeID).displayName, themes.theme(now_.themeID).displayName);
        note("accent color", accentColor(scene_.accentColorID).displayName,
             accentColor(now_.accentColorID).displayName);
        note("tile inset", plain(clampedTileInset(scene_.tileInset)), plain(now_.tileInset));
        for (const auto& display : scene_.displays) compareDisplay(display);
        if (!now_.displays.empty()) compareWindows();
        return std::move(differences_);
    }

  private:
    struct WantedWindow {
        const WorkspaceScenePlacement* placement = nullptr;
        WindowID id; // of the live window; an invented id for a window that is not open
        bool isOpen = false;
    };

    void note(const std::string& what, const std::string& inScene, const std::string& now) {
        if (inScene != now) differences_.push_back({what, inScene, now});
    }

    const WorkspaceSceneDisplay* displayNow(std::int64_t ordinal) const {
        const bool isThere = ordinal >= 0 && ordinal < static_cast<std::int64_t>(now_.displays.size());
        return isThere ? &now_.displays[static_cast<std::size_t>(ordinal)] : nullptr;
    }

    /// The scene's entry that takes effect on the display: the last one whose layout is available; null if
    /// there is no such entry.
    const WorkspaceSceneDisplay* inScene(std::int64_t ordinal) const {
        const WorkspaceSceneDisplay* deciding = nullptr;
        for (const auto& display : scene_.displays) {
            if (display.ordinal == ordinal && findLayout(now_.layouts, display.layoutID)) deciding = &display;
        }
        return deciding;
    }

    void compareDisplay(const WorkspaceSceneDisplay& display) {
        const auto* present = displayNow(display.ordinal);
        if (!present) return note("display " + display.name, "connected", "not connected");
        if (inScene(display.ordinal) != &display) return;
        const LayoutDefinition& layout = *findLayout(now_.layouts, display.layoutID);
        if (display.layoutID != present->layoutID) {
            const auto* layoutNow = findLayout(now_.layouts, present->layoutID);
            return note("layout of " + present->name, layout.name, layoutNow ? layoutNow->name : present->layoutID);
        }
        note("sizes of " + present->name, describeSizes(layout, display.layoutWeights),
             describeSizes(layout, present->layoutWeights));
    }

    /// The slots of the layout that the display will show once the scene is opened; empty if the layout is unknown.
    std::vector<TileSlot> slotsOnceOpened(std::int64_t ordinal) const {
        const auto* display = inScene(ordinal);
        if (!display) display = displayNow(ordinal);
        const auto* layout = findLayout(now_.layouts, display->layoutID);
        return layout ? applying(*layout, display->layoutWeights).slots : std::vector<TileSlot>{};
    }

    std::string placeNow(const WorkspaceScenePlacement& captured) const {
        const auto* layout = findLayout(now_.layouts, displayNow(captured.displayOrdinal)->layoutID);
        return place(captured, layout ? layout->slots : std::vector<TileSlot>{});
    }

    /// Describes the tiles of the placement; `slots` belong to the layout of its display.
    std::string place(const WorkspaceScenePlacement& captured, const std::vector<TileSlot>& slots) const {
        std::string text = nameOfSlot(slots, captured.slotID);
        if (captured.isActive.value_or(false)) {
            for (const auto& slot : captured.claimedSlotIDs.value_or(std::vector<SlotID>{})) {
                if (slot != captured.slotID) text += " + " + nameOfSlot(slots, slot);
            }
        }
        text += " on " + displayNow(captured.displayOrdinal)->name;
        if (captured.isActive.value_or(false)) return text;
        return text + ", behind as number " + std::to_string(countedFromOne(captured.stackIndex));
    }

    /// The places that windows would have after opening the scene, as a capture would describe them, by window id. The
    /// first display replaces a display that is not connected. Adds the placements that have a tile to `wanted`.
    std::map<WindowID, std::string> placesOnceOpened(std::vector<WantedWindow>& wanted) {
        std::vector<CapturedDisplay> displays;
        std::vector<std::vector<TileSlot>> slots;
        for (std::size_t ordinal = 0; ordinal < now_.displays.size(); ++ordinal) {
            slots.push_back(slotsOnceOpened(static_cast<std::int64_t>(ordinal)));
            displays.push_back({DisplayID(std::to_string(ordinal)), {}});
            for (const auto& slot : slots.back()) displays.back().slotIDs.push_back(slot.id);
        }
        WindowMatcher matcher(now_.windows, {});
        std::vector<RestoredPlacement> restored;
        std::map<WindowID, std::int64_t> stackIndexByID;
        std::map<WindowID, ManagedWindow> windows;
        for (const auto& placement : placements_) {
            const std::int64_t ordinal = displayNow(placement.displayOrdinal) ? placement.displayOrdinal : 0;
            const auto taken =
                slotsTaken(slots[static_cast<std::size_t>(ordinal)], placement.slotID, placement.claimedSlotIDs);
            if (taken.empty()) continue; // opening the scene skips such a placement
            const ManagedWindow* open = matcher.take(placement.window);
            const WindowID id = open ? open->id : WindowID("missing " + std::to_string(wanted.size()));
            wanted.push_back({&placement, id, open != nullptr});
            windows[id].id = id;
            stackIndexByID[id] = placement.stackIndex;
            std::vector<TileTarget> targets;
            for (const auto& slot : taken) targets.push_back({DisplayID(std::to_string(ordinal)), slot});
            restored.push_back({id, std::move(targets), placement.stackIndex,
                                frontsItsTile(placement.stackIndex, placement.isActive)});
        }
        const auto assignments = withRestored({}, restored, stackIndexByID);
        std::map<WindowID, std::string> places;
        for (const auto& captured : capturePlacements(displays, assignments, [&](const WindowID& id) {
                 const auto found = windows.find(id);
                 return found == windows.end() ? nullptr : &found->second;
             })) {
            const auto ordinal = static_cast<std::size_t>(captured.placement.displayOrdinal);
            places[captured.windowID] = place(captured.placement, slots[ordinal]);
        }
        return places;
    }

    void compareWindows() {
        std::map<WindowID, std::string> placesNow;
        for (const auto& captured : now_.placements) placesNow[captured.windowID] = placeNow(captured.placement);
        std::vector<WantedWindow> wanted;
        const auto placesThen = placesOnceOpened(wanted);
        for (const auto& window : wanted) {
            const auto now = placesNow.find(window.id);
            const auto then = placesThen.find(window.id);
            note(nameOf(window.placement->window), then == placesThen.end() ? "in no tile" : then->second,
                 !window.isOpen           ? "not open"
                 : now == placesNow.end() ? "in no tile"
                                          : now->second);
        }
        for (const auto& captured : now_.placements) {
            if (std::ranges::find(wanted, captured.windowID, &WantedWindow::id) == wanted.end()) {
                note(nameOf(captured.placement.window), "not in the scene", placeNow(captured.placement));
            }
        }
    }

    const WorkspaceScene& scene_;
    const WorkspaceNow& now_;
    const std::vector<WorkspaceScenePlacement> placements_ = inRestoringOrder(scene_.placements);
    std::vector<SceneDifference> differences_;
};

} // namespace

std::vector<SceneDifference> sceneDifferences(const WorkspaceScene& scene, const WorkspaceNow& now) {
    return Comparison(scene, now).compare();
}

} // namespace kova
