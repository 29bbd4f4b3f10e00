// Names in ASCII are compared without the Unicode library. The order must be that of the library.
#include "support/text/Text.h"

#include <gtest/gtest.h>
#include <unicode/ucol.h>

#include <cstdlib>
#include <random>
#include <string>

namespace kova {
namespace {

int signOf(int number) {
    return (number > 0) - (number < 0);
}

int compareByLibrary(const UCollator* order, const std::string& a, const std::string& b) {
    UErrorCode status = U_ZERO_ERROR;
    return ucol_strcollUTF8(order, a.data(), static_cast<std::int32_t>(a.size()), b.data(),
                            static_cast<std::int32_t>(b.size()), &status);
}

/// Ends the process. The language is read from the environment at the first comparison, so each locale needs a process
/// of its own.
void expectTheLibrarysOrder(const char* locale) {
    setenv("LC_ALL", locale, 1);
    UErrorCode status = U_ZERO_ERROR;
    UCollator* order = ucol_open(std::string(locale) == "C" ? "" : locale, &status);
    if (U_FAILURE(status)) std::exit(2);
    ucol_setStrength(order, UCOL_SECONDARY);
    const auto compare = [&](const std::string& a, const std::string& b) {
        if (signOf(localizedCaseInsensitiveCompare(a, b)) == signOf(compareByLibrary(order, a, b))) return;
        std::fprintf(stderr, "%s: \"%s\" and \"%s\"\n", locale, a.c_str(), b.c_str());
        std::exit(1);
    };
    std::mt19937 random(20);
    std::uniform_int_distribution<int> character(' ', '~'), letter('a', 'z'), length(0, 6);
    for (int i = 0; i < 30000; ++i) {
        std::string a, b;
        for (int n = length(random); n > 0; --n) a += static_cast<char>(character(random));
        for (int n = length(random); n > 0; --n) b += static_cast<char>(character(random));
        compare(a, b);
        // Some languages sort two letters, such as "ch", as one letter.
        const std::string pair{static_cast<char>(letter(random)), static_cast<char>(letter(random))};
        compare(pair, std::string(1, static_cast<char>(letter(random))));
        compare(pair + a, pair.substr(0, 1) + static_cast<char>(letter(random)));
    }
    std::exit(0);
}

TEST(TextDeathTest, AsciiIsOrderedAsTheLibraryOrdersIt) {
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // the child must not inherit the language of an earlier comparison
    for (const char* locale : {"C", "de_DE", "en_GB", "en_US", "es_MX", "fr_CA", "it_IT", "nl_NL", "pl_PL", "pt_BR",
                               "ru_RU", "cs_CZ", "da_DK", "et_EE", "hr_HR", "hu_HU", "lt_LT", "cy_GB"}) {
        EXPECT_EXIT(expectTheLibrarysOrder(locale), ::testing::ExitedWithCode(0), "") << locale;
    }
}

TEST(Text, ContainsPartsInAnyCaseOfAnyScript) {
    EXPECT_TRUE(localizedCaseInsensitiveContains("Inbox – MAIL", "mail"));
    EXPECT_TRUE(localizedCaseInsensitiveContains("ПОЧТА (3)", "почта"));
    EXPECT_TRUE(localizedCaseInsensitiveContains("Cafe\u0301", "CAFÉ"))
        << "composed and decomposed characters are equal";
    EXPECT_TRUE(localizedCaseInsensitiveContains("ΚΟΣΜΟΣ", "ΚΟΣ")) << "both lower-case forms of sigma are equal";
    EXPECT_TRUE(localizedCaseInsensitiveContains("κόσμος", "ΣΜΟΣ"));
    EXPECT_TRUE(localizedCaseInsensitiveContains("", ""));
    EXPECT_FALSE(localizedCaseInsensitiveContains("Cafe", "Café"));
    EXPECT_FALSE(localizedCaseInsensitiveContains("Mai", "Mail"));
    EXPECT_FALSE(localizedCaseInsensitiveContains("", "x"));
}

} // namespace
} // namespace kova
