// Dates of stored records, to the microsecond, and their two formats. Every date that can be read lies in the years
// 0000 to 9999, and can be written in both formats.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace kova {

using Date = std::chrono::time_point<std::chrono::system_clock, std::chrono::microseconds>;

/// Seconds, with their fraction, since 2001-01-01T00:00:00Z.
double secondsSince2001(Date date);
/// Rounded to a microsecond; absent if the value is not a number or lies outside the years 0000 to 9999.
std::optional<Date> dateFromSecondsSince2001(double seconds);

/// YYYY-MM-DDTHH:MM:SSZ, rounded down to a whole second.
std::string iso8601(Date date);
/// Reads exactly the form that `iso8601` writes; absent for any other text, and for a date that does not exist.
std::optional<Date> dateFromIso8601(std::string_view text);

/// The date in the user's time zone: "Nov 14, 18:12".
std::string localMonthDayTime(Date date);

/// "20261121-035455", in local time, for names of files.
std::string localDateStamp(Date date);

} // namespace kova
