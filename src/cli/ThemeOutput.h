// Themes and accent colours as people read them, with a patch of each colour where the terminal has colours.
#pragma once

#include "cli/Arguments.h"

#include <nlohmann/json_fwd.hpp>

#include <string>

namespace kova::cli {

std::string printThemes(const nlohmann::json& result, const Arguments& arguments);
std::string printTheme(const nlohmann::json& result, const Arguments& arguments);
std::string printAccentColors(const nlohmann::json& result, const Arguments& arguments);
std::string printAccentColor(const nlohmann::json& result, const Arguments& arguments);
std::string printThemeBackgroundSwitch(const nlohmann::json& result, const Arguments& arguments);
std::string printBrainSwitch(const nlohmann::json& result, const Arguments& arguments);
std::string printBringForwardSwitch(const nlohmann::json& result, const Arguments& arguments);
std::string printTileBackgroundsSwitch(const nlohmann::json& result, const Arguments& arguments);

} // namespace kova::cli
