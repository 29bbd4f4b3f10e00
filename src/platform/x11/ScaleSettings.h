// How many pixels a point has, by what the desktop's settings say: plain arithmetic on values that other programs
// wrote.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace kova::x11 {

/// Those of an XSETTINGS manager that matter.
struct SharedSettings {
    std::optional<double> dotsPerInch;      // Xft/DPI; the setting counts 1024ths
    std::optional<int> windowScalingFactor; // Gdk/WindowScalingFactor
    bool operator==(const SharedSettings&) const = default;
};

/// Of the property _XSETTINGS_SETTINGS; nothing from where it does not keep to its format.
SharedSettings sharedSettingsIn(std::span<const std::uint8_t> property);
/// Xft.dpi in the text of the RESOURCE_MANAGER property; absent when it has none.
std::optional<double> dotsPerInchIn(std::string_view resources);
/// Pixels to a point: from 1 to 4, in quarters, so that converting is exact enough to be stable. The whole factor of
/// an XSETTINGS manager counts first, then its DPI, then that of the X resources; 96 dots per inch are a scale of 1.
double scaleOf(const SharedSettings& shared, const std::optional<double>& resourceDotsPerInch);

} // namespace kova::x11
