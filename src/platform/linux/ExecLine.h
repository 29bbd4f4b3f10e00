// The Exec line of a desktop entry, taken apart into the words of a command. No shell ever sees it: what a shell would
// make of a word, be it a variable, a pattern or a command, is left as it is written.
#pragma once

#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace kova {

/// What field codes stand for.
struct ExecLineContext {
    std::string name;      // %c
    std::string iconName;  // %i; empty: none
    std::string entryPath; // %k
};

/// The program and its arguments, at least one word; or what is wrong with the line, as the end of a sentence that
/// begins with the application ("has an Exec line …"). `line` is the key's value after the file's own escapes are
/// undone. Codes for files and addresses are dropped: nothing is opened with the application.
std::variant<std::vector<std::string>, std::string> wordsOfExecLine(std::string_view line,
                                                                    const ExecLineContext& context);

} // namespace kova
