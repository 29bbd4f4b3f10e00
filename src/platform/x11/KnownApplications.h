// The applications of the model's windows, with their identities. Updated on the polling queue; any thread reads them.
#pragma once

#include "platform/x11/ApplicationCatalogue.h"
#include "platform/x11/WindowModel.h"
#include "support/Mutex.h"

#include <optional>
#include <vector>

namespace kova::x11 {

/// An application, described by its first window.
struct X11Application {
    pid_t processIdentifier = 0;
    ApplicationIdentity identity;
    bool isRegular = false; // has a window that KOVA manages, not only panels and other special windows
    bool isPartOfDesktop = false;
    bool operator==(const X11Application&) const = default;
};

/// The information that the windows of one process give about their application.
struct ApplicationEvidence {
    pid_t processIdentifier = 0;
    ApplicationTraces traces;
    bool isRegular = false;
    bool drawsDesktop = false; // draws the desktop's background or a panel
};

/// One entry for each process, in the order of the processes' first windows.
std::vector<ApplicationEvidence> evidenceIn(const WindowModel& model);

class KnownApplications {
  public:
    explicit KnownApplications(ApplicationCatalogue& catalogue);

    /// Calls `take` with each application, with the lock held: `take` must not call this object.
    template <class Taker>
    void forEach(const Taker& take) const KOVA_EXCLUDES(mutex_) {
        const MutexLock lock(mutex_);
        for (const X11Application& application : applications_) take(application);
    }
    std::optional<X11Application> find(pid_t process) const KOVA_EXCLUDES(mutex_);
    bool contains(pid_t process) const KOVA_EXCLUDES(mutex_);
    /// Replaces the applications. Reads files of the system, so call it without a lock. One caller at a time.
    void identify(const std::vector<ApplicationEvidence>& evidence, const std::string& windowManager)
        KOVA_EXCLUDES(mutex_);

  private:
    bool isPartOfDesktop(const ApplicationEvidence& evidence, const ApplicationIdentity& identity,
                         const std::string& windowManager) const;

    ApplicationCatalogue& catalogue_;
    const std::vector<pid_t> ownProcesses_; // this process and its ancestors
    mutable Mutex mutex_;
    std::vector<X11Application> applications_ KOVA_GUARDED_BY(mutex_);
};

} // namespace kova::x11
