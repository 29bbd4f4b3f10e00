#include "support/text/Text.h"

// Uses the C interface of the library, since a Mac has no other.
#include <unicode/uchar.h>
#include <unicode/ucol.h>
#include <unicode/uloc.h>
#include <unicode/unorm2.h>
#include <unicode/ustring.h>
#include <unicode/utf16.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <memory>

namespace kova {

namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool isAscii(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](unsigned char c) { return c != 0 && c < 0x80; });
}

// The library's code unit is char16_t in most builds and a plain integer of that size in the Mac's.
UChar* units(char16_t* text) {
    return reinterpret_cast<UChar*>(text);
}
const UChar* units(const char16_t* text) {
    return reinterpret_cast<const UChar*>(text);
}

std::int32_t lengthOf(std::u16string_view text) {
    return static_cast<std::int32_t>(text.size());
}

/// Broken sequences become U+FFFD. UTF-16 never needs more units than UTF-8 has bytes.
std::u16string decode(std::string_view text) {
    std::u16string out(text.size(), u'\0');
    std::int32_t length = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strFromUTF8WithSub(units(out.data()), static_cast<std::int32_t>(out.size()), &length, text.data(),
                         static_cast<std::int32_t>(text.size()), kReplacement, nullptr, &status);
    out.resize(U_SUCCESS(status) ? static_cast<std::size_t>(length) : 0);
    return out;
}

std::string encode(std::u16string_view text) {
    std::string out(text.size() * 3, '\0');
    std::int32_t length = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strToUTF8WithSub(out.data(), static_cast<std::int32_t>(out.size()), &length, units(text.data()), lengthOf(text),
                       kReplacement, nullptr, &status);
    out.resize(U_SUCCESS(status) ? static_cast<std::size_t>(length) : 0);
    return out;
}

/// Runs a function of the library that fills a buffer and returns the length of the result. Returns the filled buffer,
/// or `text` if the function fails.
template <class Fill>
std::u16string filled(std::u16string_view text, Fill fill) {
    std::u16string out(text.size() * 3 + 16, u'\0');
    UErrorCode status = U_ZERO_ERROR;
    const std::int32_t length = fill(units(out.data()), lengthOf(out), &status);
    if (U_FAILURE(status)) return std::u16string(text);
    out.resize(static_cast<std::size_t>(length));
    return out;
}

/// The composed form of the text.
std::u16string composed(std::u16string_view text) {
    return filled(text, [&](UChar* to, std::int32_t capacity, UErrorCode* status) {
        const UNormalizer2* composer = unorm2_getNFCInstance(status);
        return unorm2_normalize(composer, units(text.data()), lengthOf(text), to, capacity, status);
    });
}

/// The locale by which the session orders text. The "C" locale orders by code points, with capitals first. Users do not
/// expect this, so the library's general order replaces it.
const char* comparisonLocale() {
    char variant[16] = "";
    UErrorCode status = U_ZERO_ERROR;
    uloc_getVariant(nullptr, variant, sizeof variant, &status);
    return U_SUCCESS(status) && std::string_view(variant) == "POSIX" ? "" : nullptr;
}

/// Whether the session's language sorts printable ASCII in the library's general order, and treats no two letters as
/// one. Only the most common languages of this kind are listed; for all other languages the library compares.
bool comparesAsciiPlainly() {
#if defined(__APPLE__)
    return false; // the language is a setting of the system, not of the environment
#else
    const char* locale = "";
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char* value = std::getenv(variable);
        if (value && *value) {
            locale = value;
            break;
        }
    }
    const std::string_view name(locale);
    const auto language = name.substr(0, name.find_first_of("_.@"));
    constexpr std::string_view kPlain[] = {"", "C", "POSIX", "de", "en", "es", "fr", "it", "nl", "pl", "pt", "ru"};
    return name.find('@') == std::string_view::npos &&
           std::find(std::begin(kPlain), std::end(kPlain), language) != std::end(kPlain);
#endif
}

/// Compares printable ASCII in the library's general order, without regard to case. Most names need nothing else, and
/// the library's data would take half a megabyte of memory once it is used.
int comparePrintableAscii(std::string_view a, std::string_view b) {
    constexpr std::string_view kOrder = " _-,;:!?.'\"()[]{}@*/\\&#%`^+<=>|~$0123456789abcdefghijklmnopqrstuvwxyz";
    const auto rank = [&](char c) { return kOrder.find(c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c); };
    for (std::size_t i = 0; i < std::min(a.size(), b.size()); ++i) {
        const auto left = rank(a[i]), right = rank(b[i]);
        if (left != right) return left < right ? -1 : 1;
    }
    return a.size() == b.size() ? 0 : a.size() < b.size() ? -1 : 1;
}

bool isPrintableAscii(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; });
}

/// Compares without regard to case but with regard to accents. Null if the library has no collation data. The collator
/// is opened at the first comparison, since most sessions never need it.
const UCollator* collator() {
    struct Close {
        void operator()(UCollator* open) const { ucol_close(open); }
    };
    static const std::unique_ptr<UCollator, Close> instance = [] {
        UErrorCode status = U_ZERO_ERROR;
        std::unique_ptr<UCollator, Close> made(ucol_open(comparisonLocale(), &status));
        if (U_FAILURE(status)) made.reset();
        if (made) ucol_setStrength(made.get(), UCOL_SECONDARY);
        return made;
    }();
    return instance.get();
}

} // namespace

std::string lowercased(std::string_view text) {
    if (isAscii(text)) {
        std::string out(text);
        for (char& c : out) {
            if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
        }
        return out;
    }
    const std::u16string decoded = decode(text);
    const std::u16string lower = filled(decoded, [&](UChar* to, std::int32_t capacity, UErrorCode* status) {
        return u_strToLower(to, capacity, units(decoded.data()), lengthOf(decoded), "", status);
    });
    return encode(composed(lower));
}

std::string caseFolded(std::string_view text) {
    if (isAscii(text)) return lowercased(text);
    const std::u16string decoded = decode(text);
    return encode(composed(filled(decoded, [&](UChar* to, std::int32_t capacity, UErrorCode* status) {
        return u_strFoldCase(to, capacity, units(decoded.data()), lengthOf(decoded), U_FOLD_CASE_DEFAULT, status);
    })));
}

std::string uppercased(std::string_view text) {
    if (isAscii(text)) {
        std::string out(text);
        for (char& c : out) {
            if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
        }
        return out;
    }
    const std::u16string decoded = decode(text);
    return encode(filled(decoded, [&](UChar* to, std::int32_t capacity, UErrorCode* status) {
        return u_strToUpper(to, capacity, units(decoded.data()), lengthOf(decoded), "", status);
    }));
}

int localizedCaseInsensitiveCompare(std::string_view a, std::string_view b) {
    if (a == b) return 0;
    static const bool isPlain = comparesAsciiPlainly();
    if (isPlain && isPrintableAscii(a) && isPrintableAscii(b)) return comparePrintableAscii(a, b);
    if (const UCollator* order = collator()) {
        const std::u16string left = decode(a);
        const std::u16string right = decode(b);
        return ucol_strcoll(order, units(left.data()), lengthOf(left), units(right.data()), lengthOf(right));
    }
    return lowercased(a).compare(lowercased(b));
}

bool localizedCaseInsensitiveContains(std::string_view text, std::string_view part) {
    return caseFolded(text).find(caseFolded(part)) != std::string::npos;
}

std::string trimmed(std::string_view text) {
    const std::u16string all = decode(text);
    std::size_t begin = 0;
    std::size_t end = all.size();
    while (begin < end && u_isUWhiteSpace(all[begin])) ++begin; // every white space is one unit long
    while (end > begin && u_isUWhiteSpace(all[end - 1])) --end;
    return encode(std::u16string_view(all).substr(begin, end - begin));
}

std::string withoutControlCharactersAround(std::string_view text) {
    const std::u16string all = decode(text);
    const auto isControl = [](char16_t unit) {
        const auto kind = u_charType(unit);
        return kind == U_CONTROL_CHAR || kind == U_FORMAT_CHAR;
    };
    std::size_t begin = 0;
    std::size_t end = all.size();
    while (begin < end && isControl(all[begin])) ++begin;
    while (end > begin && isControl(all[end - 1])) --end;
    return encode(std::u16string_view(all).substr(begin, end - begin));
}

std::string validUtf8(std::string_view bytes) {
    if (isAscii(bytes)) return std::string(bytes);
    std::u16string text = decode(bytes);
    std::erase(text, u'\0');
    return encode(text);
}

} // namespace kova
