// Watches keyboard and pointer events. Watching ends when the subscription is destroyed. Objective-C++ only; main
// thread.
#pragma once

#include "support/MainQueue.h"
#include "support/Published.h"

#import <AppKit/AppKit.h>

#include <functional>
#include <memory>
#include <optional>
#include <utility>

namespace kova::macos {

/// Watches events that are sent to other applications, which get them, too. Key events are reported only if this
/// process has the Accessibility permission.
[[nodiscard]] Subscription watchEventsOfOthers(NSEventMask mask, std::function<void(NSEvent*)> watcher);
/// Watches events that are sent to windows of this process. `watcher` is called before the window gets the event. If it
/// returns true, the window does not get the event.
[[nodiscard]] Subscription watchOwnEvents(NSEventMask mask, std::function<bool(NSEvent*)> watcher);

enum class EventSource { others, everywhere };

/// Calls the observer for watched events. `read` converts each event to a value when the event arrives; the observer
/// gets the value later, on the main queue. An event for which `read` returns no value is not reported. Windows get all
/// events.
template <class Value>
[[nodiscard]] Subscription monitorEvents(MainQueue& queue, EventSource source, NSEventMask mask,
                                         std::function<std::optional<Value>(NSEvent*)> read,
                                         std::function<void(const Value&)> observer) {
    struct Monitoring {
        std::function<void(const Value&)> observer;
        Subscription others, own;
    };
    const auto monitoring = std::make_shared<Monitoring>();
    monitoring->observer = std::move(observer);
    const auto report = [&queue, read, weak = std::weak_ptr(monitoring)](NSEvent* event) {
        const std::optional<Value> value = read(event);
        if (!value) return;
        queue.post([weak, reported = *value] {
            if (const auto alive = weak.lock()) alive->observer(reported);
        });
    };
    monitoring->others = watchEventsOfOthers(mask, report);
    if (source == EventSource::everywhere) {
        monitoring->own = watchOwnEvents(mask, [report](NSEvent* event) {
            report(event);
            return false;
        });
    }
    return Subscription(monitoring);
}

} // namespace kova::macos
