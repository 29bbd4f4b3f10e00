// A fake update checker. A check that has started never ends.
#pragma once

#include "app/UpdateChecker.h"

namespace kova {

class SimulatedUpdates final : public UpdateChecker {
  public:
    bool canCheckForUpdates() const override { return !isChecking; }
    void checkForUpdates() override { isChecking = true; }
    bool automaticallyChecksForUpdates() const override { return checks; }
    void setAutomaticallyChecksForUpdates(bool on) override { checks = on; }
    bool automaticallyDownloadsUpdates() const override { return downloads; }
    void setAutomaticallyDownloadsUpdates(bool on) override { downloads = on; }
    bool isChecking = false, checks = true, downloads = false;
};

} // namespace kova
