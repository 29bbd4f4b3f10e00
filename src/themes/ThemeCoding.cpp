#include "themes/ThemeCoding.h"

#include "layout/LayoutCoding.h"

namespace kova {

using nlohmann::json;

namespace {

double component(const JsonCursor& at, std::string_view key) {
    const JsonCursor given = at.required(key);
    const double value = given.number();
    if (!(value >= 0 && value <= 1)) given.fail("expected a number from 0 to 1");
    return value;
}

} // namespace

std::string_view rawValue(ThemeVisualStyle style) {
    switch (style) {
    case ThemeVisualStyle::system:
        return "system";
    case ThemeVisualStyle::native:
        return "native";
    }
    return "";
}

json encode(const RGBAColor& color) {
    return {{"red", color.red}, {"green", color.green}, {"blue", color.blue}, {"alpha", color.alpha}};
}

json encode(const ThemePalette& palette) {
    return {{"background", encode(palette.background)},
            {"panel", encode(palette.panel)},
            {"accent", encode(palette.accent)},
            {"secondaryAccent", encode(palette.secondaryAccent)},
            {"text", encode(palette.text)},
            {"mutedText", encode(palette.mutedText)}};
}

json encode(const ThemeDescriptor& descriptor) {
    json layouts = json::array();
    for (const LayoutDefinition& layout : descriptor.layouts) layouts.push_back(encode(layout));
    return {{"id", descriptor.id},
            {"displayName", descriptor.displayName},
            {"visualStyle", rawValue(descriptor.visualStyle)},
            {"palette", encode(descriptor.palette)},
            {"layouts", std::move(layouts)}};
}

RGBAColor decodeColor(const JsonCursor& at) {
    return {component(at, "red"), component(at, "green"), component(at, "blue"), component(at, "alpha")};
}

ThemePalette decodePalette(const JsonCursor& at) {
    const auto color = [&](std::string_view key) { return decodeColor(at.required(key)); };
    return {.background = color("background"),
            .panel = color("panel"),
            .accent = color("accent"),
            .secondaryAccent = color("secondaryAccent"),
            .text = color("text"),
            .mutedText = color("mutedText")};
}

} // namespace kova
