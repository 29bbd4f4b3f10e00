// A setting of the system that the agent manages for the user: whether it starts at login, whether the Dock hides
// itself.
#pragma once

#include "support/Published.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace kova {

/// Main thread; nothing here waits.
struct SystemSetting {
    struct State {
        bool isOn = false;
        std::optional<std::string> problem;           // why it differs from the user's choice
        std::optional<std::string> guidance;          // additional advice
        std::optional<std::string> unavailableReason; // why this desktop has no such setting; then the rest is unused
    };
    std::function<State()> state;
    /// Changes the setting. Afterwards `state` has the new value, or the problem if it is known at once.
    std::function<void(bool isOn)> set;
    /// Calls back when the state may have changed, until the result ends.
    std::function<std::vector<Subscription>(const std::function<void()>& changed)> observe = {};
};

} // namespace kova
