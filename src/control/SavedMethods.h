// Which methods of the socket change what the user keeps: they are answered once that is on disk.
#pragma once

#include <algorithm>
#include <array>
#include <string_view>

namespace kova {

inline bool isAnsweredOnceSaved(std::string_view method) {
    constexpr std::array<std::string_view, 8> kGroups = {"scene.", "rule.",   "rules.", "shortcut.",
                                                         "theme.", "accent.", "login.", "dock."};
    constexpr std::array<std::string_view, 6> kReading = {".list", ".show", ".diff", ".test", ".status", ".record"};
    const auto begins = [method](std::string_view group) { return method.starts_with(group); };
    const auto ends = [method](std::string_view reading) { return method.ends_with(reading); };
    if (method == "import" || method == "layout.setInset") return true;
    return std::ranges::any_of(kGroups, begins) && std::ranges::none_of(kReading, ends);
}

} // namespace kova
