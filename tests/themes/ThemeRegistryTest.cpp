#include "themes/ThemeRegistry.h"

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

TEST(ThemeRegistry, TextIsLegibleInEveryTheme) {
    std::vector<std::string> ids;
    const ThemeRegistry registry;
    for (const auto& theme : registry.themes()) {
        ids.push_back(theme.id);
        EXPECT_TRUE(theme.layouts == builtInLayouts()) << theme.id;
        const ThemePalette& palette = theme.palette;
        for (const auto& behind : {palette.background, palette.panel}) {
            EXPECT_EQ(behind.alpha, 1) << "what shines through would change the contrast";
            EXPECT_GE(contrast(palette.text, behind), 4.5) << theme.id;
            EXPECT_GE(contrast(palette.mutedText, behind), 4.5) << theme.id;
            EXPECT_GE(contrast(palette.accent, behind), 3) << theme.id;
        }
    }
    EXPECT_EQ(ids, (std::vector<std::string>{"kova.native", "jarvis.neon-cyan"}));
    EXPECT_EQ(registry.theme("jarvis.neon-cyan").visualStyle, ThemeVisualStyle::system);
    EXPECT_EQ(registry.theme("no such theme").id, "kova.native");
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
