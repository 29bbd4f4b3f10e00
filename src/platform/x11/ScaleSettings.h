// Computes how many pixels a point has from the desktop's settings, which other programs wrote: arithmetic on values.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace kova::x11 {

/// The settings of an XSETTINGS manager that matter.
struct SharedSettings {
    std::optional<double> dotsPerInch;      // Xft/DPI; the setting counts 1024ths
    std::optional<int> windowScalingFactor; // Gdk/WindowScalingFactor
    bool operator==(const SharedSettings&) const = default;
};

/// Reads the property _XSETTINGS_SETTINGS, up to the first violation of its format.
SharedSettings sharedSettingsIn(std::span<const std::uint8_t> property);
/// Xft.dpi in the text of the RESOURCE_MANAGER property; absent when it has none.
std::optional<double> dotsPerInchIn(std::string_view resources);
/// Pixels to a point: from 1 to 4, in quarters, so that repeated conversion is stable. The XSETTINGS manager's whole
/// factor has precedence, then its DPI, then that of the X resources; 96 dots per inch are a scale of 1.
double scaleOf(const SharedSettings& shared, const std::optional<double>& resourceDotsPerInch);

} // namespace kova::x11
