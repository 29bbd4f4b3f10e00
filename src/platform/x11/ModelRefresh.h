// Brings the model up to date with the server: asks, in as few round trips as the answers depend on each other, exactly
// what was announced as changed. It waits, so it runs on the polling queue (and once while the desktop is opened).
//
// What it reads is never older than the announcements that it clears: marks are cleared before the questions are sent,
// and requests are answered in order. A window is listened to before it is asked about, so no change falls between.
#pragma once

#include "platform/x11/ClientProcesses.h"
#include "platform/x11/Questions.h"
#include "platform/x11/WindowModel.h"

#include <mutex>
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
    ModelRefresh(const XConnection& connection, const ClientProcesses& processes, std::mutex& mutex,
                 WindowModel& model);

    /// Nothing is asked when nothing is stale. One caller at a time.
    RefreshOutcome run(Seconds now);
    /// All children of the root, their places and their order; before the first `run`.
    void readTopLevels();

  private:
    void askRoot();
    void askManager(const void* checkReply);
    void askNewTopLevels();
    void askClients();
    void askProcess(xcb_window_t window);
    void askProperties(xcb_window_t window, std::uint32_t bits);
    void takeProperty(xcb_window_t window, const PropertyRule& rule, const void* reply, std::uint32_t asked);
    void findTopLevels();
    void measureFrames();
    void askTopLevel(xcb_window_t window);
    void settleOwner(ClientWindow& client);
    void ask();

    const XConnection& connection_;
    const ClientProcesses& processes_;
    std::mutex& mutex_;
    WindowModel& model_;
    Questions questions_;
    RefreshOutcome outcome_;
    Seconds now_{};
    std::vector<xcb_window_t> unplaced_;   // clients whose top level is to be found
    std::vector<xcb_window_t> unmeasured_; // clients whose decorations are to be measured
};

} // namespace kova::x11
