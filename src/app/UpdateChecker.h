// The seam to whatever looks for newer versions of the program. Where nothing does, there is none.
#pragma once

namespace kova {

/// Main thread; never waits. What is found is shown, and installed, by the checker itself.
class UpdateChecker {
  public:
    virtual ~UpdateChecker() = default;
    /// False while a check is under way.
    virtual bool canCheckForUpdates() const = 0;
    /// Looks now, and also says when there is nothing new. Nothing happens unless it can.
    virtual void checkForUpdates() = 0;

    virtual bool automaticallyChecksForUpdates() const = 0;
    virtual void setAutomaticallyChecksForUpdates(bool checks) = 0;
    virtual bool automaticallyDownloadsUpdates() const = 0;
    virtual void setAutomaticallyDownloadsUpdates(bool downloads) = 0;
};

} // namespace kova
