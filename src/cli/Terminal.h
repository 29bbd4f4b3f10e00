// Properties of the terminal, and text that is safe for it: titles of windows must not control the terminal.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kova::cli {

/// Columns of the terminal on standard output; without one $COLUMNS, else 80.
int terminalWidth();
bool isTerminal();
/// A terminal with colors, unless $NO_COLOR is set.
bool isColorTerminal();
/// Whether the locale of the environment uses UTF-8; otherwise drawings are in ASCII.
bool isUnicodeTerminal();

/// One line: control characters and bytes that are not UTF-8 become “?”.
std::string printable(std::string_view text);
/// Columns that printable text takes.
std::size_t columnsOf(std::string_view text);
/// The text, cut to `columns` with “…” at its end if it is longer.
std::string clipped(std::string_view text, std::size_t columns);
/// Calls `character(bytes, columns)` for each character of printable text.
template <class Visit>
void eachCharacter(std::string_view text, Visit character);

/// Bytes of the UTF-8 sequence that begins here; 0 when none does.
std::size_t sequenceLength(std::string_view text);
/// Columns of the character: 0 for marks, 2 for wide ones.
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
