// Names in texts for the user.
#pragma once

#include <string>
#include <string_view>

namespace kova {

/// "“Work”".
inline std::string quoted(std::string_view name) {
    return "“" + std::string(name) + "”";
}

} // namespace kova
