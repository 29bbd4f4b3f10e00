#include "commands/LayoutShortcutCoordinator.h"

#include "commands/KeyNames.h"
#include "support/Log.h"
#include "support/Quoted.h"

#include <algorithm>
#include <iterator>
#include <span>
#include <utility>

namespace kova {

namespace {

using enum KovaShortcutAction;

/// The actions whose shortcuts have an effect: all but `commandCenter`.
constexpr auto kDispatchedActions = std::span(kShortcutActions).subspan(1);
static_assert(kShortcutActions.front() == commandCenter);

/// While KOVA is paused, only the shortcut that resumes KOVA has an effect.
bool actsWhilePaused(KovaShortcutAction action) {
    return action == pauseOrResume;
}

/// The operation of the workspace for this action; absent if the action is not such an operation.
std::optional<WorkspaceAction> operationOf(KovaShortcutAction wanted, bool isPaused) {
    using enum WorkspaceDirection;
    static const std::pair<KovaShortcutAction, WorkspaceAction> kOperations[] = {
        {previousLayout, action::CycleLayout{LayoutStep::previous}},
        {nextLayout, action::CycleLayout{}},
        {arrangeWindows, action::Arrange{}},
        {undo, action::Undo{}},
        {focusLeft, action::Focus{left}},
        {focusRight, action::Focus{right}},
        {focusUp, action::Focus{up}},
        {focusDown, action::Focus{down}},
        {moveLeft, action::Move{left}},
        {moveRight, action::Move{right}},
        {moveUp, action::Move{up}},
        {moveDown, action::Move{down}},
        {focusZoom, action::ToggleFocusZoom{}},
        {cycleStack, action::CycleStack{}},
        {previousInStack, action::CycleStack{StackStep::previous}},
        {swapLeft, command::Swap{std::nullopt, left}},
        {swapRight, command::Swap{std::nullopt, right}},
        {swapUp, command::Swap{std::nullopt, up}},
        {swapDown, command::Swap{std::nullopt, down}},
        {focusNextDisplay, command::FocusDisplay{DisplayStep::next}},
        {focusPreviousDisplay, command::FocusDisplay{DisplayStep::previous}},
        {moveToNextDisplay, command::MoveToDisplay{std::nullopt, DisplayStep::next}},
        {moveToPreviousDisplay, command::MoveToDisplay{std::nullopt, DisplayStep::previous}},
        {toggleFloating, command::ToggleFloating{}},
    };
    if (wanted == pauseOrResume) return action::Switch{action::Setting::isPaused, !isPaused};
    if (placeInTile1 <= wanted && wanted <= placeInTile9) {
        const auto number = static_cast<std::size_t>(wanted) - static_cast<std::size_t>(placeInTile1) + 1;
        return command::PlaceInNumbered{std::nullopt, number};
    }
    const auto* found = std::ranges::find(kOperations, wanted, &std::pair<KovaShortcutAction, WorkspaceAction>::first);
    return found == std::end(kOperations) ? std::nullopt : std::optional(found->second);
}

void run(WorkspaceController& workspace, KovaShortcutAction wanted) {
    if (const auto operation = operationOf(wanted, *workspace.state().isPaused)) workspace.perform(*operation);
}

KeyCombination combinationOf(const KovaShortcut& shortcut) {
    return {shortcut.keyCode, shortcut.modifierFlagsRawValue & modifierFlag::ofShortcuts};
}

} // namespace

std::optional<KovaShortcutAction> actionFor(const KovaShortcutConfiguration& configuration,
                                            const KovaShortcutEvent& event) {
    const KeyCombination pressed{event.keyCode, event.modifierFlagsRawValue};
    const auto found = std::ranges::find_if(kDispatchedActions, [&](KovaShortcutAction action) {
        const KovaShortcut* shortcut = configuration.shortcut(action);
        return shortcut && combinationOf(*shortcut) == pressed;
    });
    return found == kDispatchedActions.end() ? std::nullopt : std::optional(*found);
}

std::vector<KeyCombination> combinationsOf(const KovaShortcutConfiguration& configuration) {
    std::vector<KeyCombination> combinations;
    for (const auto action : kDispatchedActions) {
        if (const KovaShortcut* shortcut = configuration.shortcut(action)) {
            combinations.push_back(combinationOf(*shortcut));
        }
    }
    std::ranges::sort(combinations);
    combinations.erase(std::unique(combinations.begin(), combinations.end()), combinations.end());
    return combinations;
}

LayoutShortcutCoordinator::LayoutShortcutCoordinator(WorkspaceController& workspace,
                                                     const KovaShortcutSettings& shortcuts, KeyMonitorServicing& keys,
                                                     MainQueue& queue, std::function<void()> openPalette) :
    workspace_(workspace),
    shortcuts_(shortcuts), keys_(keys), queue_(queue), openPalette_(std::move(openPalette)) {}

void LayoutShortcutCoordinator::installMonitors() {
    if (hasMonitors()) return;
    globalKeyMonitor_ = keys_.addGlobalMonitor([this](const KeyPress& press) {
        // The press is handled after the work that is queued already. By then the monitors may have been removed.
        queue_.post(lifetime_.guard([this, event = eventOf(press)] {
            if (hasMonitors()) handle(event);
        }));
    });
    localKeyMonitor_ = keys_.addLocalMonitor([this](const KeyPress& press) { return handle(eventOf(press)); });
    configurationChanges_ = shortcuts_.configuration.observe([this](const auto&) { claim(); });
    heldChanges_ = keys_.observeHeldByOthers([this] { noteHeldByOthers(); });
    claim();
}

void LayoutShortcutCoordinator::removeMonitors() {
    globalKeyMonitor_.reset();
    localKeyMonitor_.reset();
    configurationChanges_ = {};
    heldChanges_ = {};
}

void LayoutShortcutCoordinator::claim() {
    if (!*workspace_.state().isPaused) return keys_.claim(combinationsOf(*shortcuts_.configuration));
    KovaShortcutConfiguration resuming;
    resuming.setShortcut(shortcuts_.shortcut(pauseOrResume), pauseOrResume);
    keys_.claim(combinationsOf(resuming));
}

/// Logs each held shortcut once, so that a user can find out why a key does nothing.
void LayoutShortcutCoordinator::noteHeldByOthers() {
    if (*shortcuts_.isRecording) return; // while a shortcut is recorded, no combination is claimed
    const auto held = keys_.heldByOthers();
    for (const auto action : kDispatchedActions) {
        const KovaShortcut* shortcut = shortcuts_.configuration->shortcut(action);
        if (!shortcut) continue;
        const KeyCombination combination = combinationOf(*shortcut);
        if (std::ranges::find(held, combination) == held.end()) continue;
        if (std::ranges::find(heldByOthers_, combination) != heldByOthers_.end()) continue;
        const bool isSystem = keys_.knownHolders() == KnownHolders::systemOnly;
        log(LogLevel::warning, std::string(isSystem ? "the system" : "another program") + " holds " +
                                   shortcutText(*shortcut, keys_.modifierNames()) + ", the shortcut for " +
                                   quoted(title(action)));
    }
    heldByOthers_ = held;
}

bool LayoutShortcutCoordinator::handle(const KovaShortcutEvent& event) {
    if (*shortcuts_.isRecording || event.isRepeat) return false;
    const auto wanted = actionFor(*shortcuts_.configuration, event);
    if (!wanted || (*workspace_.state().isPaused && !actsWhilePaused(*wanted))) return false;
    if (*wanted == openPalette) {
        if (openPalette_) openPalette_();
        return true;
    }
    // An arrangement waits for a poll, so that it includes windows that were opened a moment ago. Shortcuts pressed
    // meanwhile wait as well, so that all are performed in their order.
    const bool mayWait = *wanted == arrangeWindows || waiting_ > 0;
    const auto later = lifetime_.guard([this, action = *wanted] {
        --waiting_;
        if (hasMonitors()) run(workspace_, action);
    });
    if (mayWait && workspace_.awaitCurrent(later)) {
        ++waiting_;
    } else {
        run(workspace_, *wanted);
    }
    return true;
}

} // namespace kova
