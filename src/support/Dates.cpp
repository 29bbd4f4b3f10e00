#include "support/Dates.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <ctime>

namespace kova {

namespace {

using std::chrono::days;
using std::chrono::floor;
using std::chrono::hours;
using std::chrono::microseconds;
using std::chrono::minutes;
using std::chrono::seconds;
using std::chrono::sys_days;
using std::chrono::year_month_day;

constexpr std::string_view kDatePattern = "0000-00-00T00:00:00Z";
constexpr std::array kMonths = {"Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

constexpr Date midnight(int year, unsigned month, unsigned day) {
    return sys_days(year_month_day(std::chrono::year(year), std::chrono::month(month), std::chrono::day(day)));
}

constexpr Date kReference = midnight(2001, 1, 1);
constexpr Date kFirst = midnight(0, 1, 1);
constexpr Date kEnd = midnight(10000, 1, 1);

int numberAt(std::string_view text, std::size_t at, std::size_t digits) {
    int number = 0;
    for (const char c : text.substr(at, digits)) number = number * 10 + (c - '0');
    return number;
}

} // namespace

double secondsSince2001(Date date) {
    return std::chrono::duration<double>(date - kReference).count();
}

std::optional<Date> dateFromSecondsSince2001(double secondsSince) {
    static const double earliest = secondsSince2001(kFirst);
    static const double end = secondsSince2001(kEnd);
    if (!(secondsSince >= earliest && secondsSince < end)) return std::nullopt;
    const Date date = kReference + microseconds(std::llround(secondsSince * 1e6));
    if (date >= kEnd) return std::nullopt;
    return date;
}

std::string iso8601(Date date) {
    const auto day = floor<days>(date);
    const auto second = floor<seconds>(date) - day;
    const year_month_day calendar(day);
    std::array<char, 80> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02u-%02uT%02d:%02d:%02dZ", static_cast<int>(calendar.year()),
                  static_cast<unsigned>(calendar.month()), static_cast<unsigned>(calendar.day()),
                  static_cast<int>(second / hours(1)), static_cast<int>(second / minutes(1) % 60),
                  static_cast<int>(second.count() % 60));
    return text.data();
}

std::optional<Date> dateFromIso8601(std::string_view text) {
    if (text.size() != kDatePattern.size()) return std::nullopt;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool fits = kDatePattern[i] == '0' ? text[i] >= '0' && text[i] <= '9' : text[i] == kDatePattern[i];
        if (!fits) return std::nullopt;
    }
    const year_month_day calendar{std::chrono::year(numberAt(text, 0, 4)),
                                  std::chrono::month(static_cast<unsigned>(numberAt(text, 5, 2))),
                                  std::chrono::day(static_cast<unsigned>(numberAt(text, 8, 2)))};
    const int hour = numberAt(text, 11, 2);
    const int minute = numberAt(text, 14, 2);
    const int second = numberAt(text, 17, 2);
    if (!calendar.ok() || hour > 23 || minute > 59 || second > 59) return std::nullopt;
    return sys_days(calendar) + hours(hour) + minutes(minute) + seconds(second);
}

std::string localMonthDayTime(Date date) {
    const std::time_t time = static_cast<std::time_t>(floor<seconds>(date).time_since_epoch().count());
    std::tm local{};
    tzset(); // the time zone may have changed since the start
    if (!localtime_r(&time, &local)) return iso8601(date);
    std::array<char, 80> text{};
    std::snprintf(text.data(), text.size(), "%s %d, %02d:%02d", kMonths[static_cast<std::size_t>(local.tm_mon)],
                  local.tm_mday, local.tm_hour, local.tm_min);
    return text.data();
}

std::string localDateStamp(Date date) {
    const std::time_t time = static_cast<std::time_t>(floor<seconds>(date).time_since_epoch().count());
    std::tm local{};
    localtime_r(&time, &local);
    std::array<char, 32> text{};
    return {text.data(), std::strftime(text.data(), text.size(), "%Y%m%d-%H%M%S", &local)};
}

} // namespace kova
