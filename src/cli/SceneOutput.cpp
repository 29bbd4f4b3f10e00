#include "cli/SceneOutput.h"

#include "cli/Output.h"
#include "cli/Table.h"
#include "cli/Terminal.h"
#include "support/Quoted.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace kova::cli {

using nlohmann::json;

namespace {

constexpr const char* kRulesAreOff = "Rules are off; “kova rules on” lets them act.\n";

std::string text(const json& value, const char* otherwise = "-") {
    return value.is_null() ? otherwise : value.get<std::string>();
}

std::string wholeNumber(const json& value) {
    return std::to_string(value.get<std::int64_t>());
}

std::string counted(const json& count, const char* one) {
    return wholeNumber(count) + " " + one + (count == 1 ? "" : "s");
}

std::string quotedName(const json& record) {
    return quoted(printable(record.at("name").get<std::string>()));
}

std::string dispositionOf(const json& rule) {
    return rule.at("slot").is_null() ? text(rule.at("disposition")) : "tile " + text(rule.at("slot"));
}

std::string criterion(const json& rule) {
    std::string out = text(rule.at("bundleIdentifier"), "");
    if (!rule.at("applicationName").is_null()) out += (out.empty() ? "" : ", ") + text(rule.at("applicationName"));
    if (!rule.at("title").is_null())
        out += (out.empty() ? "" : ", ") + (quoted(text(rule.at("title"))) + " in the title");
    return out.empty() ? "-" : out;
}

/// The number of open windows for which the rule decides.
std::string windowsDecided(const json& rule) {
    const json& windows = rule.at("windows");
    if (windows.is_null()) return "-";
    return std::to_string(
        std::ranges::count_if(windows, [](const json& window) { return window.at("decides").get<bool>(); }));
}

} // namespace

std::string printScenes(const json& result, const Arguments&) {
    Table table({{"NAME"}, {"CAPTURED"}, {"DISPLAYS", Align::right}, {"WINDOWS", Align::right}, {"ID"}});
    for (const json& scene : result.at("scenes")) {
        table.add({(scene.at("isActive").get<bool>() ? "* " : "") + text(scene.at("name")),
                   localTime(scene.at("createdAt")), wholeNumber(scene.at("displays")),
                   wholeNumber(scene.at("windows")), text(scene.at("id"))});
    }
    return table.isEmpty() ? "There is no scene; “kova scene capture” makes one.\n" : table.text();
}

std::string printScene(const json& result, const Arguments&) {
    const json& scene = result.at("scene");
    std::string out =
        quotedName(scene) + ", captured " + localTime(scene.at("createdAt")) + ", " + text(scene.at("id")) + "\n";
    out += printable("theme " + text(result.at("theme")) + ", accent color " + text(result.at("accentColor")) +
                     ", gap " + result.at("tileInset").dump()) +
           "\n\n";
    Table displays({{"DISPLAY", Align::right}, {"NAME"}, {"LAYOUT"}});
    for (const json& display : result.at("displays")) {
        displays.add({wholeNumber(display.at("number")), text(display.at("name")), text(display.at("layout"))});
    }
    Table windows({{"DISPLAY", Align::right}, {"SLOT"}, {"APPLICATION"}, {"TITLE"}});
    for (const json& window : result.at("placements")) {
        std::string slot = text(window.at("slot")) + (window.at("isFront").get<bool>() ? "" : " (behind)");
        for (const json& covered : window.at("covers")) {
            if (covered != window.at("slot")) slot += " + " + text(covered);
        }
        windows.add(
            {wholeNumber(window.at("display")), slot, text(window.at("application")), text(window.at("title"))});
    }
    return out + displays.text() + "\n" + (windows.isEmpty() ? "No windows.\n" : windows.text());
}

std::string printOpenedScene(const json& result, const Arguments& arguments) {
    std::string out = printable(text(result.at("message"), "Done.")) + "\n";
    const json& report = result.at("report");
    const auto list = [&](const char* what, const char* key) {
        std::string names;
        for (const json& name : report.at(key)) names += (names.empty() ? "" : ", ") + text(name);
        if (!names.empty()) out += std::string(what) + printable(names) + "\n";
    };
    if (!arguments.has("wait")) return out;
    list("were there      ", "adopted");
    list("launched        ", "launched");
    list("came later      ", "placed");
    list("never came      ", "missing");
    list("without a tile  ", "withoutTile");
    return out;
}

std::string printDifferences(const json& result, const Arguments&) {
    Table table({{"WHAT"}, {"IN THE SCENE"}, {"NOW"}});
    for (const json& difference : result.at("differences")) {
        table.add({text(difference.at("what")), text(difference.at("inScene")), text(difference.at("now"))});
    }
    return table.isEmpty() ? "Nothing differs from scene " + quotedName(result.at("scene")) + ".\n" : table.text();
}

std::string printRules(const json& result, const Arguments&) {
    Table table({{"NUMBER", Align::right}, {"NAME"}, {"DOES"}, {"ENABLED"}, {"WINDOWS", Align::right}, {"FOR"}});
    for (const json& rule : result.at("rules")) {
        table.add({wholeNumber(rule.at("number")), text(rule.at("name")), dispositionOf(rule),
                   rule.at("isEnabled").get<bool>() ? "yes" : "no", windowsDecided(rule), criterion(rule)});
    }
    const std::string remark = result.at("isOn").get<bool>() ? "" : std::string("\n") + kRulesAreOff;
    return table.isEmpty() ? "There is no rule.\n" : table.text() + remark;
}

std::string printAddedRule(const json& result, const Arguments& arguments) {
    return printMessage(result, arguments) + (result.at("isOn").get<bool>() ? "" : kRulesAreOff);
}

std::string printChangedRule(const json& result, const Arguments&) {
    const json& rule = result.at("rule");
    return "Rule " + quotedName(rule) + ": " + dispositionOf(rule) + ", for " + criterion(rule) + "\n";
}

std::string printSwitchedRule(const json& result, const Arguments&) {
    const json& rule = result.at("rule");
    return "Rule " + quotedName(rule) + (rule.at("isEnabled").get<bool>() ? " is enabled.\n" : " is disabled.\n");
}

std::string printMovedRule(const json& result, const Arguments&) {
    const json& rule = result.at("rule");
    return "Rule " + quotedName(rule) + " is number " + wholeNumber(rule.at("number")) + " of " +
           wholeNumber(result.at("rules")) + ".\n";
}

std::string printDeletedRule(const json& result, const Arguments&) {
    return "Rule " + quotedName(result.at("rule")) + " is deleted.\n";
}

std::string printRuleTest(const json& result, const Arguments&) {
    Table table({{"NUMBER", Align::right}, {"RULE"}, {"SAYS"}});
    int place = 0;
    for (const json& reason : result.at("reasons")) {
        table.add({std::to_string(++place), text(reason.at("name")), text(reason.at("text"))});
    }
    return printable(text(result.at("summary"))) + "\n" + (table.isEmpty() ? "" : "\n" + table.text());
}

std::string printRulesSwitch(const json& result, const Arguments&) {
    return result.at("isOn").get<bool>() ? "Rules are on: each new window is put, once, where they say.\n"
                                         : "Rules are off.\n";
}

std::string printExport(const json& result, const Arguments&) {
    return counted(result.at("scenes"), "scene") + " and " + counted(result.at("rules"), "rule") + " written to " +
           printable(text(result.at("file"))) + "\n";
}

std::string printImport(const json& result, const Arguments& arguments) {
    std::string out = printable(text(result.at("message"), "Done.")) + "\n";
    if (!arguments.request.value("dryRun", false)) return out;
    for (const auto& [key, kind] : {std::pair("scenes", "scene"), std::pair("rules", "rule")}) {
        for (const json& name : result.at("added").at(key)) {
            out += std::string("  ") + kind + " " + quoted(printable(name.get<std::string>())) + "\n";
        }
    }
    return out;
}

} // namespace kova::cli
