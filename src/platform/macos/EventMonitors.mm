#include "platform/macos/EventMonitors.h"

#include "platform/macos/Contained.h"

#include <memory>

namespace kova::macos {

namespace {

template <class Watcher>
struct Monitor {
    explicit Monitor(Watcher callback) : watcher(std::move(callback)) {}
    Monitor(const Monitor&) = delete;
    Monitor& operator=(const Monitor&) = delete;
    ~Monitor() {
        if (registration) [NSEvent removeMonitor:registration];
    }

    Watcher watcher;
    id registration = nil;
};

} // namespace

// The system owns the handler blocks. They refer to the monitor only weakly, so that it is destroyed with the
// subscription.

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
                                                                    bool isConsumed = false;
                                                                    contained([&] {
                                                                        if (const auto alive = weak.lock())
                                                                            isConsumed = alive->watcher(event);
                                                                    });
                                                                    return isConsumed ? nil : event;
                                                                  }];
    return Subscription(monitor);
}

} // namespace kova::macos
