// Texts in the agent's messages.
#pragma once

#include <QString>

#include <nlohmann/json.hpp>

namespace kova::ui {

/// The member as text; empty when it is absent or not a string.
inline QString memberText(const nlohmann::json& object, const char* key) {
    const auto found = object.is_object() ? object.find(key) : object.end();
    return found != object.end() && found->is_string() ? QString::fromStdString(found->get<std::string>()) : QString();
}

} // namespace kova::ui
