// The arguments of a verb, parsed from the words that follow it.
#pragma once

#include <nlohmann/json.hpp>

#include <optional>
#include <string>

namespace kova::cli {

enum class ExitCode { done = 0, refused = 1, wrongUsage = 2, noAgent = 3, noPermission = 4 };

struct Arguments {
    bool json = false;
    nlohmann::json request = nlohmann::json::object(); // the parameters of the agent's method
    nlohmann::json local = nlohmann::json::object();   // parameters that only the command line uses

    bool has(const char* key) const { return request.contains(key) || local.contains(key); }
    /// The value of a local parameter; `otherwise` if it is absent.
    std::string text(const char* key, const char* otherwise = "") const { return local.value(key, otherwise); }
    /// The value of a local parameter.
    std::optional<int> number(const char* key) const {
        return local.contains(key) ? std::optional(local.at(key).get<int>()) : std::nullopt;
    }
};

} // namespace kova::cli
