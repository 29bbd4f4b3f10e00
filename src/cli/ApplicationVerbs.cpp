#include "cli/ApplicationVerbs.h"

#include "cli/PlainVerbs.h"
#include "cli/Streams.h"

#include <unistd.h>

#include <chrono>
#include <string>

namespace kova::cli {

namespace {

using nlohmann::json;

constexpr std::chrono::seconds kLaunchTimeout{10};

std::string lowercasedAscii(std::string text) {
    for (char& c : text) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    return text;
}

/// Prints the question to standard error, because standard output is for the result.
bool isConfirmedAtTerminal(const json& question) {
    printToStandardError(
        printableLines(question.at("title").get<std::string>() + "\n" + question.at("text").get<std::string>() + "\n"));
    printToStandardError("\nType “yes” to " + lowercasedAscii(question.at("confirm").get<std::string>()) + ": ");
    const auto answer = readLine();
    return answer && lowercasedAscii(*answer) == "yes";
}

} // namespace

ExitCode runLaunch(const Verb& verb, const Arguments& arguments) {
    auto agent = Agent::connect();
    if (!agent) return fail(agent.error());
    const auto result = agent->ask(verb.method, arguments.request);
    if (!result) return fail(result.error());
    const auto launched = agent->next("launched", kLaunchTimeout);
    if (!launched) return fail(launched.error());
    const json& error = launched->at("error");
    if (error.is_string()) return fail({ExitCode::refused, error.get<std::string>()});
    return printAnswer(verb, arguments, *result);
}

ExitCode runSceneOpen(const Verb& verb, const Arguments& arguments) {
    auto agent = Agent::connect();
    if (!agent) return fail(agent.error());
    auto result = agent->ask(verb.method, arguments.request);
    if (!result) return fail(result.error());
    const bool waits = arguments.has("wait");
    while (waits && result->at("report").at("state") == "waiting") {
        auto opened = agent->next("sceneOpened"); // no timeout: while the screen is locked, windows may come late
        if (!opened) return fail(opened.error());
        (*result)["report"] = opened->at("report");
    }
    const ExitCode printed = printAnswer(verb, arguments, *result);
    if (printed != ExitCode::done) return printed;
    const json& report = result->at("report");
    if (report.at("state") == "abandoned") {
        return fail(
            {ExitCode::refused, "Another scene was opened, or the opening was undone, before all windows came."});
    }
    return waits && !report.at("missing").empty() ? ExitCode::refused : ExitCode::done;
}

ExitCode runForceQuitAll(const Verb& verb, const Arguments& arguments) {
    auto agent = Agent::connect();
    if (!agent) return fail(agent.error());
    const auto plan = agent->ask(verb.method, json::object());
    if (!plan) return fail(plan.error());
    const json& question = plan->at("question");
    if (plan->at("applications").empty()) {
        const std::string notice =
            question.at("title").get<std::string>() + "\n" + question.at("text").get<std::string>();
        return print(arguments.json ? asText(*plan, 2) : printableLines(notice));
    }
    if (!arguments.has("yes")) {
        if (!canAsk()) {
            return fail({ExitCode::refused, "There is no terminal to ask at. With --yes nothing is asked."});
        }
        if (!isConfirmedAtTerminal(question)) return fail({ExitCode::refused, "Nothing was force quit"});
    }
    const auto result = agent->ask(verb.method, {{"confirmed", plan->at("applications")}});
    return result ? printAnswer(verb, arguments, *result) : fail(result.error());
}

} // namespace kova::cli
