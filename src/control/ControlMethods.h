// The methods of the agent's socket. docs/control-schema.json lists every method and describes its result;
// docs/control.md explains the methods.
#pragma once

#include "control/ControlHandling.h"
#include "control/SystemSetting.h"
#include "support/MainQueue.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kova {

class DiagnosticsServicing;
class KeyMonitorServicing;
class KovaShortcutSettings;
class MenuServing;
class OnboardingWindowControl;
class OverlayServing;
class PermissionControl;
class PreferencesStore;
class SettingsWindowControl;
class URLHandler;
class UserInterfaceDialogs;
class UserInterfaceControl;
class WorkspaceController;

/// The objects on which the methods act. Each of them outlives the `ControlMethods`.
struct ControlContext {
    WorkspaceController& controller;
    URLHandler& urls;
    KovaShortcutSettings& shortcuts;
    PreferencesStore& preferences;
    std::vector<const DiagnosticsServicing*> diagnostics = {}; // the parts whose state the method “doctor” reports
    KeyMonitorServicing* keys = nullptr;                       // null where keys cannot be observed
    MainQueue& queue;
    std::function<void()> quit; // called on the main queue, after the response was sent
    // Absent where the platform has no such setting.
    std::optional<SystemSetting> startAtLogin = {};
    std::optional<SystemSetting> dockAutoHide = {};
    std::function<std::optional<std::string>()> firstSteps = {}; // advice for a new user
    OverlayServing* overlay = nullptr;                           // null: the agent has no overlay
    MenuServing* menu = nullptr;
    UserInterfaceControl* userInterface = nullptr;
    UserInterfaceDialogs* dialogs = nullptr; // null where the platform has dialogs of its own
    // Each of the two functions is empty, or returns null while the window cannot be opened.
    std::function<SettingsWindowControl*()> settingsWindow = {};
    std::function<OnboardingWindowControl*()> onboardingWindow = {};
    PermissionControl* permission = nullptr; // null if no permission is needed
};

/// Main thread only.
class ControlMethods final : public ControlHandling {
  public:
    explicit ControlMethods(ControlContext context);
    ~ControlMethods() override;
    /// A request that arranges windows, names a window or concerns all windows waits for the next poll if windows
    /// changed since the last poll. The request “verify” waits until the frames of the windows were read on the polling
    /// queue.
    [[nodiscard]] bool deferUntilCurrent(const ControlRequest& request, std::function<void()> ready) override;
    /// If the method changes stored data, the response is sent once the data is on disk. If writing failed, the result
    /// has a member "unsaved" with the error.
    void handle(const ControlRequest& request, const std::shared_ptr<ControlPeer>& peer,
                ControlResponder respond) override;

  private:
    class Table;
    std::unique_ptr<Table> table_;
};

} // namespace kova
