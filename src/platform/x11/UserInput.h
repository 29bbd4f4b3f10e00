// Reports pointer and key events to the observers of the platform interfaces: the pointer's button, divider handles,
// and grabbed and recorded keys. Has its own X connection; if that fails, the desktop works without input. Main thread.
// Uses the model's mutex.
#pragma once

#include "platform/x11/ConnectionWatch.h"
#include "platform/x11/DisplayKeeper.h"
#include "platform/x11/InputConnection.h"
#include "support/Mutex.h"
#include "windowing/KeyMonitorServicing.h"
#include "windowing/PointerServicing.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kova::x11 {

class UserInput {
  public:
    struct Calls {
        std::function<void(xcb_window_t)>
            activeWindow;              // called with the lock when the window manager reports the window
        std::function<void()> hasRead; // called without the lock after each read of the connection
    };
    /// `model` and `displays` are guarded by `mutex`.
    UserInput(MainQueue& queue, Mutex& mutex, const WindowModel& model, const DisplayKeeper& displays, Calls calls);
    /// Connects and waits for the X server; call before any other thread starts.
    void open(const std::string& displayName) KOVA_EXCLUDES(mutex_);
    void listen(const DescriptorWatch& watch) KOVA_EXCLUDES(mutex_);

    // For observers above the platform interfaces; without the lock
    Subscription observePointer(std::function<void(const PointerEvent&)> observer) KOVA_EXCLUDES(mutex_);
    void showHandles(const std::vector<DividerHandle>& handles) KOVA_EXCLUDES(mutex_);
    Subscription observeHandles(std::function<void(const DividerHandleEvent&)> observer);
    Subscription addGlobalMonitor(std::function<void(const KeyPress&)> monitor) KOVA_EXCLUDES(mutex_);
    void claim(const std::vector<KeyCombination>& combinations) KOVA_EXCLUDES(mutex_);
    std::vector<KeyCombination> heldByOthers() KOVA_EXCLUDES(mutex_);
    Subscription observeHeldByOthers(std::function<void()> known);
    Subscription recordKeys(std::function<bool(const KeyPress&)> recorder,
                            std::function<void(const std::string& reason)> failed) KOVA_EXCLUDES(mutex_);
    std::string charactersOf(std::uint16_t keyCode) const KOVA_EXCLUDES(mutex_);

    /// Whether the connection was ever opened.
    bool isOpen() const { return input_ != nullptr; }

    // For callers that hold the lock
    Mutex& mutex() const KOVA_RETURN_CAPABILITY(mutex_) { return mutex_; }
    /// Queries which window is active; call after a change of the window manager. Call only if `isOpen`.
    void queryActiveWindow() KOVA_REQUIRES(mutex_);
    /// False if the connection was never opened, or has ended.
    bool isConnected() const KOVA_REQUIRES(mutex_);
    void displaysChanged() KOVA_REQUIRES(mutex_);
    void windowsChanged(bool haveMoved) KOVA_REQUIRES(mutex_);
    void managerChanged() KOVA_REQUIRES(mutex_);
    bool hasMisplacedHandles() const KOVA_REQUIRES(mutex_);

  private:
    struct KeyRecorder {
        std::function<bool(const KeyPress&)> take;
        std::function<void(const std::string& reason)> failed;
    };
    enum class GrabRetryReason { managerChanged, windowsChanged, requested };

    void read() KOVA_EXCLUDES(mutex_);
    void scheduleRead();
    void scheduleMotionEvents();
    void postEvents() KOVA_EXCLUDES(mutex_);
    void report(const KeyboardEvent& event) KOVA_EXCLUDES(mutex_);
    void placeHandles() KOVA_REQUIRES(mutex_);
    void retryGrabs(GrabRetryReason reason) KOVA_REQUIRES(mutex_);
    void listenToKeys() KOVA_EXCLUDES(mutex_);
    void scheduleRecordingRetry();
    void stopRecordingKeys() KOVA_EXCLUDES(mutex_);
    void failRecordingKeys(const std::string& reason) KOVA_EXCLUDES(mutex_);

    MainQueue& queue_;
    Mutex& mutex_;
    const Calls calls_;
    const WindowModel& model_ KOVA_GUARDED_BY(mutex_);
    const DisplayKeeper& displays_ KOVA_GUARDED_BY(mutex_);
    std::unique_ptr<InputConnection> input_ KOVA_POINTEE_GUARDED_BY(mutex_); // null if it could not be opened
    bool isReadDue_ = false;
    std::optional<Subscription> watching_;
    std::vector<DividerHandle> handles_; // the last ones passed to `showHandles`
    Observers<const PointerEvent&> pointerObservers_;
    Observers<const DividerHandleEvent&> handleObservers_;
    Observers<const KeyPress&> keyMonitors_;
    Observers<> heldByOthersObservers_;
    std::weak_ptr<KeyRecorder> keyRecorder_;
    Seconds grabsRetriedAt_{-1000.0}; // uptime
    Lifetime lifetime_;
};

} // namespace kova::x11
