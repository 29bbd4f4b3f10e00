// The state of kova-ui, and the menu, as text for the terminal.
#pragma once

#include "cli/Arguments.h"

#include <nlohmann/json_fwd.hpp>

#include <string>

namespace kova::cli {

std::string printUserInterface(const nlohmann::json& result, const Arguments& arguments);
std::string printShown(const nlohmann::json& result, const Arguments& arguments);
std::string printHidden(const nlohmann::json& result, const Arguments& arguments);
std::string printSettingsShown(const nlohmann::json& result, const Arguments& arguments);
std::string printMenu(const nlohmann::json& result, const Arguments& arguments);

} // namespace kova::cli
