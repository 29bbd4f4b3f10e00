// Updates the model from the server: requests exactly what was announced as changed, in as few round trips as the
// dependencies between replies allow. Waits for the server, so call it on the polling queue (and once while the desktop
// is opened).
//
// No change is lost: stale bits are cleared before the requests are sent, the server replies in order, and events of a
// window are selected before its properties are requested.
#pragma once

#include "platform/x11/ClientProcesses.h"
#include "platform/x11/PendingReplies.h"
#include "platform/x11/WindowModel.h"
#include "support/Mutex.h"

#include <string>
#include <vector>

namespace kova::x11 {

struct RefreshOutcome {
    bool ownersChanged = false;          // the set of windows or their processes changed
    bool panelsChanged = false;          // struts or the work area changed
    std::vector<xcb_window_t> returning; // were minimized as requested; KOVA has since requested to restore them
};

class ModelRefresh {
  public:
    /// `mutex` guards the model and is held only while replies are used.
    ModelRefresh(const XConnection& connection, const ClientProcesses& processes, Mutex& mutex, WindowModel& model);

    /// Reads everything that is stale. Sends nothing if nothing is stale. One caller at a time.
    RefreshOutcome run(Seconds now);
    /// Reads all children of the root, their frames and order; call before the first `run`.
    void readTopLevels();

  private:
    void requestRoot() KOVA_REQUIRES(mutex_);
    void findManager(xcb_window_t selectionOwner) KOVA_REQUIRES(mutex_);
    void requestManager(xcb_window_t checkWindow) KOVA_REQUIRES(mutex_);
    void requestNewTopLevels() KOVA_REQUIRES(mutex_);
    void requestClients() KOVA_REQUIRES(mutex_);
    void requestProcess(xcb_window_t window) KOVA_REQUIRES(mutex_);
    void requestProperties(xcb_window_t window, std::uint32_t bits) KOVA_REQUIRES(mutex_);
    void takeProperty(xcb_window_t window, const PropertyRule& rule, const void* reply, std::uint32_t request)
        KOVA_REQUIRES(mutex_);
    void findTopLevels() KOVA_EXCLUDES(mutex_);
    void measureFrames() KOVA_EXCLUDES(mutex_);
    void requestTopLevel(xcb_window_t window) KOVA_REQUIRES(mutex_);
    void updateOwner(ClientWindow& client) KOVA_REQUIRES(mutex_);
    void waitForReplies() KOVA_EXCLUDES(mutex_);

    const XConnection& connection_;
    const ClientProcesses& processes_;
    Mutex& mutex_;
    WindowModel& model_ KOVA_GUARDED_BY(mutex_);
    PendingReplies batch_;
    RefreshOutcome outcome_;
    Seconds now_{};
    std::vector<xcb_window_t> unplaced_;   // clients whose top level must be found
    std::vector<xcb_window_t> unmeasured_; // clients whose decorations must be measured
};

} // namespace kova::x11
