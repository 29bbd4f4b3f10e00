// A setting of the system that the agent switches for the user: whether the agent starts at login, or whether the Dock
// hides itself.
#pragma once

#include "support/Published.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace kova {

/// Main thread only. No function waits.
struct SystemSetting {
    struct State {
        bool isOn = false;
        std::optional<std::string> problem;           // why the setting differs from the user's choice
        std::optional<std::string> guidance;          // additional advice
        std::optional<std::string> unavailableReason; // why this desktop has no such setting; then the rest is unused
    };
    std::function<State()> state;
    /// Changes the setting. Afterwards `state` has the new value, or the problem if it is known at once.
    std::function<void(bool isOn)> set;
    /// Calls `changed` when the state may have changed, until the returned subscriptions are destroyed. May be empty.
    std::function<std::vector<Subscription>(const std::function<void()>& changed)> observe = {};
};

} // namespace kova
