// The invariants that every step of a scenario checks.
#include "tests/harness/Scenario.h"

#include "ui/client/AgentTextPatterns.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>

namespace kova {

namespace {

constexpr double kTolerance = 2;              // points, as in the verification of placements
constexpr int kProbesPerSide = 24;            // a grid with this many points per side is checked for gaps in a display
constexpr double kLeastSideWithMargins = 400; // points; layouts of smaller displays have no margins and gutters

bool overlap(const CGRect& a, const CGRect& b) {
    return intersectionArea(insetBy(a, 0.5), insetBy(b, 0.5)) > 0;
}

/// The cell with the margins, gutters and footer that may lie around it.
CGRect withSurroundings(const CGRect& cellOnScreen, const LayoutMetrics& metrics) {
    const double around = std::max(metrics.outerMargin, metrics.columnGutter) + 1;
    const double below = around + kFooterHeight;
    return makeRect(minX(cellOnScreen) - around, minY(cellOnScreen) - below, cellOnScreen.size.width + 2 * around,
                    cellOnScreen.size.height + around + below);
}

bool isCovered(const CGRect& area, const std::vector<CGRect>& rectangles) {
    for (int column = 0; column < kProbesPerSide; ++column) {
        for (int row = 0; row < kProbesPerSide; ++row) {
            const CGPoint probe = {minX(area) + area.size.width * (column + 0.5) / kProbesPerSide,
                                   minY(area) + area.size.height * (row + 0.5) / kProbesPerSide};
            const auto contains = [&](const CGRect& rectangle) { return containsPoint(rectangle, probe); };
            if (std::none_of(rectangles.begin(), rectangles.end(), contains)) return false;
        }
    }
    return true;
}

} // namespace

void Scenario::checkInvariants() {
    std::vector<std::string> violations = desktop.violations();
    checkAssignments(violations);
    const bool recovers = isRecovering();
    if (isManaging()) {
        checkTilesFillTheirDisplays(violations);
        if (isSettled_ && !recovers) {
            checkWindowsAreInTheirTiles(violations);
            checkTiledWindowsDoNotOverlap(violations, MinimumSizes::announced);
        }
    }
    for (const auto& violation : violations) ADD_FAILURE() << violation << "\non the screen: " << desktop.picture();
}

void Scenario::checkCanBeTranslated(const std::string& message) {
    const bool isKnown =
        std::ranges::any_of(ui::kAgentTexts, [&](const char* text) { return ui::namesIn(message, text).has_value(); });
    // "Dual Split on A" consists of names only; the beginning of a refusal that lists choices varies.
    const bool isListed = message.find('\n') != std::string::npos;
    const bool hasNamesOnly = std::ranges::any_of(
        desktop.screens(), [&](const Screen& screen) { return message.ends_with(" on " + screen.localizedName); });
    // These texts come from the simulated desktop.
    const bool isOfDesktop = message.ends_with("is broken") || message == "Give the permission anew";
    EXPECT_TRUE(isKnown || isListed || hasNamesOnly || isOfDesktop)
        << "kova-ui cannot translate the message “" << message << "”: add it to src/ui/client/AgentTextPatterns.h";
}

void Scenario::checkTilesFillTheirDisplays(std::vector<std::string>& violations) {
    for (const auto& screen : desktop.screens()) {
        std::vector<CGRect> cells;
        std::vector<CGRect> surroundings;
        const auto* layout = controller().resolvedLayout(displayID(screen));
        if (!layout) continue; // the controller is notified of the display only with the next event
        for (const auto& tile : controller().tiles()) {
            if (tile.displayID != displayID(screen)) continue;
            for (const auto& other : cells) {
                if (overlap(tile.frameOnScreen, other)) violations.push_back("tiles overlap at " + tile.target.text());
            }
            cells.push_back(tile.frameOnScreen);
            surroundings.push_back(withSurroundings(tile.frameOnScreen, layout->metrics));
            if (!containsWithin(screen.visibleFrame, tile.frameOnScreen, kTolerance)) {
                violations.push_back("tile exceeds its display: " + tile.target.text());
            }
        }
        const bool hasMargins =
            std::min(screen.visibleFrame.size.width, screen.visibleFrame.size.height) >= kLeastSideWithMargins;
        if (hasMargins && !isCovered(screen.visibleFrame, surroundings)) {
            violations.push_back("tiles leave a gap on " + screen.localizedName);
        }
    }
}

void Scenario::checkAssignments(std::vector<std::string>& violations) {
    if (!delegate_) return;
    const auto& assignments = controller().assignments();
    std::map<WindowID, std::set<TileTarget>> tilesOfWindow;
    for (const auto& [target, window] : assignments.assignedWindowIDs) tilesOfWindow[window].insert(target);
    for (const auto& [window, targets] : tilesOfWindow) {
        const auto anchor = assignments.anchorsByWindowID.find(window);
        const bool spans = anchor != assignments.anchorsByWindowID.end();
        if (targets.size() > 1 && !spans)
            violations.push_back("window in two tiles without an anchor: " + desktop.labelOfID(window));
        if (spans && !targets.contains(anchor->second)) {
            violations.push_back("anchor is not among the window's tiles: " + desktop.labelOfID(window));
        }
    }
    std::set<WindowID> stacked;
    for (const auto& [target, stack] : assignments.stackWindowIDsByTarget) {
        if (stack.empty()) violations.push_back("empty stack at " + target.text());
        for (const auto& window : stack) {
            if (!stacked.insert(window).second)
                violations.push_back("window stacked twice: " + desktop.labelOfID(window));
        }
        const auto front = assignments.assignedWindowIDs.find(target);
        if (front != assignments.assignedWindowIDs.end() && !stack.empty() && stack.front() != front->second) {
            violations.push_back("front window is not the first of its stack: " + desktop.labelOfID(front->second));
        }
    }
    const auto& published = controller().state();
    if (*published.assignedWindowIDs != assignments.assignedWindowIDs ||
        *published.stackWindowIDsByTarget != assignments.stackWindowIDsByTarget) {
        violations.push_back("the published assignments differ from the present ones");
    }
}

/// Checks windows that accept every frame down to their minimum size. Windows whose minimum size exceeds their display
/// are not checked, since they always overlap others.
void Scenario::checkTiledWindowsDoNotOverlap(std::vector<std::string>& violations, MinimumSizes considered) {
    std::map<std::string, std::pair<DisplayID, CGRect>> frames; // by label: display and frame
    std::set<DisplayID> withFullScreen; // a full-screen window keeps room in its tile that others may lack
    for (const auto& tile : controller().tiles()) {
        if (!tile.windowID || *controller().state().focusMode) continue;
        const auto label = desktop.labelOfID(*tile.windowID);
        if (label == tile.windowID->text()) continue; // closed since the last poll
        const auto& window = desktop.window(label);
        if (window.isFullScreen) withFullScreen.insert(tile.displayID);
        const auto minimum = window.leastSize();
        const auto screens = desktop.screens();
        const auto screen =
            std::ranges::find_if(screens, [&](const Screen& shown) { return displayID(shown) == tile.displayID; });
        if (screen == screens.end()) continue; // the controller is notified of the display only with the next event
        const CGSize display = screen->visibleFrame.size;
        const bool isKnown = considered == MinimumSizes::all || !window.traits().unannouncedMinimumSize;
        const bool isPossible = minimum && minimum->width < display.width - 40 && minimum->height < display.height - 70;
        if (!isKnown || !isPossible || !desktop.isResponding(window) || !desktop.isOnScreen(window) ||
            window.isFullScreen || window.isMaximized || desktop.placesWindows() || framesAtRestart_.contains(label)) {
            continue;
        }
        frames[label] = {tile.displayID, desktop.frameForWindowService(window)};
    }
    for (auto a = frames.begin(); a != frames.end(); ++a) {
        for (auto b = std::next(a); b != frames.end(); ++b) {
            // Windows of different displays are not compared: a display that has grown may overlap its neighbor.
            if (a->second.first != b->second.first || withFullScreen.contains(a->second.first)) continue;
            if (overlap(insetBy(a->second.second, kTolerance), insetBy(b->second.second, kTolerance))) {
                violations.push_back(a->first + " and " + b->first + " overlap: " + tiles());
            }
        }
    }
}

void Scenario::checkWindowsAreInTheirTiles(std::vector<std::string>& violations) {
    std::set<WindowID> living;
    for (const auto* window : desktop.livingWindows()) {
        living.insert(desktop.windowIDOf(window->label()));
        // A window may be outside all displays if it refuses to move after its display has become smaller. A window of
        // a slow application may be outside as well: by the time it moves, its new display may be disconnected.
        const auto& traits = window->traits();
        const bool movesAtOnce = !traits.refusesToMove && traits.writeDelay <= Seconds(0);
        if (movesAtOnce && !desktop.isOnSomeDisplay(*window)) {
            violations.push_back("window outside all displays: " + window->label());
        }
    }
    // KOVA does not notice that an unresponsive application has closed a window, and some closed windows continue to
    // respond. Both kinds of windows may have tiles.
    for (const auto& window : controller().liveWindows()) {
        if (desktop.isUnresponsive(window.processIdentifier) || desktop.isRetained(window.id)) living.insert(window.id);
    }
    const auto& zoomed = *controller().state().focusMode;
    if (zoomed && !living.contains(zoomed->windowID)) violations.push_back("focus mode of a closed window");
    for (const auto& [target, stack] : controller().assignments().stackWindowIDsByTarget) {
        for (const auto& windowID : stack) {
            if (!living.contains(windowID) && !isResuming())
                violations.push_back("a closed window is stacked in " + target.text());
        }
    }
    for (const auto& tile : controller().tiles()) {
        if (!tile.windowID || (zoomed && zoomed->windowID == *tile.windowID)) continue;
        if (!living.contains(*tile.windowID)) {
            if (!isResuming()) violations.push_back("a closed window is in front of " + tile.target.text());
            continue;
        }
        const std::string label = desktop.labelOfID(*tile.windowID);
        if (label == tile.windowID->text()) continue;
        const auto& window = desktop.window(label);
        if (desktop.placesWindows() || !window.isObedient() || !desktop.isResponding(window)) continue;
        if (!desktop.isOnScreen(window) || window.isFullScreen || window.isMaximized) continue;
        const CGRect frame = desktop.frameForWindowService(window);
        // A restart moves no window: a window that is not in its tile stays where it is until its tile changes or the
        // user arranges.
        bool isWhereItWasAtRestart = false;
        for (const auto* tab : desktop.livingWindows()) { // a tab that is shown takes the frame of the tab before it
            const bool isInGroup = window.tabGroup != 0 && tab->tabGroup == window.tabGroup;
            const auto found = framesAtRestart_.find(tab->label());
            if (found == framesAtRestart_.end() || (tab != &window && !isInGroup)) continue;
            if (!found->second.tile) found->second.tile = tile.frameForWindowService;
            const bool isSame = found->second.frame == frame && found->second.tile == tile.frameForWindowService;
            isWhereItWasAtRestart = isWhereItWasAtRestart || isSame;
        }
        if (isWhereItWasAtRestart) continue;
        if (!nearlyEqual(frame, tile.frameForWindowService, kTolerance)) {
            violations.push_back(window.label() + " is not in its tile " + describeFrame(tile.frameForWindowService));
        }
    }
}

} // namespace kova
