// The Mac's Dock, read and changed with two commands of the system.
#pragma once

#include "app/DockAutoHideServicing.h"
#include "app/ProcessRunning.h"
#include "support/MainQueue.h"

#include <string>

namespace kova {

struct DockCommands {
    std::string defaults = "/usr/bin/defaults";
    std::string killall = "/usr/bin/killall";
};

class SystemDockAutoHideService final : public DockAutoHideServicing {
  public:
    /// Time limit for each command; normally they end in milliseconds.
    static constexpr Seconds kDeadline{10};

    /// The commands run on `workQueue`, one after the other. The references outlive the service, and `runner` also the
    /// work that is still queued.
    SystemDockAutoHideService(ProcessRunning& runner, WorkQueue& workQueue, MainQueue& queue,
                              DockCommands commands = {}) :
        runner_(runner),
        workQueue_(workQueue), queue_(queue), commands_(std::move(commands)) {}

    void readAutoHide(ReadCompletion completion) override;
    void writeAutoHide(bool hides, WriteCompletion completion) override;

  private:
    ProcessRunning& runner_;
    WorkQueue& workQueue_;
    MainQueue& queue_;
    DockCommands commands_;
};

} // namespace kova
