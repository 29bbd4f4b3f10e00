// Parses the Exec line of a desktop entry into the words of a command. No shell is involved: variables, patterns and
// commands stay as written.
#pragma once

#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace kova {

/// Values of field codes.
struct ExecLineContext {
    std::string name;      // %c
    std::string iconName;  // %i; empty: none
    std::string entryPath; // %k
};

/// The program and its arguments, at least one word; or an error, which continues a sentence that begins with the
/// application's name ("has an Exec line …"). In `line` the escapes of the desktop file have been resolved. Field codes
/// for files and URLs are dropped.
std::variant<std::vector<std::string>, std::string> wordsOfExecLine(std::string_view line,
                                                                    const ExecLineContext& context);

} // namespace kova
