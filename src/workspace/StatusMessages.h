// The status message: one at a time, for 4 seconds or until the next one.
#pragma once

#include "support/Lifetime.h"
#include "support/MainQueue.h"
#include "workspace/WorkspaceState.h"

#include <cstdint>
#include <string>

namespace kova {

class StatusMessages {
  public:
    StatusMessages(MainQueue& queue, WorkspaceState& state) : queue_(queue), state_(state) {}

    void show(const std::string& text);
    /// Incremented with every message, also if the same text is shown again.
    std::uint64_t count() const { return serial_; }

  private:
    MainQueue& queue_;
    WorkspaceState& state_;
    std::uint64_t serial_ = 0;
    Lifetime lifetime_;
};

} // namespace kova
