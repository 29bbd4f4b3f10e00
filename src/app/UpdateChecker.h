// Platform interface to the check for newer versions of the program. Not every platform has it.
#pragma once

namespace kova {

/// Main thread; never waits. The checker itself shows and installs a new version.
class UpdateChecker {
  public:
    virtual ~UpdateChecker() = default;
    /// False while a check is under way.
    virtual bool canCheckForUpdates() const = 0;
    /// Checks now, and also reports that there is no newer version. No-op unless `canCheckForUpdates()`.
    virtual void checkForUpdates() = 0;

    virtual bool automaticallyChecksForUpdates() const = 0;
    virtual void setAutomaticallyChecksForUpdates(bool checks) = 0;
    virtual bool automaticallyDownloadsUpdates() const = 0;
    virtual void setAutomaticallyDownloadsUpdates(bool downloads) = 0;
};

} // namespace kova
