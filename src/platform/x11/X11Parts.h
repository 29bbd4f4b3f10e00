// The implementation of X11Desktop, shared by the files that implement its interfaces: objects that each own one
// concern, and the functions that order events between them. `mutex` guards the model and all that is computed from it.
#pragma once

#include "platform/x11/ChangeNotice.h"
#include "platform/x11/ConnectionWatch.h"
#include "platform/x11/DisplayKeeper.h"
#include "platform/x11/KnownApplications.h"
#include "platform/x11/ModelRefresh.h"
#include "platform/x11/ScreenPowerNotices.h"
#include "platform/x11/UserInput.h"
#include "platform/x11/WindowHider.h"
#include "platform/x11/X11Desktop.h"
#include "support/Lifetime.h"
#include "support/Mutex.h"

#include <atomic>
#include <deque>
#include <functional>
#include <map>
#include <thread>

namespace kova {

struct X11Desktop::Parts {
    Parts(std::unique_ptr<x11::XConnection> opened, const Options& options, MainQueue& mainQueue,
          ApplicationCatalogue& applicationCatalogue);

    // Never change
    std::unique_ptr<x11::XConnection> connection;
    MainQueue& queue;
    ApplicationLauncher* launcher; // null: nothing can be launched
    const Seconds returnTimeoutAtEnd;
    const x11::ClientProcesses processes;
    const std::thread::id mainThread = std::this_thread::get_id();

    // Any thread
    x11::ChangeNotice changes;
    x11::KnownApplications applications;
    std::atomic<bool> isLost{false};

    // Main thread only
    bool mustFlush = false; // requests wait to be sent
    bool isSendDue = false;
    bool isReadingEvents = false;
    Seconds lastPlacing{-1000.0}; // uptime
    std::function<void()> whenLost;
    x11::ConnectionWatch watch;
    Observers<> screenObservers;

    // Held for short copies and while requests are buffered and sent; never while a thread waits for the server, except
    // in `open` and the destructor.
    mutable Mutex mutex;
    bool isPollReading KOVA_GUARDED_BY(mutex) = false; // the polling queue is waiting for replies
    x11::WindowModel model KOVA_GUARDED_BY(mutex);
    x11::DisplayKeeper displays KOVA_GUARDED_BY(mutex);
    x11::ScreenPowerNotices screenPower KOVA_GUARDED_BY(mutex);
    std::deque<x11::PendingReplies>
        pendingReplies KOVA_GUARDED_BY(mutex); // requests of the main thread, which does not wait for the replies
    bool isPointerQueryPending KOVA_GUARDED_BY(mutex) = false;
    x11::RequestQueue requests KOVA_GUARDED_BY(mutex);
    x11::FocusKeeper focusKeeper KOVA_GUARDED_BY(mutex);
    x11::WindowHider hider KOVA_GUARDED_BY(mutex);
    x11::EventEffects pendingEffects KOVA_GUARDED_BY(mutex); // to be handled on the main thread

    // These lock the mutex themselves
    x11::UserInput input;
    /// Tells the thread-safety analysis that the mutex of `input` is `mutex`. Does nothing.
    void assertInputMutexHeld() const KOVA_REQUIRES(mutex) KOVA_ASSERT_CAPABILITY(input.mutex()) {}
    x11::ModelRefresh refresh; // used by the polling queue
    Lifetime lifetime;

    // Events (X11DesktopEvents.cpp) and requests with replies (X11DesktopQueries.cpp)
    void readEverything();
    x11::EventEffects drain(xcb_generic_event_t* (*next)(xcb_connection_t*)) KOVA_REQUIRES(mutex);
    void noteFocusRequestOfAnotherProgram(const xcb_generic_event_t& event) KOVA_REQUIRES(mutex);
    void readAndPause() KOVA_EXCLUDES(mutex);
    bool isPlacing() const;
    bool mayPause() const KOVA_REQUIRES(mutex);
    void pauseAfterPlacing() KOVA_EXCLUDES(mutex);
    void catchUp() KOVA_REQUIRES(mutex);                                // any thread; never waits
    void handleEffects(x11::EventEffects effects) KOVA_EXCLUDES(mutex); // main thread
    void bringUpToDate() KOVA_EXCLUDES(mutex);                          // polling queue, or while opening
    bool actOn(const x11::EventEffects& effects) KOVA_REQUIRES(mutex);
    void takeReplies() KOVA_REQUIRES(mutex); // handles the replies that have arrived
    void queryActiveWindow() KOVA_REQUIRES(mutex);
    void expectFocus(xcb_window_t window) KOVA_REQUIRES(mutex);
    void takeActiveWindow(xcb_window_t reported) KOVA_REQUIRES(mutex);
    void takeActiveWindowOfInput(xcb_window_t reported) KOVA_REQUIRES(mutex);
    void setActiveWindow(xcb_window_t reported) KOVA_REQUIRES(mutex);
    void returnFocus(xcb_window_t active) KOVA_REQUIRES(mutex);
    void queryDecorations(xcb_window_t window) KOVA_REQUIRES(mutex);
    void queryState(x11::ClientWindow& client) KOVA_REQUIRES(mutex);
    void queryPointer() KOVA_REQUIRES(mutex);
    void later(Seconds pause, std::function<void()> work); // main thread; `work` is called with the lock held

    void queryScreenPower() KOVA_REQUIRES(mutex);
    void queryScreenPowerAgain() KOVA_EXCLUDES(mutex);
    bool isMainThread() const { return std::this_thread::get_id() == mainThread; }

    // Reading
    const x11::ClientWindow* find(const AccessibilityElement& element) const KOVA_REQUIRES(mutex);
    x11::ClientWindow* find(const AccessibilityElement& element) KOVA_REQUIRES(mutex);
    AccessibilityElement elementOf(const x11::ClientWindow& client) const KOVA_REQUIRES(mutex);
    const x11::ClientWindow* mainWindowOf(pid_t processIdentifier) const KOVA_REQUIRES(mutex);
    AttributeValue read(const x11::ClientWindow& client, AccessibilityAttribute attribute, Seconds now) const
        KOVA_REQUIRES(mutex);
    AttributeValue readApplication(pid_t processIdentifier, AccessibilityAttribute attribute) const
        KOVA_REQUIRES(mutex);

    // Writing, main thread
    void keepActive(xcb_window_t window) KOVA_EXCLUDES(mutex); // focuses it again after other windows were restored
    void removeHiddenStates() KOVA_EXCLUDES(mutex);            // call at the end
    void takeOverLeftoverWindows(bool staysHidden) KOVA_EXCLUDES(mutex); // waits for the server
    bool isAnyStateAssumed() const KOVA_REQUIRES(mutex);
    void sendSoon();
    void send() KOVA_EXCLUDES(mutex);
};

} // namespace kova
