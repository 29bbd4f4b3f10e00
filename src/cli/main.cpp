// The command line: finds the verb, sends the request, prints the result. Creates only what the verb uses, so that the
// program starts in less time than the agent needs to respond.
#include "cli/Completion.h"
#include "cli/Parser.h"
#include "cli/PlainVerbs.h"
#include "cli/Streams.h"
#include "support/Quoted.h"
#include "support/Spelling.h"
#include "support/Version.h"

#include <algorithm>
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

enum class Format { text, json };

/// The words that can follow `lead` in the names of verbs; with an empty `lead` the first words of all names.
std::vector<std::string> wordsAfter(std::string_view lead) {
    std::vector<std::string> words;
    for (const Verb& verb : verbs()) {
        if (!verb.name.starts_with(lead)) continue;
        const std::string_view rest = verb.name.substr(lead.size());
        std::string word(rest.substr(0, rest.find(' ')));
        if (std::find(words.begin(), words.end(), word) == words.end()) words.push_back(std::move(word));
    }
    return words;
}

/// “. Did you mean “kova layout select”?”; empty when no verb is near.
std::string nearestVerb(const std::string& lead, const std::string& word) {
    const auto known = wordsAfter(lead);
    const auto nearest = nearestWord(word, known);
    return nearest ? ". Did you mean “kova " + lead + known[*nearest] + "”?" : "";
}

/// Prints the verbs of the group with their summaries; all verbs if it is empty.
ExitCode printOverview(const std::string& group, Format format) {
    if (format == Format::text) return print(group.empty() ? overview() : groupOverview(group));
    nlohmann::json listed = nlohmann::json::array();
    for (const Verb& verb : verbs()) {
        if (group.empty() || verb.name.starts_with(group + " ")) {
            listed.push_back({{"name", verb.name}, {"summary", verb.summary}});
        }
    }
    return print(asText({{"verbs", std::move(listed)}}, 2));
}

ExitCode printHelp(const Verb& verb, Format format) {
    return print(format == Format::text ? help(verb) : asText({{"verb", helpRecord(verb)}}, 2));
}

ExitCode unknown(std::span<char* const> words, Format format) {
    const std::string group(words[0]);
    const std::string members = groupOverview(group);
    const std::string second = words.size() > 1 && std::string_view(words[1]) != "--json" ? words[1] : "";
    if (members.empty()) {
        const std::string hint = nearestVerb("", group);
        return fail({ExitCode::wrongUsage,
                     "There is no verb " + quoted(group) + (hint.empty() ? "." : hint) + "\nTry “kova help”.",
                     wordsAfter("")});
    }
    if (asksForHelp(second)) return printOverview(group, format);
    const std::string lead = group + " ";
    const std::string hint = second.empty() ? "" : nearestVerb(lead, second);
    const std::string what =
        second.empty() ? quoted(group) + " alone is no verb" : "There is no “" + group + " " + second + "”" + hint;
    return fail({ExitCode::wrongUsage, what + (hint.empty() ? ". " : " ") + "There is:\n" + members, wordsAfter(lead)});
}

ExitCode showHelp(std::span<char* const> topic, Format format) {
    while (!topic.empty() && std::string_view(topic.back()) == "--json") topic = topic.first(topic.size() - 1);
    if (topic.empty()) return printOverview("", format);
    const auto [verb, count] = findVerb(topic);
    if (verb && count == topic.size()) return printHelp(*verb, format);
    if (topic.size() == 1 && !groupOverview(topic[0]).empty()) return printOverview(topic[0], format);
    return unknown(topic, format);
}

ExitCode runCommand(std::span<char* const> words) {
    Format format = Format::text;
    for (; !words.empty() && std::string_view(words[0]) == "--json"; words = words.subspan(1)) format = Format::json;
    for (const std::string_view word : words) {
        if (word == "--") break;
        if (word == "--json") format = Format::json;
    }
    const bool isCompletion = !words.empty() && std::string_view(words[0]) == "--complete";
    if (format == Format::json && !isCompletion) reportErrorsAsJson();
    if (words.empty()) {
        if (format == Format::json) return fail({ExitCode::wrongUsage, "A verb is missing", wordsAfter("")});
        return printToStandardError(overview()), ExitCode::wrongUsage;
    }
    if (std::string_view(words[0]) == "--version") {
        return print(format == Format::json ? asText({{"version", KOVA_VERSION}}, 2) : "kova " KOVA_VERSION "\n");
    }
    if (isCompletion) return runComplete(words.subspan(1));
    if (asksForHelp(words[0])) return showHelp(words.subspan(1), format);

    const auto [verb, count] = findVerb(words);
    if (!verb) return unknown(words, format);
    auto parsed = parse(*verb, words.subspan(count));
    if (!parsed) {
        const ParseEnd& ended = parsed.error();
        return ended.code == ExitCode::done ? printHelp(*verb, format) : fail({ended.code, ended.text, ended.choices});
    }
    parsed->json = format == Format::json;
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
        // The agent has another version, whose results have other members.
        return static_cast<int>(
            fail({ExitCode::refused, std::string("Unexpected response from the agent: ") + error.what()}));
    }
}
