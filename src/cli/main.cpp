// The command line: finds the verb, asks the agent, prints the answer. It starts in less time than the agent needs to
// answer, so nothing is built that the verb at hand does not use.
#include "cli/ApplicationVerbs.h"
#include "cli/Completion.h"
#include "cli/DiagnosisVerbs.h"
#include "cli/DocumentVerbs.h"
#include "cli/Output.h"
#include "cli/Parser.h"
#include "cli/ShortcutVerbs.h"
#include "cli/Streams.h"
#include "cli/WindowVerbs.h"
#include "support/Spelling.h"
#include "support/Version.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kova::cli {

namespace {

using nlohmann::json;

json parametersOf(const Arguments& arguments) {
    json parameters = json::object();
    if (arguments.dryRun) parameters["dryRun"] = true;
    if (arguments.wait) parameters["wait"] = true;
    if (arguments.layout) parameters["layout"] = *arguments.layout;
    if (arguments.display) parameters["display"] = *arguments.display;
    if (arguments.window) parameters["window"] = *arguments.window;
    if (arguments.points) parameters["points"] = *arguments.points;
    if (arguments.direction) parameters["direction"] = *arguments.direction;
    if (arguments.split) parameters["split"] = *arguments.split;
    if (arguments.boundary) parameters["boundary"] = *arguments.boundary;
    if (arguments.application) parameters["application"] = *arguments.application;
    if (arguments.tile) parameters["tile"] = *arguments.tile;
    if (arguments.scene) parameters["scene"] = *arguments.scene;
    if (arguments.name) parameters["name"] = *arguments.name;
    if (arguments.newName) parameters["newName"] = *arguments.newName;
    if (arguments.rule) parameters["rule"] = *arguments.rule;
    if (arguments.place) parameters["to"] = *arguments.place;
    if (arguments.focused) parameters["focused"] = true;
    if (arguments.title) parameters["title"] = *arguments.title;
    if (arguments.disposition) parameters["disposition"] = *arguments.disposition;
    if (arguments.slot) parameters["slot"] = *arguments.slot;
    if (arguments.action) parameters["action"] = *arguments.action;
    if (arguments.keys) parameters["keys"] = *arguments.keys;
    if (arguments.url) parameters["url"] = *arguments.url;
    if (arguments.theme) parameters["theme"] = *arguments.theme;
    if (arguments.accent) parameters["accentColor"] = *arguments.accent;
    if (arguments.choice) parameters["isOn"] = *arguments.choice == "on";
    if (arguments.with) parameters["with"] = *arguments.with;
    if (arguments.to) parameters["to"] = *arguments.to;
    if (arguments.what) parameters["what"] = *arguments.what;
    if (arguments.entry) parameters["id"] = *arguments.entry;
    if (arguments.step) parameters["step"] = *arguments.step;
    return parameters;
}

ExitCode runSubscribe(const Arguments& arguments) {
    auto connected = Agent::connect();
    if (const auto* trouble = std::get_if<Trouble>(&connected)) return end(*trouble);
    Agent& agent = std::get<Agent>(connected);
    auto answer = agent.ask("subscribe", json::object());
    if (const auto* trouble = std::get_if<Trouble>(&answer)) return end(*trouble);
    const auto show = [&](const json& told, const char* sections) {
        return write(STDOUT_FILENO,
                     arguments.json ? asText(told, -1) : printChanges(told.at("sequence"), told.at(sections)));
    };
    bool isHeard = show(std::get<json>(answer), "state");
    while (isHeard) {
        auto heard = agent.next();
        if (const auto* trouble = std::get_if<Trouble>(&heard)) return end(*trouble);
        const json& message = std::get<json>(heard);
        if (message.value("method", "") == "changed") isHeard = show(message.at("params"), "changes");
    }
    return endUnwritten();
}

ExitCode run(const Verb& verb, const Arguments& arguments) {
    if (verb.name == "doctor") return runDoctor(arguments);
    if (verb.name == "log") return runLog(arguments);
    if (verb.name == "bugreport") return runBugReport(arguments);
    if (verb.name == "subscribe") return runSubscribe(arguments);
    if (verb.name == "launch") return runLaunch(verb, arguments, parametersOf(arguments));
    if (verb.name == "scene open") return runSceneOpen(verb, arguments, parametersOf(arguments));
    if (verb.name == "force-quit-all") return runForceQuitAll(verb, arguments);
    if (verb.name == "shortcut set") return runShortcutSet(verb, arguments, parametersOf(arguments));
    if (verb.name == "shortcut record") return runShortcutRecord(verb, arguments, parametersOf(arguments));
    if (verb.name == "export") return runExport(verb, arguments);
    if (verb.name == "import") return runImport(verb, arguments);
    if (verb.name == "verify") return runVerify(verb, arguments);
    auto connected = Agent::connect();
    if (const auto* trouble = std::get_if<Trouble>(&connected)) return end(*trouble);
    auto answer = std::get<Agent>(connected).ask(verb.method, parametersOf(arguments));
    if (const auto* trouble = std::get_if<Trouble>(&answer)) return end(*trouble);
    const json& result = std::get<json>(answer);
    return print(arguments.json ? asText(result, 2) : verb.print(result, arguments));
}

/// What a menu does with the program: there is an agent afterwards. It takes the place of this process.
ExitCode startAgent(const Arguments& arguments) {
    auto connected = Agent::connect();
    if (std::holds_alternative<Agent>(connected)) return run(*verbNamed("status"), arguments);
#if defined(__APPLE__)
    execl("/usr/bin/open", "open", "-a", "KOVA", static_cast<char*>(nullptr)); // the system knows where it lies
#else
    execlp("kova-agent", "kova-agent", static_cast<char*>(nullptr));
#endif
    return end({ExitCode::noAgent, std::string("kova-agent cannot be started: ") + std::strerror(errno)});
}

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

/// The verbs, or the words after a group, that a misspelt one may mean: the nearest alone, else none.
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
        return end({ExitCode::wrongUsage, "There is no verb “" + group + "”" + hint + "\nTry “kova help”.", meant});
    }
    if (asksForHelp(second)) return print(members);
    const auto meant = meantInstead(group + " ", second);
    const std::string what = second.empty() ? "“" + group + "” alone is no verb"
                                            : "There is no “" + group + " " + second + "”" + asQuestion(meant);
    return end({ExitCode::wrongUsage, what + (meant.empty() ? ". " : " ") + "There is:\n" + members, meant});
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
    if (const auto* ended = std::get_if<ParseEnd>(&parsed)) {
        if (ended->code != ExitCode::done) return end({ended->code, ended->text});
        return print(ended->text);
    }
    auto& arguments = std::get<Arguments>(parsed);
    arguments.json = arguments.json || wantsJson;
    if (verb->name == "open" && !arguments.url) return startAgent(arguments);
    return run(*verb, arguments);
}

} // namespace

} // namespace kova::cli

int main(int argc, char** argv) {
    using namespace kova::cli;
    const std::span<char* const> words(argv + (argc > 0 ? 1 : 0), argv + argc);
    try {
        return static_cast<int>(runCommand(words));
    } catch (const std::exception& error) {
        // An answer that is not what this version knows how to read.
        return static_cast<int>(
            end({ExitCode::refused, std::string("The agent's answer makes no sense: ") + error.what()}));
    }
}
