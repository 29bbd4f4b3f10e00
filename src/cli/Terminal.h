// Properties of the terminal, and text that is safe to print: the title of a window must not contain control sequences.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kova::cli {

/// The width in columns of the terminal on standard output. If standard output is no terminal: $COLUMNS, else 80.
int terminalWidth();
bool isTerminal();
/// True if standard output is a terminal with colors and $NO_COLOR is not set.
bool isColorTerminal();
/// True if the locale of the environment uses UTF-8. If not, layouts are drawn in ASCII.
bool isUnicodeTerminal();

/// The text as one line, with “?” for each control character and each byte that is not UTF-8.
std::string printable(std::string_view text);
/// The number of columns that printable text takes.
std::size_t columnsOf(std::string_view text);
/// The text, cut to `columns` with “…” at its end if it is longer.
std::string clipped(std::string_view text, std::size_t columns);
/// Calls `character(bytes, columns)` for each character of printable text.
template <class Visit>
void eachCharacter(std::string_view text, Visit character);

/// The length in bytes of the UTF-8 sequence at the beginning of the text; 0 if the text begins with none.
std::size_t sequenceLength(std::string_view text);
/// The number of columns that the character takes: 0 for combining marks, 2 for wide characters, else 1.
std::size_t columnsOfCharacter(std::string_view sequence);

template <class Visit>
void eachCharacter(std::string_view text, Visit character) {
    while (!text.empty()) {
        const std::size_t length = sequenceLength(text) == 0 ? 1 : sequenceLength(text);
        character(text.substr(0, length), columnsOfCharacter(text.substr(0, length)));
        text.remove_prefix(length);
    }
}

} // namespace kova::cli
