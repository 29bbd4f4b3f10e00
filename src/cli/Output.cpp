#include "cli/Output.h"

#include "cli/Table.h"
#include "cli/Terminal.h"

#include <nlohmann/json.hpp>

#include <array>
#include <cmath>
#include <ctime>

namespace kova::cli {

namespace {

using nlohmann::json;

std::string line(std::string_view text) {
    return printable(text) + "\n";
}

std::string number(const json& value) {
    return std::to_string(std::llround(value.get<double>()));
}

/// "12,34 1908x1382"; "-" without a frame.
std::string frame(const json& value) {
    if (value.is_null()) return "-";
    return number(value.at("x")) + "," + number(value.at("y")) + " " + number(value.at("width")) + "x" +
           number(value.at("height"));
}

std::string textOr(const json& value, const char* otherwise) {
    return value.is_null() ? otherwise : value.get<std::string>();
}

std::string stateOf(const json& window) {
    if (!window.at("dialogOf").is_null()) return "dialog of " + window.at("dialogOf").get<std::string>();
    if (window.at("isFullScreen").get<bool>()) return "full screen";
    if (window.at("isMinimized").get<bool>()) return "minimized";
    if (window.at("isMaximized").get<bool>()) return "maximized";
    if (window.value("isElsewhere", false)) return "on another desktop";
    return window.at("isVisible").get<bool>() ? "visible" : "not visible";
}

std::string counted(std::size_t count, const char* one, const char* several) {
    return std::to_string(count) + " " + (count == 1 ? one : several);
}

std::string displayTable(const json& displays, const json& current) {
    Table table({{"NUMBER", Align::right}, {"NAME"}, {"FRAME"}, {"LAYOUT"}, {"ID"}});
    for (const json& display : displays) {
        const std::string mark = display.at("id") == current ? "* " : "";
        table.add({mark + number(display.at("number")), display.at("name"), frame(display.at("frame")),
                   display.at("layout").is_null() ? "-" : display.at("layout").at("name").get<std::string>(),
                   display.at("id")});
    }
    return table.isEmpty() ? "No display is connected.\n" : table.text();
}

/// The name of the display or tile that has the id. `names` maps ids to names. "-" if the id is null or has no name.
std::string nameOf(const json& id, const json& names) {
    return id.is_null() ? "-" : names.value(id.get<std::string>(), "-");
}

std::string windowTable(const json& windows, const json& names) {
    Table table({{"ID"}, {"APPLICATION"}, {"TILE"}, {"TILE NAME"}, {"FRAME"}, {"STATE"}, {"TITLE"}});
    for (const json& window : windows) {
        const json& tile = window.at("tile");
        const std::string behind = tile.is_null() || window.at("isFront").get<bool>() ? "" : " (behind)";
        table.add({window.at("id"), window.at("application"), textOr(tile, "-"), nameOf(tile, names) + behind,
                   frame(window.at("frame")), stateOf(window), window.at("title")});
    }
    return table.isEmpty() ? "No windows.\n" : table.text();
}

std::string tileTable(const json& tiles, const json& names) {
    Table table({{"TILE"}, {"NAME"}, {"FRAME"}, {"STACK", Align::right}, {"WINDOW"}});
    for (const json& tile : tiles) {
        table.add({tile.at("id"), nameOf(tile.at("id"), names), frame(tile.at("frame")),
                   std::to_string(tile.at("stack").size()), textOr(tile.at("application"), "-")});
    }
    return table.isEmpty() ? "No tiles.\n" : table.text();
}

/// The names of all displays and tiles by id, as the queries of tiles and windows return them.
json namesIn(const json& state) {
    json names = json::object();
    for (const json& display : state.at("displays")) names[display.at("id").get<std::string>()] = display.at("name");
    for (const json& tile : state.at("tiles")) {
        names[tile.at("id").get<std::string>()] =
            tile.at("name").get<std::string>() + " on " + nameOf(tile.at("display"), names);
    }
    return names;
}

std::string points(const json& count) {
    return number(count) + (count == 1 || count == -1 ? " point" : " points");
}

/// "Mail, Notes"; "-" for nothing.
std::string listed(const json& names) {
    std::string out;
    for (const json& name : names) out += (out.empty() ? "" : ", ") + name.get<std::string>();
    return out.empty() ? "-" : out;
}

/// A short text for a section of the state.
std::string summary(const std::string& section, const json& value) {
    if (section == "windows") return counted(value.size(), "window", "windows");
    if (section == "displays") return counted(value.size(), "display", "displays");
    if (section == "tiles") {
        const auto occupied =
            std::count_if(value.begin(), value.end(), [](const json& t) { return !t.at("window").is_null(); });
        return std::to_string(occupied) + " of " + counted(value.size(), "tile", "tiles") + " taken";
    }
    if (section == "explanation") return counted(value.size(), "line", "lines");
    if (section == "focusMode") return value.is_null() ? "off" : textOr(value.at("application"), "on");
    if (section == "notice") {
        return value.is_null() ? "-"
                               : value.at("application").get<std::string>() + " takes " +
                                     number(value.at("additionalTiles")) + " more";
    }
    if (value.is_string()) return value.get<std::string>();
    return value.is_null() ? "-" : value.dump(-1, ' ', false, json::error_handler_t::replace);
}

} // namespace

std::string localTime(const std::string& utc) {
    std::tm parts{};
    if (!strptime(utc.c_str(), "%Y-%m-%dT%H:%M:%SZ", &parts)) return utc;
    const std::time_t seconds = timegm(&parts);
    if (!localtime_r(&seconds, &parts)) return utc;
    std::array<char, 40> text{};
    return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", &parts)};
}

std::string printArrangement(const json& result, const Arguments&) {
    std::string out;
    for (const json& decision : result.at("explanation")) out += line(decision.get<std::string>());
    if (!result.at("dryRun").get<bool>() && !result.at("message").is_null()) {
        out += line(result.at("message").get<std::string>());
    }
    return out;
}

std::string printArrangeAfterLaunch(const json& result, const Arguments&) {
    return result.at("isOn").get<bool>() ? "Windows are arranged once after each start of KOVA.\n"
                                         : "Windows stay where they are when KOVA starts.\n";
}

std::string printMessage(const json& result, const Arguments&) {
    return line(textOr(result.at("message"), "Done."));
}

std::string printHistory(const json& result, const Arguments&) {
    Table table({{"TIME"}, {"ACTION"}, {"WINDOWS"}});
    for (const json& entry : result.at("entries")) {
        table.add({localTime(entry.at("time")), entry.at("action"), listed(entry.at("windows"))});
    }
    return table.isEmpty() ? "There is nothing to undo.\n" : table.text();
}

std::string printDividers(const json& result, const Arguments&) {
    Table table({{"SPLIT"}, {"BOUNDARY", Align::right}, {"ROOM"}, {"FRAME"}, {"DISPLAY"}, {"DISPLAY NAME"}});
    for (const json& divider : result.at("dividers")) {
        const bool isUpright = divider.at("axis") == "horizontal"; // between columns
        const std::string room = number(divider.at("least")) + (isUpright ? " left, +" : " up, +") +
                                 number(divider.at("most")) + (isUpright ? " right" : " down");
        table.add({divider.at("split"), number(divider.at("boundary")), room, frame(divider.at("frame")),
                   divider.at("display"), nameOf(divider.at("display"), result.value("names", json::object()))});
    }
    return table.isEmpty() ? "There is no divider.\n" : table.text();
}

std::string printDividerDrag(const json& result, const Arguments&) {
    return line("The divider " + result.at("split").get<std::string>() + " " + number(result.at("boundary")) +
                " moved by " + points(result.at("points")) + ".");
}

std::string printDividerReset(const json& result, const Arguments&) {
    return line("The dividers of the split " + result.at("split").get<std::string>() +
                " are where their layout puts them.");
}

std::string printInset(const json& result, const Arguments&) {
    return "The gap around windows is " + points(result.at("points")) + ".\n";
}

std::string printDisplays(const json& result, const Arguments&) {
    return displayTable(result.at("displays"), result.at("current"));
}

std::string printWindows(const json& result, const Arguments&) {
    return windowTable(result.at("windows"), result.value("names", json::object()));
}

std::string printTiles(const json& result, const Arguments&) {
    return tileTable(result.at("tiles"), result.value("names", json::object()));
}

std::string printState(const json& result, const Arguments&) {
    const json& state = result.at("state");
    const json names = namesIn(state);
    std::string out = displayTable(state.at("displays"), nullptr) + "\n" + tileTable(state.at("tiles"), names) + "\n" +
                      windowTable(state.at("windows"), names);
    if (!state.at("message").is_null()) out += "\n" + line(state.at("message").get<std::string>());
    return out;
}

std::string printExplanation(const json& result, const Arguments&) {
    std::string out;
    if (result.at("window").is_null() && result.at("decisions").empty()) out = "Nothing was arranged yet.\n";
    for (const json& text : result.at("lines")) out += line(text.get<std::string>());
    return out;
}

namespace {

/// The remarks about a setting of the system.
std::string remarksOf(const json& result) {
    std::string out;
    for (const char* remark : {"problem", "guidance"}) {
        if (!result.at(remark).is_null()) out += line(result.at(remark).get<std::string>());
    }
    return out;
}

} // namespace

std::string printStatus(const json& result, const Arguments&) {
    std::string out =
        "agent       " + line(result.at("version").get<std::string>() + ", process " + number(result.at("process")));
    if (result.at("problem").is_null()) {
        out += "permission  " + line(result.at("permission").get<std::string>());
    } else {
        out += "problem     " + line(result.at("problem").get<std::string>());
    }
    const json limitation = result.value("limitation", json());
    if (!limitation.is_null()) out += "session     " + line(limitation.get<std::string>());
    const bool isSuspended = result.at("isRunning").get<bool>() && result.value("isSuspended", false);
    const char* running = isSuspended ? "suspended until the screen can be seen again\n" : "running\n";
    if (result.value("isPaused", false)) running = "paused until “kova resume”\n";
    out += "management  " + std::string(result.at("isRunning").get<bool>() ? running : "stopped\n");
    out += "displays    " + number(result.at("displays")) + "\n";
    out += "windows     " + number(result.at("windows")) + ", " + number(result.at("windowsInTiles")) + " in tiles\n";
    if (!result.at("focusMode").is_null())
        out += "focus mode  " + line(textOr(result.at("focusMode").at("application"), "on"));
    const json& held = result.at("shortcutsHeldByOthers");
    const char* holder = result.value("shortcutHolder", "program") == "system" ? "the system" : "another program";
    for (const json& shortcut : held)
        out += "shortcut    " + line(shortcut.get<std::string>() + " is held by " + holder);
    for (const json& problem : result.value("preferenceProblems", json::array()))
        out += "preferences " + line(problem.get<std::string>());
    if (!result.at("message").is_null()) out += "message     " + line(result.at("message").get<std::string>());
    if (!result.at("firstSteps").is_null()) out += "first steps " + line(result.at("firstSteps").get<std::string>());
    return out;
}

std::string printStartAtLogin(const json& result, const Arguments&) {
    return (result.at("isOn").get<bool>() ? "KOVA starts with the session.\n"
                                          : "KOVA does not start with the session.\n") +
           remarksOf(result);
}

std::string printDockAutoHide(const json& result, const Arguments&) {
    return (result.at("isOn").get<bool>() ? "The Dock hides itself.\n" : "The Dock stays.\n") + remarksOf(result);
}

std::string printUpdates(const json& result, const Arguments&) {
    std::string out = result.at("checksAutomatically").get<bool>() ? "KOVA looks for newer versions automatically"
                                                                   : "KOVA looks for newer versions only when asked";
    if (result.at("checksAutomatically").get<bool>() && result.at("downloadsAutomatically").get<bool>())
        out += " and downloads them";
    return out + (result.at("isChecking").get<bool>() ? ". It is looking now.\n" : ".\n");
}

std::string printPermission(const json& result, const Arguments&) {
    if (result.at("problem").is_null()) return "KOVA may manage windows.\n";
    std::string out = line("KOVA may not manage windows: " + result.at("problem").get<std::string>());
    if (result.at("canAsk").get<bool>()) out += "“kova permission ask” has the system ask for the permission.\n";
    return out;
}

std::string printQuit(const json& result, const Arguments&) {
    return "The agent (process " + number(result.at("process")) + ") ends.\n";
}

std::string printChanges(std::uint64_t sequence, const json& sections) {
    std::string out;
    for (const auto& [section, value] : sections.items()) {
        out += line(std::to_string(sequence) + "  " + section + "  " + summary(section, value));
    }
    return out;
}

std::string printChecks(const json& checks) {
    Table table({{"CHECK"}, {"VERDICT"}, {"FINDING"}});
    for (const json& check : checks) table.add({check.at("subject"), check.at("verdict"), check.at("text")});
    return table.text();
}

} // namespace kova::cli
