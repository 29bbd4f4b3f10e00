#include "cli/PlainVerbs.h"

#include "cli/Output.h"
#include "cli/Streams.h"
#include "support/posix/AtomicFile.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace kova::cli {

using nlohmann::json;

ExitCode run(const Verb& verb, const Arguments& arguments) {
    if (verb.run) return verb.run(verb, arguments);
    const auto result = askAgent(verb.method, arguments.request);
    return result ? printAnswer(verb, arguments, *result) : fail(result.error());
}

ExitCode printAnswer(const Verb& verb, const Arguments& arguments, const json& result) {
    return print(arguments.json ? asText(result, 2) : verb.print(result, arguments));
}

ExitCode runOpen(const Verb& verb, const Arguments& arguments) {
    if (arguments.has("url")) {
        const auto result = askAgent(verb.method, arguments.request);
        return result ? printAnswer(verb, arguments, *result) : fail(result.error());
    }
    if (auto agent = Agent::connect()) {
        // The agent runs already: shows its settings or, without a program that draws them, its status.
        const auto shown = agent->ask("settings.show", json::object());
        return shown ? printAnswer(*verbNamed("settings"), arguments, *shown) : run(*verbNamed("status"), arguments);
    }
#if defined(__APPLE__)
    execl("/usr/bin/open", "open", "-a", "KOVA",
          static_cast<char*>(nullptr)); // the system finds the application's folder
#else
    execlp("kova-agent", "kova-agent", static_cast<char*>(nullptr));
#endif
    return fail({ExitCode::noAgent, std::string("kova-agent cannot be started: ") + std::strerror(errno)});
}

ExitCode runSubscribe(const Verb& verb, const Arguments& arguments) {
    auto agent = Agent::connect();
    if (!agent) return fail(agent.error());
    const auto state = agent->ask(verb.method, json::object());
    if (!state) return fail(state.error());
    const auto show = [&](const json& published, const char* sections) {
        return writeAll(STDOUT_FILENO, arguments.json ? asText(published, -1)
                                                      : printChanges(published.at("sequence"), published.at(sections)));
    };
    bool isWritten = show(*state, "state");
    while (isWritten) {
        const auto changes = agent->next("changed");
        if (!changes) return fail(changes.error());
        isWritten = show(*changes, "changes");
    }
    return failUnwritten();
}

} // namespace kova::cli
