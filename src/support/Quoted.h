// Names in texts for the user.
#pragma once

#include <string>
#include <string_view>

namespace kova {

struct Quoting {
    std::string operator()(std::string_view name) const { return "“" + std::string(name) + "”"; }
};
/// quoted("Work") is "“Work”". This is not a function, since a call with a std::string could also mean std::quoted.
inline constexpr Quoting quoted;

} // namespace kova
