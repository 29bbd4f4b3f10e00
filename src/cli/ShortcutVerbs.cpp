#include "cli/ShortcutVerbs.h"

#include "cli/PlainVerbs.h"
#include "cli/Streams.h"
#include "cli/Table.h"
#include "cli/Terminal.h"
#include "support/Quoted.h"

#include <unistd.h>

#include <chrono>

namespace kova::cli {

namespace {

using nlohmann::json;

/// The agent always sends the notification sooner than this.
constexpr std::chrono::seconds kClaimTimeout{3};

/// Why a shortcut may not work; may be empty.
std::string remark(const json& shortcut) {
    if (shortcut.at("keys").is_null()) return "Keyboard shortcut not set";
    std::string out;
    if (shortcut.at("action") == "commandCenter") out = "does nothing any more";
    if (!shortcut.at("conflict").is_null()) {
        out += (out.empty() ? "" : "; ") + ("also the shortcut of " + shortcut.at("conflict").get<std::string>());
    }
    if (shortcut.at("isHeldByOther").get<bool>()) {
        const bool isSystem = shortcut.value("heldBy", json()) == "system";
        out += std::string(out.empty() ? "" : "; ") + "held by " + (isSystem ? "the system" : "another program");
    }
    return out;
}

/// Waits until it is known whether another program holds the new combination, and adds that to the result.
ExitCode finish(Agent& agent, const Verb& verb, const Arguments& arguments, json result) {
    const auto claimed = agent.next("claimed", kClaimTimeout);
    if (!claimed) return fail(claimed.error());
    result["shortcut"] = claimed->at("shortcut");
    return printAnswer(verb, arguments, result);
}

/// Prints the message, and rings the bell of a terminal.
void refuse(const json& message) {
    if (isatty(STDERR_FILENO)) printToStandardError("\a");
    if (message.is_string()) printToStandardError(printableLines(message.get<std::string>() + "\n"));
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

/// Does not list the shortcuts: which of them another program holds is known only a moment later.
std::string printShortcutsRestored(const json& result, const Arguments&) {
    return "All " + std::to_string(result.at("shortcuts").size()) +
           " actions have their standard shortcuts again. “kova shortcut list” lists them.\n";
}

std::string printShortcut(const json& result, const Arguments&) {
    const json& shortcut = result.at("shortcut");
    const std::string subject = quoted(shortcut.at("title").get<std::string>());
    if (shortcut.at("keys").is_null()) return subject + " has no shortcut.\n";
    const std::string text = remark(shortcut);
    return printable(subject + ": " + shortcut.at("keys").get<std::string>() + (text.empty() ? "" : ", " + text)) +
           "\n";
}

ExitCode runShortcutSet(const Verb& verb, const Arguments& arguments) {
    auto agent = Agent::connect();
    if (!agent) return fail(agent.error());
    auto result = agent->ask(verb.method, arguments.request);
    return result ? finish(*agent, verb, arguments, std::move(*result)) : fail(result.error());
}

ExitCode runShortcutRecord(const Verb& verb, const Arguments& arguments) {
    auto agent = Agent::connect();
    if (!agent) return fail(agent.error());
    const auto started = agent->ask(verb.method, arguments.request);
    if (!started) return fail(started.error());
    printToStandardError(started->at("prompt").get<std::string>() + "\n"); // standard output is for the result
    while (true) {
        const auto recorded = agent->next("recorded");
        if (!recorded) return fail(recorded.error());
        const std::string outcome = recorded->at("outcome");
        const json& message = recorded->at("message");
        if (outcome == "refused") {
            refuse(message);
            continue;
        }
        json result = {{"outcome", outcome}, {"shortcut", recorded->at("shortcut")}};
        if (recorded->contains("unsaved")) result["unsaved"] = recorded->at("unsaved");
        if (outcome == "recorded") return finish(*agent, verb, arguments, std::move(result));
        if (outcome == "cleared") return printAnswer(verb, arguments, result);
        return fail({ExitCode::refused, message.is_null() ? "Nothing was changed" : message.get<std::string>()});
    }
}

} // namespace kova::cli
