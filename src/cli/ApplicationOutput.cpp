#include "cli/ApplicationOutput.h"

#include "cli/Table.h"
#include "cli/Terminal.h"

#include <nlohmann/json.hpp>

namespace kova::cli {

using nlohmann::json;

std::string printApplications(const json& result, const Arguments&) {
    Table table({{"NAME"}, {"ID"}});
    for (const json& application : result.at("applications")) table.add({application.at("name"), application.at("id")});
    return table.isEmpty() ? "No application can be launched here.\n" : table.text();
}

std::string printLaunch(const json& result, const Arguments&) {
    return printable(result.at("application").at("name").get<std::string>() + " is launched into " +
                     result.at("tile").at("name").get<std::string>()) +
           "\n";
}

std::string printLearned(const json& result, const Arguments&) {
    Table table({{"NAME"}, {"ROLE"}, {"MINIMUM SIZE", Align::right}, {"TILES"}});
    for (const json& application : result.at("applications")) {
        const json& minimum = application.at("minimumSize");
        std::string tiles;
        const auto add = [&](const std::string& tile) { tiles += (tiles.empty() ? "" : ", ") + tile; };
        for (const json& slot : application.at("preferredSlots")) add(slot.get<std::string>() + " (preferred)");
        for (const json& place : application.at("places")) {
            const std::string layout = place.at("layout").at("name");
            if (place.at("isUsual").get<bool>()) add(place.at("slot").get<std::string>() + " of " + layout);
        }
        table.add({application.at("name"), application.at("role"),
                   minimum.is_null() ? "-" : minimum.at("width").dump() + "x" + minimum.at("height").dump(),
                   tiles.empty() ? "-" : tiles});
    }
    return table.isEmpty() ? "Nothing was learned of any application yet.\n" : table.text();
}

std::string printForceQuit(const json& result, const Arguments&) {
    std::string out = "Force quit:\n";
    for (const json& application : result.at("applications")) {
        const json& name = application.at("name");
        out += "  " + printable(name.is_null() ? "Unknown Application" : name.get<std::string>()) + "\n";
    }
    for (const json& refusal : result.at("refused")) out += printable(refusal.get<std::string>()) + "\n";
    return out;
}

} // namespace kova::cli
