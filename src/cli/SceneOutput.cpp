#include "cli/SceneOutput.h"

#include "cli/Output.h"
#include "cli/Table.h"
#include "cli/Terminal.h"

#include <nlohmann/json.hpp>

namespace kova::cli {

using nlohmann::json;

namespace {

constexpr const char* kRulesAreOff = "Rules are off; “kova rules on” lets them act.\n";

std::string text(const json& value, const char* otherwise = "-") {
    return value.is_null() ? otherwise : value.get<std::string>();
}

std::string number(const json& value) {
    return std::to_string(value.get<std::int64_t>());
}

std::string counted(const json& count, const char* one) {
    return number(count) + " " + one + (count == 1 ? "" : "s");
}

std::string quotedName(const json& record) {
    return "“" + printable(record["name"].get<std::string>()) + "”";
}

std::string act(const json& rule) {
    return rule["slot"].is_null() ? text(rule["disposition"]) : "tile " + text(rule["slot"]);
}

std::string criterion(const json& rule) {
    std::string out = text(rule["bundleIdentifier"], "");
    if (!rule["applicationName"].is_null()) out += (out.empty() ? "" : ", ") + text(rule["applicationName"]);
    if (!rule["title"].is_null()) out += (out.empty() ? "" : ", ") + ("“" + text(rule["title"]) + "” in the title");
    return out.empty() ? "-" : out;
}

} // namespace

std::string printScenes(const json& result, const Arguments&) {
    Table table({{"NAME"}, {"CAPTURED"}, {"DISPLAYS", Align::right}, {"WINDOWS", Align::right}, {"ID"}});
    for (const json& scene : result["scenes"]) {
        table.add({(scene["isActive"].get<bool>() ? "* " : "") + text(scene["name"]), localTime(scene["createdAt"]),
                   number(scene["displays"]), number(scene["windows"]), text(scene["id"])});
    }
    return table.isEmpty() ? "There is no scene; “kova scene capture” makes one.\n" : table.text();
}

std::string printScene(const json& result, const Arguments&) {
    const json& scene = result["scene"];
    std::string out =
        quotedName(scene) + ", captured " + localTime(scene["createdAt"]) + ", " + text(scene["id"]) + "\n";
    out += printable("theme " + text(result["theme"]) + ", accent colour " + text(result["accentColor"]) + ", gap " +
                     result["tileInset"].dump()) +
           "\n\n";
    Table displays({{"DISPLAY", Align::right}, {"NAME"}, {"LAYOUT"}});
    for (const json& display : result["displays"]) {
        displays.add({number(display["number"]), text(display["name"]), text(display["layout"])});
    }
    Table windows({{"DISPLAY", Align::right}, {"SLOT"}, {"APPLICATION"}, {"TITLE"}});
    for (const json& window : result["placements"]) {
        std::string slot = text(window["slot"]) + (window["isFront"].get<bool>() ? "" : " (behind)");
        for (const json& covered : window["covers"]) {
            if (covered != window["slot"]) slot += " + " + text(covered);
        }
        windows.add({number(window["display"]), slot, text(window["application"]), text(window["title"])});
    }
    return out + displays.text() + "\n" + (windows.isEmpty() ? "No windows.\n" : windows.text());
}

std::string printDifferences(const json& result, const Arguments&) {
    Table table({{"WHAT"}, {"IN THE SCENE"}, {"NOW"}});
    for (const json& difference : result["differences"]) {
        table.add({text(difference["what"]), text(difference["inScene"]), text(difference["now"])});
    }
    return table.isEmpty() ? "Nothing differs from scene " + quotedName(result["scene"]) + ".\n" : table.text();
}

std::string printRules(const json& result, const Arguments&) {
    Table table({{"NUMBER", Align::right}, {"NAME"}, {"DOES"}, {"ENABLED"}, {"FOR"}});
    for (const json& rule : result["rules"]) {
        table.add({number(rule["number"]), text(rule["name"]), act(rule), rule["isEnabled"].get<bool>() ? "yes" : "no",
                   criterion(rule)});
    }
    const std::string remark = result["isOn"].get<bool>() ? "" : std::string("\n") + kRulesAreOff;
    return table.isEmpty() ? "There is no rule.\n" : table.text() + remark;
}

std::string printAddedRule(const json& result, const Arguments& arguments) {
    return printMessage(result, arguments) + (result["isOn"].get<bool>() ? "" : kRulesAreOff);
}

std::string printSwitchedRule(const json& result, const Arguments&) {
    const json& rule = result["rule"];
    return "Rule " + quotedName(rule) + (rule["isEnabled"].get<bool>() ? " is enabled.\n" : " is disabled.\n");
}

std::string printMovedRule(const json& result, const Arguments&) {
    const json& rule = result["rule"];
    return "Rule " + quotedName(rule) + " is number " + number(rule["number"]) + " of " + number(result["rules"]) +
           ".\n";
}

std::string printDeletedRule(const json& result, const Arguments&) {
    return "Rule " + quotedName(result["rule"]) + " is deleted.\n";
}

std::string printRuleTest(const json& result, const Arguments&) {
    Table table({{"NUMBER", Align::right}, {"RULE"}, {"SAYS"}});
    int place = 0;
    for (const json& reason : result["reasons"]) {
        table.add({std::to_string(++place), text(reason["name"]), text(reason["text"])});
    }
    return printable(text(result["summary"])) + "\n" + (table.isEmpty() ? "" : "\n" + table.text());
}

std::string printRulesSwitch(const json& result, const Arguments&) {
    return result["isOn"].get<bool>() ? "Rules are on: each window is put where they say once.\n" : "Rules are off.\n";
}

std::string printExport(const json& result, const Arguments&) {
    return counted(result["scenes"], "scene") + " and " + counted(result["rules"], "rule") + " written to " +
           printable(text(result["file"])) + "\n";
}

} // namespace kova::cli
