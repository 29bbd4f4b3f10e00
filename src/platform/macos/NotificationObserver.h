// Registrations with notification centers, as subscriptions. Objective-C++ only; main thread.
#pragma once

#include "support/Published.h"

#import <Foundation/Foundation.h>

#include <functional>

namespace kova::macos {

/// Calls back on the main thread whenever the center posts the notification.
[[nodiscard]] Subscription observeNotification(NSNotificationCenter* center, NSString* name,
                                               std::function<void()> observer);
/// Observes notifications of other programs to the whole session, delivered at once: the system delays them for
/// applications that are not active.
[[nodiscard]] Subscription observeDistributedNotification(NSString* name, std::function<void()> observer);

} // namespace kova::macos
