#include "platform/x11/ScaleSettings.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace kova::x11 {

namespace {

constexpr double kLargestScale = 4;
constexpr double kDotsPerInchOfScaleOne = 96;

/// Reads the binary format of the settings; values beyond the end are absent.
class SettingsBytes {
  public:
    explicit SettingsBytes(std::span<const std::uint8_t> bytes) : left_(bytes) {}
    void setBigEndian(bool isBigEndian) { isBigEndian_ = isBigEndian; }

    std::optional<std::uint32_t> number(std::size_t size) {
        const auto bytes = take(size);
        if (!bytes) return std::nullopt;
        std::uint32_t value = 0;
        for (std::size_t i = 0; i < size; ++i) value = value << 8 | (*bytes)[isBigEndian_ ? i : size - 1 - i];
        return value;
    }
    /// Skips the padding to a whole word as well.
    std::optional<std::string_view> text(std::size_t length) {
        const auto bytes = take(length);
        if (!bytes || !take((4 - length % 4) % 4)) return std::nullopt;
        return std::string_view(reinterpret_cast<const char*>(bytes->data()), bytes->size());
    }
    std::optional<std::span<const std::uint8_t>> take(std::size_t size) {
        if (left_.size() < size) return std::nullopt;
        const auto taken = left_.first(size);
        left_ = left_.subspan(size);
        return taken;
    }

  private:
    std::span<const std::uint8_t> left_;
    bool isBigEndian_ = false;
};

} // namespace

SharedSettings sharedSettingsIn(std::span<const std::uint8_t> property) {
    enum Kind : std::uint32_t { wholeNumber, text, color };
    SharedSettings settings;
    SettingsBytes bytes(property);
    const auto order = bytes.number(1);
    if (!order || !bytes.take(3)) return settings;
    bytes.setBigEndian(*order == 1);
    const auto serial = bytes.number(4), count = bytes.number(4);
    if (!serial || !count) return settings;
    for (std::uint32_t i = 0; i < *count; ++i) {
        const auto kind = bytes.number(1);
        if (!kind || !bytes.take(1)) return settings;
        const auto nameLength = bytes.number(2);
        const auto name = nameLength ? bytes.text(*nameLength) : std::nullopt;
        if (!name || !bytes.take(4)) return settings;
        if (*kind == text) {
            const auto length = bytes.number(4);
            if (!length || !bytes.text(*length)) return settings;
        } else if (*kind == color) {
            if (!bytes.take(8)) return settings;
        } else if (*kind == wholeNumber) {
            const auto value = bytes.number(4);
            if (!value) return settings;
            const auto number = static_cast<std::int32_t>(*value);
            if (*name == "Xft/DPI" && number > 0) settings.dotsPerInch = number / 1024.0;
            if (*name == "Gdk/WindowScalingFactor" && number > 0) settings.windowScalingFactor = number;
        } else {
            return settings;
        }
    }
    return settings;
}

std::optional<double> dotsPerInchIn(std::string_view resources) {
    constexpr std::string_view kName = "Xft.dpi:";
    while (!resources.empty()) {
        std::string_view line = resources.substr(0, resources.find('\n'));
        resources.remove_prefix(std::min(line.size() + 1, resources.size()));
        if (!line.starts_with(kName)) continue;
        line.remove_prefix(kName.size());
        line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
        double value = 0;
        const auto [end, error] = std::from_chars(line.data(), line.data() + line.size(), value);
        if (error == std::errc{} && value > 0 && std::isfinite(value)) return value;
    }
    return std::nullopt;
}

double scaleOf(const SharedSettings& shared, const std::optional<double>& resourceDotsPerInch) {
    if (shared.windowScalingFactor && *shared.windowScalingFactor > 1) {
        return std::min<double>(*shared.windowScalingFactor, kLargestScale);
    }
    const double dotsPerInch = shared.dotsPerInch.value_or(resourceDotsPerInch.value_or(kDotsPerInchOfScaleOne));
    return std::clamp(std::round(dotsPerInch / kDotsPerInchOfScaleOne * 4) / 4, 1.0, kLargestScale);
}

} // namespace kova::x11
