// For parts of the workspace's state that polls do not concern.
#pragma once

#include "workspace/PollContext.h"

namespace kova {

struct PartWithoutPolls {
    void onPoll(const PollContext&) {}
    bool isWaiting() const { return false; }
};

} // namespace kova
