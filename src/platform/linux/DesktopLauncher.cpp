#include "platform/linux/DesktopLauncher.h"

#include "platform/linux/ExecLine.h"
#include "support/Quoted.h"

#include <unistd.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace kova {

namespace {

/// A program that opens a terminal and runs another program in it.
struct Terminal {
    const char* program;
    const char* option; // precedes the other program's name; null if there is none
};
constexpr std::array kTerminals = {Terminal{"xdg-terminal-exec", nullptr}, Terminal{"x-terminal-emulator", "-e"},
                                   Terminal{"gnome-terminal", "--"}, Terminal{"konsole", "-e"},
                                   Terminal{"xterm", "-e"}};

using Words = std::vector<std::string>;

/// Whether the variable identifies the launch of the agent. A launched program must not inherit the variable, since the
/// program would use it as the identity of its own launch.
bool identifiesAgentLaunch(std::string_view variable) {
    for (const std::string_view name : {"DESKTOP_STARTUP_ID=", "XDG_ACTIVATION_TOKEN=", "GIO_LAUNCHED_DESKTOP_FILE="}) {
        if (variable.starts_with(name)) return true;
    }
    return false;
}

Words environmentForLaunchedProgram() {
    Words environment;
    for (char** variable = environ; variable && *variable; ++variable) {
        if (!identifiesAgentLaunch(*variable)) environment.emplace_back(*variable);
    }
    return environment;
}

std::variant<Words, std::string> inTerminal(Words words) {
    for (const auto& terminal : kTerminals) {
        const auto program = findProgram(terminal.program);
        if (!program) continue;
        Words all{*program};
        if (terminal.option) all.emplace_back(terminal.option);
        all.insert(all.end(), std::make_move_iterator(words.begin()), std::make_move_iterator(words.end()));
        return all;
    }
    return "needs a terminal, and none was found";
}

/// The command of an entry, else an error that follows the application's name ("is not installed: …").
std::variant<Words, std::string> wordsOf(const DesktopEntry& entry, const LaunchableApplication& application) {
    if (!entry.tryExec.empty() && !findProgram(entry.tryExec)) {
        return "is not installed: there is no program " + quoted(entry.tryExec);
    }
    if (entry.execLine.empty()) return "has a desktop entry without an Exec line";
    auto read = wordsOfExecLine(entry.execLine, {entry.name, entry.iconName, application.location});
    auto* words = std::get_if<Words>(&read);
    if (!words) return read;
    const auto program = findProgram(words->front());
    if (!program) return "cannot be started: there is no program " + quoted(words->front());
    words->front() = *program;
    return entry.needsTerminal ? inTerminal(std::move(*words)) : std::variant<Words, std::string>(std::move(*words));
}

std::string explain(const StartFailure& failure, const Command& command) {
    const std::string reason = std::strerror(failure.error);
    switch (failure.step) {
    case StartFailure::Step::creatingProcess:
        return "cannot be started: " + reason;
    case StartFailure::Step::enteringFolder:
        return "cannot be started in " + command.folder + ": " + reason;
    case StartFailure::Step::running:
        return "cannot be started: " + command.words.front() + ": " + reason;
    }
    return {};
}

std::string homeFolder() {
    const char* home = std::getenv("HOME");
    return home && *home == '/' && access(home, X_OK) == 0 ? home : "/";
}

} // namespace

DesktopLauncher::DesktopLauncher(DesktopEntries& entries, EventLoop& loop, ApplicationScopes* scopes) :
    entries_(entries), loop_(loop), scopes_(scopes), processes_(loop) {}

std::vector<LaunchableApplication> DesktopLauncher::launchableApplications() {
    return entries_.launchableApplications();
}

std::optional<LaunchableApplication> DesktopLauncher::launchableApplication(const BundleID& bundleIdentifier) {
    return entries_.launchableApplication(bundleIdentifier);
}

void DesktopLauncher::launch(const LaunchableApplication& application, LaunchActivation activation,
                             LaunchCompletion completion) {
    const auto fail = [&](const std::string& problem) {
        loop_.post(lifetime_.guard([completion = std::move(completion), text = application.name + " " + problem] {
            completion({.error = text, .processIdentifier = std::nullopt});
        }));
    };
    const auto entry = readDesktopEntry(application.location, entries_.locale());
    if (!entry || entry->isHidden || !entry->isApplication) return fail("is not installed any more");
    auto words = wordsOf(*entry, application);
    if (const auto* problem = std::get_if<std::string>(&words)) return fail(*problem);

    Command command{.words = std::get<Words>(std::move(words)),
                    .folder = entry->workingFolder.empty() ? homeFolder() : entry->workingFolder,
                    .environment = environmentForLaunchedProgram()};
    // The end of the startup id, _TIME0, sets the user time of the program's windows to 0. Window managers do not focus
    // such windows.
    if (activation == LaunchActivation::inBackground) {
        command.environment.push_back("DESKTOP_STARTUP_ID=kova-" + std::to_string(getpid()) + "-" +
                                      std::to_string(++backgroundLaunches_) + "_TIME0");
    }
    processes_.start(command, [scopes = scopes_, identifier = application.identifier, name = application.name, command,
                               completion = std::move(completion)](const auto& outcome) {
        LaunchResult result;
        if (const auto* failure = std::get_if<StartFailure>(&outcome)) {
            result.error = name + " " + explain(*failure, command);
        } else {
            result.processIdentifier = std::get<pid_t>(outcome);
            if (scopes) scopes->moveToOwnScope(std::get<pid_t>(outcome), identifier, name);
        }
        completion(result);
    });
}

} // namespace kova
