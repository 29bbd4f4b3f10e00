// Functions that run an event loop while real time passes.
#pragma once

#include "platform/linux/EventLoop.h"

#include <functional>

namespace kova {

/// Runs the loop for the given time.
inline void letPass(EventLoop& loop, Seconds time) {
    loop.after(time, [&loop] { loop.quit(0); });
    loop.run();
}

/// Runs the loop until the condition holds; false if it does not hold within 20 s.
inline bool letPassUntil(EventLoop& loop, const std::function<bool()>& condition) {
    const Seconds end = loop.uptime() + Seconds(20);
    while (!condition()) {
        if (loop.uptime() > end) return false;
        letPass(loop, Seconds(0.005));
    }
    return true;
}

} // namespace kova
