// Brings the model up to date with the server: asks, in as few round trips as the answers depend on each other, exactly
// what was announced as changed. It waits, so it runs on the polling queue (and once while the desktop is opened).
//
// What it reads is never older than the announcements that it clears: marks are cleared before the questions are sent,
// and requests are answered in order. A window is listened to before it is asked about, so no change falls between.
#pragma once

#include "platform/x11/ClientProcesses.h"
#include "platform/x11/PendingReplies.h"
#include "platform/x11/WindowModel.h"
#include "support/Mutex.h"

#include <string>
#include <vector>

namespace kova::x11 {

struct RefreshOutcome {
    bool ownersChanged = false;          // which windows there are, or whose they are
    bool panelsChanged = false;          // struts or the work area
    std::vector<xcb_window_t> returning; // went as asked, and are wanted back by now
};

class ModelRefresh {
  public:
    /// `mutex` guards the model and is held only while answers are taken.
    ModelRefresh(const XConnection& connection, const ClientProcesses& processes, Mutex& mutex, WindowModel& model);

    /// Nothing is asked when nothing is stale. One caller at a time.
    RefreshOutcome run(Seconds now);
    /// All children of the root, their places and their order; before the first `run`.
    void readTopLevels();

  private:
    void askRoot() KOVA_REQUIRES(mutex_);
    void askManager(const void* checkReply) KOVA_REQUIRES(mutex_);
    void askNewTopLevels() KOVA_REQUIRES(mutex_);
    void askClients() KOVA_REQUIRES(mutex_);
    void askProcess(xcb_window_t window) KOVA_REQUIRES(mutex_);
    void askProperties(xcb_window_t window, std::uint32_t bits) KOVA_REQUIRES(mutex_);
    void takeProperty(xcb_window_t window, const PropertyRule& rule, const void* reply, std::uint32_t asked)
        KOVA_REQUIRES(mutex_);
    void findTopLevels() KOVA_EXCLUDES(mutex_);
    void measureFrames() KOVA_EXCLUDES(mutex_);
    void askTopLevel(xcb_window_t window) KOVA_REQUIRES(mutex_);
    void settleOwner(ClientWindow& client) KOVA_REQUIRES(mutex_);
    void ask() KOVA_EXCLUDES(mutex_);

    const XConnection& connection_;
    const ClientProcesses& processes_;
    Mutex& mutex_;
    WindowModel& model_ KOVA_GUARDED_BY(mutex_);
    PendingReplies questions_;
    RefreshOutcome outcome_;
    Seconds now_{};
    std::vector<xcb_window_t> unplaced_;   // clients whose top level is to be found
    std::vector<xcb_window_t> unmeasured_; // clients whose decorations are to be measured
};

} // namespace kova::x11
