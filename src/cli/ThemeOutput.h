// Themes and accent colors as text, with a patch of each color if the terminal has colors.
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
