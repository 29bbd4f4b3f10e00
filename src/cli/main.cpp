// The command line: finds the verb, sends the request, prints the result. Nothing is built that the verb does not use,
// so that it starts in less time than the agent needs to respond.
#include "cli/Completion.h"
#include "cli/Parser.h"
#include "cli/PlainVerbs.h"
#include "cli/Streams.h"
#include "support/Spelling.h"
#include "support/Version.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kova::cli {

namespace {

/// The verb that the words begin with, and how many of them name it.
std::pair<const Verb*, std::size_t> findVerb(std::span<char* const> words) {
    for (const std::size_t count : {std::size_t{2}, std::size_t{1}}) {
        if (words.size() < count) continue;
        const std::string name = std::string(words[0]) + (count == 2 ? std::string(" ") + words[1] : "");
        if (const Verb* verb = verbNamed(name)) return {verb, count};
    }
    return {nullptr, 0};
}

bool asksForHelp(std::string_view word) {
    return word == "--help" || word == "-h" || word == "help";
}

/// The verbs, or the words after a group, that a misspelled one may mean: the nearest alone, else none.
std::vector<std::string> meantInstead(std::string_view lead, std::string_view word) {
    std::vector<std::string> known;
    for (const Verb& verb : verbs()) {
        if (!verb.name.starts_with(lead)) continue;
        const std::string_view rest = verb.name.substr(lead.size());
        known.emplace_back(rest.substr(0, rest.find(' ')));
    }
    const auto nearest = nearestWord(word, known);
    return nearest ? std::vector{std::string(lead) + known[*nearest]} : std::vector<std::string>{};
}

std::string asQuestion(const std::vector<std::string>& meant) {
    return meant.empty() ? "" : ". Did you mean “kova " + meant.front() + "”?";
}

ExitCode unknown(std::span<char* const> words) {
    const std::string group(words[0]);
    const std::string members = groupOverview(group);
    const std::string second = words.size() > 1 ? words[1] : "";
    if (members.empty()) {
        const auto meant = meantInstead("", group);
        const std::string hint = meant.empty() ? "." : asQuestion(meant);
        return fail({ExitCode::wrongUsage, "There is no verb “" + group + "”" + hint + "\nTry “kova help”.", meant});
    }
    if (asksForHelp(second)) return print(members);
    const auto meant = meantInstead(group + " ", second);
    const std::string what = second.empty() ? "“" + group + "” alone is no verb"
                                            : "There is no “" + group + " " + second + "”" + asQuestion(meant);
    return fail({ExitCode::wrongUsage, what + (meant.empty() ? ". " : " ") + "There is:\n" + members, meant});
}

ExitCode showHelp(std::span<char* const> topic) {
    if (topic.empty()) return print(overview());
    const auto [verb, count] = findVerb(topic);
    if (verb && count == topic.size()) return print(help(*verb));
    if (const std::string members = groupOverview(topic[0]); topic.size() == 1 && !members.empty()) {
        return print(members);
    }
    return unknown(topic);
}

ExitCode runCommand(std::span<char* const> words) {
    bool wantsJson = false;
    for (; !words.empty() && std::string_view(words[0]) == "--json"; words = words.subspan(1)) wantsJson = true;
    for (const std::string_view word : words) {
        if (word == "--") break;
        wantsJson = wantsJson || word == "--json";
    }
    const bool isCompletion = !words.empty() && std::string_view(words[0]) == "--complete";
    if (wantsJson && !isCompletion) reportErrorsAsJson();
    if (words.empty()) return complain(overview()), ExitCode::wrongUsage;
    if (std::string_view(words[0]) == "--version") return print("kova " KOVA_VERSION "\n");
    if (isCompletion) return runComplete(words.subspan(1));
    if (asksForHelp(words[0])) return showHelp(words.subspan(1));

    const auto [verb, count] = findVerb(words);
    if (!verb) return unknown(words);
    auto parsed = parse(*verb, words.subspan(count));
    if (!parsed) {
        const ParseEnd& ended = parsed.error();
        return ended.code == ExitCode::done ? print(ended.text) : fail({ended.code, ended.text});
    }
    parsed->json = wantsJson;
    return run(*verb, *parsed);
}

} // namespace

} // namespace kova::cli

int main(int argc, char** argv) {
    using namespace kova::cli;
    const std::span<char* const> words(argv + (argc > 0 ? 1 : 0), argv + argc);
    try {
        return static_cast<int>(runCommand(words));
    } catch (const std::exception& error) {
        // An answer of another version of the agent.
        return static_cast<int>(
            fail({ExitCode::refused, std::string("Unexpected response from the agent: ") + error.what()}));
    }
}
