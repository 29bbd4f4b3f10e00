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

/// The program and its arguments, at least one word; or an error, as the end of a sentence that begins with the
/// application ("has an Exec line …"). `line` is the key's value without the file's own escapes. Codes for files and
/// URLs are dropped.
std::variant<std::vector<std::string>, std::string> wordsOfExecLine(std::string_view line,
                                                                    const ExecLineContext& context);

} // namespace kova
