// Decides when a new user is shown what KOVA does and which permission it needs: at each start until the permission
// was there once, and on request. The window is kova-ui's where that program runs, else the desktop's own dialog. That
// kova-ui's window is shown is a section of the overlay's contents, so that a kova-ui which starts later, or again,
// shows it. Main thread only.
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
    /// All of it outlives the controller.
    struct Services {
        const WorkspaceController& workspace;
        KovaOnboardingState& state;
        PermissionControl& permission;
        OverlayBoard& board;
        DockAutoHideController* dock = nullptr;        // null: there is no such setting
        OnboardingServicing* dialog = nullptr;         // null: there is no permission to ask for
        UserInterfaceControl* userInterface = nullptr; // null: no program draws windows
    };
    explicit KovaOnboardingWindowController(const Services& services);
    ~KovaOnboardingWindowController() override;
    KovaOnboardingWindowController(const KovaOnboardingWindowController&) = delete;
    KovaOnboardingWindowController& operator=(const KovaOnboardingWindowController&) = delete;

    /// At a start: a user who has given the permission already needs no onboarding, ever; another one gets it.
    void showIfNeeded();
    /// The permission was given: the onboarding is not shown at a start any more. The dialog has nothing more to say
    /// then; the window goes on with what can be set and tried.
    void complete();

    std::optional<std::string> show() override;
    /// What is closed before the permission is there is shown again at the next start.
    void close() override;
    /// The window, not the dialog.
    bool isShown() const { return isShown_; }

  private:
    std::optional<OnboardingOffer> dockOffer() const;

    const Services services_;
    bool isShown_ = false;       // the window
    std::uint64_t requests_ = 0; // since the start
};

} // namespace kova
