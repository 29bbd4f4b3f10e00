#include "windowing/RawAnswers.h"

#include <cmath>
#include <limits>

namespace kova {

namespace {

constexpr int kFailure = -25200;
constexpr int kInvalidElement = -25202;
constexpr int kCannotComplete = -25204;
constexpr int kInterfaceDisabled = -25211;

template <class Integer>
std::optional<Integer> integral(std::optional<double> number) {
    constexpr double kLowest = std::numeric_limits<Integer>::min(), kLargest = std::numeric_limits<Integer>::max();
    if (!number || !(*number >= kLowest && *number <= kLargest)) return std::nullopt;
    return static_cast<Integer>(*number);
}

} // namespace

AccessibilityOutcome accessibilityOutcome(int error) {
    switch (error) {
    case kInvalidElement:
        return AccessibilityOutcome::gone;
    case kCannotComplete:
        return AccessibilityOutcome::silent;
    default:
        return AccessibilityOutcome::answered;
    }
}

WindowPresence windowPresence(int error) {
    switch (error) {
    case kInvalidElement:
        return WindowPresence::gone;
    case kCannotComplete:
    case kInterfaceDisabled:
    case kFailure:
        return WindowPresence::noAnswer;
    default:
        return WindowPresence::present;
    }
}

std::optional<OnScreenWindow> onScreenWindow(const WindowListEntry& entry) {
    const auto layer = integral<int>(entry.layer);
    const auto process = integral<pid_t>(entry.ownerProcess);
    if (!layer || !process || !entry.x || !entry.y || !entry.width || !entry.height) return std::nullopt;
    const CGRect bounds = makeRect(*entry.x, *entry.y, *entry.width, *entry.height);
    if (!isFinite(bounds)) return std::nullopt;
    return OnScreenWindow{*process, *layer, bounds};
}

} // namespace kova
