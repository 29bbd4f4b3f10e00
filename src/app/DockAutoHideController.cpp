#include "app/DockAutoHideController.h"

#include "persistence/PreferenceKeys.h"
#include "persistence/StoredValues.h"
#include "support/Log.h"

#include <utility>

namespace kova {

DockAutoHideController::DockAutoHideController(DockAutoHideServicing& service, PreferencesStore& defaults) :
    service_(service), defaults_(defaults),
    hidesSystemDock_(storedBoolean(defaults, preferenceKey::hideSystemDock).value_or(false)),
    isPreferenceConfigured_(storedBoolean(defaults, preferenceKey::hideSystemDock).has_value()) {}

template <class Callback>
auto DockAutoHideController::ifNewest(Callback callback) {
    return lifetime_.guard([this, request = ++request_, callback = std::move(callback)](const auto& result) {
        if (request == request_) callback(result);
    });
}

void DockAutoHideController::setHidesSystemDock(bool hides) {
    if (auto reason = service_.unavailableReason()) return errorMessage_.set(std::move(reason));
    defaults_.setValue(preferenceKey::hideSystemDock, hides);
    isPreferenceConfigured_.set(true);
    hidesSystemDock_.set(hides);
    applyDockPreference();
}

void DockAutoHideController::applyDockPreference() {
    if (service_.unavailableReason()) return;
    errorMessage_.set(std::nullopt);
    const bool hides = *hidesSystemDock_;
    service_.readAutoHide(ifNewest([this, hides](const std::variant<bool, DockAutoHideServiceError>& state) {
        if (const auto* error = std::get_if<DockAutoHideServiceError>(&state)) return fail(*error);
        if (std::get<bool>(state) != hides) write(hides);
    }));
}

void DockAutoHideController::write(bool hides) {
    service_.writeAutoHide(hides, ifNewest([this, hides](const std::optional<DockAutoHideServiceError>& error) {
                               if (error) return fail(*error);
                               log(LogLevel::note,
                                   std::string("macOS Dock auto-hide set to ") + (hides ? "true" : "false"));
                           }));
}

void DockAutoHideController::refreshDockState() {
    if (service_.unavailableReason()) return;
    service_.readAutoHide(ifNewest([this](const std::variant<bool, DockAutoHideServiceError>& state) {
        if (const auto* error = std::get_if<DockAutoHideServiceError>(&state)) return fail(*error);
        hidesSystemDock_.set(std::get<bool>(state));
    }));
}

void DockAutoHideController::fail(const DockAutoHideServiceError& error) {
    log(LogLevel::error, error.description());
    errorMessage_.set(error.description());
}

} // namespace kova
