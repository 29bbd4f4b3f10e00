// Turns key presses on the whole desktop into operations of the workspace. Main thread only.
#pragma once

#include "commands/KovaShortcutSettings.h"
#include "support/Lifetime.h"
#include "support/MainQueue.h"
#include "workspace/WorkspaceController.h"

#include <functional>
#include <optional>
#include <vector>

namespace kova {

class LayoutShortcutCoordinator {
  public:
    /// The references outlive the coordinator. `openPalette` is empty where there is no palette. The coordinator gets
    /// no key presses before `installMonitors`.
    LayoutShortcutCoordinator(WorkspaceController& workspace, const KovaShortcutSettings& shortcuts,
                              KeyMonitorServicing& keys, MainQueue& queue, std::function<void()> openPalette = {});

    /// Begins to monitor key presses, and claims the configured combinations. No-op while monitors are installed.
    void installMonitors();
    /// Stops monitoring and releases the claimed combinations. No-op without monitors.
    void removeMonitors();
    bool hasMonitors() const { return globalKeyMonitor_ || localKeyMonitor_; }

    /// True if the press is a shortcut, whether its operation was carried out or refused.
    bool handle(const KovaShortcutEvent& event);

  private:
    void claim();
    void noteHeldByOthers();

    WorkspaceController& workspace_;
    const KovaShortcutSettings& shortcuts_;
    KeyMonitorServicing& keys_;
    MainQueue& queue_;
    std::function<void()> openPalette_;
    std::optional<Subscription> globalKeyMonitor_;
    std::optional<Subscription> localKeyMonitor_;
    Subscription configurationChanges_;
    Subscription heldChanges_;
    std::vector<KeyCombination> heldByOthers_; // at the last report of held combinations
    int waiting_ = 0;                          // the number of key presses that wait for a poll
    Lifetime lifetime_;
};

/// The action of a press: the first one whose shortcut has this key and exactly these modifiers. Absent if there is
/// none.
std::optional<KovaShortcutAction> actionFor(const KovaShortcutConfiguration& configuration,
                                            const KovaShortcutEvent& event);
/// The combinations of a configuration that have an effect, sorted, each combination once.
std::vector<KeyCombination> combinationsOf(const KovaShortcutConfiguration& configuration);

} // namespace kova
