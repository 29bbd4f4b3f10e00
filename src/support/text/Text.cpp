#include "support/text/Text.h"

#include <unicode/coll.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <memory>

namespace kova {

namespace {

bool isAscii(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](unsigned char c) { return c != 0 && c < 0x80; });
}

icu::UnicodeString decode(std::string_view text) {
    return icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size())));
}

std::string encode(const icu::UnicodeString& text) {
    std::string out;
    text.toUTF8String(out);
    return out;
}

/// Case-insensitive, accents matter; absent when the library has no collation data. Opened at the first comparison,
/// since most sessions never need it.
const icu::Collator* collator() {
    static const std::unique_ptr<icu::Collator> instance = [] {
        UErrorCode status = U_ZERO_ERROR;
        std::unique_ptr<icu::Collator> made(icu::Collator::createInstance(status));
        if (U_FAILURE(status)) return std::unique_ptr<icu::Collator>();
        made->setStrength(icu::Collator::SECONDARY);
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
    icu::UnicodeString folded = decode(text);
    folded.toLower(icu::Locale::getRoot());
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* composer = icu::Normalizer2::getNFCInstance(status);
    if (U_SUCCESS(status)) {
        const icu::UnicodeString composed = composer->normalize(folded, status);
        if (U_SUCCESS(status)) folded = composed;
    }
    return encode(folded);
}

int localizedCaseInsensitiveCompare(std::string_view a, std::string_view b) {
    if (a == b) return 0;
    if (const icu::Collator* order = collator()) {
        UErrorCode status = U_ZERO_ERROR;
        const UCollationResult result = order->compare(decode(a), decode(b), status);
        if (U_SUCCESS(status)) return static_cast<int>(result);
    }
    return lowercased(a).compare(lowercased(b));
}

std::string trimmed(std::string_view text) {
    const icu::UnicodeString all = decode(text);
    std::int32_t begin = 0;
    std::int32_t end = all.length();
    while (begin < end && u_isUWhiteSpace(all.char32At(begin))) ++begin;
    while (end > begin && u_isUWhiteSpace(all.char32At(end - 1))) --end;
    return encode(all.tempSubStringBetween(begin, end));
}

std::string validUtf8(std::string_view bytes) {
    if (isAscii(bytes)) return std::string(bytes);
    icu::UnicodeString text = decode(bytes);
    icu::UnicodeString kept;
    for (std::int32_t i = 0; i < text.length(); i = text.moveIndex32(i, 1)) {
        if (text.char32At(i) != 0) kept.append(text.char32At(i));
    }
    return encode(kept);
}

} // namespace kova
