#include "cli/Streams.h"

#include "cli/Terminal.h"

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

bool write(int descriptor, std::string_view text) {
    while (!text.empty()) {
        const auto written = ::write(descriptor, text.data(), text.size());
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return false;
        text.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

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
    if (text.empty() || write(STDOUT_FILENO, text)) return ExitCode::done;
    return endUnwritten();
}

ExitCode endUnwritten() {
    return end({ExitCode::refused, std::string("cannot write to standard output: ") + std::strerror(errno)});
}

void complain(std::string_view text) {
    (void)write(STDERR_FILENO, text);
}

void reportErrorsAsJson() {
    areErrorsJson = true;
}

ExitCode end(const Trouble& trouble) {
    if (areErrorsJson) {
        const nlohmann::json error = {{"code", nameOf(trouble.code)},
                                      {"exitCode", static_cast<int>(trouble.code)},
                                      {"message", trouble.message},
                                      {"choices", trouble.choices}};
        complain(asText({{"error", error}}, 2));
    } else {
        // What the agent quotes may have come from a window.
        complain(printableLines(trouble.message));
    }
    return trouble.code;
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
