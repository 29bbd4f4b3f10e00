#include "cli/Parser.h"

#include <CLI/CLI.hpp>

#include <charconv>
#include <cmath>

namespace kova::cli {

namespace {

constexpr double kLargestInset = 100; // points
constexpr int kNarrowestPicture = 16; // columns
constexpr int kWidestPicture = 1000;

/// The number, if the text is one from end to end and lies in the range.
template <class Number>
std::optional<Number> numberIn(const std::string& text, Number least, Number most) {
    Number value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    // Written so that what is not a number lies in no range.
    if (error != std::errc{} || end != text.data() + text.size() || !(value >= least && value <= most))
        return std::nullopt;
    return value;
}

/// The parser of one verb, and what it has read.
class VerbParser {
  public:
    explicit VerbParser(const Verb& verb) : app_(std::string(verb.description), "kova " + std::string(verb.name)) {
        app_.footer("Examples:\n  " + indented(verb.examples));
        app_.add_flag("--json", arguments_.json, "print the agent's answer as JSON");
        if (verb.takes & kDryRun) app_.add_flag("--dry-run", arguments_.dryRun, "only say what would be done");
        if (verb.takes & kLayout)
            app_.add_option("LAYOUT", arguments_.layout, "id or name of a layout, or a part of it");
        if (verb.takes & kRequiredLayout) {
            app_.add_option("LAYOUT", arguments_.layout, "id or name of a layout, or a part of it, or “automatic”")
                ->required();
        }
        if (verb.takes & kWindow) app_.add_option("WINDOW", arguments_.window, "id, application or title of a window");
        if (verb.takes & kDisplay) {
            app_.add_option("--display", arguments_.display,
                            "number, name or id of a display (default: the current one)")
                ->type_name("DISPLAY");
        }
        if (verb.takes & kRequiredPoints) app_.add_option("POINTS", points_, "a number from 0 to 100")->required();
        if (verb.takes & kWidth) {
            app_.add_option("--width", width_, "columns of the drawing (default: the terminal's)")
                ->type_name("COLUMNS");
        }
    }

    std::string help() const { return app_.help(); }

    std::variant<Arguments, ParseEnd> parse(std::span<char* const> words) {
        try {
            app_.parse(std::vector<std::string>(words.rbegin(), words.rend())); // the library takes them from the back
        } catch (const CLI::CallForHelp&) {
            return ParseEnd{ExitCode::done, help()};
        } catch (const CLI::ParseError& error) {
            return wrong(error.what());
        }
        if (!points_.empty() && !(arguments_.points = numberIn(points_, 0.0, kLargestInset))) {
            return wrong("POINTS: “" + points_ + "” is not a number from 0 to 100");
        }
        if (!width_.empty() && !(arguments_.width = numberIn(width_, kNarrowestPicture, kWidestPicture))) {
            return wrong("--width: “" + width_ + "” is not a whole number from 16 to 1000");
        }
        for (const auto* name : {&arguments_.layout, &arguments_.display, &arguments_.window}) {
            if (*name && (*name)->empty()) return wrong("A name must not be empty");
        }
        return arguments_;
    }

  private:
    static std::string indented(std::string_view lines) {
        std::string out;
        for (const char c : lines) out += c == '\n' ? "\n  " : std::string(1, c);
        return out;
    }

    ParseEnd wrong(const std::string& what) const {
        return {ExitCode::wrongUsage, what + "\nTry “" + app_.get_name() + " --help”."};
    }

    CLI::App app_;
    Arguments arguments_;
    std::string points_;
    std::string width_;
};

} // namespace

std::variant<Arguments, ParseEnd> parse(const Verb& verb, std::span<char* const> words) {
    // Most commands have no further words, and the parser takes longer to build than the agent to answer.
    const bool needsWords = (verb.takes & (kRequiredLayout | kRequiredPoints)) != 0;
    if (words.empty() && !needsWords) return Arguments{};
    return VerbParser(verb).parse(words);
}

std::string help(const Verb& verb) {
    return VerbParser(verb).help();
}

} // namespace kova::cli
