// The verbs for keyboard shortcuts. The verbs that set a combination wait until the agent has found out whether another
// program holds it.
#pragma once

#include "cli/Verbs.h"

#include <nlohmann/json_fwd.hpp>

#include <string>

namespace kova::cli {

ExitCode runShortcutSet(const Verb& verb, const Arguments& arguments);
ExitCode runShortcutRecord(const Verb& verb, const Arguments& arguments);

std::string printShortcuts(const nlohmann::json& result, const Arguments& arguments);
std::string printShortcutsRestored(const nlohmann::json& result, const Arguments& arguments);
std::string printShortcut(const nlohmann::json& result, const Arguments& arguments);

} // namespace kova::cli
