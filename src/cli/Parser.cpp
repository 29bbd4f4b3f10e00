#include "cli/Parser.h"

#include "cli/Terminal.h"
#include "support/Quoted.h"
#include "support/Spelling.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <optional>
#include <string_view>
#include <vector>

namespace kova::cli {

namespace {

using nlohmann::json;
using Kind = Parameter::Kind;

/// What is wrong with a word, and which words would be right.
struct WrongWord {
    std::string what;
    std::vector<std::string> choices{};
};
using ParseError = std::optional<WrongWord>; // absent: the word was taken

constexpr std::size_t kHelpWidth = 80; // columns

std::optional<json> wholeNumber(std::string_view text, double least, double most) {
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool isNumber = error == std::errc{} && end == text.data() + text.size();
    return isNumber && value >= least && value <= most ? std::optional<json>(value) : std::nullopt;
}

/// Parses a decimal number, which may have a fraction and an exponent. Refuses “nan” and hexadecimal digits.
std::optional<json> number(std::string_view text, double least, double most) {
    if (text.empty() || text.find_first_not_of("0123456789.eE+-") != std::string_view::npos) return std::nullopt;
    const std::string terminated(text);
    char* end = nullptr;
    const double value = std::strtod(terminated.c_str(), &end);
    if (end != terminated.c_str() + terminated.size() || !(value >= least && value <= most)) return std::nullopt;
    return value;
}

std::vector<std::string> split(std::string_view words, char separator = ' ') {
    std::vector<std::string> all;
    for (std::size_t at = 0; at < words.size();) {
        const auto end = std::min(words.find(separator, at), words.size());
        all.emplace_back(words.substr(at, end - at));
        at = end + 1;
    }
    return all;
}

/// "left, right, up or down".
std::string joinedByOr(const std::vector<std::string>& words) {
    std::string out;
    for (const auto& word : words) out += (out.empty() ? "" : &word == &words.back() ? " or " : ", ") + word;
    return out;
}

/// “. Did you mean “left”?”; empty when none of the words is near.
std::string nearestOf(std::string_view wanted, const std::vector<std::string>& words) {
    const auto nearest = nearestWord(wanted, words);
    return nearest ? ". Did you mean " + quoted(words[*nearest]) + "?" : "";
}

/// "a number from 0 to 100".
std::string range(const Parameter& parameter) {
    const auto text = [](double limit) { return std::to_string(std::llround(limit)); };
    const std::string what = parameter.kind == Kind::number ? "a number from " : "a whole number from ";
    const bool hasLimit = parameter.most != Parameter{}.most;
    return what + text(parameter.least) + (!hasLimit ? " on" : " to " + text(parameter.most));
}

/// The word as the parameter's value, or an error that names what was expected.
Result<json, WrongWord> valueOf(const Parameter& parameter, std::string_view word) {
    const auto isNot = [word](const std::string& what) { return quoted(word) + " is not " + what; };
    std::optional<json> value;
    const auto words = split(parameter.words);
    const bool isListed = std::find(words.begin(), words.end(), word) != words.end();
    switch (parameter.kind) {
    case Kind::flag:
        return json(true);
    case Kind::text:
        return json(word);
    case Kind::name:
    case Kind::file:
        if (word.empty()) return WrongWord{"a name must not be empty"};
        return json(word);
    case Kind::choice:
    case Kind::onOff:
        if (!isListed) return WrongWord{isNot(joinedByOr(words)) + nearestOf(word, words), words};
        return parameter.kind == Kind::onOff ? json(word == "on") : json(word);
    case Kind::wholeNumber:
        value = wholeNumber(word, parameter.least, parameter.most);
        break;
    case Kind::number:
        value = number(word, parameter.least, parameter.most);
        break;
    }
    if (!value) return WrongWord{isNot(range(parameter))};
    return std::move(*value);
}

/// A hyphen with a digit after it begins a negative number, not an option.
bool looksLikeOption(std::string_view word) {
    return word.size() > 1 && word[0] == '-' && !(word[1] >= '0' && word[1] <= '9');
}

template <class Visit>
void eachParameter(const Verb& verb, Visit visit) {
    for (const Parameter& parameter : verb.parameters) visit(parameter);
    visit(kJson);
}

class Parser {
  public:
    Parser(const Verb& verb, std::span<char* const> words) : verb_(verb), words_(words) {}

    Result<Arguments, ParseEnd> parse() {
        bool hasOptionsEnded = false;
        while (!words_.empty()) {
            const std::string_view word = next();
            if (!hasOptionsEnded && word == "--") {
                hasOptionsEnded = true;
                continue;
            }
            if (!hasOptionsEnded && (word == "--help" || word == "-h")) return ParseEnd{ExitCode::done};
            const ParseError error =
                !hasOptionsEnded && looksLikeOption(word) ? takeOption(word) : takePositional(word);
            if (error) return wrong(*error);
        }
        for (const Parameter& parameter : verb_.parameters) {
            if (parameter.isRequired && !arguments_.has(parameter.key)) {
                return wrong({spelling(parameter) + " is missing", split(parameter.words)});
            }
        }
        if (verb_.check) {
            if (const auto error = verb_.check(arguments_)) return wrong({*error});
        }
        return std::move(arguments_);
    }

  private:
    std::string_view next() {
        const std::string_view word = words_.front();
        words_ = words_.subspan(1);
        return word;
    }

    ParseError take(const Parameter& parameter, std::string_view word) {
        auto value = valueOf(parameter, word);
        if (!value) {
            const std::string_view name = parameter.isPositional() ? parameter.value : parameter.optionName;
            return WrongWord{std::string(name) + ": " + value.error().what, value.error().choices};
        }
        (parameter.use == Parameter::Use::request ? arguments_.request : arguments_.local)[parameter.key] = *value;
        return std::nullopt;
    }

    ParseError takeOption(std::string_view word) {
        const auto equals = word.find('=');
        const std::string_view name = word.substr(0, equals);
        const Parameter* option = optionNamed(name);
        if (!option) {
            const auto optionNames = allOptionNames();
            return WrongWord{"there is no option " + quoted(name) + nearestOf(name, optionNames), optionNames};
        }
        if (option->kind == Kind::flag) {
            if (equals != std::string_view::npos) return WrongWord{std::string(name) + " takes no value"};
            return take(*option, {});
        }
        if (equals == std::string_view::npos && words_.empty()) {
            return WrongWord{std::string(name) + " needs a value: " + std::string(option->value), split(option->words)};
        }
        return take(*option, equals == std::string_view::npos ? next() : word.substr(equals + 1));
    }

    const Parameter* optionNamed(std::string_view name) const {
        const Parameter* found = nullptr;
        eachParameter(verb_, [&](const Parameter& each) {
            if (!each.isPositional() && each.optionName == name) found = &each;
        });
        return found;
    }

    std::vector<std::string> allOptionNames() const {
        std::vector<std::string> optionNames;
        eachParameter(verb_, [&](const Parameter& each) {
            if (!each.isPositional()) optionNames.emplace_back(each.optionName);
        });
        return optionNames;
    }

    ParseError takePositional(std::string_view word) {
        for (const Parameter& parameter : verb_.parameters) {
            if (parameter.isPositional() && !arguments_.has(parameter.key)) return take(parameter, word);
        }
        return WrongWord{quoted(word) + " is a word too many"};
    }

    ParseEnd wrong(WrongWord word) const {
        return {ExitCode::wrongUsage, "kova: " + word.what + "\nTry “kova " + std::string(verb_.name) + " --help”.",
                std::move(word.choices)};
    }

    const Verb& verb_;
    std::span<char* const> words_;
    Arguments arguments_;
};

/// The text, broken into lines of at most `kHelpWidth` columns.
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

Result<Arguments, ParseEnd> parse(const Verb& verb, std::span<char* const> words) {
    return Parser(verb, words).parse();
}

std::string spelling(const Parameter& parameter) {
    std::string text(parameter.optionName);
    if (!parameter.optionName.empty() && !parameter.value.empty()) text += " ";
    return text + std::string(parameter.value);
}

std::string help(const Verb& verb) {
    constexpr std::size_t kMeaningColumn = 23;
    const std::string name = "kova " + std::string(verb.name);
    std::string usage = "usage: " + name;
    std::string parameters;
    eachParameter(verb, [&](const Parameter& each) {
        usage += each.isRequired ? " " + spelling(each) : " [" + spelling(each) + "]";
        std::string line = "  " + spelling(each);
        line.append(kMeaningColumn - std::min(kMeaningColumn - 1, line.size()), ' ');
        parameters += line + std::string(each.meaning) + "\n";
    });
    std::string examples = "examples:\n";
    for (const auto& example : split(verb.examples, '\n')) examples += "  " + example + "\n";
    return name + ": " + std::string(verb.summary) + "\n\n" + usage + "\n\n" + wrapped(verb.description) + "\n" +
           parameters + "  --help               show this\n\n" + examples;
}

json helpRecord(const Verb& verb) {
    json parameters = json::array();
    eachParameter(verb, [&](const Parameter& each) {
        parameters.push_back({{"flag", each.isPositional() ? json() : json(each.optionName)},
                              {"value", each.value.empty() ? json() : json(each.value)},
                              {"meaning", each.meaning},
                              {"choices", split(each.words)},
                              {"isRequired", each.isRequired}});
    });
    json examples = json::array();
    for (auto& example : split(verb.examples, '\n')) examples.push_back(std::move(example));
    return {{"name", verb.name},
            {"method", verb.method.empty() ? json() : json(verb.method)},
            {"summary", verb.summary},
            {"description", verb.description},
            {"parameters", std::move(parameters)},
            {"examples", std::move(examples)}};
}

} // namespace kova::cli
