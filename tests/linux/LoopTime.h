// Time on a real event loop, as tests let it pass.
#pragma once

#include "platform/linux/EventLoop.h"

#include <functional>

namespace kova {

/// Runs the loop for that time.
inline void letPass(EventLoop& loop, Seconds time) {
    loop.after(time, [&loop] { loop.quit(0); });
    loop.run();
}

/// The same until the condition holds; false when it does not within twenty seconds.
inline bool letPassUntil(EventLoop& loop, const std::function<bool()>& holds) {
    const Seconds end = loop.uptime() + Seconds(20);
    while (!holds()) {
        if (loop.uptime() > end) return false;
        letPass(loop, Seconds(0.005));
    }
    return true;
}

} // namespace kova
