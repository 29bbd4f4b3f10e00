#include "app/SystemArguments.h"

#include <string_view>

namespace kova {

namespace {

bool namesDefault(std::string_view argument) {
    return argument.size() > 1 && argument[0] == '-' && argument[1] != '-';
}

} // namespace

std::vector<char*> withoutSystemArguments(std::vector<char*> arguments) {
    std::vector<char*> kept;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string_view argument = arguments[i];
        if (argument.starts_with("-psn_")) continue;
        if (!namesDefault(argument)) {
            kept.push_back(arguments[i]);
        } else if (i + 1 < arguments.size() && !std::string_view(arguments[i + 1]).starts_with("--")) {
            ++i; // its value
        }
    }
    return kept;
}

} // namespace kova
