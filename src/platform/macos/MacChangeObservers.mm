#include "platform/macos/MacChangeObservers.h"

#include "platform/macos/AccessibilityValues.h"
#include "platform/macos/Contained.h"
#include "platform/macos/NotificationObserver.h"
#include "windowing/AccessibilityErrors.h"

#import <AppKit/AppKit.h>

#include <span>
#include <utility>

namespace kova::macos {

namespace {

/// Called by the main run loop.
void onAnnouncement(AXObserverRef, AXUIElementRef, CFStringRef, void* observers) {
    contained([&] { static_cast<MacChangeObservers*>(observers)->noteChange(); });
}

std::vector<CFStringRef> announcementsOf(const AccessibilityElement& element) {
    if (element.hash == 0) {
        return {kAXWindowCreatedNotification, kAXFocusedWindowChangedNotification, kAXMainWindowChangedNotification};
    }
    return {kAXWindowMovedNotification,          kAXWindowResizedNotification, kAXWindowMiniaturizedNotification,
            kAXWindowDeminiaturizedNotification, kAXTitleChangedNotification,  kAXUIElementDestroyedNotification};
}

} // namespace

/// Receives the announcements of one process until this object is destroyed or `stop` is called.
struct MacChangeObservers::Observer {
    explicit Observer(Owned<AXObserverRef> created) : observer(std::move(created)) {
        CFRunLoopAddSource(CFRunLoopGetMain(), AXObserverGetRunLoopSource(observer.get()), kCFRunLoopCommonModes);
    }
    Observer(const Observer&) = delete;
    Observer& operator=(const Observer&) = delete;
    ~Observer() { stop(); }
    /// Announcements are no longer delivered. Any thread.
    void stop() {
        CFRunLoopRemoveSource(CFRunLoopGetMain(), AXObserverGetRunLoopSource(observer.get()), kCFRunLoopCommonModes);
    }

    Owned<AXObserverRef> observer;
};

MacChangeObservers::MacChangeObservers(MainQueue& queue, const MacAccessibility& accessibility) :
    queue_(queue), accessibility_(accessibility) {
    NSNotificationCenter* center = NSWorkspace.sharedWorkspace.notificationCenter;
    for (NSString* name in @[
             NSWorkspaceDidLaunchApplicationNotification, NSWorkspaceDidTerminateApplicationNotification,
             NSWorkspaceDidHideApplicationNotification, NSWorkspaceDidUnhideApplicationNotification,
             NSWorkspaceDidActivateApplicationNotification, NSWorkspaceActiveSpaceDidChangeNotification
         ]) {
        systemChanges_.push_back(observeNotification(center, name, [this] { noteChange(); }));
    }
    systemChanges_.push_back(observeNotification(NSNotificationCenter.defaultCenter,
                                                 NSApplicationDidChangeScreenParametersNotification,
                                                 [this] { noteChange(); }));
    // The system posts the first of these when the list of applications with the permission changes. This is not
    // documented. If the system does not post it, a poll notices the change, at the latest after `longestIdleTime`.
    for (NSString* name in
         @[ @"com.apple.accessibility.api", @"com.apple.screenIsLocked", @"com.apple.screenIsUnlocked" ]) {
        systemChanges_.push_back(observeDistributedNotification(name, [this] { noteChange(); }));
    }
}

MacChangeObservers::~MacChangeObservers() = default;

void MacChangeObservers::noteChange() {
    ++changes_;
    notifySoon();
}

void MacChangeObservers::notifySoon() {
    if (!callback_) return;
    queue_.post(lifetime_.guard([this, request = request_, callback = std::exchange(callback_, nullptr)] {
        if (request == request_) callback();
    }));
}

void MacChangeObservers::notifyWhenChanged(std::uint64_t count, std::function<void()> callback) {
    ++request_;
    callback_ = std::move(callback);
    if (changes_ != count) notifySoon();
}

std::shared_ptr<MacChangeObservers::Observer> MacChangeObservers::observerOf(pid_t process) {
    const MutexLock lock(mutex_);
    auto& known = observers_[process];
    if (known) return known;
    Owned<AXObserverRef> created;
    if (AXObserverCreate(process, onAnnouncement, created.receiver()) == kAXErrorSuccess && created) {
        known = std::make_shared<Observer>(std::move(created));
    }
    return known;
}

AnnouncementResponse MacChangeObservers::requestAnnouncements(const AccessibilityElement& element) {
    @autoreleasepool {
        const pid_t process = element.processIdentifier;
        const auto observed = observerOf(process);
        if (!observed) return AnnouncementResponse::noResponse;
        const auto target = systemElement(element);
        std::vector<int> errors;
        for (CFStringRef name : announcementsOf(element)) {
            const auto error = accessibility_.send(
                process, [&] { return AXObserverAddNotification(observed->observer.get(), target.get(), name, this); });
            if (!error || accessibilityOutcome(*error) == AccessibilityOutcome::noResponse) {
                return AnnouncementResponse::noResponse;
            }
            errors.push_back(*error);
        }
        return announcementResponse(errors);
    }
}

void MacChangeObservers::endAnnouncements(const AccessibilityElement& element) {
    std::shared_ptr<Observer> observed;
    {
        const MutexLock lock(mutex_);
        const auto known = observers_.find(element.processIdentifier);
        if (known == observers_.end()) return;
        observed = known->second;
        // The element of the application has the hash 0. Ending its announcements also ends those of all its windows.
        if (element.hash == 0) observers_.erase(known);
    }
    if (!observed) return;
    if (element.hash == 0) {
        observed->stop();
        // The main thread may be delivering an announcement of this observer now. So the observer is released on the
        // main thread, after that.
        queue_.post([ended = std::move(observed)] {});
        return;
    }
    @autoreleasepool {
        const auto target = systemElement(element);
        for (CFStringRef name : announcementsOf(element)) {
            accessibility_.send(element.processIdentifier, [&] {
                return AXObserverRemoveNotification(observed->observer.get(), target.get(), name);
            });
        }
    }
}

} // namespace kova::macos
