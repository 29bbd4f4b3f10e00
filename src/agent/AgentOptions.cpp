#include "agent/AgentOptions.h"

#include "support/Version.h"

#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace kova {

std::variant<AgentOptions, int> readAgentOptions(std::span<char*> arguments, const char* help) {
    AgentOptions options;
    for (const std::string_view argument : arguments) {
        if (argument == "--foreground") {
            options.echo = LogEcho::standardError;
        } else if (argument == "--verbose") {
            options.lowestLevel = LogLevel::detail;
        } else if (argument == "--version") {
            std::puts("kova-agent " KOVA_VERSION);
            return EXIT_SUCCESS;
        } else if (argument == "--help") {
            std::fputs(help, stdout);
            return EXIT_SUCCESS;
        } else {
            std::fprintf(stderr, "kova-agent: unknown argument “%s”; see kova-agent --help\n", argument.data());
            return kExitWrongUsage;
        }
    }
    return options;
}

void reportProblem(const AgentOptions& options, const std::string& text) {
    log(LogLevel::error, text);
    if (options.echo == LogEcho::none) std::fprintf(stderr, "kova-agent: %s\n", text.c_str());
}

void openAgentLog(const std::string& folder, const AgentOptions& options) {
    const std::string file = folder + "/agent.log";
    if (openLog(file, options.lowestLevel, options.echo)) {
        std::fprintf(stderr, "kova-agent: no log is kept in %s\n", file.c_str());
    }
}

} // namespace kova
