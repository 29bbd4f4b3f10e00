// Rules: what happens to a window when it is first seen, and how the user edits them.
#include "workspace/WorkspaceController.h"

#include "support/text/Text.h"

#include <algorithm>
#include <utility>

namespace kova {

void WorkspaceController::applyRules(const std::vector<ManagedWindow>& windows) {
    if (*state_.permissionState != AccessibilityPermissionState::granted) return;
    if (focusMode_.isOn()) return; // what it restores later would take the tiles away again
    // All windows are asked before any is placed: placing one hides another, whose own rule may name a tile as well.
    std::vector<std::pair<std::string, std::size_t>> decisions; // window id and index of the rule
    for (const auto& window : windows) {
        if (tileMemory_.isPlaced(window.id)) continue;
        const bool isShown = window.isVisible && !window.isMinimized && !window.isFullScreen;
        if (assignments_.isInAnyTile(window.id) && !isShown) { // it has its place
            tileMemory_.notePlaced(window.id);
            continue;
        }
        // Its time comes when it shows itself, and when it can be told from others.
        if (!isShown || awaitsTitle(*state_.rules, window)) continue;
        tileMemory_.notePlaced(window.id);
        if (const auto deciding = decidingRule(*state_.rules, window)) decisions.emplace_back(window.id, *deciding);
    }
    carryOutRules(decisions);
    tileMemory_.keepPlaced([this](const std::string& id) { return findLive(id) != nullptr; });
}

/// Windows that move leave their tiles first, so that two of them can change places.
void WorkspaceController::carryOutRules(const std::vector<std::pair<std::string, std::size_t>>& decisions) {
    std::vector<std::pair<std::string, std::string>> moving; // window and tile-target id
    for (const auto& [windowID, index] : decisions) {
        const WorkspaceRule& rule = (*state_.rules)[index];
        const ManagedWindow& window = *findLive(windowID);
        const auto* tile = std::get_if<disposition::Tile>(&rule.disposition);
        const Screen* screen = tile ? screenOfWindow(window) : nullptr;
        if (!screen) continue;
        const std::string target = tileTargetID(displayID(*screen), tile->slotID);
        if (!tileFrameOnScreen(target)) continue;
        if (assignments_.targetOf(windowID) != target) moving.emplace_back(windowID, target);
        showStatusMessage("Rule “" + rule.name + "” placed " + window.applicationName);
    }
    if (moving.empty()) return;
    const TileAssignments before = assignments_;
    for (const auto& [windowID, target] : moving) assignments_.remove(windowID);
    std::vector<std::string> displaced;
    std::vector<std::pair<std::string, Covering>> placed;
    for (const auto& [windowID, target] : moving) {
        const auto covering = coveringFor(*findLive(windowID), target);
        if (!covering) continue;
        for (auto& id : takeTiles(windowID, *covering)) displaced.push_back(std::move(id));
        placed.emplace_back(windowID, *covering);
    }
    presentDisplaced(displaced);
    bringNextForward(before);
    for (const auto& [windowID, covering] : placed) {
        const auto frame = frameForWindow(windowID);
        if (!frame) continue; // another window with the same rule is in front
        writeFrame(*findLive(windowID), *frame, AccessibilityWindowService::BringToFront::no);
        if (covering.targets.size() > 1) announceClaim(*findLive(windowID), covering);
    }
    commit({});
}

std::optional<RuleTile> WorkspaceController::tileOfRule(const ManagedWindow& window) const {
    if (!*state_.continuousManagementEnabled) return std::nullopt;
    const auto deciding = decidingRule(*state_.rules, window);
    if (!deciding) return std::nullopt;
    const WorkspaceRule& rule = (*state_.rules)[*deciding];
    const auto* tile = std::get_if<disposition::Tile>(&rule.disposition);
    return tile ? std::optional(RuleTile{tile->slotID, rule.name}) : std::nullopt;
}

/// A window that was put into a tile by itself is not moved on by a rule for its application.
void WorkspaceController::noteHasItsPlace(const std::string& windowID) {
    if (*state_.continuousManagementEnabled) tileMemory_.notePlaced(windowID);
}

bool WorkspaceController::isExcludedByRules(const ManagedWindow& window) const {
    return *state_.continuousManagementEnabled && isExcluded(*state_.rules, window);
}

Outcome WorkspaceController::addRuleForWindow(const action::AddRuleForWindow& wanted) {
    const ManagedWindow* window = actingWindow(wanted.windowID);
    if (!window) return refuse(wanted.windowID ? "There is no such window" : "No focused application window found");
    WorkspaceRule rule;
    rule.name = ruleName(window->applicationName, wanted.disposition);
    rule.bundleIdentifier = window->bundleIdentifier;
    if (!rule.bundleIdentifier) rule.applicationName = window->applicationName;
    rule.disposition = wanted.disposition;
    return appendRule(std::move(rule), window->applicationName);
}

Outcome WorkspaceController::addRule(WorkspaceRule rule) {
    rule.titleContains = trimmed(rule.titleContains.value_or(""));
    if (rule.titleContains->empty()) rule.titleContains.reset();
    if (!rule.bundleIdentifier && !rule.applicationName && !rule.titleContains) {
        const std::string reason = "A rule needs an application or a part of a title";
        showStatusMessage(reason);
        return Outcome::refused(reason);
    }
    const std::string subject =
        rule.applicationName.value_or(rule.bundleIdentifier.value_or(rule.titleContains.value_or("")));
    if (rule.name.empty()) rule.name = ruleName(subject, rule.disposition);
    return appendRule(std::move(rule), subject);
}

/// The newest has the lowest precedence.
Outcome WorkspaceController::appendRule(WorkspaceRule rule, const std::string& subject) {
    const std::string message = "Rule added for " + subject;
    auto document = workspaceDocument();
    document.rules.push_back(std::move(rule));
    const auto changed = changeDocument(std::move(document));
    return changed ? done(message) : changed;
}

Outcome WorkspaceController::editRule(const Uuid& id, const RuleEdit& edit) {
    auto document = workspaceDocument();
    const auto rule = std::ranges::find(document.rules, id, &WorkspaceRule::id);
    if (rule == document.rules.end()) return Outcome::refused("There is no such rule");
    edit(document.rules, rule);
    return changeDocument(std::move(document));
}

Outcome WorkspaceController::changeRule(const action::ChangeRule& change) {
    return editRule(change.id, [&](auto&, auto rule) {
        if (change.isEnabled) rule->isEnabled = *change.isEnabled;
        if (change.disposition) rule->disposition = *change.disposition;
        if (!change.titleContains) return;
        rule->titleContains = trimmed(*change.titleContains);
        if (rule->titleContains->empty()) rule->titleContains.reset();
    });
}

Outcome WorkspaceController::deleteRule(const Uuid& id) {
    return editRule(id, [](auto& rules, auto rule) { rules.erase(rule); });
}

Outcome WorkspaceController::moveRule(const Uuid& id, std::size_t index) {
    return editRule(id, [&](auto& rules, auto rule) {
        const auto to = rules.begin() + static_cast<std::ptrdiff_t>(std::min(index, rules.size() - 1));
        if (to < rule) {
            std::rotate(to, rule, rule + 1);
        } else {
            std::rotate(rule, rule + 1, to + 1);
        }
    });
}

std::optional<RuleExplanation> WorkspaceController::explainRules(const std::string& windowID) const {
    const ManagedWindow* window = findLive(windowID);
    if (!window) return std::nullopt;
    std::vector<std::string> remarks;
    if (!*state_.continuousManagementEnabled) {
        remarks.push_back("rules run only when continuous management is enabled");
    } else if (tileMemory_.isPlaced(windowID)) {
        remarks.push_back("the window was seen already and is not moved again");
    }
    return kova::explainRules(*state_.rules, *window, remarks);
}

} // namespace kova
