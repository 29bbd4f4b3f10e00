// The arguments of a verb, as parsed from the words after it.
#pragma once

#include <nlohmann/json.hpp>

#include <optional>
#include <string>

namespace kova::cli {

enum class ExitCode { done = 0, refused = 1, wrongUsage = 2, noAgent = 3, noPermission = 4 };

struct Arguments {
    bool json = false;
    nlohmann::json request = nlohmann::json::object(); // the parameters of the agent's method
    nlohmann::json own = nlohmann::json::object();     // parameters that only the command line uses

    bool has(const char* key) const { return request.contains(key) || own.contains(key); }
    /// The text of one of the command line's own parameters.
    std::string text(const char* key, const char* otherwise = "") const { return own.value(key, otherwise); }
    std::optional<int> number(const char* key) const {
        return own.contains(key) ? std::optional(own.at(key).get<int>()) : std::nullopt;
    }
};

} // namespace kova::cli
