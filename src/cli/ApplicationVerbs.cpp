#include "cli/ApplicationVerbs.h"

#include "cli/Streams.h"

#include <unistd.h>

#include <chrono>
#include <string>

namespace kova::cli {

namespace {

using nlohmann::json;

constexpr std::chrono::seconds kPatienceWithStarting{10};

std::string lowercasedAscii(std::string text) {
    for (char& c : text) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    return text;
}

/// The agent's question, put to the person at the terminal. Standard output is left to the answer.
bool isConfirmedAtTerminal(const json& question) {
    complain(
        printableLines(question.at("title").get<std::string>() + "\n" + question.at("text").get<std::string>() + "\n"));
    complain("\nType “yes” to " + lowercasedAscii(question.at("confirm").get<std::string>()) + ": ");
    const auto answer = readLine();
    return answer && lowercasedAscii(*answer) == "yes";
}

} // namespace

ExitCode runLaunch(const Verb& verb, const Arguments& arguments, const json& parameters) {
    auto connected = Agent::connect();
    if (const auto* trouble = std::get_if<Trouble>(&connected)) return end(*trouble);
    Agent& agent = std::get<Agent>(connected);
    auto answer = agent.ask(verb.method, parameters);
    if (const auto* trouble = std::get_if<Trouble>(&answer)) return end(*trouble);
    while (true) {
        auto heard = agent.next(kPatienceWithStarting);
        if (const auto* trouble = std::get_if<Trouble>(&heard)) return end(*trouble);
        const json& message = std::get<json>(heard);
        if (message.value("method", "") != "launched") continue;
        const json& error = message.at("params").at("error");
        if (error.is_string()) return end({ExitCode::refused, error.get<std::string>()});
        break;
    }
    const json& result = std::get<json>(answer);
    return print(arguments.json ? asText(result, 2) : verb.print(result, arguments));
}

ExitCode runSceneOpen(const Verb& verb, const Arguments& arguments, const json& parameters) {
    auto connected = Agent::connect();
    if (const auto* trouble = std::get_if<Trouble>(&connected)) return end(*trouble);
    Agent& agent = std::get<Agent>(connected);
    auto answer = agent.ask(verb.method, parameters);
    if (const auto* trouble = std::get_if<Trouble>(&answer)) return end(*trouble);
    json& result = std::get<json>(answer);
    while (arguments.wait && result.at("report").at("state") == "waiting") {
        auto heard = agent.next(); // while the screen is locked, the windows may come as late as they like
        if (const auto* trouble = std::get_if<Trouble>(&heard)) return end(*trouble);
        const json& message = std::get<json>(heard);
        if (message.value("method", "") == "sceneOpened") result["report"] = message.at("params").at("report");
    }
    const ExitCode printed = print(arguments.json ? asText(result, 2) : verb.print(result, arguments));
    if (printed != ExitCode::done) return printed;
    const json& report = result.at("report");
    if (report.at("state") == "abandoned") {
        return end(
            {ExitCode::refused, "Another scene was opened, or the opening was undone, before all windows came."});
    }
    return arguments.wait && !report.at("missing").empty() ? ExitCode::refused : ExitCode::done;
}

ExitCode runForceQuitAll(const Verb& verb, const Arguments& arguments) {
    auto connected = Agent::connect();
    if (const auto* trouble = std::get_if<Trouble>(&connected)) return end(*trouble);
    Agent& agent = std::get<Agent>(connected);
    auto asked = agent.ask(verb.method, json::object());
    if (const auto* trouble = std::get_if<Trouble>(&asked)) return end(*trouble);
    const json& plan = std::get<json>(asked);
    const json& question = plan.at("question");
    if (plan.at("applications").empty()) {
        const std::string notice =
            question.at("title").get<std::string>() + "\n" + question.at("text").get<std::string>();
        return print(arguments.json ? asText(plan, 2) : printableLines(notice));
    }
    if (!arguments.yes) {
        if (!canAsk()) {
            return end({ExitCode::refused, "There is no terminal to ask at. With --yes nothing is asked."});
        }
        if (!isConfirmedAtTerminal(question)) return end({ExitCode::refused, "Nothing was force quit"});
    }
    auto answer = agent.ask(verb.method, {{"confirmed", plan.at("applications")}});
    if (const auto* trouble = std::get_if<Trouble>(&answer)) return end(*trouble);
    const json& result = std::get<json>(answer);
    return print(arguments.json ? asText(result, 2) : verb.print(result, arguments));
}

} // namespace kova::cli
