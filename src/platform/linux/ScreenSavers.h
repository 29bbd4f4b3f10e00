// Follows the session's screen saver. Desktops use different names for it with the same interface. Each signal is
// confirmed by a query to the owner of the name; without a reply the screen saver counts as inactive.
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

    /// One sentence: which of them are running, or what is missing.
    std::string description() const;
    bool isListening() const { return !present_.empty(); }

  private:
    std::vector<BusSignal> signals();
    void begin();
    void ask(const std::string& name);
    void ask(const std::string& name, const std::string& path, const std::string& otherPath);
    void gone(const std::string& name);
    void confirm(const std::string& name);

    MessageBus bus_;
    Listener listener_;
    std::set<std::string> present_;
    std::set<std::string> asked_;    // names with a query in progress
    std::set<std::string> outdated_; // of those, names with a signal since the query
};

} // namespace kova
