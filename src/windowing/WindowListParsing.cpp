#include "windowing/WindowListParsing.h"

#include <cmath>
#include <limits>

namespace kova {

namespace {

template <class Integer>
std::optional<Integer> integral(std::optional<double> number) {
    constexpr double kLowest = std::numeric_limits<Integer>::min(), kLargest = std::numeric_limits<Integer>::max();
    if (!number || !(*number >= kLowest && *number <= kLargest)) return std::nullopt;
    return static_cast<Integer>(*number);
}

} // namespace

std::optional<OnScreenWindow> onScreenWindow(const WindowListEntry& entry) {
    const auto layer = integral<int>(entry.layer);
    const auto process = integral<pid_t>(entry.ownerProcess);
    if (!layer || !process || !entry.x || !entry.y || !entry.width || !entry.height) return std::nullopt;
    const CGRect bounds = makeRect(*entry.x, *entry.y, *entry.width, *entry.height);
    if (!isFinite(bounds)) return std::nullopt;
    return OnScreenWindow{*process, *layer, bounds};
}

} // namespace kova
