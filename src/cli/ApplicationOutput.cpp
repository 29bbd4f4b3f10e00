#include "cli/ApplicationOutput.h"

#include "cli/Table.h"
#include "cli/Terminal.h"

#include <nlohmann/json.hpp>

namespace kova::cli {

using nlohmann::json;

std::string printApplications(const json& result, const Arguments&) {
    Table table({{"NAME"}, {"ID"}});
    for (const json& application : result["applications"]) table.add({application["name"], application["id"]});
    return table.isEmpty() ? "No application can be launched here.\n" : table.text();
}

std::string printLaunch(const json& result, const Arguments&) {
    return printable(result["application"]["name"].get<std::string>() + " is launched into " +
                     result["tile"]["name"].get<std::string>()) +
           "\n";
}

std::string printForceQuit(const json& result, const Arguments&) {
    std::string out = "Force quit:\n";
    for (const json& application : result["applications"]) {
        const json& name = application["name"];
        out += "  " + printable(name.is_null() ? "Unknown Application" : name.get<std::string>()) + "\n";
    }
    return out;
}

} // namespace kova::cli
