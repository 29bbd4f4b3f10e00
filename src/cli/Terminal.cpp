#include "cli/Terminal.h"

#include <locale.h>
#include <sys/ioctl.h>
#include <unistd.h>
#include <wchar.h>
#if defined(__APPLE__)
#include <xlocale.h>
#endif

#include <algorithm>
#include <cstdlib>

namespace kova::cli {

namespace {

constexpr int kDefaultWidth = 80;

/// A UTF-8 locale, which does not depend on the user's locale: widths must be known in the locale “C” as well. Null if
/// the system has none.
locale_t unicodeLocale() {
    for (const char* name : {"C.UTF-8", "en_US.UTF-8", ""}) {
        if (const locale_t locale = newlocale(LC_CTYPE_MASK, name, nullptr)) return locale;
    }
    return nullptr;
}

/// The character's columns according to the C library; 1 for a character that the library does not know.
std::size_t widthOf(char32_t point) {
    static const locale_t locale = unicodeLocale();
    if (!locale) return 1;
    const locale_t before = uselocale(locale);
    const int columns = wcwidth(static_cast<wchar_t>(point));
    uselocale(before);
    return columns < 0 ? 1 : static_cast<std::size_t>(columns);
}

char32_t codePoint(std::string_view sequence) {
    const auto lead = static_cast<unsigned char>(sequence.front());
    if (sequence.size() == 1) return lead;
    char32_t point = lead & (0xFFU >> (sequence.size() + 1));
    for (const char c : sequence.substr(1)) point = (point << 6U) | (static_cast<unsigned char>(c) & 0x3FU);
    return point;
}

/// Characters that act on the terminal or on the direction of the text around them.
bool isControl(char32_t point) {
    return point < 0x20 || (point >= 0x7F && point < 0xA0) || (point >= 0x2028 && point <= 0x202E) ||
           (point >= 0x2066 && point <= 0x2069);
}

} // namespace

bool isTerminal() {
    return isatty(STDOUT_FILENO) == 1;
}

bool isColorTerminal() {
    const auto variable = [](const char* name) {
        const char* value = std::getenv(name);
        return std::string_view(value ? value : "");
    };
    const std::string_view kind = variable("TERM");
    return isTerminal() && variable("NO_COLOR").empty() && !kind.empty() && kind != "dumb";
}

int terminalWidth() {
    winsize size{};
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) return size.ws_col;
    const char* columns = std::getenv("COLUMNS");
    const int configured = columns ? std::atoi(columns) : 0;
    return configured > 0 ? std::min(configured, 1000) : kDefaultWidth;
}

bool isUnicodeTerminal() {
    for (const char* name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
        const char* value = std::getenv(name);
        if (!value || !*value) continue;
        std::string locale(value);
        std::transform(locale.begin(), locale.end(), locale.begin(),
                       [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; });
        return locale.find("UTF-8") != std::string::npos || locale.find("UTF8") != std::string::npos;
    }
    return false;
}

std::size_t sequenceLength(std::string_view text) {
    const auto lead = static_cast<unsigned char>(text.front());
    const std::size_t length = lead < 0x80   ? 1
                               : lead < 0xC2 ? 0
                               : lead < 0xE0 ? 2
                               : lead < 0xF0 ? 3
                               : lead < 0xF5 ? 4
                                             : 0;
    if (length == 0 || length > text.size()) return 0;
    const auto continues = [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; };
    return std::all_of(text.begin() + 1, text.begin() + static_cast<std::ptrdiff_t>(length), continues) ? length : 0;
}

std::size_t columnsOfCharacter(std::string_view sequence) {
    const char32_t point = codePoint(sequence);
    return point < 0x7F ? 1 : widthOf(point);
}

std::string printable(std::string_view text) {
    std::string out;
    while (!text.empty()) {
        const std::size_t length = sequenceLength(text);
        const bool isShown = length > 0 && !isControl(codePoint(text.substr(0, length)));
        out += isShown ? text.substr(0, length) : "?";
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return out;
}

std::size_t columnsOf(std::string_view text) {
    std::size_t columns = 0;
    eachCharacter(text, [&](std::string_view, std::size_t width) { columns += width; });
    return columns;
}

std::string clipped(std::string_view text, std::size_t columns) {
    if (columnsOf(text) <= columns) return std::string(text);
    if (columns == 0) return {};
    const std::string_view ellipsis = isUnicodeTerminal() ? "…" : "~";
    std::string out;
    std::size_t taken = 0;
    bool isFull = false;
    eachCharacter(text, [&](std::string_view character, std::size_t width) {
        isFull = isFull || taken + width > columns - 1;
        if (isFull) return;
        out += character;
        taken += width;
    });
    return out.append(ellipsis);
}

} // namespace kova::cli
