#include "themes/ThemeRegistry.h"

#include <algorithm>

namespace kova {

namespace {

ThemePalette nativePalette() {
    const AccentColorOption& accent = accentColor(kDefaultAccentColorID);
    return {.background = {0.11, 0.11, 0.12, 1},
            .panel = {0.17, 0.17, 0.18, 1},
            .accent = accent.accent,
            .secondaryAccent = accent.secondaryAccent,
            .text = {0.96, 0.96, 0.97, 1},
            .mutedText = {0.68, 0.68, 0.71, 1}};
}

ThemePalette jarvisPalette() {
    const AccentColorOption& accent = accentColor(kDefaultAccentColorID);
    return {.background = {0.01, 0.03, 0.06, 1},
            .panel = {0.03, 0.08, 0.13, 1},
            .accent = accent.accent,
            .secondaryAccent = accent.secondaryAccent,
            .text = {0.88, 0.97, 1, 1},
            .mutedText = {0.48, 0.66, 0.74, 1}};
}

} // namespace

const std::vector<AccentColorOption>& accentColorOptions() {
    static const std::vector<AccentColorOption> options{
        {"system-blue", "SYSTEM BLUE", {0, 0.84, 1, 1}, {0.28, 0.96, 1, 1}},
        {"electric-violet", "ELECTRIC VIOLET", {0.55, 0.35, 1, 1}, {0.78, 0.62, 1, 1}},
        {"signal-magenta", "SIGNAL MAGENTA", {0.98, 0.22, 0.78, 1}, {1, 0.48, 0.9, 1}},
        {"matrix-emerald", "MATRIX EMERALD", {0.1, 0.92, 0.58, 1}, {0.42, 1, 0.76, 1}},
        {"reactor-amber", "REACTOR AMBER", {1, 0.62, 0.12, 1}, {1, 0.82, 0.38, 1}},
    };
    return options;
}

const AccentColorOption& accentColor(std::string_view id) {
    const auto& options = accentColorOptions();
    const auto named = [&](std::string_view wanted) {
        return std::find_if(options.begin(), options.end(),
                            [&](const AccentColorOption& option) { return option.id == wanted; });
    };
    const auto found = named(id);
    return found == options.end() ? *named(kDefaultAccentColorID) : *found;
}

std::string normalizedAccentColorID(std::string_view id) {
    return accentColor(id).id;
}

NativeTheme::NativeTheme() :
    descriptor_{std::string(kDefaultThemeID), "Native", ThemeVisualStyle::native, nativePalette(), builtInLayouts()} {}

JarvisTheme::JarvisTheme() :
    descriptor_{"jarvis.neon-cyan", "Neon Cyan", ThemeVisualStyle::system, jarvisPalette(), builtInLayouts()} {}

ThemeRegistry::ThemeRegistry() : themes_{std::make_shared<NativeTheme>(), std::make_shared<JarvisTheme>()} {}

const ThemeDescriptor& ThemeRegistry::theme(std::string_view id) const {
    const ThemeDescriptor* found = find(id);
    return found ? *found : *find(kDefaultThemeID);
}

ThemePalette ThemeRegistry::palette(std::string_view themeID, std::string_view accentColorID) const {
    ThemePalette palette = theme(themeID).palette;
    const AccentColorOption& accent = accentColor(accentColorID);
    palette.accent = accent.accent;
    palette.secondaryAccent = accent.secondaryAccent;
    return palette;
}

const ThemeDescriptor* ThemeRegistry::find(std::string_view id) const {
    const auto found =
        std::find_if(themes_.begin(), themes_.end(), [id](const auto& theme) { return theme->descriptor().id == id; });
    return found == themes_.end() ? nullptr : &(*found)->descriptor();
}

} // namespace kova
