// Puts names in quotation marks in texts for the user.
#pragma once

#include <string>
#include <string_view>

namespace kova {

struct Quoting {
    std::string operator()(std::string_view name) const { return "“" + std::string(name) + "”"; }
};
/// quoted("Work") is "“Work”". An object, not a function: a function call with a std::string could also mean
/// std::quoted.
inline constexpr Quoting quoted;

} // namespace kova
