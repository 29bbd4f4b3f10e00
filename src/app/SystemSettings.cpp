#include "app/SystemSettings.h"

#include "app/DockAutoHideController.h"
#include "app/LaunchAtLoginController.h"

namespace kova {

namespace {

template <class Controller>
std::vector<Subscription> observe(const Published<bool>& isOn, const Controller& controller,
                                  const std::function<void()>& changed) {
    std::vector<Subscription> subscriptions;
    subscriptions.push_back(isOn.observe([changed](bool) { changed(); }));
    subscriptions.push_back(controller.errorMessage().observe([changed](const auto&) { changed(); }));
    return subscriptions;
}

} // namespace

SystemSetting startAtLoginSetting(LaunchAtLoginController& controller) {
    return {[&controller]() -> SystemSetting::State {
                controller.refreshStatus(); // the user may have changed the state in the system's settings
                return {*controller.startsAtLogin(), *controller.errorMessage(), controller.guidance(), std::nullopt};
            },
            [&controller](bool isOn) { controller.setStartsAtLogin(isOn); },
            [&controller](const auto& changed) { return observe(controller.startsAtLogin(), controller, changed); }};
}

SystemSetting dockAutoHideSetting(DockAutoHideController& controller) {
    return {[&controller]() -> SystemSetting::State {
                return {*controller.hidesSystemDock(), *controller.errorMessage(), std::nullopt,
                        controller.unavailableReason()};
            },
            [&controller](bool isOn) { controller.setHidesSystemDock(isOn); },
            [&controller](const auto& changed) { return observe(controller.hidesSystemDock(), controller, changed); }};
}

} // namespace kova
