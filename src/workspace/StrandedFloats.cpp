#include "workspace/StrandedFloats.h"

#include "support/SameFrame.h"
#include "workspace/Renaming.h"
#include "workspace/VisibleArea.h"

#include <algorithm>

namespace kova {

void StrandedFloats::rememberDisconnected(const std::vector<Screen>& before, const std::set<DisplayID>& connected,
                                          const std::vector<ManagedWindow>& live, const TileAssignments& tiles) {
    if (before.empty()) return;
    const double top = maxY(before.front().frame);
    for (const ManagedWindow& window : live) {
        if (!window.isVisible || !window.frame || tiles.isInAnyTile(window.id)) continue;
        const Screen* screen = screenShowing(before, flipped(*window.frame, top));
        if (screen && !connected.contains(displayID(*screen)))
            stranded_.try_emplace(window.id, Stranded{displayID(*screen), *window.frame});
    }
}

void StrandedFloats::settle(const WindowID& windowID, const CGRect& frame) {
    const auto found = stranded_.find(windowID);
    if (found != stranded_.end() && !found->second.frameMeanwhile) found->second.frameMeanwhile = frame;
}

std::vector<std::pair<WindowID, CGRect>> StrandedFloats::takeReturned(const std::set<DisplayID>& connected,
                                                                      const std::vector<ManagedWindow>& live,
                                                                      const TileAssignments& tiles) {
    std::vector<std::pair<WindowID, CGRect>> returned;
    std::erase_if(stranded_, [&](const auto& entry) {
        const Stranded& stranded = entry.second;
        if (!connected.contains(stranded.displayID)) return false;
        const auto window =
            std::find_if(live.begin(), live.end(), [&](const auto& each) { return each.id == entry.first; });
        if (window == live.end() || tiles.isInAnyTile(window->id)) return true;
        const auto& meanwhile = stranded.frameMeanwhile;
        const bool isMoved =
            window->frame && meanwhile && !nearlyEqual(*window->frame, *meanwhile, kFrameTolerancePoints);
        if (!isMoved) returned.emplace_back(entry.first, stranded.frame);
        return true;
    });
    return returned;
}

void StrandedFloats::keepOnly(const std::set<WindowID>& windowIDs) {
    std::erase_if(stranded_, [&](const auto& entry) { return !windowIDs.contains(entry.first); });
}

void StrandedFloats::rename(const WindowID& windowID, const WindowID& newID) {
    renameKey(stranded_, windowID, newID);
}

void StrandedFloats::renameDisplay(const DisplayID& displayID, const DisplayID& newID) {
    for (auto& [id, stranded] : stranded_) {
        if (stranded.displayID == displayID) stranded.displayID = newID;
    }
}

} // namespace kova
