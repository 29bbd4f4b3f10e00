#include "workspace/RuleActions.h"

#include "support/Quoted.h"
#include "workspace/WorkspaceParts.h"

#include <utility>

namespace kova {

RuleActions::RuleActions(WorkspaceParts& parts, WorkspaceAccess& access, TileGeometry& geometry,
                         const WindowFinder& finder, TileKeeper& keeper, DocumentStore& documents) :
    state_(parts.state),
    liveWindows_(parts.liveWindows), assignments_(parts.assignments), tileMemory_(parts.tileMemory),
    focusMode_(parts.focusMode), floating_(parts.floating), pointer_(parts.pointer), messages_(parts.messages),
    access_(access), geometry_(geometry), finder_(finder), keeper_(keeper), documents_(documents) {}

void RuleActions::applyRules(const std::vector<ManagedWindow>& windows) {
    if (*state_.permissionState != AccessibilityPermissionState::granted) return;
    if (focusMode_.isOn()) return; // the end of focus mode would undo the placement
    // Rules are matched for all windows before any window is placed: placing a window may hide another one, and rules
    // are not matched for hidden windows.
    std::vector<std::pair<WindowID, std::size_t>> decisions; // window id and index of the rule
    for (const auto& window : windows) {
        if (tileMemory_.isHandledByRules(window.id) || floating_.contains(window.id)) continue;
        if (pointer_.isHolding(window.id)) {
            isPostponed_ = true;
            continue;
        }
        const bool isShown = window.isVisible && !window.isMinimized && !window.isFullScreen;
        if (assignments_.isInAnyTile(window.id) && !isShown) { // already placed, for example in a stack
            tileMemory_.noteHandledByRules(window.id);
            continue;
        }
        // Rules apply once the window is visible and has the title by which rules distinguish it.
        if (!isShown || awaitsTitle(*state_.rules, window)) continue;
        tileMemory_.noteHandledByRules(window.id);
        if (const auto deciding = decidingRule(*state_.rules, window)) decisions.emplace_back(window.id, *deciding);
    }
    carryOutRules(decisions);
    tileMemory_.keepHandledByRules([this](const WindowID& id) { return liveWindows_.find(id) != nullptr; });
}

/// Windows that move leave their tiles first, so that two of them can change places.
void RuleActions::carryOutRules(const std::vector<std::pair<WindowID, std::size_t>>& decisions) {
    std::vector<std::pair<WindowID, TileTarget>> moving;
    for (const auto& [windowID, index] : decisions) {
        const WorkspaceRule& rule = (*state_.rules)[index];
        const ManagedWindow& window = *liveWindows_.find(windowID);
        const auto* tile = std::get_if<disposition::Tile>(&rule.disposition);
        const Screen* screen = tile ? geometry_.screenOfWindow(window) : nullptr;
        if (!screen) continue;
        const TileTarget target{displayID(*screen), tile->slotID};
        if (!geometry_.tileFrameOnScreen(target)) continue;
        if (assignments_.targetOf(windowID) != target) moving.emplace_back(windowID, target);
        messages_.show("Rule " + quoted(rule.name) + " placed " + window.applicationName);
    }
    if (moving.empty()) return;
    const TileAssignments before = assignments_;
    for (const auto& [windowID, target] : moving) assignments_.remove(windowID);
    for (const auto& [windowID, target] : moving) keeper_.placeInTile(windowID, target, Focusing::no);
    keeper_.commit({.before = before});
}

Outcome RuleActions::addRuleForWindow(const action::AddRuleForWindow& wanted) {
    const ManagedWindow* window = finder_.windowOrFocused(wanted.windowID);
    if (!window) {
        return access_.refuse(wanted.windowID ? "There is no such window" : "No focused application window found");
    }
    WorkspaceRule rule;
    rule.name = ruleName(window->applicationName, wanted.disposition);
    rule.bundleIdentifier = window->bundleIdentifier;
    if (!rule.bundleIdentifier) rule.applicationName = window->applicationName;
    rule.disposition = wanted.disposition;
    return documents_.appendRule(std::move(rule), window->applicationName);
}

std::optional<RuleExplanation> RuleActions::explainRules(const WindowID& windowID) const {
    const ManagedWindow* window = liveWindows_.find(windowID);
    if (!window) return std::nullopt;
    std::vector<std::string> remarks;
    if (!*state_.continuousManagementEnabled) {
        remarks.push_back("rules are off, and “kova rules on” lets them act");
    } else if (tileMemory_.isHandledByRules(windowID)) {
        remarks.push_back("the window was seen already and is not moved again");
    }
    return kova::explainRules(*state_.rules, *window, remarks, geometry_.catalogue());
}

} // namespace kova
