// Observes whether the session's screen saver is active. Each desktop has its own service name; all have the same
// interface. Each signal is confirmed by a query to the owner of the name; without a reply the screen saver counts as
// inactive.
#pragma once

#include "platform/linux/MessageBus.h"

#include <functional>
#include <set>
#include <string>
#include <vector>

namespace kova {

/// Main thread only.
class ScreenSavers {
  public:
    using Listener = std::function<void(const std::string& name, bool isActive)>;

    ScreenSavers(std::string busAddress, EventLoop& loop, Listener listener);

    /// One sentence: which screen savers are running, or what is missing.
    std::string description() const;
    /// Whether a screen saver is running, so that its signals arrive.
    bool hasScreenSaver() const { return !running_.empty(); }

  private:
    std::vector<BusSignal> signals();
    void queryAll();
    /// Queries the state at `path`, and without a reply at `fallbackPath` unless that is empty.
    void queryState(const std::string& name, const std::string& path, const std::string& fallbackPath);
    void ownerLost(const std::string& name);
    void queryUnlessPending(const std::string& name);

    MessageBus bus_;
    Listener listener_;
    std::set<std::string> running_;
    std::set<std::string> queried_;  // names with a query in progress
    std::set<std::string> outdated_; // names of `queried_` that have sent a signal since the query began
};

} // namespace kova
