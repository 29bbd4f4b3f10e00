// Checks JSON against docs/control-schema.json. It knows the few keywords that the schema uses and rejects all others,
// so that nothing in the schema goes unchecked.
#pragma once

#include <nlohmann/json.hpp>

#include <string>

namespace kova {

/// The schema file of this project. Throws when it cannot be read.
nlohmann::json controlSchema();

/// What does not fit, with its path; empty when the value fits `$defs[definition]`.
std::string schemaViolation(const nlohmann::json& schema, const std::string& definition, const nlohmann::json& value);

} // namespace kova
