// Themes, their palettes and the layouts they list, and the accent colors.
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
    RGBAColor background, panel, accent, secondaryAccent;
    RGBAColor text, mutedText; // legible on background and panel
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
inline constexpr std::string_view kDefaultThemeID = "kova.native";

const std::vector<AccentColorOption>& accentColorOptions();
/// The option with the id, else the default one.
const AccentColorOption& accentColor(std::string_view id);
/// The id itself if it names an accent color, else the default one.
std::string normalizedAccentColorID(std::string_view id);

/// A palette with a visual style, and the layouts of the theme.
class WorkspaceTheme {
  public:
    virtual ~WorkspaceTheme() = default;
    virtual const ThemeDescriptor& descriptor() const = 0;
};

/// Grays similar to those of desktops.
class NativeTheme final : public WorkspaceTheme {
  public:
    NativeTheme();
    const ThemeDescriptor& descriptor() const override { return descriptor_; }

  private:
    ThemeDescriptor descriptor_;
};

/// Neon colors on a dark blue background.
class JarvisTheme final : public WorkspaceTheme {
  public:
    JarvisTheme();
    const ThemeDescriptor& descriptor() const override { return descriptor_; }

  private:
    ThemeDescriptor descriptor_;
};

class ThemeRegistry {
  public:
    ThemeRegistry();
    /// All themes, in the order in which users see them. They list the same layouts, so that a change of theme moves no
    /// window.
    const std::vector<std::shared_ptr<const WorkspaceTheme>>& themes() const { return themes_; }
    bool contains(std::string_view id) const { return find(id) != nullptr; }
    /// The theme with the id, else the default one.
    const ThemeDescriptor& theme(std::string_view id) const;
    /// The theme's palette, in which the accent color replaces the theme's own accent; unknown ids mean the defaults.
    ThemePalette palette(std::string_view themeID, std::string_view accentColorID) const;

  private:
    const ThemeDescriptor* find(std::string_view id) const;

    std::vector<std::shared_ptr<const WorkspaceTheme>> themes_;
};

} // namespace kova
