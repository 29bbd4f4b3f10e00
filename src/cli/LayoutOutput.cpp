#include "cli/LayoutOutput.h"

#include "cli/Picture.h"
#include "cli/Table.h"
#include "cli/Terminal.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>

namespace kova::cli {

namespace {

using nlohmann::json;

constexpr double kCharacterAspect = 2; // a character is about twice as high as wide
constexpr int kSmallHeight = 5;        // rows of a picture in the list
constexpr int kTallest = 60;           // rows of any picture

Lines lineStyle() {
    return isUnicodeTerminal() ? Lines::box : Lines::ascii;
}

CGRect rectOf(const json& value) {
    return {{value.at("x"), value.at("y")}, {value.at("width"), value.at("height")}};
}

std::string sizeText(const json& size) {
    const std::string times = isUnicodeTerminal() ? "×" : "x";
    return std::to_string(std::llround(size.at("width").get<double>())) + times +
           std::to_string(std::llround(size.at("height").get<double>()));
}

double aspect(const json& size) {
    const double height = size.at("height");
    return height > 0 ? size.at("width").get<double>() / height : 1;
}

PictureTile pictureTile(const json& tile) {
    PictureTile out{rectOf(tile.at("frame")), {}};
    out.captions = {printable(tile.at("name").get<std::string>()), printable(tile.at("slot").get<std::string>()),
                    sizeText(tile.at("windowSize"))};
    if (!tile.at("window").is_null()) {
        const std::size_t behind = std::max<std::size_t>(tile.at("stackSize").get<std::size_t>(), 1) - 1;
        const std::string more = behind == 0 ? "" : " +" + std::to_string(behind);
        out.captions.push_back(printable(tile.at("window").get<std::string>()) + more);
    }
    return out;
}

} // namespace

std::string printLayout(const json& result, const Arguments& arguments) {
    const int columns = arguments.number("width").value_or(terminalWidth());
    const int rows =
        std::clamp(static_cast<int>(std::lround(columns / aspect(result.at("area")) / kCharacterAspect)), 3, kTallest);
    std::vector<PictureTile> tiles;
    for (const json& tile : result.at("tiles")) tiles.push_back(pictureTile(tile));

    std::string out;
    for (const std::string& row : drawLayout(tiles, columns, rows, lineStyle())) out += row + "\n";
    const json& layout = result.at("layout");
    const std::string state = result.at("isInForce").get<bool>() ? "in force on " : "as it would be on ";
    out += printable(layout.at("name").get<std::string>() + ", " + layout.at("id").get<std::string>()) + "\n";
    out += printable(state + result.at("display").at("name").get<std::string>() + " (" + sizeText(result.at("area")) +
                     " points)") +
           "\n";
    return out;
}

std::string printLayoutFit(const json& result, const Arguments&) {
    std::string out;
    for (const json& display : result.at("displays")) {
        out += (out.empty() ? "" : "\n") + printable(display.at("name").get<std::string>()) + "\n";
        Table table({{"LAYOUT"}, {"NAME"}, {"FITS"}});
        for (const json& layout : display.at("layouts")) {
            const json& lacking = layout.at("shortfall");
            const auto points = [&](const char* key) {
                return std::to_string(std::lround(lacking.at(key).get<double>()));
            };
            const std::string fits = lacking.is_null() ? "yes"
                                                       : lacking.at("application").get<std::string>() + " lacks " +
                                                             points("width") + " by " + points("height") + " points";
            table.add({layout.at("id"), layout.at("name"), fits});
        }
        out += table.text();
    }
    return out;
}

std::string printLayoutList(const json& result, const Arguments&) {
    std::string out;
    for (const json& layout : result.at("layouts")) {
        if (!out.empty()) out += "\n";
        std::vector<PictureTile> tiles;
        for (const json& slot : layout.at("slots")) tiles.push_back({rectOf(slot.at("frame")), {}});
        // The number is odd, so that the line between two halves is in the middle column.
        const int columns =
            static_cast<int>(std::lround(aspect(layout.at("referenceSize")) * kSmallHeight * kCharacterAspect)) | 1;
        const auto picture = drawLayout(tiles, columns, kSmallHeight, lineStyle());

        const std::string count = std::to_string(tiles.size()) + (tiles.size() == 1 ? " tile" : " tiles");
        std::vector<std::string> texts{layout.at("name"), layout.at("id"),
                                       count + ", " + layout.at("displayClass").get<std::string>()};
        for (const json& display : layout.at("displays"))
            texts.push_back("in force on " + display.at("name").get<std::string>());
        for (std::size_t i = 0; i < std::max(picture.size(), texts.size()); ++i) {
            const std::string row =
                i < picture.size() ? picture[i] : std::string(static_cast<std::size_t>(columns), ' ');
            out += row + (i < texts.size() ? "  " + printable(texts[i]) : "") + "\n";
        }
    }
    return out;
}

std::string printPreference(const json& result, const Arguments&) {
    const std::string tile = result.at("name").get<std::string>();
    const json& application = result.at("application");
    if (application.is_null()) return printable("The tile " + tile + " is offered to no application first.") + "\n";
    return printable("The tile " + tile + " is offered to " + application.get<std::string>() + " first.") + "\n";
}

std::string printLayoutChange(const json& result, const Arguments&) {
    if (!result.at("message").is_null()) return printable(result.at("message").get<std::string>()) + "\n";
    if (result.at("layout").is_null()) return "Done.\n";
    return printable(result.at("layout").at("name").get<std::string>()) + "\n";
}

} // namespace kova::cli
