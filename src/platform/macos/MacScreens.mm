#include "platform/macos/MacScreens.h"

#include "platform/macos/CoreFoundation.h"
#include "platform/macos/NotificationObserver.h"

#import <AppKit/AppKit.h>
#import <ColorSync/ColorSync.h>
#import <CoreGraphics/CoreGraphics.h>

namespace kova::macos {

namespace {

std::optional<std::string> displayUUID(NSScreen* screen) {
    id number = screen.deviceDescription[@"NSScreenNumber"];
    if (![number isKindOfClass:NSNumber.class]) return std::nullopt;
    const CGDirectDisplayID display = [number unsignedIntValue];
    const auto uuid = Owned<CFUUIDRef>::adopt(CGDisplayCreateUUIDFromDisplayID(display));
    if (!uuid) return std::nullopt;
    NSString* string = CFBridgingRelease(CFUUIDCreateString(kCFAllocatorDefault, uuid.get()));
    if (!string) return std::nullopt;
    return text(string);
}

} // namespace

std::vector<Screen> MacScreens::screens() const {
    std::vector<Screen> screens;
    @autoreleasepool {
        for (NSScreen* screen in NSScreen.screens) {
            screens.push_back({.displayUUID = displayUUID(screen),
                               .localizedName = text(screen.localizedName),
                               .frame = screen.frame,
                               .visibleFrame = screen.visibleFrame,
                               .scale = screen.backingScaleFactor});
        }
    }
    return screens;
}

Subscription MacScreens::observeScreens(std::function<void()> changed) {
    // The system also posts this notification for other changes, such as a new color profile. These are not reported.
    auto compared = [this, last = screens(), changed = std::move(changed)]() mutable {
        auto now = screens();
        if (now == last) return;
        last = std::move(now);
        changed();
    };
    return observeNotification(NSNotificationCenter.defaultCenter, NSApplicationDidChangeScreenParametersNotification,
                               std::move(compared));
}

std::optional<CGPoint> MacScreens::pointerLocation() const {
    return NSEvent.mouseLocation;
}

bool MacSession::isLoginSessionScreenLocked() const {
    @autoreleasepool {
        NSDictionary* session = CFBridgingRelease(CGSessionCopyCurrentDictionary());
        id locked = session[@"CGSSessionScreenIsLocked"];
        return [locked isKindOfClass:NSNumber.class] && [locked boolValue];
    }
}

} // namespace kova::macos
