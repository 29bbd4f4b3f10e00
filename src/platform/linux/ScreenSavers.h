// What the session's screen saver tells. Desktops have one each, under names of their own, with the same interface.
// What a signal says is confirmed by asking the owner of the name; without an answer the screen saver counts as
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

    /// One sentence: which of them are there, or what is missing.
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
    std::set<std::string> asked_;    // of names whose answer is awaited
    std::set<std::string> outdated_; // of those, names of which something was heard meanwhile
};

} // namespace kova
