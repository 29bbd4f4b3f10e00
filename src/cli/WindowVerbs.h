// The texts that verbs for single windows print, and `kova verify`.
#pragma once

#include "cli/Verbs.h"

#include <nlohmann/json_fwd.hpp>

#include <string>

namespace kova::cli {

std::string printWindowPlan(const nlohmann::json& result, const Arguments& arguments);
std::string printWindowList(const nlohmann::json& result, const Arguments& arguments);
std::string printFocus(const nlohmann::json& result, const Arguments& arguments);
std::string printWindowAt(const nlohmann::json& result, const Arguments& arguments);
std::string printVerification(const nlohmann::json& result, const Arguments& arguments);

/// Waits for placements that are under way. Returns `refused` if a window does not have the requested frame.
ExitCode runVerify(const Verb& verb, const Arguments& arguments);

} // namespace kova::cli
