#include "platform/macos/MacSystemActivity.h"

#include "platform/macos/NotificationObserver.h"

#import <AppKit/AppKit.h>

#include <utility>

namespace kova::macos {

using Event = SystemActivityEvent;

MacSystemActivity::MacSystemActivity() {
    NSNotificationCenter* center = NSWorkspace.sharedWorkspace.notificationCenter;
    const std::pair<NSString*, Event> workspaceEvents[] = {
        {NSWorkspaceWillSleepNotification, Event::systemWillSleep},
        {NSWorkspaceDidWakeNotification, Event::systemDidWake},
        {NSWorkspaceScreensDidSleepNotification, Event::screensDidSleep},
        {NSWorkspaceScreensDidWakeNotification, Event::screensDidWake},
        {NSWorkspaceSessionDidResignActiveNotification, Event::sessionDidResignActive},
        {NSWorkspaceSessionDidBecomeActiveNotification, Event::sessionDidBecomeActive},
    };
    for (const auto& entry : workspaceEvents) {
        const Event event = entry.second;
        registrations_.push_back(observeNotification(center, entry.first, [this, event] { observers_.notify(event); }));
    }
    const std::pair<NSString*, Event> lockEvents[] = {
        {@"com.apple.screenIsLocked", Event::screenDidLock},
        {@"com.apple.screenIsUnlocked", Event::screenDidUnlock},
    };
    for (const auto& entry : lockEvents) {
        const Event event = entry.second;
        registrations_.push_back(
            observeDistributedNotification(entry.first, [this, event] { observers_.notify(event); }));
    }
}

Subscription MacSystemActivity::observeSystemActivity(std::function<void(SystemActivityEvent)> observer) {
    return observers_.add(std::move(observer));
}

} // namespace kova::macos
