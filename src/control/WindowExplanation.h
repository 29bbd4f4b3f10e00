// Why a window is where it is, in plain words.
#pragma once

#include "workspace/WorkspaceController.h"

#include <string>
#include <vector>

namespace kova {

/// One sentence a line.
std::vector<std::string> explainWindow(const WorkspaceController& controller, const ManagedWindow& window);

} // namespace kova
