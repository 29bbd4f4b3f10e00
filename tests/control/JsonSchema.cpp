#include "tests/control/JsonSchema.h"

#include <algorithm>
#include <fstream>
#include <stdexcept>

namespace kova {

namespace {

using nlohmann::json;

bool hasType(const json& value, const std::string& type) {
    if (type == "object") return value.is_object();
    if (type == "array") return value.is_array();
    if (type == "string") return value.is_string();
    if (type == "boolean") return value.is_boolean();
    if (type == "null") return value.is_null();
    if (type == "number") return value.is_number();
    if (type == "integer") return value.is_number_integer();
    throw std::runtime_error("unknown type in the schema: " + type);
}

class Checker {
  public:
    explicit Checker(const json& schema) : definitions_(schema.at("$defs")) {}

    std::string check(const json& rule, const json& value, const std::string& path) const {
        for (const auto& [keyword, argument] : rule.items()) {
            std::string violation = checkKeyword(keyword, argument, value, path);
            if (!violation.empty()) return violation;
        }
        return {};
    }
    const json& definition(const std::string& name) const {
        if (!definitions_.contains(name)) throw std::runtime_error("the schema lacks " + name);
        return definitions_[name];
    }

  private:
    std::string checkKeyword(const std::string& keyword, const json& argument, const json& value,
                             const std::string& path) const {
        const auto violated = [&](const std::string& what) { return path + ": " + what + ", not " + value.dump(); };
        if (keyword == "description") return {};
        if (keyword == "$ref") return check(definition(argument.get<std::string>().substr(8)), value, path);
        if (keyword == "type") {
            const json types = argument.is_array() ? argument : json::array({argument});
            const bool fits = std::any_of(types.begin(), types.end(), [&](const json& t) { return hasType(value, t); });
            return fits ? "" : violated("a value of type " + argument.dump());
        }
        if (keyword == "enum") {
            return std::find(argument.begin(), argument.end(), value) != argument.end()
                       ? ""
                       : violated("one of " + argument.dump());
        }
        if (keyword == "minimum") return value < argument ? violated("at least " + argument.dump()) : "";
        if (keyword == "maximum") return value > argument ? violated("at most " + argument.dump()) : "";
        if (keyword == "anyOf") {
            const bool fits = std::any_of(argument.begin(), argument.end(),
                                          [&](const json& r) { return check(r, value, path).empty(); });
            return fits ? "" : violated("any of " + argument.dump());
        }
        if (keyword == "required") {
            for (const auto& key : argument) {
                if (!value.contains(key.get<std::string>())) return path + "." + key.get<std::string>() + " is missing";
            }
            return {};
        }
        if (keyword == "properties") {
            // Clients accept members that they do not know; the agent itself sends only members that the schema
            // describes.
            for (const auto& [key, member] : value.items()) {
                if (!argument.contains(key)) return path + "." + key + " is not described";
            }
            return checkProperties(argument, value, path);
        }
        if (keyword == "items") {
            for (std::size_t i = 0; i < value.size(); ++i) {
                const auto violation = check(argument, value[i], path + "[" + std::to_string(i) + "]");
                if (!violation.empty()) return violation;
            }
            return {};
        }
        throw std::runtime_error("unknown keyword in the schema: " + keyword);
    }

    std::string checkProperties(const json& properties, const json& value, const std::string& path) const {
        for (const auto& [key, member] : value.items()) {
            const auto violation = check(properties[key], member, path + "." + key);
            if (!violation.empty()) return violation;
        }
        return {};
    }

    const json& definitions_;
};

} // namespace

json controlSchema() {
    std::ifstream file(KOVA_DOCS "/control-schema.json");
    if (!file) throw std::runtime_error("no schema in " KOVA_DOCS);
    return json::parse(file);
}

std::string schemaViolation(const json& schema, const std::string& definition, const json& value) {
    const Checker checker(schema);
    return checker.check(checker.definition(definition), value, definition);
}

} // namespace kova
