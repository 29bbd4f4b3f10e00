#include "cli/Streams.h"

#include "cli/Terminal.h"
#include "support/posix/AtomicFile.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace kova::cli {

namespace {

bool areErrorsJson = false;

const char* nameOf(ExitCode code) {
    switch (code) {
    case ExitCode::done:
        return "done";
    case ExitCode::refused:
        return "refused";
    case ExitCode::wrongUsage:
        return "wrongUsage";
    case ExitCode::noAgent:
        return "noAgent";
    case ExitCode::noPermission:
        return "noPermission";
    }
    return "refused";
}

} // namespace

std::string printableLines(std::string_view text) {
    std::string out;
    while (!text.empty()) {
        const auto length = std::min(text.find('\n'), text.size());
        out += printable(text.substr(0, length)) + "\n";
        text.remove_prefix(std::min(length + 1, text.size()));
    }
    return out;
}

ExitCode print(std::string_view text) {
    if (text.empty() || writeAll(STDOUT_FILENO, text)) return ExitCode::done;
    return failUnwritten();
}

ExitCode failUnwritten() {
    return fail({ExitCode::refused, std::string("cannot write to standard output: ") + std::strerror(errno)});
}

void printToStandardError(std::string_view text) {
    (void)writeAll(STDERR_FILENO, text);
}

void reportErrorsAsJson() {
    areErrorsJson = true;
}

ExitCode fail(const CommandError& error) {
    if (areErrorsJson) {
        const nlohmann::json document = {{"code", nameOf(error.code)},
                                         {"exitCode", static_cast<int>(error.code)},
                                         {"message", error.message},
                                         {"choices", error.choices}};
        printToStandardError(asText({{"error", document}}, 2));
    } else {
        // The agent may quote the title of a window.
        printToStandardError(printableLines(error.message));
    }
    return error.code;
}

std::string asText(const nlohmann::json& value, int indentation) {
    return value.dump(indentation, ' ', false, nlohmann::json::error_handler_t::replace) + "\n";
}

bool canAsk() {
    return isatty(STDIN_FILENO) == 1 && isatty(STDERR_FILENO) == 1;
}

std::optional<std::string> readLine() {
    std::string line;
    while (true) {
        char c = 0;
        const auto count = ::read(STDIN_FILENO, &c, 1);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return std::nullopt;
        if (c == '\n') return line;
        line += c;
    }
}

} // namespace kova::cli
