// Default implementations for parts of the workspace's state that do not depend on polls.
#pragma once

#include "workspace/PollContext.h"

namespace kova {

struct PartWithoutPolls {
    void onPoll(const PollContext&) {}
    bool isWaiting() const { return false; }
};

} // namespace kova
