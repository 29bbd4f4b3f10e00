// Results of the agent's methods as text for the terminal.
#pragma once

#include "cli/Arguments.h"

#include <nlohmann/json_fwd.hpp>

#include <string>
#include <string_view>

namespace kova::cli {

std::string printArrangement(const nlohmann::json& result, const Arguments& arguments);
std::string printArrangeAfterLaunch(const nlohmann::json& result, const Arguments& arguments);
std::string printMessage(const nlohmann::json& result, const Arguments& arguments);
std::string printHistory(const nlohmann::json& result, const Arguments& arguments);
std::string printDividers(const nlohmann::json& result, const Arguments& arguments);
std::string printDividerDrag(const nlohmann::json& result, const Arguments& arguments);
std::string printDividerReset(const nlohmann::json& result, const Arguments& arguments);
std::string printInset(const nlohmann::json& result, const Arguments& arguments);
std::string printDisplays(const nlohmann::json& result, const Arguments& arguments);
std::string printWindows(const nlohmann::json& result, const Arguments& arguments);
std::string printTiles(const nlohmann::json& result, const Arguments& arguments);
std::string printState(const nlohmann::json& result, const Arguments& arguments);
std::string printExplanation(const nlohmann::json& result, const Arguments& arguments);
std::string printStatus(const nlohmann::json& result, const Arguments& arguments);
std::string printStartAtLogin(const nlohmann::json& result, const Arguments& arguments);
std::string printDockAutoHide(const nlohmann::json& result, const Arguments& arguments);
std::string printUpdates(const nlohmann::json& result, const Arguments& arguments);
std::string printPermission(const nlohmann::json& result, const Arguments& arguments);
std::string printQuit(const nlohmann::json& result, const Arguments& arguments);

/// "2024-02-29T12:34:56Z" in local time; any other text unchanged.
std::string localTime(const std::string& utc);
/// A line for each section of the state in `sections`.
std::string printChanges(std::uint64_t sequence, const nlohmann::json& sections);
/// A line for each check.
std::string printChecks(const nlohmann::json& checks);

} // namespace kova::cli
