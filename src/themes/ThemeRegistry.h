// Themes, their palettes and the layouts they list, and the accent colours.
#pragma once

#include "layout/LayoutCatalogue.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace kova {

enum class ThemeVisualStyle { system, native };

/// Components from 0 to 1.
struct RGBAColor {
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 1;
    bool operator==(const RGBAColor&) const = default;
};

struct ThemePalette {
    RGBAColor background, panel, accent, secondaryAccent, text, mutedText;
    bool operator==(const ThemePalette&) const = default;
};

struct ThemeDescriptor {
    std::string id;
    std::string displayName;
    ThemeVisualStyle visualStyle = ThemeVisualStyle::native;
    ThemePalette palette;
    std::vector<LayoutDefinition> layouts; // catalogue order
    bool operator==(const ThemeDescriptor&) const = default;
};

struct AccentColorOption {
    std::string id;
    std::string displayName;
    RGBAColor accent;
    RGBAColor secondaryAccent;
    bool operator==(const AccentColorOption&) const = default;
};

inline constexpr std::string_view kDefaultAccentColorID = "system-blue";

const std::vector<AccentColorOption>& accentColorOptions();
/// The id itself when it names an accent colour, else the default one.
std::string normalizedAccentColorID(std::string_view id);

class ThemeRegistry {
  public:
    ThemeRegistry();
    const std::vector<ThemeDescriptor>& themes() const { return themes_; }
    /// The theme with the id, else the first.
    const ThemeDescriptor& theme(std::string_view id) const;

  private:
    std::vector<ThemeDescriptor> themes_;
};

} // namespace kova
