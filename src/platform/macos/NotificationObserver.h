// Observes notifications of the system. Observing ends when the subscription is destroyed. Objective-C++ only; main
// thread.
#pragma once

#include "support/Published.h"

#import <Foundation/Foundation.h>

#include <functional>

namespace kova::macos {

/// Calls the observer on the main thread whenever the notification is posted to the center.
[[nodiscard]] Subscription observeNotification(NSNotificationCenter* center, NSString* name,
                                               std::function<void()> observer);
/// Observes a notification that programs post to the whole session. It is delivered immediately; by default the system
/// would delay it while KOVA is not the active application.
[[nodiscard]] Subscription observeDistributedNotification(NSString* name, std::function<void()> observer);

} // namespace kova::macos
