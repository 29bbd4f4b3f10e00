// The result of a poll, for the objects that forget closed windows and expired entries.
#pragma once

#include "support/MainQueue.h"
#include "windowing/ManagedWindow.h"

#include <functional>
#include <string>
#include <vector>

namespace kova {

struct PollContext {
    const std::vector<ManagedWindow>& windows;
    Seconds now; // uptime
    std::function<bool(const WindowID& windowID)> isLive;
    std::function<bool(const WindowID& windowID)> hasPendingFrame;
};

} // namespace kova
