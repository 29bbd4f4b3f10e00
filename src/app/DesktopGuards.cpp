#include "app/DesktopGuards.h"

#include "windowing/DividerGestureRecognizer.h"

#include <algorithm>
#include <utility>

namespace kova {

std::vector<CGRect> uncoveredParts(const CGRect& area, const std::vector<CGRect>& covered) {
    std::vector<CGRect> parts{area};
    for (const CGRect& cover : covered) {
        std::vector<CGRect> next;
        for (const CGRect& part : parts) {
            const double left = std::clamp(minX(cover), minX(part), maxX(part));
            const double right = std::clamp(maxX(cover), minX(part), maxX(part));
            const double low = std::clamp(minY(cover), minY(part), maxY(part));
            const double high = std::clamp(maxY(cover), minY(part), maxY(part));
            if (left >= right || low >= high) {
                next.push_back(part);
                continue;
            }
            next.push_back(makeRect(minX(part), minY(part), part.size.width, low - minY(part)));
            next.push_back(makeRect(minX(part), high, part.size.width, maxY(part) - high));
            next.push_back(makeRect(minX(part), low, left - minX(part), high - low));
            next.push_back(makeRect(right, low, maxX(part) - right, high - low));
        }
        std::erase_if(next, [](const CGRect& part) { return part.size.width < 1 || part.size.height < 1; });
        parts = std::move(next);
    }
    return parts;
}

bool holdsWindows(const WorkspaceController& workspace, const DisplayID& displayID) {
    return std::ranges::any_of(*workspace.state().assignedWindowIDs,
                               [&](const auto& assigned) { return assigned.first.display == displayID; });
}

std::vector<CGRect> desktopGuards(const WorkspaceController& workspace, const std::vector<DividerHandle>& handles) {
    const auto& screens = *workspace.state().screens;
    const auto& zoom = *workspace.state().focusMode;
    std::vector<CGRect> guards;
    const auto tiles = workspace.tiles();
    for (const Screen& screen : screens) {
        const DisplayID id = displayID(screen);
        if ((zoom && zoom->displayID == id) || !holdsWindows(workspace, id)) continue;
        std::vector<CGRect> covered;
        for (const WorkspaceTile& tile : tiles) {
            if (tile.displayID == id)
                covered.push_back(flipped(tile.frameForWindowService, maxY(screens.front().frame)));
        }
        for (const DividerHandle& handle : handles) covered.push_back(gapFrame(handle));
        const auto parts = uncoveredParts(screen.visibleFrame, covered);
        guards.insert(guards.end(), parts.begin(), parts.end());
    }
    return guards;
}

} // namespace kova
