// Scenes and rules as text for the terminal.
#pragma once

#include "cli/Arguments.h"

#include <nlohmann/json_fwd.hpp>

#include <string>

namespace kova::cli {

std::string printScenes(const nlohmann::json& result, const Arguments& arguments);
std::string printScene(const nlohmann::json& result, const Arguments& arguments);
std::string printOpenedScene(const nlohmann::json& result, const Arguments& arguments);
std::string printDifferences(const nlohmann::json& result, const Arguments& arguments);
std::string printRules(const nlohmann::json& result, const Arguments& arguments);
std::string printAddedRule(const nlohmann::json& result, const Arguments& arguments);
std::string printChangedRule(const nlohmann::json& result, const Arguments& arguments);
std::string printSwitchedRule(const nlohmann::json& result, const Arguments& arguments);
std::string printMovedRule(const nlohmann::json& result, const Arguments& arguments);
std::string printDeletedRule(const nlohmann::json& result, const Arguments& arguments);
std::string printRuleTest(const nlohmann::json& result, const Arguments& arguments);
std::string printRulesSwitch(const nlohmann::json& result, const Arguments& arguments);
std::string printExport(const nlohmann::json& result, const Arguments& arguments);
std::string printImport(const nlohmann::json& result, const Arguments& arguments);

} // namespace kova::cli
