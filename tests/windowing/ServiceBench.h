// The window service on a simulated desktop, without a workspace.
#pragma once

#include "platform/simulated/SimulatedDesktop.h"
#include "windowing/AccessibilityWindowService.h"

#include <stdexcept>

namespace kova {

struct ServiceBench {
    ServiceBench() {
        desktop.addDisplay({.name = "Left"});
        desktop.launch("Mail");
    }

    ManagedWindow managed(std::string_view label) const {
        for (auto& window : service.enumerateWindows().listed) {
            if (window.id == desktop.windowIDOf(label)) return window;
        }
        throw std::out_of_range("not listed: " + std::string(label));
    }
    std::string frameOf(std::string_view label) const { return describeFrame(desktop.window(label).frame); }

    SimulatedDesktop desktop;
    std::shared_ptr<ChangeNotifications> changes = std::make_shared<ChangeNotifications>(desktop);
    AccessibilityWindowService service{desktop, desktop, desktop, changes, desktop.queue()};
};

} // namespace kova
