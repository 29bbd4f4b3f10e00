// Texts about applications that are listed, launched and ended.
#pragma once

#include "cli/Arguments.h"

#include <nlohmann/json_fwd.hpp>

#include <string>

namespace kova::cli {

std::string printApplications(const nlohmann::json& result, const Arguments& arguments);
std::string printLaunch(const nlohmann::json& result, const Arguments& arguments);
std::string printLearned(const nlohmann::json& result, const Arguments& arguments);
std::string printForceQuit(const nlohmann::json& result, const Arguments& arguments);

} // namespace kova::cli
