// Comparing and folding text as people read it, in every script. All text is UTF-8; broken bytes count as U+FFFD.
#pragma once

#include <string>
#include <string_view>

namespace kova {

/// Lower case, composed form: equal for texts that differ only in case or in composed and decomposed letters.
std::string lowercased(std::string_view text);
/// Upper case, by the rules of no language in particular.
std::string uppercased(std::string_view text);
/// The localized, case-insensitive order: negative, zero or positive as `a` comes before, with or after `b`.
int localizedCaseInsensitiveCompare(std::string_view a, std::string_view b);
/// For searching a part of a text in any case: each letter is folded by itself, while its lower case can depend on its
/// neighbors (a Greek sigma at the end of a word is another letter).
std::string caseFolded(std::string_view text);
/// Whether `part` occurs in the text, in any case; true for an empty part.
bool localizedCaseInsensitiveContains(std::string_view text, std::string_view part);
/// The text without white space and line breaks, as Unicode defines them, at both ends.
std::string trimmed(std::string_view text);
/// The text without Unicode's control and format characters at both ends.
std::string withoutControlCharactersAround(std::string_view text);
/// The text with every byte sequence that is not UTF-8 replaced by U+FFFD, and without NUL.
std::string validUtf8(std::string_view bytes);

} // namespace kova
