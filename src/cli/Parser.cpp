#include "cli/Parser.h"

#include "cli/LogFiles.h"
#include "cli/Terminal.h"
#include "support/Spelling.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdlib>
#include <optional>
#include <string_view>

namespace kova::cli {

namespace {

constexpr double kLargestInset = 100; // points
constexpr double kFarthest = 100'000; // points, for a divider
constexpr int kLargestBoundary = 1000;
constexpr int kLargestPlace = 1'000'000;
constexpr int kMostLines = 1'000'000;
constexpr int kNarrowestPicture = 16; // columns
constexpr int kWidestPicture = 1000;
constexpr std::size_t kHelpWidth = 80; // columns

/// The number, if the text is one from end to end and lies in the range.
std::optional<int> numberIn(std::string_view text, int least, int most) {
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool isNumber = error == std::errc{} && end == text.data() + text.size();
    return isNumber && value >= least && value <= most ? std::optional(value) : std::nullopt;
}

/// The same with a fraction or an exponent; neither words like “nan” nor hexadecimal digits count.
std::optional<double> numberIn(std::string_view text, double least, double most) {
    if (text.empty() || text.find_first_not_of("0123456789.eE+-") != std::string_view::npos) return std::nullopt;
    const std::string terminated(text);
    char* end = nullptr;
    const double value = std::strtod(terminated.c_str(), &end);
    if (end != terminated.c_str() + terminated.size() || !(value >= least && value <= most)) return std::nullopt;
    return value;
}

using Problem = std::optional<std::string>; // absent: the word was taken

Problem takeName(std::optional<std::string>& name, std::string_view word) {
    if (word.empty()) return "a name must not be empty";
    name = word;
    return std::nullopt;
}

template <class Number>
Problem takeNumber(std::optional<Number>& number, std::string_view word, Number least, Number most, const char* what) {
    number = numberIn(word, least, most);
    if (number) return std::nullopt;
    return "“" + std::string(word) + "” is not " + what;
}

Problem takeDirection(Arguments& arguments, std::string_view word) {
    constexpr std::array<std::string_view, 4> kDirections = {"left", "right", "up", "down"};
    if (std::find(kDirections.begin(), kDirections.end(), word) == kDirections.end()) {
        return "“" + std::string(word) + "” is not left, right, up or down";
    }
    arguments.direction = word;
    return std::nullopt;
}

Problem takeStackStep(Arguments& arguments, std::string_view word) {
    if (word != "next" && word != "previous") return "“" + std::string(word) + "” is not next or previous";
    arguments.step = word;
    return std::nullopt;
}

Problem takeLevel(Arguments& arguments, std::string_view word) {
    if (!logSeverityNamed(word)) return "“" + std::string(word) + "” is not detail, note, warning or error";
    arguments.level = word;
    return std::nullopt;
}

Problem takeDisposition(Arguments& arguments, std::string_view word) {
    if (word != "tile" && word != "float" && word != "ignore") {
        return "“" + std::string(word) + "” is not tile, float or ignore";
    }
    arguments.disposition = word;
    return std::nullopt;
}

Problem takeSwitch(Arguments& arguments, std::string_view word) {
    if (word != "on" && word != "off") return "“" + std::string(word) + "” is not on or off";
    arguments.choice = word;
    return std::nullopt;
}

Problem takeShown(Arguments& arguments, std::string_view word) {
    if (word != "menu") return "“" + std::string(word) + "” is not menu";
    arguments.what = word;
    return std::nullopt;
}

/// What does not go together.
Problem contradictionIn(const Verb& verb, const Arguments& arguments) {
    if ((verb.takes & kRuleApplication) != 0 && arguments.application.has_value() == arguments.focused) {
        return "either --app or --focused is needed";
    }
    if ((verb.takes & kPlaceTile) != 0 && !arguments.tile) return "either WINDOW and TILE or --tile is needed";
    if ((verb.takes & kPreferredApplication) != 0 && arguments.application.has_value() == arguments.clear) {
        return "either an APP or --clear is needed";
    }
    if (arguments.disposition == "tile" && !arguments.slot) return "SLOT is missing";
    if (arguments.slot && arguments.disposition != "tile") return "only “tile” takes a SLOT";
    if ((verb.takes & kNewDisposition) != 0 && !arguments.disposition && !arguments.title) {
        return "either a DISPOSITION or --title is needed";
    }
    return std::nullopt;
}

/// One thing that a verb may take. Without a flag it is a word by itself; without a value it is there or not.
struct Option {
    std::uint64_t takenBy; // of `Takes`, or kEveryVerb
    std::string_view flag;
    std::string_view value;
    std::string_view meaning;
    Problem (*take)(Arguments& arguments, std::string_view word);
};

constexpr std::array kOptions =
    std::to_array<Option>(
        {
            {kLayout, "", "LAYOUT", "id or name of a layout, or a part of it (default: the one in force)",
             [](Arguments& a, std::string_view word) { return takeName(a.layout, word); }},
            {kRequiredLayout, "", "LAYOUT", "id or name of a layout, or a part of it; or “automatic”",
             [](Arguments& a, std::string_view word) { return takeName(a.layout, word); }},
            {kWindow, "", "WINDOW", "id, application or title of a window, or a part of them",
             [](Arguments& a, std::string_view word) { return takeName(a.window, word); }},
            {kPlaceTile, "", "TILE", "id, number or name of a tile, on the window's display",
             [](Arguments& a, std::string_view word) { return takeName(a.tile, word); }},
            {kSwapWith, "", "WITH", "left, right, up, down, or id, number or name of a tile",
             [](Arguments& a, std::string_view word) { return takeName(a.with, word); }},
            {kDisplayWord, "", "TO", "next, previous, or number, name or id of a display",
             [](Arguments& a, std::string_view word) { return takeName(a.to, word); }},
            {kStackStep, "", "STEP", "next (which is meant without it) or previous", takeStackStep},
            {kRequiredPoints, "", "POINTS", "a number from 0 to 100",
             [](Arguments& a,
                std::string_view
                    word) { return takeNumber(a.points, word, 0.0, kLargestInset, "a number from 0 to 100"); }},
            {kDirection, "", "DIRECTION", "left, right, up or down", takeDirection},
            {kSplit, "", "SPLIT", "the split that the divider belongs to, as “divider list” names it",
             [](Arguments& a, std::string_view word) { return takeName(a.split, word); }},
            {kBoundary, "", "BOUNDARY", "which of the split's boundaries, counted from 0",
             [](Arguments& a, std::string_view word) {
                 return takeNumber(a.boundary, word, 0, kLargestBoundary, "a whole number from 0 to 1000");
             }},
            {kTranslation, "", "POINTS", "how far: to the right or downwards; negative to the left or upwards",
             [](Arguments& a, std::string_view word) {
                 return takeNumber(a.points, word, -kFarthest, kFarthest, "a number from -100000 to 100000");
             }},
            {kApplication, "", "APP", "id or name of an application, or a part of it, as “app list” names it",
             [](Arguments& a, std::string_view word) { return takeName(a.application, word); }},
            {kPreferredTile, "", "TILE", "a slot of any layout, or number or name of a tile in force",
             [](Arguments& a, std::string_view word) { return takeName(a.tile, word); }},
            {kPreferredApplication, "", "APP", "id or name of an application, or a part of it",
             [](Arguments& a, std::string_view word) { return takeName(a.application, word); }},
            {kRequiredWindow, "", "WINDOW", "id, application or title of a window, or a part of them",
             [](Arguments& a, std::string_view word) { return takeName(a.window, word); }},
            {kScene, "", "SCENE", "name of a scene, or its id",
             [](Arguments& a, std::string_view word) { return takeName(a.scene, word); }},
            {kSceneName, "", "NAME", "of the scene (default: “Workspace” and the time)",
             [](Arguments& a, std::string_view word) { return takeName(a.name, word); }},
            {kNewName, "", "NAME", "the scene's new name",
             [](Arguments& a, std::string_view word) { return takeName(a.newName, word); }},
            {kRule, "", "RULE", "number, name or id of a rule, as “rule list” tells them, or a part of it",
             [](Arguments& a, std::string_view word) { return takeName(a.rule, word); }},
            {kPlace, "", "PLACE", "number in the list that the rule is to have; 1 comes first",
             [](Arguments& a, std::string_view word) {
                 return takeNumber(a.place, word, 1, kLargestPlace, "a whole number from 1 on");
             }},
            {kDisposition, "", "DISPOSITION", "“tile” with a SLOT, “float” or “ignore”", takeDisposition},
            {kNewDisposition, "", "DISPOSITION", "“tile” with a SLOT, “float” or “ignore”", takeDisposition},
            {kSlot, "", "SLOT", "with “tile”: a slot of any layout, or number or name of a tile in force",
             [](Arguments& a, std::string_view word) { return takeName(a.slot, word); }},
            {kNewFile, "", "FILE", "a file that is not there yet",
             [](Arguments& a, std::string_view word) { return takeName(a.file, word); }},
            {kFollow, "-f", "", "go on with what is added, until interrupted",
             [](Arguments& a, std::string_view) -> Problem { return a.follow = true, std::nullopt; }},
            {kLines, "-n", "LINES", "how many of the newest lines (default: 50)",
             [](Arguments& a, std::string_view word) {
                 return takeNumber(a.lines, word, 0, kMostLines, "a whole number from 0 to 1000000");
             }},
            {kLevel, "--level", "LEVEL", "detail, note, warning or error, and what is graver", takeLevel},
            {kFile, "", "FILE", "a JSON file; “-” for the standard stream",
             [](Arguments& a, std::string_view word) { return takeName(a.file, word); }},
            {kUrl, "", "URL", "of the scheme kova, such as kova://action/arrange",
             [](Arguments& a, std::string_view word) { return takeName(a.url, word); }},
            {kShortcutAction, "", "ACTION", "name or title of an action, or a part of it",
             [](Arguments& a, std::string_view word) { return takeName(a.action, word); }},
            {kShortcutKeys, "", "KEYS", "modifiers and a key, such as ctrl+alt+h, alt+f5 or super+left",
             [](Arguments& a, std::string_view word) { return takeName(a.keys, word); }},
            {kTheme, "", "THEME", "id or name of a theme, or a part of it",
             [](Arguments& a, std::string_view word) { return takeName(a.theme, word); }},
            {kAccent, "", "COLOR", "id or name of an accent color, or a part of it",
             [](Arguments& a, std::string_view word) { return takeName(a.accent, word); }},
            {kSwitch, "", "on|off", "on or off", takeSwitch},
            {kShown, "", "menu", "what to open", takeShown},
            {kMenuEntry, "", "ENTRY", "id of an entry, as “menu” tells it",
             [](Arguments& a, std::string_view word) { return takeName(a.entry, word); }},
            {kRuleApplication, "--app", "ID", "id or name of an application, or a part of it",
             [](Arguments& a, std::string_view word) { return takeName(a.application, word); }},
            {kFocused, "--focused", "", "instead of --app: the application of the focused window",
             [](Arguments& a, std::string_view) -> Problem { return a.focused = true, std::nullopt; }},
            {kTitle, "--title", "TEXT", "only windows with this text in their title, in any case",
             [](Arguments& a, std::string_view word) { return takeName(a.title, word); }},
            {kNewTitle, "--title", "TEXT", "from now on only windows with this text in their title; '' for all of them",
             [](Arguments& a, std::string_view word) -> Problem { return a.title = word, std::nullopt; }},
            {kTile, "--tile", "SLOT", "id, number or name of a tile of the display's layout",
             [](Arguments& a, std::string_view word) { return takeName(a.tile, word); }},
            {kPlaceTile, "--tile", "TILE", "the same; without WINDOW for the focused one",
             [](Arguments& a, std::string_view word) { return takeName(a.tile, word); }},
            {kTileOption, "--tile", "TILE", "id, number or name of a tile, in place of the focused window's",
             [](Arguments& a, std::string_view word) { return takeName(a.tile, word); }},
            {kWindowOption, "--window", "WINDOW", "id, application or title of a window (default: the focused one)",
             [](Arguments& a, std::string_view word) { return takeName(a.window, word); }},
            {kRepair, "--repair", "", "request the frames of those that drifted again",
             [](Arguments& a, std::string_view) -> Problem { return a.repair = true, std::nullopt; }},
            {kForce, "--force", "", "overwrite a file that is there",
             [](Arguments& a, std::string_view) -> Problem { return a.force = true, std::nullopt; }},
            {kDisplay, "--display", "DISPLAY", "number, name or id of a display (default: the current one)",
             [](Arguments& a, std::string_view word) { return takeName(a.display, word); }},
            {kWidth, "--width", "COLUMNS", "of the drawing (default: the terminal's)",
             [](Arguments& a, std::string_view word) {
                 return takeNumber(a.width, word, kNarrowestPicture, kWidestPicture, "a whole number from 16 to 1000");
             }},
            {kDryRun, "--dry-run", "", "only say what would be done",
             [](Arguments& a, std::string_view) -> Problem { return a.dryRun = true, std::nullopt; }},
            {kClear, "--clear", "", "instead of APP: offer the tile to no application first",
             [](Arguments& a, std::string_view) -> Problem { return a.clear = true, std::nullopt; }},
            {kWait, "--wait", "", "wait until every window is placed or has not come in time",
             [](Arguments& a, std::string_view) -> Problem { return a.wait = true, std::nullopt; }},
            {kYes, "--yes", "", "do it without asking",
             [](Arguments& a, std::string_view) -> Problem { return a.yes = true, std::nullopt; }},
            {kEveryVerb, "--json", "", "print the agent's answer as JSON",
             [](Arguments& a, std::string_view) -> Problem { return a.json = true, std::nullopt; }},
        });

bool takes(const Verb& verb, const Option& option) {
    return option.takenBy == kEveryVerb || (verb.takes & option.takenBy) != 0;
}

bool isRequired(const Option& option) {
    constexpr std::uint64_t kRequired =
        kRequiredLayout | kRequiredPoints | kDirection | kSplit | kBoundary | kTranslation | kApplication | kTile |
        kRequiredWindow | kScene | kNewName | kRule | kPlace | kDisposition | kFile | kNewFile | kTheme | kAccent |
        kSwitch | kShortcutAction | kShortcutKeys | kSwapWith | kDisplayWord | kPreferredTile | kShown | kMenuEntry;
    return option.takenBy != kEveryVerb && (option.takenBy & kRequired) != 0;
}

/// Negative numbers are values that are out of range, not options that do not exist.
bool looksLikeOption(std::string_view word) {
    return word.size() > 1 && word[0] == '-' && !(word[1] >= '0' && word[1] <= '9');
}

std::string spelling(const Option& option) {
    std::string text(option.flag);
    if (!option.flag.empty() && !option.value.empty()) text += " ";
    return text + std::string(option.value);
}

class Parser {
  public:
    Parser(const Verb& verb, std::span<char* const> words) : verb_(verb), words_(words) {}

    std::variant<Arguments, ParseEnd> parse() {
        bool hasOptionsEnded = false;
        while (!words_.empty()) {
            const std::string_view word = next();
            if (!hasOptionsEnded && word == "--") {
                hasOptionsEnded = true;
                continue;
            }
            if (!hasOptionsEnded && (word == "--help" || word == "-h")) return ParseEnd{ExitCode::done, help(verb_)};
            const Problem problem = !hasOptionsEnded && looksLikeOption(word) ? takeOption(word) : takeWord(word);
            if (problem) return wrong(*problem);
        }
        for (const Option& option : kOptions) {
            if (!hasTaken(option) && isRequired(option) && takes(verb_, option))
                return wrong(spelling(option) + " is missing");
        }
        if (const Problem problem = contradictionIn(verb_, arguments_)) return wrong(*problem);
        return std::move(arguments_);
    }

  private:
    std::string_view next() {
        const std::string_view word = words_.front();
        words_ = words_.subspan(1);
        return word;
    }

    bool hasTaken(const Option& option) const { return (taken_ & option.takenBy) != 0; }

    Problem takeOption(std::string_view word) {
        const auto equals = word.find('=');
        const std::string_view name = word.substr(0, equals);
        const auto option = std::find_if(kOptions.begin(), kOptions.end(), [&](const Option& candidate) {
            return candidate.flag == name && takes(verb_, candidate);
        });
        if (option == kOptions.end()) return "there is no option “" + std::string(name) + "”" + nearestFlag(name);
        if (option->value.empty()) {
            if (equals != std::string_view::npos) return std::string(name) + " takes no value";
            return option->take(arguments_, {});
        }
        if (equals == std::string_view::npos && words_.empty()) {
            return std::string(name) + " needs a value: " + std::string(option->value);
        }
        const std::string_view value = equals == std::string_view::npos ? next() : word.substr(equals + 1);
        taken_ |= option->takenBy;
        auto problem = option->take(arguments_, value);
        return problem ? std::string(name) + ": " + *problem : problem;
    }

    /// “. Did you mean “--display”?”; empty when no option of the verb is near.
    std::string nearestFlag(std::string_view name) const {
        std::vector<std::string> flags;
        for (const Option& option : kOptions) {
            if (!option.flag.empty() && takes(verb_, option)) flags.emplace_back(option.flag);
        }
        const auto nearest = nearestWord(name, flags);
        return nearest ? ". Did you mean “" + flags[*nearest] + "”?" : "";
    }

    Problem takeWord(std::string_view word) {
        for (const Option& option : kOptions) {
            if (!option.flag.empty() || !takes(verb_, option) || hasTaken(option)) continue;
            taken_ |= option.takenBy;
            auto problem = option.take(arguments_, word);
            return problem ? std::string(option.value) + ": " + *problem : problem;
        }
        return "“" + std::string(word) + "” is a word too many";
    }

    ParseEnd wrong(const std::string& what) const {
        return {ExitCode::wrongUsage, "kova: " + what + "\nTry “kova " + std::string(verb_.name) + " --help”."};
    }

    const Verb& verb_;
    std::span<char* const> words_;
    Arguments arguments_;
    std::uint64_t taken_ = 0; // of the words, which come in the order of the table, and the options with a value
};

/// The text in lines of the help's width.
std::string wrapped(std::string_view text) {
    std::string out;
    std::size_t column = 0;
    while (!text.empty()) {
        const auto end = std::min(text.find(' '), text.size());
        const std::string_view word = text.substr(0, end);
        const std::size_t columns = columnsOf(word);
        if (column > 0 && column + 1 + columns > kHelpWidth) {
            out += '\n';
            column = 0;
        }
        if (column > 0) out += ' ';
        out += word;
        column += columns + (column > 0 ? 1 : 0);
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return out + "\n";
}

} // namespace

std::vector<Taking> takingsOf(const Verb& verb) {
    std::vector<Taking> all;
    for (const Option& option : kOptions) {
        if (!takes(verb, option)) continue;
        all.push_back({option.takenBy, option.flag, option.value, option.meaning, isRequired(option)});
    }
    return all;
}

std::variant<Arguments, ParseEnd> parse(const Verb& verb, std::span<char* const> words) {
    return Parser(verb, words).parse();
}

std::string help(const Verb& verb) {
    constexpr std::size_t kMeaningColumn = 23;
    const std::string name = "kova " + std::string(verb.name);
    std::string usage = "usage: " + name;
    std::string options;
    for (const Option& option : kOptions) {
        if (!takes(verb, option)) continue;
        usage += isRequired(option) ? " " + spelling(option) : " [" + spelling(option) + "]";
        std::string line = "  " + spelling(option);
        line.append(kMeaningColumn - std::min(kMeaningColumn - 1, line.size()), ' ');
        options += line + std::string(option.meaning) + "\n";
    }
    std::string examples = "examples:\n";
    for (std::string_view rest = verb.examples; !rest.empty();) {
        const auto end = std::min(rest.find('\n'), rest.size());
        examples += "  " + std::string(rest.substr(0, end)) + "\n";
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return name + ": " + std::string(verb.summary) + "\n\n" + usage + "\n\n" + wrapped(verb.description) + "\n" +
           options + "  --help               show this\n\n" + examples;
}

} // namespace kova::cli
