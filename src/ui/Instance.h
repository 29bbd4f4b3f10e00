// One kova-ui at a time draws for an agent.
#pragma once

#include <string>

namespace kova::ui {

/// True when another kova-ui, which the agent has started, runs already: it has received the request to show the
/// settings. Waits for the agent, for half a second at most.
bool isLeftToOtherInstance(const std::string& socketPath);

} // namespace kova::ui
