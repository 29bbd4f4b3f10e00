// Ensures that an agent has only one kova-ui.
#pragma once

#include <string>

namespace kova::ui {

/// If the agent already has another kova-ui, makes it show the settings and returns true; then this process should end.
/// Waits at most half a second for each response of the agent.
bool activateRunningInstance(const std::string& socketPath);

} // namespace kova::ui
