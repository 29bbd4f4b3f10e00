// What X11Desktop is made of, shared by the files that answer its protocols. The mutex guards everything below it; it
// is held for short copies and for the sending of buffered requests, never while somebody waits for the server.
#pragma once

#include "platform/x11/DisplayReader.h"
#include "platform/x11/HiddenWindows.h"
#include "platform/x11/KeyboardKeeper.h"
#include "platform/x11/ModelRefresh.h"
#include "platform/x11/Outbox.h"
#include "platform/x11/ScaleReader.h"
#include "platform/x11/ScreenPower.h"
#include "platform/x11/X11Desktop.h"
#include "platform/x11/X11Hand.h"
#include "support/Lifetime.h"

#include <atomic>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <thread>

namespace kova {

/// An application as its first window shows it.
struct X11Application {
    pid_t processIdentifier = 0;
    ApplicationIdentity identity;
    bool isRegular = false; // has a window to manage, not only panels and the like
    bool isPartOfDesktop = false;
    bool operator==(const X11Application&) const = default;
};

struct X11Desktop::Parts {
    Parts(std::unique_ptr<x11::XConnection> opened, const Options& options, MainQueue& mainQueue,
          ApplicationCatalogue& applicationCatalogue);

    // Never change
    std::unique_ptr<x11::XConnection> connection;
    MainQueue& queue;
    ApplicationCatalogue& catalogue;
    ApplicationLauncher* launcher; // null: nothing can be launched
    const Seconds patienceAtTheEnd;
    const std::vector<pid_t> ownProcesses; // this one and those it descends from
    const x11::ClientProcesses processes;
    const std::thread::id mainThread = std::this_thread::get_id();

    std::atomic<std::uint64_t> changes{1};
    std::atomic<bool> isLost{false};

    // Main thread only
    bool mustFlush = false; // requests wait to be sent
    bool isSendDue = false;
    bool isHandReadDue = false;
    Seconds lastPlacing{-1000.0}; // uptime
    Watch watch;
    std::function<void()> whenLost;
    std::optional<Subscription> watching, watchingHand;
    std::shared_ptr<ScheduledWork> rest;
    std::atomic<bool> isResting{false}; // nobody watches the connection for a moment
    Observers<> screenObservers;
    Observers<const PointerEvent&> pointerObservers;
    Observers<const DividerHandleEvent&> handleObservers;
    Observers<const KeyPress&> keyMonitors;
    Observers<> heldKeysObservers;
    struct KeyRecorder {
        std::function<bool(const KeyPress&)> take;
        std::function<void(const std::string& reason)> failed;
    };
    std::weak_ptr<KeyRecorder> keyRecorder;
    Seconds heldKeysTried{-1000.0};     // uptime
    std::vector<DividerHandle> handles; // as they were wished for
    Observers<SystemActivityEvent> activityObservers;
    bool wereScreensOff = false; // as the observers know it
    std::shared_ptr<ScheduledWork> screenPowerLook;
    std::uint64_t awaitedCount = 0;
    std::function<void()> whenChanged;
    std::atomic<bool> isAwaited{false}; // somebody waits for a change

    // Guarded
    mutable std::mutex mutex;
    bool isPollReading = false;            // the polling queue waits for replies
    std::atomic<bool> restsForPoll{false}; // and the main thread does not watch the connection meanwhile
    Seconds caughtUp{-1.0};                // uptime when the connection was last looked at during a rest
    x11::WindowModel model;
    x11::DisplayReader displays;
    x11::ScaleReader scale;
    x11::ScreenPower screenPower;
    std::deque<x11::Questions> asked; // by the main thread, which does not wait for the replies
    bool isPointerAsked = false;
    Seconds lastReminder{};
    x11::HiddenWindows hidden;
    std::vector<xcb_window_t> leaving; // to be unmapped with the next requests that are sent
    bool isRecordDue = false;          // of hidden windows, a little later
    x11::Outbox outbox;
    x11::KeyboardKeeper keyboard;
    x11::EventEffects unsettled; // found by the polling queue, for the main thread to act on
    x11::DisplayArrangement arrangement;
    std::vector<x11::Monitor> monitors;
    std::vector<X11Application> applications;
    std::unique_ptr<x11::Hand> hand; // null when there is none

    x11::ModelRefresh refresh; // the polling queue's
    Lifetime lifetime;

    // Events (X11Desktop.cpp)
    void readEverything();
    x11::EventEffects drain(xcb_generic_event_t* (*next)(xcb_connection_t*)); // locked by the caller
    void readAndRest();
    bool mayRest() const; // locked
    void resume();
    void catchUp();                         // any thread, locked; never waits
    void settle(x11::EventEffects effects); // main thread
    void bringUpToDate();                   // polling queue, or while opening
    void identifyApplications();
    bool isPartOfDesktop(pid_t process, const ApplicationIdentity& identity, bool drawsDesktop,
                         const std::string& windowManager) const; // not locked
    bool actOn(const x11::EventEffects& effects);                 // locked
    void takeReplies();                                           // locked; those that have come
    void askActiveWindow();                                       // locked, as are these
    void takeActiveWindow(xcb_window_t window);
    void leaveKeyboard();
    void askDecorations(xcb_window_t window);
    void askState(x11::ClientWindow& client);
    void askPointer();
    bool arrangeDisplays(); // true when something changed
    void noteChange();
    void callWhenChanged();

    // The power of the screens (X11DesktopPower.cpp), main thread, locked
    void askScreenPower();
    void followScreenPower();

    // The hand (X11DesktopHand.cpp), main thread
    void openHand(); // waits for the server
    void listenToHand();
    void readHand(); // not locked
    void readHandSoon();
    void placeHandles(); // locked
    void lookAtPointerAgain();
    void tellOfHand(); // not locked

    // Keys (X11DesktopKeys.cpp), main thread
    enum class HeldKeysReason { managerChanged, windowsChanged, asked };
    void tryHeldKeys(HeldKeysReason reason); // locked
    void tellOf(const x11::KeyNews& news);   // not locked, as are these
    void tryRecordingAgain();
    void stopRecordingKeys();
    void failRecordingKeys(const std::string& reason);
    bool isMainThread() const { return std::this_thread::get_id() == mainThread; }

    // Reading (locked by the caller)
    const x11::ClientWindow* find(const AccessibilityElement& element) const;
    x11::ClientWindow* find(const AccessibilityElement& element);
    AccessibilityElement elementOf(const x11::ClientWindow& client) const;
    bool isApplicationHidden(pid_t processIdentifier) const {
        return hidden.isApplicationHidden(processIdentifier, model);
    }
    const x11::ClientWindow* mainWindowOf(pid_t processIdentifier) const;
    AttributeValue read(const x11::ClientWindow& client, AccessibilityAttribute attribute, Seconds now) const;
    AttributeValue readApplication(pid_t processIdentifier, AccessibilityAttribute attribute) const;

    // Writing (locked by the caller, main thread)
    x11::HiddenWindow recordOf(const x11::ClientWindow& client, x11::TakenAway how) const;
    void minimizeByWish(x11::ClientWindow& client);
    void restoreByWish(x11::ClientWindow& client);
    std::vector<x11::ClientWindow*> dialogsToTakeAlong(const x11::ClientWindow& client);
    void minimize(x11::ClientWindow& client);
    void restore(x11::ClientWindow& client);
    bool mayStillLeave(const x11::ClientWindow& client) const;
    bool mayStillReturn(const x11::ClientWindow& client) const;
    void mapAgain(xcb_window_t window);
    void sendLeaving();
    void writeRecordSoon();
    void setIconicState(xcb_window_t window, std::uint32_t state);
    void bringBack(xcb_window_t window);
    void bringAllBack();
    void remindOfReturning();
    void keepActive(xcb_window_t window);         // not locked; whoever has come back meanwhile
    void takeOverLeftWindows(bool waitsToSettle); // not locked; waits for the server
    bool isAnyReturning() const;
    bool isBelievedBack(const x11::ClientWindow& client, Seconds now) const;
    bool isAnyBelieved() const;
    void sendSoon();
    void send(); // not locked
};

} // namespace kova
