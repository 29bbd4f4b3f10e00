#include "windowing/AccessibilityErrors.h"

#include <algorithm>

namespace kova {

namespace {

constexpr int kFailure = -25200;
constexpr int kInvalidElement = -25202;
constexpr int kCannotComplete = -25204;
constexpr int kInterfaceDisabled = -25211;
constexpr int kAlreadyRegistered = -25209;

} // namespace

AccessibilityOutcome accessibilityOutcome(int error) {
    switch (error) {
    case kInvalidElement:
        return AccessibilityOutcome::invalidElement;
    case kCannotComplete:
        return AccessibilityOutcome::noResponse;
    default:
        return AccessibilityOutcome::responded;
    }
}

WindowPresence windowPresence(int error) {
    switch (error) {
    case kInvalidElement:
        return WindowPresence::closed;
    case kCannotComplete:
    case kInterfaceDisabled:
    case kFailure:
        return WindowPresence::noResponse;
    default:
        return WindowPresence::present;
    }
}

AnnouncementResponse announcementResponse(std::span<const int> errors) {
    const auto isNoResponse = [](int error) { return error == kCannotComplete || error == kInterfaceDisabled; };
    if (std::ranges::any_of(errors, isNoResponse)) return AnnouncementResponse::noResponse;
    const bool announcesSome =
        std::ranges::any_of(errors, [](int error) { return error == 0 || error == kAlreadyRegistered; });
    return announcesSome ? AnnouncementResponse::announces : AnnouncementResponse::refuses;
}

void IgnoredPermission::note(pid_t process, int error) {
    if (error == kInterfaceDisabled) {
        ++refusals_[process];
    } else if (error != kCannotComplete && error != kFailure) {
        refusals_.clear();
    }
}

bool IgnoredPermission::isIgnored() const {
    return std::ranges::count_if(refusals_, [](const auto& entry) { return entry.second >= kFewestRefusals; }) >=
           kFewestApplications;
}

} // namespace kova
