#include "themes/ThemeRegistry.h"
#include "themes/ThemeCoding.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

using namespace kova;

namespace {

double luminance(const RGBAColor& color) {
    const auto linear = [](double c) { return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4); };
    return 0.2126 * linear(color.red) + 0.7152 * linear(color.green) + 0.0722 * linear(color.blue);
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
                EXPECT_EQ(behind.alpha, 1) << "a translucent color would change the contrast";
                EXPECT_GE(contrast(palette.text, behind), 4.5) << theme.id;
                EXPECT_GE(contrast(palette.mutedText, behind), 4.5) << theme.id;
                EXPECT_GE(contrast(palette.accent, behind), 3) << theme.id << " " << option.id;
                EXPECT_GE(contrast(palette.secondaryAccent, behind), 3) << theme.id << " " << option.id;
            }
        }
    }
    EXPECT_EQ(ids, (std::vector<std::string>{"kova.native", "jarvis.neon-cyan"}));
    EXPECT_EQ(registry.theme("jarvis.neon-cyan").visualStyle, ThemeVisualStyle::system);
    EXPECT_EQ(registry.theme("kova.native").visualStyle, ThemeVisualStyle::native);
    EXPECT_EQ(registry.theme("jarvis.neon-cyan").displayName, "Neon Cyan");
    EXPECT_EQ(registry.theme("kova.native").displayName, "Native");
    EXPECT_EQ(registry.theme("no such theme").id, "kova.native");
    EXPECT_EQ(registry.palette("no such theme", "plaid"), registry.palette("kova.native", "system-blue"));
}

TEST(ThemeRegistry, ThemesTravelAsJson) {
    const ThemeDescriptor jarvis = JarvisTheme().descriptor();
    const auto read = [](const nlohmann::json& json) {
        return decodeJson(json.dump(), [](const JsonCursor& at) { return decodePalette(at); });
    };
    nlohmann::json json = encode(jarvis).at("palette");
    EXPECT_EQ(std::get<ThemePalette>(read(json)), jarvis.palette);
    EXPECT_EQ(json["secondaryAccent"], (nlohmann::json{{"red", 0.28}, {"green", 0.96}, {"blue", 1.0}, {"alpha", 1.0}}));
    json["text"]["green"] = 1.01;
    EXPECT_EQ(std::get<DecodingError>(read(json)).path(), "text.green");
    json.erase("mutedText");
    json["text"]["green"] = 1;
    EXPECT_EQ(std::get<DecodingError>(read(json)).path(), "mutedText");
}

TEST(AccentColors, Options) {
    const std::vector<AccentColorOption> expected{
        {"system-blue", "SYSTEM BLUE", {0, 0.84, 1, 1}, {0.28, 0.96, 1, 1}},
        {"electric-violet", "ELECTRIC VIOLET", {0.55, 0.35, 1, 1}, {0.78, 0.62, 1, 1}},
        {"signal-magenta", "SIGNAL MAGENTA", {0.98, 0.22, 0.78, 1}, {1, 0.48, 0.9, 1}},
        {"matrix-emerald", "MATRIX EMERALD", {0.1, 0.92, 0.58, 1}, {0.42, 1, 0.76, 1}},
        {"reactor-amber", "REACTOR AMBER", {1, 0.62, 0.12, 1}, {1, 0.82, 0.38, 1}},
    };
    const auto& options = accentColorOptions();
    ASSERT_EQ(options.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(options[i].id, expected[i].id);
        EXPECT_EQ(options[i].displayName, expected[i].displayName);
        EXPECT_EQ(options[i].accent, expected[i].accent) << expected[i].id;
        EXPECT_EQ(options[i].secondaryAccent, expected[i].secondaryAccent) << expected[i].id;
        EXPECT_EQ(normalizedAccentColorID(options[i].id), options[i].id);
    }
    EXPECT_EQ(normalizedAccentColorID("plaid"), "system-blue");
}
