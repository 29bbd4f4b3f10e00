#include "cli/ShortcutVerbs.h"

#include "cli/Streams.h"
#include "cli/Table.h"
#include "cli/Terminal.h"

#include <unistd.h>

#include <chrono>

namespace kova::cli {

namespace {

using nlohmann::json;

/// The agent tells sooner, whether it has found out or not.
constexpr std::chrono::seconds kPatienceWithClaims{3};

/// What is odd about a shortcut; empty when nothing is.
std::string remark(const json& shortcut) {
    std::string out;
    if (shortcut["action"] == "commandCenter" && !shortcut["keys"].is_null()) out = "does nothing any more";
    if (!shortcut["conflict"].is_null()) {
        out += (out.empty() ? "" : "; ") + ("also the shortcut of " + shortcut["conflict"].get<std::string>());
    }
    if (shortcut["isHeldByOther"].get<bool>()) {
        out += std::string(out.empty() ? "" : "; ") + "held by another program";
    }
    return out;
}

/// Waits until it is known who holds the new combination, and puts that into the answer.
ExitCode finish(Agent& agent, const Verb& verb, const Arguments& arguments, json result) {
    while (true) {
        auto heard = agent.next(kPatienceWithClaims);
        if (const auto* trouble = std::get_if<Trouble>(&heard)) return end(*trouble);
        const json& message = std::get<json>(heard);
        if (message.value("method", "") != "claimed") continue;
        result["shortcut"] = message["params"]["shortcut"];
        break;
    }
    write(STDOUT_FILENO, arguments.json ? asText(result, 2) : verb.print(result, arguments));
    return ExitCode::done;
}

/// Rings the terminal's bell, where there is a terminal.
void refuse(const json& message) {
    if (isatty(STDERR_FILENO)) write(STDERR_FILENO, "\a");
    if (message.is_string()) write(STDERR_FILENO, printableLines(message.get<std::string>() + "\n"));
}

} // namespace

std::string printShortcuts(const json& result, const Arguments&) {
    Table table({{"ACTION"}, {"TITLE"}, {"KEYS"}, {"LABEL"}, {"REMARK"}});
    for (const json& shortcut : result["shortcuts"]) {
        const json& keys = shortcut["keys"];
        const json& label = shortcut["label"];
        table.add({shortcut["action"], shortcut["title"], keys.is_null() ? "-" : keys.get<std::string>(),
                   label.is_null() ? "-" : label.get<std::string>(), remark(shortcut)});
    }
    return table.text();
}

std::string printShortcut(const json& result, const Arguments&) {
    const json& shortcut = result["shortcut"];
    const std::string subject = "“" + shortcut["title"].get<std::string>() + "”";
    if (shortcut["keys"].is_null()) return subject + " has no shortcut.\n";
    const std::string odd = remark(shortcut);
    return printable(subject + ": " + shortcut["keys"].get<std::string>() + (odd.empty() ? "" : ", " + odd)) + "\n";
}

ExitCode runShortcutSet(const Verb& verb, const Arguments& arguments, const json& parameters) {
    auto connected = Agent::connect();
    if (const auto* trouble = std::get_if<Trouble>(&connected)) return end(*trouble);
    Agent& agent = std::get<Agent>(connected);
    auto answer = agent.ask(verb.method, parameters);
    if (const auto* trouble = std::get_if<Trouble>(&answer)) return end(*trouble);
    return finish(agent, verb, arguments, std::move(std::get<json>(answer)));
}

ExitCode runShortcutRecord(const Verb& verb, const Arguments& arguments, const json& parameters) {
    auto connected = Agent::connect();
    if (const auto* trouble = std::get_if<Trouble>(&connected)) return end(*trouble);
    Agent& agent = std::get<Agent>(connected);
    auto answer = agent.ask(verb.method, parameters);
    if (const auto* trouble = std::get_if<Trouble>(&answer)) return end(*trouble);
    // Standard output is left to the answer.
    write(STDERR_FILENO, std::get<json>(answer)["prompt"].get<std::string>() + "\n");
    while (true) {
        auto heard = agent.next();
        if (const auto* trouble = std::get_if<Trouble>(&heard)) return end(*trouble);
        const json& message = std::get<json>(heard);
        if (message.value("method", "") != "recorded") continue;
        const json& told = message["params"];
        const std::string outcome = told["outcome"];
        if (outcome == "refused") {
            refuse(told["message"]);
            continue;
        }
        json result = {{"outcome", outcome}, {"shortcut", told["shortcut"]}};
        if (outcome == "recorded") return finish(agent, verb, arguments, std::move(result));
        if (outcome == "cleared") {
            write(STDOUT_FILENO, arguments.json ? asText(result, 2) : verb.print(result, arguments));
            return ExitCode::done;
        }
        const std::string reason = told["message"].is_null() ? "Nothing was changed" : told["message"];
        return end({ExitCode::refused, reason});
    }
}

} // namespace kova::cli
