// One registration with a notification centre, for as long as it lives. Objective-C++ only; main thread.
#pragma once

#include "support/Published.h"

#import <Foundation/Foundation.h>

#include <functional>

namespace kova::macos {

/// Calls back on the main thread whenever the centre posts the notification.
[[nodiscard]] Subscription observeNotification(NSNotificationCenter* centre, NSString* name,
                                               std::function<void()> observer);
/// The same for what other programs post to the whole session, also while no window of ours is active: applications
/// usually hear of it late then.
[[nodiscard]] Subscription observeDistributedNotification(NSString* name, std::function<void()> observer);

} // namespace kova::macos
