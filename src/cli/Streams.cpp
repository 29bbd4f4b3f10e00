#include "cli/Streams.h"

#include "cli/Terminal.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace kova::cli {

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

ExitCode end(const Trouble& trouble) {
    // What the agent quotes may have come from a window.
    write(STDERR_FILENO, printableLines(trouble.message));
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
