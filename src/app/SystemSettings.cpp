#include "app/SystemSettings.h"

#include "app/DockAutoHideController.h"
#include "app/LaunchAtLoginController.h"

namespace kova {

SystemSetting startAtLoginSetting(LaunchAtLoginController& controller) {
    return {[&controller]() -> SystemSetting::State {
                controller.refreshStatus(); // somebody may have changed it by hand
                return {*controller.startsAtLogin(), *controller.errorMessage(), controller.guidance(), std::nullopt};
            },
            [&controller](bool isOn) { controller.setStartsAtLogin(isOn); }};
}

SystemSetting dockAutoHideSetting(DockAutoHideController& controller) {
    return {[&controller]() -> SystemSetting::State {
                return {*controller.hidesSystemDock(), *controller.errorMessage(), std::nullopt, controller.absence()};
            },
            [&controller](bool isOn) { controller.setHidesSystemDock(isOn); }};
}

} // namespace kova
