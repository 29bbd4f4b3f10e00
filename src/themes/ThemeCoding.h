// JSON of themes and colors: the keys are the names of the fields.
#pragma once

#include "support/JsonDecoding.h"
#include "themes/ThemeRegistry.h"

#include <nlohmann/json.hpp>

#include <string_view>

namespace kova {

/// The name in JSON: "system", "native".
std::string_view rawValue(ThemeVisualStyle style);

nlohmann::json encode(const RGBAColor& color);
nlohmann::json encode(const ThemePalette& palette);
nlohmann::json encode(const ThemeDescriptor& descriptor);

/// These throw `DecodingError`; the components of a color are between 0 and 1.
RGBAColor decodeColor(const JsonCursor& at);
ThemePalette decodePalette(const JsonCursor& at);

} // namespace kova
