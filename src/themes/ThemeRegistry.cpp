#include "themes/ThemeRegistry.h"

#include <algorithm>

namespace kova {

namespace {

ThemeDescriptor nativeTheme() {
    const ThemePalette palette{
        .background = {0.11, 0.11, 0.12, 1},
        .panel = {0.17, 0.17, 0.18, 1},
        .accent = {0.04, 0.52, 1, 1},
        .secondaryAccent = {0.39, 0.82, 1, 1},
        .text = {0.96, 0.96, 0.97, 1},
        .mutedText = {0.68, 0.68, 0.71, 1},
    };
    return {"kova.native", "Native", ThemeVisualStyle::native, palette, builtInLayouts()};
}

ThemeDescriptor jarvisTheme() {
    const ThemePalette palette{
        .background = {0.01, 0.03, 0.06, 1},
        .panel = {0.03, 0.08, 0.13, 1},
        .accent = {0, 0.84, 1, 1},
        .secondaryAccent = {0.28, 0.96, 1, 1},
        .text = {0.88, 0.97, 1, 1},
        .mutedText = {0.48, 0.66, 0.74, 1},
    };
    return {"jarvis.neon-cyan", "Neon Cyan", ThemeVisualStyle::system, palette, builtInLayouts()};
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

std::string normalizedAccentColorID(std::string_view id) {
    const auto& options = accentColorOptions();
    const bool known =
        std::any_of(options.begin(), options.end(), [id](const AccentColorOption& option) { return option.id == id; });
    return std::string(known ? id : kDefaultAccentColorID);
}

ThemeRegistry::ThemeRegistry() : themes_{nativeTheme(), jarvisTheme()} {}

const ThemeDescriptor& ThemeRegistry::theme(std::string_view id) const {
    const auto found =
        std::find_if(themes_.begin(), themes_.end(), [id](const ThemeDescriptor& theme) { return theme.id == id; });
    return found == themes_.end() ? themes_.front() : *found;
}

} // namespace kova
