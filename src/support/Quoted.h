// Names in texts for the user.
#pragma once

#include <string>
#include <string_view>

namespace kova {

struct Quoting {
    std::string operator()(std::string_view name) const { return "“" + std::string(name) + "”"; }
};
/// quoted("Work") is "“Work”". An object, since std::quoted would compete with a function.
inline constexpr Quoting quoted;

} // namespace kova
