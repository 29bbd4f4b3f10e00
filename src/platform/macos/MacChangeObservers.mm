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
void announced(AXObserverRef, AXUIElementRef, CFStringRef, void* observers) {
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

/// Observes one process for as long as it lives.
struct MacChangeObservers::Observer {
    explicit Observer(Owned<AXObserverRef> created) : observer(std::move(created)) {
        CFRunLoopAddSource(CFRunLoopGetMain(), AXObserverGetRunLoopSource(observer.get()), kCFRunLoopCommonModes);
    }
    Observer(const Observer&) = delete;
    Observer& operator=(const Observer&) = delete;
    ~Observer() { stop(); }
    /// Stops notifications. Any thread.
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
    // Posted when the list of applications that are allowed changes. Not documented; if it is not posted, the poll
    // after the longest idle time notices the change.
    for (NSString* name in
         @[ @"com.apple.accessibility.api", @"com.apple.screenIsLocked", @"com.apple.screenIsUnlocked" ]) {
        systemChanges_.push_back(observeDistributedNotification(name, [this] { noteChange(); }));
    }
}

MacChangeObservers::~MacChangeObservers() = default;

void MacChangeObservers::noteChange() {
    ++changes_;
    tellSoon();
}

void MacChangeObservers::tellSoon() {
    if (!callback_) return;
    queue_.post(lifetime_.guard([this, request = request_, callback = std::exchange(callback_, nullptr)] {
        if (request == request_) callback();
    }));
}

void MacChangeObservers::notifyWhenChanged(std::uint64_t count, std::function<void()> callback) {
    ++request_;
    callback_ = std::move(callback);
    if (changes_ != count) tellSoon();
}

std::shared_ptr<MacChangeObservers::Observer> MacChangeObservers::observerOf(pid_t process) {
    const MutexLock lock(mutex_);
    auto& known = observers_[process];
    if (known) return known;
    Owned<AXObserverRef> created;
    if (AXObserverCreate(process, announced, created.receiver()) == kAXErrorSuccess && created) {
        known = std::make_shared<Observer>(std::move(created));
    }
    return known;
}

AnnouncementAnswer MacChangeObservers::requestAnnouncements(const AccessibilityElement& element) {
    @autoreleasepool {
        const pid_t process = element.processIdentifier;
        const auto observed = observerOf(process);
        if (!observed) return AnnouncementAnswer::noAnswer;
        const auto target = systemElement(element);
        std::vector<int> errors;
        for (CFStringRef name : announcementsOf(element)) {
            const auto error = accessibility_.ask(
                process, [&] { return AXObserverAddNotification(observed->observer.get(), target.get(), name, this); });
            if (!error || accessibilityOutcome(*error) == AccessibilityOutcome::silent) {
                return AnnouncementAnswer::noAnswer;
            }
            errors.push_back(*error);
        }
        return announcementAnswer(errors);
    }
}

void MacChangeObservers::endAnnouncements(const AccessibilityElement& element) {
    std::shared_ptr<Observer> observed;
    {
        const MutexLock lock(mutex_);
        const auto known = observers_.find(element.processIdentifier);
        if (known == observers_.end()) return;
        observed = known->second;
        // An element without a hash is the application: removes all observations of its process.
        if (element.hash == 0) observers_.erase(known);
    }
    if (!observed) return;
    if (element.hash == 0) {
        observed->stop();
        // The main thread may be delivering a notification of this observer now, so the observer is released there.
        queue_.post([ended = std::move(observed)] {});
        return;
    }
    @autoreleasepool {
        const auto target = systemElement(element);
        for (CFStringRef name : announcementsOf(element)) {
            accessibility_.ask(element.processIdentifier, [&] {
                return AXObserverRemoveNotification(observed->observer.get(), target.get(), name);
            });
        }
    }
}

} // namespace kova::macos
