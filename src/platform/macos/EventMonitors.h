// Watches the system's events for as long as a subscription lives. Objective-C++ only; main thread.
#pragma once

#include "support/MainQueue.h"
#include "support/Published.h"

#import <AppKit/AppKit.h>

#include <functional>
#include <memory>
#include <optional>
#include <utility>

namespace kova::macos {

/// Watches events that are sent to other applications, after they were sent. Watches key events only if this process
/// has the accessibility permission.
[[nodiscard]] Subscription watchEventsOfOthers(NSEventMask mask, std::function<void(NSEvent*)> watcher);
/// Watches events that are sent to windows of this process, before their windows get them. If `watcher` returns true,
/// the window does not get the event.
[[nodiscard]] Subscription watchOwnEvents(NSEventMask mask, std::function<bool(NSEvent*)> watcher);

enum class EventSource { others, everywhere };

/// Converts events to values when they arrive and posts them to the main queue; their windows get the events as well.
/// Events without a value are dropped.
template <class Value>
[[nodiscard]] Subscription monitorEvents(MainQueue& queue, EventSource source, NSEventMask mask,
                                         std::function<std::optional<Value>(NSEvent*)> read,
                                         std::function<void(const Value&)> observer) {
    struct Telling {
        std::function<void(const Value&)> observer;
        Subscription others, own;
    };
    const auto telling = std::make_shared<Telling>();
    telling->observer = std::move(observer);
    const auto tell = [&queue, read, weak = std::weak_ptr(telling)](NSEvent* event) {
        const std::optional<Value> value = read(event);
        if (!value) return;
        queue.post([weak, told = *value] {
            if (const auto alive = weak.lock()) alive->observer(told);
        });
    };
    telling->others = watchEventsOfOthers(mask, tell);
    if (source == EventSource::everywhere) {
        telling->own = watchOwnEvents(mask, [tell](NSEvent* event) {
            tell(event);
            return false;
        });
    }
    return Subscription(telling);
}

} // namespace kova::macos
