// Decides when a new user is shown what KOVA does and which permission it needs: at each start until the permission
// has been granted once, and on request. kova-ui shows a window for this; where kova-ui does not run, the desktop's own
// dialog is shown. A section of the overlay's contents says whether the window is shown, so that a kova-ui that starts
// later shows it. Main thread only.
#pragma once

#include "app/DockAutoHideController.h"
#include "app/KovaOnboardingState.h"
#include "app/OnboardingServicing.h"
#include "app/OverlayBoard.h"
#include "control/OnboardingWindowControl.h"
#include "control/PermissionControl.h"
#include "control/UserInterfaceControl.h"
#include "workspace/WorkspaceController.h"

#include <cstdint>
#include <optional>
#include <string>

namespace kova {

class KovaOnboardingWindowController final : public OnboardingWindowControl {
  public:
    /// All members outlive the controller.
    struct Services {
        const WorkspaceController& workspace;
        KovaOnboardingState& state;
        PermissionControl& permission;
        OverlayBoard& board;
        DockAutoHideController* dock = nullptr;        // null: there is no such setting
        OnboardingServicing* dialog = nullptr;         // null: no permission is needed
        UserInterfaceControl* userInterface = nullptr; // null: no program draws windows
    };
    explicit KovaOnboardingWindowController(const Services& services);
    ~KovaOnboardingWindowController() override;
    KovaOnboardingWindowController(const KovaOnboardingWindowController&) = delete;
    KovaOnboardingWindowController& operator=(const KovaOnboardingWindowController&) = delete;

    /// Call at the agent's start. Shows the onboarding unless it is complete; it counts as complete if the permission
    /// is already granted.
    void showIfNeeded();
    /// Call when the permission was granted: later starts do not show the onboarding. The dialog closes; the window
    /// continues with the pages for settings and a first arrangement.
    void permissionWasGranted();

    std::optional<std::string> show() override;
    /// If the window is closed before the permission was granted, the next start shows it again.
    void close() override;
    /// Whether the window is shown; the dialog does not count.
    bool isShown() const { return isShown_; }

  private:
    std::optional<OnboardingOffer> dockOffer() const;

    const Services services_;
    bool isShown_ = false;       // the window
    std::uint64_t requests_ = 0; // count since the agent's start
};

} // namespace kova
