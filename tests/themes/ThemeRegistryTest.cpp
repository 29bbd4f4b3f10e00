#include "themes/ThemeRegistry.h"
#include "themes/ThemeCoding.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

using namespace kova;

namespace {

double luminance(const RGBAColor& colour) {
    const auto linear = [](double c) { return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4); };
    return 0.2126 * linear(colour.red) + 0.7152 * linear(colour.green) + 0.0722 * linear(colour.blue);
}

/// The usual measure of legibility, from 1 to 21.
double contrast(const RGBAColor& a, const RGBAColor& b) {
    const auto [darker, lighter] = std::minmax({luminance(a), luminance(b)});
    return (lighter + 0.05) / (darker + 0.05);
}

} // namespace

TEST(ThemeRegistry, EveryThemeIsLegibleWithEveryAccentColor) {
    std::vector<std::string> ids;
    const ThemeRegistry registry;
    for (const auto& each : registry.themes()) {
        const ThemeDescriptor& theme = each->descriptor();
        ids.push_back(theme.id);
        EXPECT_TRUE(theme.layouts == builtInLayouts()) << theme.id;
        for (const auto& option : accentColorOptions()) {
            const ThemePalette palette = registry.palette(theme.id, option.id);
            EXPECT_EQ(palette.accent, option.accent);
            EXPECT_EQ(palette.secondaryAccent, option.secondaryAccent);
            EXPECT_EQ(palette.text, theme.palette.text);
            for (const auto& behind : {palette.background, palette.panel}) {
                EXPECT_EQ(behind.alpha, 1) << "what shines through would change the contrast";
                EXPECT_GE(contrast(palette.text, behind), 4.5) << theme.id;
                EXPECT_GE(contrast(palette.mutedText, behind), 4.5) << theme.id;
                EXPECT_GE(contrast(palette.accent, behind), 3) << theme.id << " " << option.id;
                EXPECT_GE(contrast(palette.secondaryAccent, behind), 3) << theme.id << " " << option.id;
            }
        }
    }
    EXPECT_EQ(ids, (std::vector<std::string>{"kova.native", "jarvis.neon-cyan"}));
    EXPECT_EQ(registry.theme("jarvis.neon-cyan").visualStyle, ThemeVisualStyle::system);
    EXPECT_EQ(registry.theme("no such theme").id, "kova.native");
    EXPECT_EQ(registry.palette("no such theme", "plaid"), registry.palette("kova.native", "system-blue"));
}

TEST(ThemeRegistry, ThemesTravelAsJson) {
    const ThemeDescriptor jarvis = JarvisTheme().descriptor();
    const auto read = [](const nlohmann::json& json) {
        return decodeJson(json.dump(), [](const JsonCursor& at) { return decodeThemeDescriptor(at); });
    };
    nlohmann::json json = encode(jarvis);
    const auto back = std::get<ThemeDescriptor>(read(json));
    EXPECT_EQ(back.palette, jarvis.palette);
    EXPECT_EQ(encode(back), json);
    EXPECT_EQ(json["palette"]["secondaryAccent"],
              (nlohmann::json{{"red", 0.28}, {"green", 0.96}, {"blue", 1.0}, {"alpha", 1.0}}));
    json["palette"]["text"]["green"] = 1.01;
    EXPECT_EQ(std::get<DecodingError>(read(json)).path(), "palette.text.green");
    json["palette"].erase("mutedText");
    json["palette"]["text"]["green"] = 1;
    EXPECT_EQ(std::get<DecodingError>(read(json)).path(), "palette.mutedText");
    json["visualStyle"] = "Native";
    EXPECT_EQ(std::get<DecodingError>(read(json)).path(), "visualStyle");
}

TEST(AccentColors, Options) {
    std::vector<std::string> ids;
    for (const auto& option : accentColorOptions()) {
        ids.push_back(option.id);
        EXPECT_EQ(normalizedAccentColorID(option.id), option.id);
        EXPECT_EQ(option.accent.alpha + option.secondaryAccent.alpha, 2);
    }
    EXPECT_EQ(ids, (std::vector<std::string>{"system-blue", "electric-violet", "signal-magenta", "matrix-emerald",
                                             "reactor-amber"}));
    EXPECT_EQ(accentColorOptions()[4].displayName, "REACTOR AMBER");
    EXPECT_EQ(accentColorOptions()[4].secondaryAccent, (RGBAColor{1, 0.82, 0.38, 1}));
    EXPECT_EQ(normalizedAccentColorID("plaid"), "system-blue");
}
