#include "platform/macos/NotificationObserver.h"

#include "platform/macos/Contained.h"

#include <memory>

@interface KOVANotificationTarget : NSObject
- (instancetype)initWithObserver:(std::function<void()>)observer;
- (void)receive:(NSNotification*)notification;
@end

@implementation KOVANotificationTarget {
    std::shared_ptr<std::function<void()>> _observer;
}

- (instancetype)initWithObserver:(std::function<void()>)observer {
    self = [super init];
    if (self) _observer = std::make_shared<std::function<void()>>(std::move(observer));
    return self;
}

- (void)receive:(NSNotification*)notification {
    if (!NSThread.isMainThread) {                     // the center calls on the thread that posts
        __weak KOVANotificationTarget* target = self; // nil after the registration has ended
        dispatch_async(dispatch_get_main_queue(), ^{
          [target receive:notification];
        });
        return;
    }
    kova::macos::contained([&] {
        const auto observer = self->_observer; // a copy, since the observer may end this registration
        (*observer)();
    });
}

@end

namespace kova::macos {

namespace {

/// Registers an observer with a center. A center does not own its observers, so this object owns the observer, and
/// removes it from the center before it is destroyed.
struct Registration {
    NSNotificationCenter* center;
    KOVANotificationTarget* target;

    Registration(NSNotificationCenter* where, std::function<void()> observer) :
        center(where), target([[KOVANotificationTarget alloc] initWithObserver:std::move(observer)]) {}
    Registration(const Registration&) = delete;
    Registration& operator=(const Registration&) = delete;
    ~Registration() { [center removeObserver:target]; }
};

} // namespace

Subscription observeNotification(NSNotificationCenter* center, NSString* name, std::function<void()> observer) {
    const auto registration = std::make_shared<Registration>(center, std::move(observer));
    [center addObserver:registration->target selector:@selector(receive:) name:name object:nil];
    return Subscription(registration);
}

Subscription observeDistributedNotification(NSString* name, std::function<void()> observer) {
    NSDistributedNotificationCenter* center = NSDistributedNotificationCenter.defaultCenter;
    const auto registration = std::make_shared<Registration>(center, std::move(observer));
    [center addObserver:registration->target
                  selector:@selector(receive:)
                      name:name
                    object:nil
        suspensionBehavior:NSNotificationSuspensionBehaviorDeliverImmediately];
    return Subscription(registration);
}

} // namespace kova::macos
