#include "cli/WindowVerbs.h"

#include "cli/PlainVerbs.h"
#include "cli/Streams.h"
#include "cli/Table.h"
#include "cli/Terminal.h"
#include "support/Quoted.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <thread>

namespace kova::cli {

namespace {

using nlohmann::json;

constexpr std::chrono::milliseconds kPause{100};
constexpr int kMostTries = 25; // long enough for the verification of a placement, and for a repetition by a poll

std::string line(const std::string& text) {
    return printable(text) + "\n";
}

/// "Mail “Inbox”".
std::string nameOf(const json& window) {
    const std::string application = window.at("application"), title = window.at("title");
    if (application.empty()) return "a closed window";
    return title.empty() || title == application ? application : application + " " + quoted(title);
}

std::string frameText(const json& value) {
    if (value.is_null()) return "-";
    const auto number = [&](const char* key) { return std::to_string(std::llround(value.at(key).get<double>())); };
    return number("x") + "," + number("y") + " " + number("width") + "x" + number("height");
}

/// What a step would do to its window.
std::string stepText(const json& step) {
    const std::string kind = step.at("kind");
    const std::string name = nameOf(step.at("window"));
    if (kind == "place") return name + " would go to " + step.at("tileName").get<std::string>();
    if (kind == "wait") return name + " would wait behind it";
    if (kind == "focus") return name + " would be focused";
    return name + " would float";
}

/// "* Mail “Inbox”, minimized"; the asterisk marks the focused window.
std::string described(const json& window) {
    std::string out = (window.at("isFocused").get<bool>() ? "* " : "") + nameOf(window);
    const std::string state = window.at("state");
    const std::string application = window.at("application");
    if (application.empty()) return out;
    if (window.at("isFloating").get<bool>()) out += ", floating";
    if (state == "minimized") out += ", minimized";
    if (state == "notVisible") out += ", not visible";
    if (state == "elsewhere") out += ", on another desktop";
    if (state == "fullScreen") out += ", full screen";
    return out;
}

bool isAny(const json& windows, const char* verdict) {
    return std::any_of(windows.begin(), windows.end(),
                       [&](const json& window) { return window.at("verdict") == verdict; });
}

const char* inWords(const std::string& verdict) {
    if (verdict == "drifted") return "drifted";
    if (verdict == "underWay") return "on its way";
    if (verdict == "leftAlone") return "left alone";
    return "as requested";
}

} // namespace

std::string printWindowPlan(const json& result, const Arguments&) {
    const json& steps = result.at("steps");
    if (!result.at("dryRun").get<bool>() || steps.empty()) return line(result.at("message"));
    std::string out;
    for (const json& step : steps) out += line(stepText(step));
    return out;
}

std::string printWindowList(const json& result, const Arguments&) {
    std::string out;
    for (const json& display : result.at("displays")) {
        const json& layout = display.at("layout");
        out += line(display.at("name").get<std::string>() +
                    (layout.is_null() ? "" : ": " + layout.at("name").get<std::string>()));
        std::size_t widest = 0;
        for (const json& tile : display.at("tiles")) {
            widest = std::max(widest, columnsOf(printable(tile.at("name").get<std::string>())));
        }
        for (const json& tile : display.at("tiles")) {
            const std::string name = printable(tile.at("name").get<std::string>());
            const std::string lead = "  " + std::to_string(tile.at("number").get<int>()) + "  " + name +
                                     std::string(widest - columnsOf(name), ' ') + "  ";
            out += lead + (tile.at("window").is_null() ? "-\n" : line(described(tile.at("window"))));
            for (const json& waiting : tile.at("waiting")) {
                out += std::string(columnsOf(lead), ' ') + "behind: " + line(nameOf(waiting));
            }
        }
    }
    if (!result.at("others").empty()) out += "In no tile:\n";
    for (const json& window : result.at("others")) out += "  " + line(described(window));
    return out.empty() ? "No windows.\n" : out;
}

std::string printFocus(const json& result, const Arguments&) {
    const auto textOr = [&](const char* key) {
        return result.at(key).is_null() ? std::string("-") : result.at(key).get<std::string>();
    };
    return line("window   " + (result.at("window").is_null() ? "-"
                                                             : nameOf(result.at("window")) + "  " +
                                                                   result.at("window").at("id").get<std::string>())) +
           line("tile     " + textOr("tile")) + line("display  " + textOr("display"));
}

std::string printWindowAt(const json& result, const Arguments&) {
    const json& window = result.at("window");
    if (window.is_null()) return "No managed window is there.\n";
    return line(nameOf(window) + "  " + window.at("id").get<std::string>());
}

std::string printVerification(const json& result, const Arguments& arguments) {
    if (result.at("windows").empty()) return "There is no window in a tile.\n";
    Table table({{"WINDOW"}, {"TILE"}, {"REQUESTED"}, {"ACTUAL"}, {"STATE"}});
    std::size_t right = 0, drifted = 0;
    for (const json& window : result.at("windows")) {
        if (window.at("verdict") == "drifted") ++drifted;
        if (window.at("verdict") == "asRequested") {
            ++right;
            continue;
        }
        table.add({nameOf(window.at("window")), window.at("tileName"), frameText(window.at("requested")),
                   frameText(window.at("actual")), inWords(window.at("verdict"))});
    }
    const std::string count = std::to_string(right) + (right == 1 ? " window is" : " windows are");
    std::string summary = count + " where requested.\n";
    if (arguments.has("repair") && arguments.has("dryRun")) {
        summary += std::to_string(drifted) + (drifted == 1 ? " window" : " windows") + " would be put back.\n";
    }
    return table.isEmpty() ? summary : table.text() + summary;
}

ExitCode runVerify(const Verb& verb, const Arguments& arguments) {
    auto agent = Agent::connect();
    if (!agent) return fail(agent.error());
    const bool repairs = arguments.has("repair") && !arguments.has("dryRun");
    auto result = agent->ask(verb.method, arguments.request);
    for (int i = 0; i < kMostTries && result; ++i) {
        const json& windows = result->at("windows");
        if (!isAny(windows, "underWay") && !(repairs && isAny(windows, "drifted"))) break;
        std::this_thread::sleep_for(kPause);
        result = agent->ask(verb.method, json::object());
    }
    if (!result) return fail(result.error());
    const ExitCode printed = printAnswer(verb, arguments, *result);
    return result->at("isAsRequested").get<bool>() ? printed : ExitCode::refused;
}

} // namespace kova::cli
