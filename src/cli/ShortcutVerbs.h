// The verbs for keyboard shortcuts. Whether another program holds what was set is known a moment after it was set, and
// what is recorded whenever a person presses a key.
#pragma once

#include "cli/Verbs.h"

#include <nlohmann/json_fwd.hpp>

#include <string>

namespace kova::cli {

ExitCode runShortcutSet(const Verb& verb, const Arguments& arguments, const nlohmann::json& parameters);
ExitCode runShortcutRecord(const Verb& verb, const Arguments& arguments, const nlohmann::json& parameters);

std::string printShortcuts(const nlohmann::json& result, const Arguments& arguments);
std::string printShortcut(const nlohmann::json& result, const Arguments& arguments);

} // namespace kova::cli
