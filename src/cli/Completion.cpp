#include "cli/Completion.h"

#include "cli/Agent.h"
#include "cli/Parser.h"
#include "cli/Streams.h"
#include "cli/Terminal.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <string_view>

namespace kova::cli {

namespace {

using nlohmann::json;

/// Nobody notices that long; whoever presses a key twice would notice more.
constexpr std::chrono::milliseconds kPatience{300};
constexpr std::size_t kLongestDescription = 60; // columns

/// Where the agent knows names: in the records of one answer.
struct NameSource {
    std::uint64_t takenBy; // of `Takes`
    std::string_view method;
    const char* records;
    const char* name;
    const char* description;
};

constexpr std::array kNameSources = std::to_array<NameSource>({
    {kLayout | kRequiredLayout, "layout.list", "layouts", "id", "name"},
    {kDisplay | kDisplayWord, "query.displays", "displays", "name", "id"},
    {kApplication | kRuleApplication | kPreferredApplication, "app.list", "applications", "id", "name"},
    {kTile | kSlot | kPlaceTile | kTileOption | kSwapWith | kPreferredTile, "query.tiles", "tiles", "slot", "name"},
    {kSplit, "divider.list", "dividers", "split", "axis"},
    {kBoundary, "divider.list", "dividers", "boundary", "split"},
    {kScene, "scene.list", "scenes", "name", "createdAt"},
    {kRule, "rule.list", "rules", "name", "disposition"},
    {kTheme, "theme.list", "themes", "id", "displayName"},
    {kAccent, "accent.list", "accentColors", "id", "displayName"},
    {kShortcutAction, "shortcut.list", "shortcuts", "action", "title"},
});

std::string textOf(const json& value) {
    if (value.is_string()) return value.get<std::string>();
    return value.is_number_integer() ? std::to_string(value.get<std::int64_t>()) : "";
}

/// The records of the agent's answer; none when there is no agent, or it takes its time.
json recordsFrom(std::string_view method, const char* records) {
    auto connected = Agent::connect();
    auto* agent = std::get_if<Agent>(&connected);
    if (!agent) return json::array();
    auto answer = agent->ask(method, json::object(), kPatience);
    const auto* result = std::get_if<json>(&answer);
    return result && result->contains(records) ? (*result)[records] : json::array();
}

/// A window goes by its application, or by its title where the application has several.
std::vector<Candidate> windowNames() {
    const json windows = recordsFrom("query.windows", "windows");
    std::vector<Candidate> names;
    for (const json& window : windows) {
        const auto isOfTheSame = [&](const json& other) { return other.at("application") == window.at("application"); };
        const bool isAlone = std::count_if(windows.begin(), windows.end(), isOfTheSame) == 1;
        const std::string application = textOf(window.at("application"));
        const std::string title = textOf(window.at("title"));
        names.push_back(isAlone ? Candidate{application, title} : Candidate{title, application});
    }
    return names;
}

std::vector<Candidate> namesFrom(const NameSource& source) {
    std::vector<Candidate> names;
    for (const json& record : recordsFrom(source.method, source.records)) {
        Candidate name{textOf(record.value(source.name, json())), textOf(record.value(source.description, json()))};
        // What follows the last dot of a layout's id is enough.
        if (source.method == "layout.list") name.text.erase(0, name.text.rfind('.') + 1);
        names.push_back(std::move(name));
    }
    return names;
}

std::vector<Candidate> valuesOf(const Taking& taking) {
    if (taking.takenBy == kDirection) return {{"left", ""}, {"right", ""}, {"up", ""}, {"down", ""}};
    if (taking.takenBy == kStackStep) return {{"next", ""}, {"previous", ""}};
    if (taking.takenBy == kDisposition || taking.takenBy == kNewDisposition)
        return {{"tile", ""}, {"float", ""}, {"ignore", ""}};
    if (taking.takenBy == kSwitch) return {{"on", ""}, {"off", ""}};
    if (taking.takenBy == kLevel) return {{"detail", ""}, {"note", ""}, {"warning", ""}, {"error", ""}};
    if (taking.takenBy == kFile || taking.takenBy == kNewFile) return {{"", "files"}};
    if (taking.takenBy == kWindow || taking.takenBy == kRequiredWindow || taking.takenBy == kWindowOption)
        return windowNames();
    std::vector<Candidate> values;
    if (taking.takenBy == kSwapWith) values = {{"left", ""}, {"right", ""}, {"up", ""}, {"down", ""}};
    if (taking.takenBy == kDisplayWord) values = {{"next", ""}, {"previous", ""}};
    for (const NameSource& source : kNameSources) {
        if ((source.takenBy & taking.takenBy) == 0) continue;
        for (Candidate& name : namesFrom(source)) values.push_back(std::move(name));
    }
    if (taking.takenBy == kRequiredLayout) values.push_back({"automatic", "as the display's shape decides"});
    return values;
}

/// The words that follow `before` in the names of verbs: groups and verbs, or the verbs of a group.
std::vector<Candidate> verbWords(std::string_view before) {
    std::vector<Candidate> words;
    const std::string lead = before.empty() ? "" : std::string(before) + " ";
    for (const Verb& verb : verbs()) {
        if (!verb.name.starts_with(lead)) continue;
        const std::string_view rest = verb.name.substr(lead.size());
        const std::string word(rest.substr(0, rest.find(' ')));
        const bool isWhole = word.size() == rest.size();
        if (words.empty() || words.back().text != word)
            words.push_back({word, std::string(isWhole ? verb.summary : "")});
    }
    return words;
}

/// What may follow the words of a verb.
class Position {
  public:
    explicit Position(const Verb& verb) : takings_(takingsOf(verb)) {}

    void pass(std::string_view word) {
        if (awaited_) {
            awaited_ = nullptr;
        } else if (word.starts_with("-") && word.size() > 1) {
            const auto equals = word.find('=');
            const Taking* option = optionNamed(word.substr(0, equals));
            if (!option) return;
            taken_.push_back(option);
            if (!option->value.empty() && equals == std::string_view::npos) awaited_ = option;
        } else if (const Taking* next = nextWord()) {
            taken_.push_back(next);
        }
    }

    std::vector<Candidate> candidates(std::string_view current) const {
        if (awaited_) return valuesOf(*awaited_);
        if (const auto equals = current.find('='); current.starts_with("--") && equals != std::string_view::npos) {
            const Taking* option = optionNamed(current.substr(0, equals));
            auto values = option ? valuesOf(*option) : std::vector<Candidate>{};
            for (Candidate& value : values) value.text.insert(0, current.substr(0, equals + 1));
            return values;
        }
        if (const Taking* next = nextWord(); next && !current.starts_with("-")) return valuesOf(*next);
        return current.starts_with("-") || !nextWord() ? options() : std::vector<Candidate>{};
    }

  private:
    bool isTaken(const Taking& taking) const {
        return std::find(taken_.begin(), taken_.end(), &taking) != taken_.end();
    }
    const Taking* optionNamed(std::string_view flag) const {
        const auto found =
            std::find_if(takings_.begin(), takings_.end(), [&](const Taking& each) { return each.flag == flag; });
        return found == takings_.end() || flag.empty() ? nullptr : &*found;
    }
    const Taking* nextWord() const {
        const auto found = std::find_if(takings_.begin(), takings_.end(),
                                        [&](const Taking& each) { return each.flag.empty() && !isTaken(each); });
        return found == takings_.end() ? nullptr : &*found;
    }
    std::vector<Candidate> options() const {
        std::vector<Candidate> all;
        for (const Taking& each : takings_) {
            if (!each.flag.empty() && !isTaken(each))
                all.push_back({std::string(each.flag), std::string(each.meaning)});
        }
        all.push_back({"--help", "show what the verb does"});
        return all;
    }

    std::vector<Taking> takings_;
    std::vector<const Taking*> taken_;
    const Taking* awaited_ = nullptr; // an option whose value comes next
};

std::vector<Candidate> everything(std::span<const std::string> before, std::string_view current) {
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
    for (const auto& word : before) position.pass(word);
    auto candidates = position.candidates(current);
    // “focus” is a verb, and “focus display” another one.
    if (before.empty()) {
        for (Candidate& word : verbWords(verb->name)) candidates.push_back(std::move(word));
    }
    return candidates;
}

bool isSameLetter(char a, char b) {
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    return lower(a) == lower(b);
}

/// A shell gets one candidate a line, and nothing that would steer the terminal.
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
        found = everything(words.first(words.size() - 1), current);
    } catch (const json::exception&) {
        return {}; // an agent of another version
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
