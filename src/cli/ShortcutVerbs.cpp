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
    if (shortcut.at("keys").is_null()) return "Keyboard shortcut not set";
    std::string out;
    if (shortcut.at("action") == "commandCenter" && !shortcut.at("keys").is_null()) out = "does nothing any more";
    if (!shortcut.at("conflict").is_null()) {
        out += (out.empty() ? "" : "; ") + ("also the shortcut of " + shortcut.at("conflict").get<std::string>());
    }
    if (shortcut.at("isHeldByOther").get<bool>()) {
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
        result["shortcut"] = message.at("params").at("shortcut");
        break;
    }
    return print(arguments.json ? asText(result, 2) : verb.print(result, arguments));
}

/// Rings the terminal's bell, where there is a terminal.
void refuse(const json& message) {
    if (isatty(STDERR_FILENO)) complain("\a");
    if (message.is_string()) complain(printableLines(message.get<std::string>() + "\n"));
}

} // namespace

std::string printShortcuts(const json& result, const Arguments&) {
    Table table({{"ACTION"}, {"TITLE"}, {"KEYS"}, {"LABEL"}, {"REMARK"}});
    for (const json& shortcut : result.at("shortcuts")) {
        const json& keys = shortcut.at("keys");
        const json& label = shortcut.at("label");
        table.add({shortcut.at("action"), shortcut.at("title"), keys.is_null() ? "-" : keys.get<std::string>(),
                   label.is_null() ? "-" : label.get<std::string>(), remark(shortcut)});
    }
    return table.text();
}

std::string printShortcut(const json& result, const Arguments&) {
    const json& shortcut = result.at("shortcut");
    const std::string subject = "“" + shortcut.at("title").get<std::string>() + "”";
    if (shortcut.at("keys").is_null()) return subject + " has no shortcut.\n";
    const std::string odd = remark(shortcut);
    return printable(subject + ": " + shortcut.at("keys").get<std::string>() + (odd.empty() ? "" : ", " + odd)) + "\n";
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
    complain(std::get<json>(answer).at("prompt").get<std::string>() + "\n");
    while (true) {
        auto heard = agent.next();
        if (const auto* trouble = std::get_if<Trouble>(&heard)) return end(*trouble);
        const json& message = std::get<json>(heard);
        if (message.value("method", "") != "recorded") continue;
        const json& told = message.at("params");
        const std::string outcome = told.at("outcome");
        if (outcome == "refused") {
            refuse(told.at("message"));
            continue;
        }
        json result = {{"outcome", outcome}, {"shortcut", told.at("shortcut")}};
        if (outcome == "recorded") return finish(agent, verb, arguments, std::move(result));
        if (outcome == "cleared") return print(arguments.json ? asText(result, 2) : verb.print(result, arguments));
        const std::string reason = told.at("message").is_null() ? "Nothing was changed" : told.at("message");
        return end({ExitCode::refused, reason});
    }
}

} // namespace kova::cli
