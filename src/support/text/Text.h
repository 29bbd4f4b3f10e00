// Compares and converts text by Unicode's rules, in every script. All text is UTF-8; invalid bytes count as U+FFFD.
#pragma once

#include <string>
#include <string_view>

namespace kova {

/// The text in lower case and composed form: equal for texts that differ only in case or in the composition of letters.
std::string lowercased(std::string_view text);
/// The text in upper case, by the rules that do not depend on a language.
std::string uppercased(std::string_view text);
/// The localized, case-insensitive order: negative, zero or positive as `a` comes before, with or after `b`.
int localizedCaseInsensitiveCompare(std::string_view a, std::string_view b);
/// The text in a form for searching without regard to case. Unlike the lower case, this form of a letter does not
/// depend on neighboring letters: the lower case of a Greek sigma is different at the end of a word.
std::string caseFolded(std::string_view text);
/// Whether `part` occurs in the text, without regard to case; true for an empty part.
bool localizedCaseInsensitiveContains(std::string_view text, std::string_view part);
/// The text without white space and line breaks, as Unicode defines them, at both ends.
std::string trimmed(std::string_view text);
/// The text without Unicode's control and format characters at both ends.
std::string withoutControlCharactersAround(std::string_view text);
/// The text with every byte sequence that is not UTF-8 replaced by U+FFFD, and without NUL.
std::string validUtf8(std::string_view bytes);

} // namespace kova
