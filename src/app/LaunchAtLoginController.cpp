#include "app/LaunchAtLoginController.h"

#include "persistence/PreferenceKeys.h"
#include "persistence/StoredValues.h"
#include "support/Log.h"

namespace kova {

LaunchAtLoginController::LaunchAtLoginController(LaunchAtLoginServicing& service, PreferencesStore& defaults) :
    service_(service), defaults_(defaults),
    startsAtLogin_(storedBoolean(defaults, preferenceKey::startAtLogin).value_or(false)) {}

void LaunchAtLoginController::setStartsAtLogin(bool starts) {
    requested_ = starts;
    defaults_.setValue(preferenceKey::startAtLogin, starts); // the user's choice, whether the system grants it or not
    const auto problem = starts ? service_.registerAtLogin() : service_.unregisterAtLogin();
    if (problem) {
        log(LogLevel::error, "Unable to update KOVA login item: " + *problem);
        refreshStatus(); // the switch shows the system's state, not the request
        errorMessage_.set(problem);
        return;
    }
    log(LogLevel::note, starts ? "KOVA registered as a login item" : "KOVA removed as a login item");
    errorMessage_.set(std::nullopt);
    startsAtLogin_.set(starts);
    if (!starts || service_.status() != LaunchAtLoginStatus::requiresApproval) return;
    startsAtLogin_.set(false);
    errorMessage_.set(service_.guidance());
}

void LaunchAtLoginController::refreshStatus() {
    // The system does not start a program that the user still has to approve.
    startsAtLogin_.set(service_.status() == LaunchAtLoginStatus::enabled);
    // The user has approved the request, or made the same change in the system's settings.
    if (requested_ == *startsAtLogin_) errorMessage_.set(std::nullopt);
}

} // namespace kova
