#include "cli/UserInterfaceOutput.h"

#include "cli/Table.h"
#include "cli/Terminal.h"
#include "support/Quoted.h"

#include <nlohmann/json.hpp>

namespace kova::cli {

namespace {

using nlohmann::json;

void addEntries(Table& table, const json& entries, const std::string& submenu) {
    for (const json& entry : entries) {
        const std::string title = entry.at("title");
        if (entry.at("kind") == "submenu") addEntries(table, entry.at("entries"), submenu + title + " ▸ ");
        if (entry.at("kind") != "command") continue;
        const std::string state = entry.at("isChecked").get<bool>() ? "on" : "";
        table.add({entry.at("id"), entry.at("isEnabled").get<bool>() ? state : "not now",
                   entry.at("shortcut").is_string() ? entry.at("shortcut").get<std::string>() : "", submenu + title});
    }
}

} // namespace

std::string printUserInterface(const json& result, const Arguments&) {
    std::string text;
    if (result.at("isRunning").get<bool>()) {
        text = "kova-ui runs (process " + std::to_string(result.at("process").get<int>()) + ").\n";
    } else {
        text = result.at("isOn").get<bool>() ? "kova-ui does not run.\n" : "kova-ui is switched off.\n";
    }
    if (result.at("problem").is_string()) text += printable(result.at("problem").get<std::string>()) + ".\n";
    return text;
}

std::string printShown(const json& result, const Arguments&) {
    return "kova-ui was asked to open the " + result.at("what").get<std::string>() + ".\n";
}

std::string printHidden(const json& result, const Arguments&) {
    return "kova-ui was asked to close the " + result.at("what").get<std::string>() + ".\n";
}

std::string printSettingsShown(const json& result, const Arguments&) {
    const bool isNamed = result.at("pane").is_string();
    return "kova-ui was asked to open the settings" +
           (isNamed ? " at " + quoted(result.at("pane").get<std::string>()) + ".\n" : ".\n");
}

std::string printMenu(const json& result, const Arguments&) {
    Table table({{"ENTRY"}, {"STATE"}, {"KEYS"}, {"TITLE"}});
    addEntries(table, result.at("entries"), "");
    return table.text();
}

} // namespace kova::cli
