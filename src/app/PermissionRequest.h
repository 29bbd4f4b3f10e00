// Shows the system's dialog for the permission to manage windows, or its settings. Main thread only.
#pragma once

#include "app/OnboardingServicing.h"
#include "control/PermissionControl.h"
#include "windowing/AccessibilityServicing.h"

#include <utility>

namespace kova {

class PermissionRequest final : public PermissionControl {
  public:
    /// `system` is null on desktops without such a permission. Both arguments outlive the request.
    PermissionRequest(AccessibilityServicing& accessibility, OnboardingServicing* system) :
        accessibility_(accessibility), system_(system) {}

    bool canAsk() const override { return system_ != nullptr; }
    void ask() override {
        if (!system_) return;
        // The system shows its dialog once; afterwards the user can grant the permission only in the system
        // settings.
        const bool needsSettings = std::exchange(hasAsked_, true) || accessibility_.stalePermission();
        if (needsSettings) return system_->openPermissionSettings();
        (void)accessibility_.requestTrust(true);
    }

  private:
    AccessibilityServicing& accessibility_;
    OnboardingServicing* system_;
    bool hasAsked_ = false; // true once the system has shown its permission dialog
};

} // namespace kova
