#include "app/KovaOnboardingWindowController.h"

#include "app/UserInterfaceWindows.h"

#include <utility>

namespace kova {

KovaOnboardingWindowController::KovaOnboardingWindowController(const Services& services) : services_(services) {
    services_.board.provide(OverlaySection::onboardingWindow, [this](OverlayContents& out) {
        out.windows.onboarding =
            isShown_ ? std::optional(OverlayShownWindow{.pane = {}, .request = requests_}) : std::nullopt;
    });
}

KovaOnboardingWindowController::~KovaOnboardingWindowController() {
    close();
    services_.board.close(OverlaySection::onboardingWindow);
}

void KovaOnboardingWindowController::showIfNeeded() {
    if (*services_.state.isCompleted()) return;
    if (*services_.workspace.state().permissionState == AccessibilityPermissionState::granted) {
        services_.state.complete();
    } else if (services_.dialog) {
        if (!show().has_value()) return; // kova-ui shows it
        services_.dialog->showOnboarding(dockOffer(), [this] { services_.permission.ask(); });
    }
}

void KovaOnboardingWindowController::permissionWasGranted() {
    if (*services_.state.isCompleted()) return;
    services_.state.complete();
    // The desktop's dialog only asks for the permission, which is granted now.
    if (services_.dialog) services_.dialog->closeOnboarding();
}

std::optional<std::string> KovaOnboardingWindowController::show() {
    if (auto problem = ensureUserInterface(services_.board, services_.userInterface)) return problem;
    isShown_ = true;
    ++requests_;
    services_.board.refresh(OverlaySection::onboardingWindow);
    return std::nullopt;
}

void KovaOnboardingWindowController::close() {
    if (services_.dialog) services_.dialog->closeOnboarding();
    if (std::exchange(isShown_, false)) services_.board.refresh(OverlaySection::onboardingWindow);
}

std::optional<OnboardingOffer> KovaOnboardingWindowController::dockOffer() const {
    DockAutoHideController* dock = services_.dock;
    if (!dock || dock->unavailableReason()) return std::nullopt;
    return OnboardingOffer{.title = "Hide the Dock Automatically",
                           .text = "Optional. KOVA leaves your current Dock behavior untouched unless you change this "
                                   "option. Changing it briefly restarts the Dock.",
                           .isOn = [dock] { return *dock->hidesSystemDock(); },
                           .choose = [dock](bool hides) { dock->setHidesSystemDock(hides); }};
}

} // namespace kova
