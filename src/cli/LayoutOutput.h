// Layouts as drawings for the terminal.
#pragma once

#include "cli/Arguments.h"

#include <nlohmann/json_fwd.hpp>

#include <string>

namespace kova::cli {

std::string printLayout(const nlohmann::json& result, const Arguments& arguments);
std::string printLayoutFit(const nlohmann::json& result, const Arguments& arguments);
std::string printLayoutList(const nlohmann::json& result, const Arguments& arguments);
std::string printPreference(const nlohmann::json& result, const Arguments& arguments);
std::string printLayoutChange(const nlohmann::json& result, const Arguments& arguments);

} // namespace kova::cli
