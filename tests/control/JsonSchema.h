// Checks JSON against docs/control-schema.json. It knows the few keywords that the schema uses and rejects all others,
// so that nothing in the schema goes unchecked.
#pragma once

#include <nlohmann/json.hpp>

#include <string>

namespace kova {

/// The contents of docs/control-schema.json. Throws if the file cannot be read.
nlohmann::json controlSchema();

/// Says which member of the value does not fit `$defs[definition]`, and why; empty if the value fits.
std::string schemaViolation(const nlohmann::json& schema, const std::string& definition, const nlohmann::json& value);

} // namespace kova
