#include "platform/macos/EventMonitors.h"

#include "platform/macos/Contained.h"

#include <memory>

namespace kova::macos {

namespace {

template <class Watcher>
struct Monitor {
    explicit Monitor(Watcher calls) : watcher(std::move(calls)) {}
    Monitor(const Monitor&) = delete;
    Monitor& operator=(const Monitor&) = delete;
    ~Monitor() {
        if (registration) [NSEvent removeMonitor:registration];
    }

    Watcher watcher;
    id registration = nil;
};

} // namespace

// The system owns the blocks. They refer to the monitor weakly, so that destroying the subscription ends the monitor.

Subscription watchEventsOfOthers(NSEventMask mask, std::function<void(NSEvent*)> watcher) {
    const auto monitor = std::make_shared<Monitor<std::function<void(NSEvent*)>>>(std::move(watcher));
    const auto weak = std::weak_ptr(monitor);
    monitor->registration = [NSEvent addGlobalMonitorForEventsMatchingMask:mask
                                                                   handler:^(NSEvent* event) {
                                                                     contained([&] {
                                                                         if (const auto alive = weak.lock())
                                                                             alive->watcher(event);
                                                                     });
                                                                   }];
    return Subscription(monitor);
}

Subscription watchOwnEvents(NSEventMask mask, std::function<bool(NSEvent*)> watcher) {
    const auto monitor = std::make_shared<Monitor<std::function<bool(NSEvent*)>>>(std::move(watcher));
    const auto weak = std::weak_ptr(monitor);
    monitor->registration = [NSEvent addLocalMonitorForEventsMatchingMask:mask
                                                                  handler:^NSEvent*(NSEvent* event) {
                                                                    bool isKept = false;
                                                                    contained([&] {
                                                                        if (const auto alive = weak.lock())
                                                                            isKept = alive->watcher(event);
                                                                    });
                                                                    return isKept ? nil : event;
                                                                  }];
    return Subscription(monitor);
}

} // namespace kova::macos
