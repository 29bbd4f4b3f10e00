#include "workspace/StackingOrder.h"

#include "support/SameFrame.h"

#include <algorithm>

namespace kova {

namespace {

bool shows(const OnScreenWindow& shown, const ManagedWindow& window) {
    return shown.processIdentifier == window.processIdentifier && window.frame &&
           nearlyEqual(shown.bounds, *window.frame, kFrameTolerancePoints);
}

} // namespace

std::vector<const ManagedWindow*> coveredByOthers(const std::vector<const ManagedWindow*>& windows,
                                                  const std::vector<OnScreenWindow>& onScreen) {
    std::vector<CGRect> others; // in front of the window under consideration
    std::vector<const ManagedWindow*> unseen = windows;
    std::vector<const ManagedWindow*> covered;
    for (const auto& shown : onScreen) {
        if (shown.layer != 0) continue; // panels and menus are above all windows in any case
        const auto found =
            std::find_if(unseen.begin(), unseen.end(), [&](const auto* window) { return shows(shown, *window); });
        if (found == unseen.end()) {
            others.push_back(shown.bounds);
            continue;
        }
        const bool isCovered = std::any_of(others.begin(), others.end(), [&](const CGRect& other) {
            return intersectionArea(other, shown.bounds) > 0;
        });
        if (isCovered) covered.push_back(*found);
        unseen.erase(found);
    }
    covered.insert(covered.end(), unseen.begin(), unseen.end());
    return covered;
}

std::vector<const ManagedWindow*> windowsToRaise(const std::vector<const ManagedWindow*>& windows,
                                                 const std::vector<OnScreenWindow>& onScreen,
                                                 const std::vector<WindowID>& focusOrder) {
    auto raised = coveredByOthers(windows, onScreen);
    if (raised.empty()) return raised;
    std::reverse(raised.begin(), raised.end()); // the lowest first, so that they keep their order
    for (const auto& id : focusOrder) {
        const auto last = std::ranges::find_if(windows, [&](const auto* window) { return window->id == id; });
        if (last == windows.end()) continue;
        std::erase(raised, *last);
        raised.push_back(*last);
        break;
    }
    return raised;
}

} // namespace kova
