// Computes how many pixels a point has from the desktop's settings, which other programs write: arithmetic on values.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace kova::x11 {

/// The settings of an XSETTINGS manager that determine the scale.
struct SharedSettings {
    std::optional<double> dotsPerInch;      // Xft/DPI, whose unit is 1/1024 dot per inch
    std::optional<int> windowScalingFactor; // Gdk/WindowScalingFactor
    bool operator==(const SharedSettings&) const = default;
};

/// Reads the property _XSETTINGS_SETTINGS, up to the first violation of its format.
SharedSettings sharedSettingsIn(std::span<const std::uint8_t> property);
/// The value of Xft.dpi in the text of the RESOURCE_MANAGER property; absent if the text has none.
std::optional<double> dotsPerInchIn(std::string_view resources);
/// Pixels per point: from 1 to 4 in steps of a quarter, so that repeated conversion is stable. The window scaling
/// factor has precedence, then the XSETTINGS manager's dots per inch, then those of the X resources; 96 dots per inch
/// are a scale of 1.
double scaleOf(const SharedSettings& shared, const std::optional<double>& resourceDotsPerInch);

} // namespace kova::x11
