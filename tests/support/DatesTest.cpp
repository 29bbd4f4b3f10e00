// Dates as seconds since 2001 and as ISO 8601 texts, compared with known dates.
#include "support/Dates.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <ctime>
#include <limits>

namespace kova {

namespace {

TEST(Dates, AgreeWithTheCalendar) {
    const struct {
        double seconds;
        const char* text;
    } cases[] = {
        {0, "2001-01-01T00:00:00Z"},
        {816372746, "2026-11-14T18:12:26Z"},
        {-31622400, "2000-01-01T00:00:00Z"},
        {-26524801, "2000-02-28T23:59:59Z"},
        {-26438400, "2000-03-01T00:00:00Z"},
        {-26524800, "2000-02-29T00:00:00Z"},
        {-978307200, "1970-01-01T00:00:00Z"},
        {-3187296000, "1900-01-01T00:00:00Z"},
        {252423993599, "9999-12-31T23:59:59Z"},
        {-63145526400, "0000-01-01T00:00:00Z"},
    };
    for (const auto& date : cases) {
        const auto fromNumber = dateFromSecondsSince2001(date.seconds);
        ASSERT_TRUE(fromNumber) << date.text;
        EXPECT_EQ(iso8601(*fromNumber), date.text);
        EXPECT_TRUE(dateFromIso8601(date.text) == fromNumber) << date.text;
        EXPECT_EQ(secondsSince2001(*fromNumber), date.seconds);
    }
}

TEST(Dates, RoundFractionsOfASecondDownAlsoBefore1970) {
    EXPECT_EQ(iso8601(*dateFromSecondsSince2001(816372746.999)), "2026-11-14T18:12:26Z");
    EXPECT_EQ(iso8601(*dateFromSecondsSince2001(-3187296000.25)), "1899-12-31T23:59:59Z");
    EXPECT_EQ(secondsSince2001(*dateFromSecondsSince2001(816372746.123456)), 816372746.123456);
}

TEST(Dates, InvalidNumbersAndTextsAreRejected) {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    for (const double number : {std::nan(""), kInfinity, -kInfinity, 1e300, 252423993600.0, -63145526401.0}) {
        EXPECT_FALSE(dateFromSecondsSince2001(number)) << number;
    }
    for (const char* text :
         {"", "2026-11-14", "2026-11-14T18:12:26", "2026-11-14T18:12:26z", "2026-11-14 18:12:26Z",
          "2026-11-14T18:12:26.5Z", "2026-11-14T18:12:26+01", " 2026-11-14T18:12:2Z", "2026-13-01T00:00:00Z",
          "2026-00-01T00:00:00Z", "2026-11-31T00:00:00Z", "2025-02-29T00:00:00Z", "1900-02-29T00:00:00Z",
          "2026-11-14T24:00:00Z", "2026-11-14T23:60:00Z", "2026-06-30T23:59:60Z", "2026-11-1+T18:12:26Z"}) {
        EXPECT_FALSE(dateFromIso8601(text)) << text;
    }
}

TEST(Dates, AreShownInTheUsersTimeZone) {
    EXPECT_EQ(localMonthDayTime(*dateFromIso8601("2026-11-14T18:12:26Z")).size(), 13u);
    ::setenv("TZ", "KOV-5:30", 1); // the time zone changes while the process runs
    EXPECT_EQ(localMonthDayTime(*dateFromIso8601("2026-11-14T18:12:26Z")), "Nov 14, 23:42");
    EXPECT_EQ(localMonthDayTime(*dateFromIso8601("2026-12-31T19:05:00Z")), "Jan 1, 00:35");
    ::unsetenv("TZ");
    ::tzset();
}

} // namespace

} // namespace kova
