#include "cli/ThemeOutput.h"

#include "cli/Table.h"
#include "cli/Terminal.h"

#include <nlohmann/json.hpp>

#include <array>
#include <cmath>
#include <cstdio>
#include <vector>

namespace kova::cli {

using nlohmann::json;

namespace {

constexpr const char* kThemeBackground = "The theme's background is ";
constexpr const char* kBrain = "The brain is ";
constexpr const char* kTileBackgrounds = "The backgrounds of tiles are ";

/// Red, green and blue from 0 to 255.
std::array<int, 3> bytesOf(const json& color) {
    const auto byte = [&](const char* key) { return static_cast<int>(std::lround(color.at(key).get<double>() * 255)); };
    return {byte("red"), byte("green"), byte("blue")};
}

/// "#00D6FF".
std::string hexadecimal(const json& color) {
    const auto [red, green, blue] = bytesOf(color);
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), "#%02X%02X%02X", red & 0xFF, green & 0xFF, blue & 0xFF);
    return text.data();
}

/// Two spaces with the color as their background.
std::string patch(const json& color) {
    const auto [red, green, blue] = bytesOf(color);
    return "\x1b[48;2;" + std::to_string(red) + ";" + std::to_string(green) + ";" + std::to_string(blue) + "m  \x1b[0m";
}

/// The table with patches of color before each row: `colors` has a list for each row, all of the same length.
std::string withPatches(const std::string& table, const std::vector<std::vector<json>>& colors) {
    if (!isColorTerminal() || colors.empty()) return table;
    std::string out;
    std::size_t row = 0; // the titles first
    for (std::size_t at = 0; at < table.size(); ++row) {
        const std::size_t end = table.find('\n', at) + 1;
        if (row == 0) out.append(2 * colors.front().size(), ' ');
        if (row > 0) {
            for (const json& color : colors[row - 1]) out += patch(color);
        }
        out += "  " + table.substr(at, end - at);
        at = end;
    }
    return out;
}

std::string marked(const json& record) {
    return (record.at("isActive").get<bool>() ? "* " : "") + record.at("displayName").get<std::string>();
}

std::string switched(const char* what, const json& isOn) {
    return std::string(what) + (isOn.get<bool>() ? "on.\n" : "off.\n");
}

/// A remark if no program shows the change.
std::string remarkOn(const json& result) {
    return result.at("isDrawn").get<bool>()
               ? ""
               : "Stored; nothing shows it, as kova-ui does not run (see “kova ui status”).\n";
}

std::string chosen(const char* what, const json& record) {
    return printable(what + record.at("displayName").get<std::string>() + " (" + record.at("id").get<std::string>() +
                     ").") +
           "\n";
}

} // namespace

std::string printThemes(const json& result, const Arguments&) {
    // The colors that fit into a line of 80 columns; the JSON output has all.
    constexpr std::array kColors = {"background", "panel", "text", "accent"};
    Table table({{"NAME"}, {"ID"}, {"BACKGROUND"}, {"PANEL"}, {"TEXT"}, {"ACCENT"}});
    std::vector<std::vector<json>> colors;
    for (const json& theme : result.at("themes")) {
        std::vector<std::string> cells{marked(theme), theme.at("id")};
        colors.emplace_back();
        for (const char* name : kColors) {
            cells.push_back(hexadecimal(theme.at("palette").at(name)));
            colors.back().push_back(theme.at("palette").at(name));
        }
        table.add(std::move(cells));
    }
    return withPatches(table.text(), colors) + "\n" + switched(kThemeBackground, result.at("useThemeBackground")) +
           switched(kBrain, result.at("showBrain")) + switched(kTileBackgrounds, result.at("showTileBackgrounds")) +
           remarkOn(result);
}

std::string printTheme(const json& result, const Arguments&) {
    return chosen("The theme is ", result.at("theme")) + remarkOn(result);
}

std::string printAccentColors(const json& result, const Arguments&) {
    Table table({{"NAME"}, {"ID"}, {"ACCENT"}, {"SECOND"}});
    std::vector<std::vector<json>> colors;
    for (const json& option : result.at("accentColors")) {
        table.add({marked(option), option.at("id"), hexadecimal(option.at("accent")),
                   hexadecimal(option.at("secondaryAccent"))});
        colors.push_back({option.at("accent"), option.at("secondaryAccent")});
    }
    return withPatches(table.text(), colors);
}

std::string printAccentColor(const json& result, const Arguments&) {
    return chosen("The accent color is ", result.at("accentColor")) + remarkOn(result);
}

std::string printThemeBackgroundSwitch(const json& result, const Arguments&) {
    return switched(kThemeBackground, result.at("isOn")) + remarkOn(result);
}

std::string printBrainSwitch(const json& result, const Arguments&) {
    return switched(kBrain, result.at("isOn")) + remarkOn(result);
}

std::string printBringForwardSwitch(const json& result, const Arguments&) {
    return result.at("isOn").get<bool>() ? "The next window of a stack comes forward when the front one leaves.\n"
                                         : "Windows that wait in a stack stay there when the front one leaves.\n";
}

std::string printTileBackgroundsSwitch(const json& result, const Arguments&) {
    return switched(kTileBackgrounds, result.at("isOn")) + remarkOn(result);
}

} // namespace kova::cli
