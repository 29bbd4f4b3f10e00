#include "cli/Completion.h"

#include "cli/Streams.h"
#include "cli/Terminal.h"
#include "cli/Verbs.h"

#include <algorithm>
#include <string_view>

namespace kova::cli {

namespace {

constexpr std::size_t kLongestDescription = 60; // columns

std::vector<Candidate> valuesOf(const Parameter& parameter) {
    if (parameter.kind == Parameter::Kind::file) return {{"", "files"}};
    std::vector<Candidate> values;
    for (std::string_view rest = parameter.words; !rest.empty();) {
        const auto end = std::min(rest.find(' '), rest.size());
        values.push_back({std::string(rest.substr(0, end))});
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    if (parameter.names) {
        for (Candidate& name : parameter.names()) values.push_back(std::move(name));
    }
    return values;
}

/// The words that may follow the words `before` in the name of a verb. If `before` is empty, these are the first words
/// of all names.
std::vector<Candidate> verbWords(std::string_view before) {
    std::vector<Candidate> words;
    const std::string lead = before.empty() ? "" : std::string(before) + " ";
    for (const Verb& verb : verbs()) {
        if (!verb.name.starts_with(lead)) continue;
        const std::string_view rest = verb.name.substr(lead.size());
        const std::string word(rest.substr(0, rest.find(' ')));
        const bool isLastWord = word.size() == rest.size();
        if (words.empty() || words.back().text != word)
            words.push_back({word, std::string(isLastWord ? verb.summary : "")});
    }
    return words;
}

/// Reads the words after a verb one by one, and knows which words may come next.
class Position {
  public:
    explicit Position(const Verb& verb) {
        for (const Parameter& parameter : verb.parameters) parameters_.push_back(&parameter);
        parameters_.push_back(&kJson);
    }

    void advance(std::string_view word) {
        if (awaited_) {
            awaited_ = nullptr;
        } else if (word.starts_with("-") && word.size() > 1) {
            const auto equals = word.find('=');
            const Parameter* option = optionNamed(word.substr(0, equals));
            if (!option) return;
            taken_.push_back(option);
            if (!option->value.empty() && equals == std::string_view::npos) awaited_ = option;
        } else if (const Parameter* next = nextPositional()) {
            taken_.push_back(next);
        }
    }

    std::vector<Candidate> candidates(std::string_view current) const {
        if (awaited_) return valuesOf(*awaited_);
        if (const auto equals = current.find('='); current.starts_with("--") && equals != std::string_view::npos) {
            const Parameter* option = optionNamed(current.substr(0, equals));
            auto values = option ? valuesOf(*option) : std::vector<Candidate>{};
            for (Candidate& value : values) value.text.insert(0, current.substr(0, equals + 1));
            return values;
        }
        if (const Parameter* next = nextPositional(); next && !current.starts_with("-")) return valuesOf(*next);
        return current.starts_with("-") || !nextPositional() ? options() : std::vector<Candidate>{};
    }

  private:
    bool isTaken(const Parameter* parameter) const {
        return std::find(taken_.begin(), taken_.end(), parameter) != taken_.end();
    }
    const Parameter* optionNamed(std::string_view name) const {
        const auto found = std::find_if(parameters_.begin(), parameters_.end(), [&](const Parameter* each) {
            return !each->isPositional() && each->optionName == name;
        });
        return found == parameters_.end() ? nullptr : *found;
    }
    const Parameter* nextPositional() const {
        const auto found = std::find_if(parameters_.begin(), parameters_.end(),
                                        [&](const Parameter* each) { return each->isPositional() && !isTaken(each); });
        return found == parameters_.end() ? nullptr : *found;
    }
    std::vector<Candidate> options() const {
        std::vector<Candidate> all;
        for (const Parameter* each : parameters_) {
            if (!each->isPositional() && !isTaken(each))
                all.push_back({std::string(each->optionName), std::string(each->meaning)});
        }
        all.push_back({"--help", "show what the verb does"});
        return all;
    }

    std::vector<const Parameter*> parameters_;
    std::vector<const Parameter*> taken_;
    const Parameter* awaited_ = nullptr; // an option whose value comes next
};

std::vector<Candidate> allCandidates(std::span<const std::string> before, std::string_view current) {
    while (!before.empty() && before.front() == "--json") before = before.subspan(1);
    const bool isHelp = !before.empty() && before.front() == "help";
    if (isHelp) before = before.subspan(1);
    if (before.empty()) {
        auto words = verbWords("");
        if (!isHelp) words.push_back({"help", "explain a verb"});
        return words;
    }
    const Verb* verb = before.size() > 1 ? verbNamed(before[0] + " " + before[1]) : nullptr;
    before = before.subspan(verb ? 2 : 0);
    if (!verb && (verb = verbNamed(before[0]))) before = before.subspan(1);
    if (!verb) return before.size() == 1 ? verbWords(before[0]) : std::vector<Candidate>{};
    if (isHelp) return {};
    Position position(*verb);
    for (const auto& word : before) position.advance(word);
    auto candidates = position.candidates(current);
    // A verb can be the beginning of another verb: “focus” and “focus display”.
    if (before.empty()) {
        for (Candidate& word : verbWords(verb->name)) candidates.push_back(std::move(word));
    }
    return candidates;
}

bool isSameLetter(char a, char b) {
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    return lower(a) == lower(b);
}

/// Whether the candidate begins with `current`, in any case. A candidate with control characters does not fit, because
/// the shell prints it on the terminal.
bool fits(const Candidate& candidate, std::string_view current) {
    const std::string& text = candidate.text;
    if (text.empty()) return candidate.description == "files";
    return printable(text) == text && text.size() >= current.size() &&
           std::equal(current.begin(), current.end(), text.begin(), isSameLetter);
}

} // namespace

std::vector<Candidate> candidatesFor(std::span<const std::string> words) {
    if (words.empty()) return {};
    const std::string& current = words.back();
    std::vector<Candidate> found;
    try {
        found = allCandidates(words.first(words.size() - 1), current);
    } catch (const nlohmann::json::exception&) {
        return {}; // the agent has another version, and its result has another form
    }
    std::vector<Candidate> fitting;
    for (Candidate& each : found) {
        const auto isSame = [&](const Candidate& other) { return other.text == each.text; };
        if (!fits(each, current) || std::any_of(fitting.begin(), fitting.end(), isSame)) continue;
        each.description = clipped(printable(each.description), kLongestDescription);
        fitting.push_back(std::move(each));
    }
    return fitting;
}

ExitCode runComplete(std::span<char* const> words) {
    std::string out;
    for (const Candidate& each : candidatesFor(std::vector<std::string>(words.begin(), words.end()))) {
        out += each.text + "\t" + each.description + "\n";
    }
    return print(out);
}

} // namespace kova::cli
