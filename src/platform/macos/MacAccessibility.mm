#include "platform/macos/MacAccessibility.h"

#include "platform/macos/AccessibilityValues.h"
#include "platform/macos/NotificationObserver.h"
#include "windowing/WindowListParsing.h"

#import <AppKit/AppKit.h>

#include <unistd.h>

#include <algorithm>

namespace kova::macos {

namespace {

// The platform interface uses the Mac's error numbers.
static_assert(kAXErrorSuccess == 0 && kAXErrorFailure == -25200 && kAXErrorInvalidUIElement == -25202 &&
              kAXErrorCannotComplete == -25204 && kAXErrorAPIDisabled == -25211 &&
              kAXErrorNotificationAlreadyRegistered == -25209);

constexpr CGWindowListOption kShownWindows = kCGWindowListOptionOnScreenOnly | kCGWindowListExcludeDesktopElements;
static_assert(kShownWindows == 17);

bool isTrusted(bool prompt) {
    NSDictionary* options = @{(__bridge NSString*)kAXTrustedCheckOptionPrompt : @(prompt)};
    return AXIsProcessTrustedWithOptions((__bridge CFDictionaryRef)options) != 0;
}

std::optional<double> number(NSDictionary* record, NSString* key) {
    id value = record[key];
    if (![value isKindOfClass:NSNumber.class]) return std::nullopt;
    return [value doubleValue];
}

WindowListEntry windowListEntry(NSDictionary* window) {
    id bounds = window[(__bridge NSString*)kCGWindowBounds];
    NSDictionary* rectangle = [bounds isKindOfClass:NSDictionary.class] ? bounds : nil;
    return {.layer = number(window, (__bridge NSString*)kCGWindowLayer),
            .ownerProcess = number(window, (__bridge NSString*)kCGWindowOwnerPID),
            .x = number(rectangle, @"X"),
            .y = number(rectangle, @"Y"),
            .width = number(rectangle, @"Width"),
            .height = number(rectangle, @"Height")};
}

/// Returns the process that owns the window under the point, according to the window server; absent if there is none.
std::optional<pid_t> ownerOfWindowAt(CGPoint pointInWindowService) {
    NSScreen* first = NSScreen.screens.firstObject;
    if (!first) return std::nullopt;
    const CGPoint onScreen = flipped(pointInWindowService, maxY(first.frame));
    const NSInteger number = [NSWindow windowNumberAtPoint:onScreen belowWindowWithWindowNumber:0];
    if (number <= 0) return std::nullopt;
    if ([NSApp windowWithWindowNumber:number]) return getpid();
    NSArray* windows = CFBridgingRelease(
        CGWindowListCopyWindowInfo(kCGWindowListOptionIncludingWindow, static_cast<CGWindowID>(number)));
    id window = windows.firstObject;
    if (![window isKindOfClass:NSDictionary.class]) return std::nullopt;
    const auto listed = onScreenWindow(windowListEntry(window));
    return listed ? std::optional(listed->processIdentifier) : std::nullopt;
}

} // namespace

MacAccessibility::MacAccessibility(const MainQueue& queue) : queue_(queue) {
    const auto systemWide = Owned<AXUIElementRef>::adopt(AXUIElementCreateSystemWide());
    // This timeout also applies to every other element for which no timeout is set.
    AXUIElementSetMessagingTimeout(systemWide.get(), static_cast<float>(ApplicationBackoff::kDeadline.count()));
    systemWide_ = shared(systemWide.get());
    spaceChangesSubscription_ =
        observeNotification(NSWorkspace.sharedWorkspace.notificationCenter, NSWorkspaceActiveSpaceDidChangeNotification,
                            [this] { ++spaceChanges_; });
}

bool MacAccessibility::isProcessTrusted() const {
    @autoreleasepool {
        return isTrusted(false);
    }
}

bool MacAccessibility::requestTrust(bool prompt) {
    @autoreleasepool {
        return isTrusted(prompt);
    }
}

std::optional<std::string> MacAccessibility::stalePermission() const {
    const MutexLock lock(mutex_);
    if (!ignoredPermission_.isIgnored()) return std::nullopt;
    return "macOS ignores the Accessibility permission of KOVA: remove KOVA from the list in System Settings and "
           "add it again";
}

AccessibilityElement MacAccessibility::applicationElement(pid_t processIdentifier) const {
    return {processIdentifier, 0, nullptr};
}

std::optional<int> MacAccessibility::send(pid_t process, const std::function<int()>& request) const {
    // A request to this process would make the main thread wait for itself. Windows of this process are not managed.
    if (process == getpid()) return std::nullopt;
    const auto occasion = NSThread.isMainThread ? RequestOccasion::mainThread : RequestOccasion::poll;
    const Seconds begun = queue_.uptime();
    {
        const MutexLock lock(mutex_);
        if (!backoff_.maySendRequest(process, occasion, begun)) return std::nullopt;
    }
    const int error = request();
    const MutexLock lock(mutex_);
    ignoredPermission_.note(process, error);
    backoff_.note(process, accessibilityOutcome(error), begun, queue_.uptime());
    return error;
}

std::vector<AttributeValue> MacAccessibility::readAttributes(const AccessibilityElement& element,
                                                             std::span<const AccessibilityAttribute> attributes) const {
    std::vector<AttributeValue> values(attributes.size());
    if (attributes.empty()) return values;
    @autoreleasepool {
        NSMutableArray<NSString*>* names = [NSMutableArray arrayWithCapacity:attributes.size()];
        for (const auto attribute : attributes) [names addObject:nsString(attributeName(attribute))];
        const auto target = systemElement(element);
        Owned<CFArrayRef> results;
        send(element.processIdentifier, [&] {
            return AXUIElementCopyMultipleAttributeValues(target.get(), (__bridge CFArrayRef)names,
                                                          AXCopyMultipleAttributeOptions(0), results.receiver());
        });
        if (!results) return values;
        const auto count = std::min(values.size(), static_cast<std::size_t>(CFArrayGetCount(results.get())));
        for (std::size_t i = 0; i < count; ++i) {
            values[i] = interfaceValue(CFArrayGetValueAtIndex(results.get(), static_cast<CFIndex>(i)));
        }
    }
    return values;
}

WindowPresence MacAccessibility::presenceOf(const AccessibilityElement& window) const {
    @autoreleasepool {
        const auto target = systemElement(window);
        NSString* name = nsString(attributeName(AccessibilityAttribute::role));
        Owned<CFTypeRef> role;
        const auto error = send(window.processIdentifier, [&] {
            return AXUIElementCopyAttributeValue(target.get(), (__bridge CFStringRef)name, role.receiver());
        });
        return error ? windowPresence(*error) : WindowPresence::noResponse;
    }
}

void MacAccessibility::writeAttributes(const AccessibilityElement& element, std::span<const AttributeWrite> writes) {
    @autoreleasepool {
        const auto target = systemElement(element);
        for (const auto& write : writes) {
            const auto value = systemValue(write.value);
            if (!value) continue;
            NSString* name = nsString(attributeName(write.attribute));
            const auto request = [&] {
                return AXUIElementSetAttributeValue(target.get(), (__bridge CFStringRef)name, value.get());
            };
            // VoiceOver needs this attribute. So the request that switches it on again is sent even to an application
            // that does not respond.
            const bool isSwitchedOnAgain =
                write.attribute == AccessibilityAttribute::enhancedUserInterface && write.value == AttributeValue(true);
            if (isSwitchedOnAgain) {
                request();
            } else {
                send(element.processIdentifier, request);
            }
        }
    }
}

void MacAccessibility::performAction(const AccessibilityElement& element, AccessibilityAction action) {
    @autoreleasepool {
        const auto target = systemElement(element);
        NSString* name = nsString(actionName(action));
        send(element.processIdentifier,
             [&] { return AXUIElementPerformAction(target.get(), (__bridge CFStringRef)name); });
    }
}

std::optional<AccessibilityElement> MacAccessibility::elementAtPosition(CGPoint point) const {
    @autoreleasepool {
        const auto owner = ownerOfWindowAt(point);
        Owned<AXUIElementRef> found;
        const auto request = [&] {
            return AXUIElementCopyElementAtPosition(static_cast<AXUIElementRef>(systemWide_.get()),
                                                    static_cast<float>(point.x), static_cast<float>(point.y),
                                                    found.receiver());
        };
        if (owner) {
            send(*owner, request);
        } else {
            request();
        }
        if (!found) return std::nullopt;
        return interfaceElement(found.get());
    }
}

std::vector<OnScreenWindow> MacAccessibility::onScreenWindows() const {
    std::vector<OnScreenWindow> shown;
    @autoreleasepool {
        NSArray* windows = CFBridgingRelease(CGWindowListCopyWindowInfo(kShownWindows, kCGNullWindowID));
        for (id window in windows) {
            if (![window isKindOfClass:NSDictionary.class]) continue;
            if (const auto listed = onScreenWindow(windowListEntry(window))) shown.push_back(*listed);
        }
    }
    return shown;
}

std::vector<pid_t> MacAccessibility::unresponsiveApplications() const {
    const MutexLock lock(mutex_);
    return backoff_.unresponsive();
}

} // namespace kova::macos
