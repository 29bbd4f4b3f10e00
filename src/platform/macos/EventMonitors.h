// Watches the system's events for as long as a subscription lives. Objective-C++ only; main thread.
#pragma once

#include "support/MainQueue.h"
#include "support/Published.h"

#import <AppKit/AppKit.h>

#include <functional>
#include <memory>
#include <utility>

namespace kova::macos {

/// Events on their way to other applications, after the fact. Keys are told only to a process that is trusted.
[[nodiscard]] Subscription watchEventsOfOthers(NSEventMask mask, std::function<void(NSEvent*)> watcher);
/// Events on their way to windows of our own; true keeps the event from its window.
[[nodiscard]] Subscription watchOwnEvents(NSEventMask mask, std::function<bool(NSEvent*)> watcher);

/// Events of others, read as values and told on the main queue, after what is queued already.
template <class Value>
[[nodiscard]] Subscription tellEventsOfOthers(MainQueue& queue, NSEventMask mask, Value (*read)(NSEvent*),
                                              std::function<void(const Value&)> observer) {
    const auto kept = std::make_shared<std::function<void(const Value&)>>(std::move(observer));
    auto watch = watchEventsOfOthers(mask, [&queue, read, weak = std::weak_ptr(kept)](NSEvent* event) {
        queue.post([weak, value = read(event)] {
            if (const auto alive = weak.lock()) (*alive)(value);
        });
    });
    using Both = std::pair<std::shared_ptr<void>, Subscription>;
    return Subscription(std::make_shared<Both>(kept, std::move(watch)));
}

} // namespace kova::macos
