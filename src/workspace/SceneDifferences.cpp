#include "workspace/SceneDifferences.h"

#include "themes/ThemeRegistry.h"
#include "workspace/SceneRestoration.h"
#include "workspace/WindowMatching.h"
#include "workspace/WindowNames.h"

#include <algorithm>
#include <map>
#include <sstream>

namespace kova {

namespace {

std::string plain(double number) {
    std::ostringstream text;
    text << number;
    return text.str();
}

std::string describe(const LayoutWeightOverrides& weights) {
    std::string text;
    for (const auto& [split, shares] : weights.splits) {
        text += (text.empty() ? "" : ", ") + split + " ";
        for (std::size_t i = 0; i < shares.size(); ++i) text += (i == 0 ? "" : ":") + plain(shares[i]);
    }
    return text.empty() ? "the layout's own" : text;
}

class Comparison {
  public:
    Comparison(const WorkspaceScene& scene, const WorkspaceNow& now) : scene_(scene), now_(now) {}

    std::vector<SceneDifference> compare() {
        note("theme", scene_.themeID, now_.themeID);
        note("accent color", normalizedAccentColorID(scene_.accentColorID), now_.accentColorID);
        note("tile inset", plain(clampedTileInset(scene_.tileInset)), plain(now_.tileInset));
        for (const auto& display : scene_.displays) compareDisplay(display);
        compareWindows();
        return std::move(differences_);
    }

  private:
    void note(const std::string& what, const std::string& inScene, const std::string& now) {
        if (inScene != now) differences_.push_back({what, inScene, now});
    }

    const WorkspaceSceneDisplay* displayNow(std::int64_t ordinal) const {
        const bool isThere = ordinal >= 0 && ordinal < static_cast<std::int64_t>(now_.displays.size());
        return isThere ? &now_.displays[static_cast<std::size_t>(ordinal)] : nullptr;
    }

    void compareDisplay(const WorkspaceSceneDisplay& display) {
        const auto* present = displayNow(display.ordinal);
        if (!present) return note("display " + display.name, "connected", "not connected");
        if (!findLayout(now_.layouts, display.layoutID)) return; // the display keeps the layout that it has
        note("layout of " + present->name, display.layoutID, present->layoutID);
        if (display.layoutID != present->layoutID) return;
        note("sizes of " + present->name, describe(display.layoutWeights), describe(present->layoutWeights));
    }

    /// A display that is not there is stood in for by the first.
    std::string place(const WorkspaceScenePlacement& placement) const {
        if (now_.displays.empty()) return "nowhere";
        const auto* display = displayNow(placement.displayOrdinal);
        std::string text = (display ? display : &now_.displays.front())->name + " " + placement.slotID;
        if (frontsItsTile(placement.stackIndex, placement.isActive)) {
            for (const auto& slot : placement.claimedSlotIDs.value_or(std::vector<std::string>{})) {
                if (slot != placement.slotID) text += " + " + slot;
            }
        } else {
            text += ", behind";
            if (display) text += " as number " + std::to_string(countedFromOne(placement.stackIndex));
        }
        return text;
    }

    /// In the layout that the display will show once the scene is opened.
    bool hasTile(const WorkspaceScenePlacement& placement) const {
        if (now_.displays.empty()) return false;
        const bool isConnected = displayNow(placement.displayOrdinal) != nullptr;
        const std::int64_t ordinal = isConnected ? placement.displayOrdinal : 0;
        const LayoutDefinition* layout = nullptr;
        for (const auto& display : scene_.displays) {
            if (display.ordinal != ordinal) continue;
            if (const auto* available = findLayout(now_.layouts, display.layoutID)) layout = available;
        }
        if (!layout) layout = findLayout(now_.layouts, displayNow(ordinal)->layoutID);
        return layout && hasSlot(layout->slots, placement.slotID);
    }

    void compareWindows() {
        std::map<std::string, const WorkspaceScenePlacement*> placementByWindow;
        for (const auto& captured : now_.placements) placementByWindow[captured.windowID] = &captured.placement;
        WindowMatcher matcher(now_.windows, {});
        std::set<std::string> inScene;
        for (const auto& wanted : inRestoringOrder(scene_.placements)) {
            if (!hasTile(wanted)) continue; // opening the scene skips it
            const ManagedWindow* window = matcher.take(wanted.window);
            if (window) inScene.insert(window->id);
            const auto present = window ? placementByWindow.find(window->id) : placementByWindow.end();
            const std::string now = !window                              ? "not open"
                                    : present == placementByWindow.end() ? "in no tile"
                                                                         : place(*present->second);
            note(nameOf(wanted.window), place(wanted), now);
        }
        for (const auto& captured : now_.placements) {
            if (!inScene.contains(captured.windowID)) {
                note(nameOf(captured.placement.window), "not in the scene", place(captured.placement));
            }
        }
    }

    const WorkspaceScene& scene_;
    const WorkspaceNow& now_;
    std::vector<SceneDifference> differences_;
};

} // namespace

std::vector<SceneDifference> sceneDifferences(const WorkspaceScene& scene, const WorkspaceNow& now) {
    return Comparison(scene, now).compare();
}

} // namespace kova
