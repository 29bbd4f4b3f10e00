#include "windowing/KeyCodes.h"

#include <array>

namespace kova {

namespace {

constexpr auto kAmerican = [] {
    std::array<std::string_view, keyCode::limit> characterByCode{};
    struct Run {
        std::string_view characters;
        std::uint16_t first; // the key code of the first character; the next characters have the next codes
    };
    constexpr std::array kRuns = {
        Run{"asdfhgzxcv", 0},
        Run{"bqweryt123465=97-80]ou[ip", 11},
        Run{"lj'k;\\,/nm.", 37},
        Run{"`", 50},
        Run{".", 65},
        Run{"*", 67},
        Run{"+", 69},
        Run{"/", 75},
        Run{"-", 78},
        Run{"=01234567", 81},
        Run{"89", 91},
        Run{" ", 49},
    };
    for (const Run& run : kRuns) {
        for (std::size_t n = 0; n < run.characters.size(); ++n) {
            characterByCode[run.first + n] = run.characters.substr(n, 1);
        }
    }
    return characterByCode;
}();

} // namespace

std::string_view americanCharacterOf(std::uint16_t code) {
    return code < kAmerican.size() ? kAmerican[code] : std::string_view();
}

} // namespace kova
