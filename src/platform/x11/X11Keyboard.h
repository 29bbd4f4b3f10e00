// Reports key presses, whichever window is focused. Grabs key combinations passively, so that no other program gets
// them, and the whole keyboard while a shortcut is recorded.
//
// A combination is grabbed for all states of Caps Lock, Num Lock and Scroll Lock, and again after changes of layout,
// keyboard or modifiers. If another program has grabbed a combination, KOVA tries again whenever that program may have
// released it; no timer wakes the agent for that.
#pragma once

#include "platform/x11/PendingReplies.h"
#include "platform/x11/PressedKeys.h"
#include "platform/x11/X11KeyboardMap.h"

#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace kova::x11 {

struct KeyboardEvent {
    enum class Kind {
        pressed,          // a grabbed combination, or another key during such a grab
        recorded,         // any key, while the whole keyboard is grabbed
        recordingFailed,  // another program has grabbed the keyboard
        grabResultsKnown, // it is known which combinations other programs have grabbed
    };
    Kind kind;
    KeyPress press{};
};

class Keyboard {
  public:
    /// The constructor waits for the server. Later requests are added to `pendingReplies`, since the main thread does
    /// not wait for replies. `scheduleRecordingRetry` must call `tryRecording` after a pause, on the main thread.
    Keyboard(const XConnection& connection, std::deque<PendingReplies>& pendingReplies,
             std::function<void()> scheduleRecordingRetry);

    /// False on a server without XKB names of keys: no key is reported.
    bool isUsable() const { return firstEvent_ != 0; }
    /// Sets the combinations to grab, which replace the former ones. They are grabbed only while `listen` is on and no
    /// shortcut is recorded.
    void claim(std::vector<KeyCombination> combinations);
    void listen(bool listens);
    /// Begins or ends the recording of a shortcut, for which the whole keyboard is grabbed.
    void record(bool records);
    /// Tries again to grab the combinations that another program had grabbed.
    void retryGrabs();
    /// Tries to grab the whole keyboard; call `act` afterwards.
    void tryRecording();

    bool isListening() const { return isListening_; }
    bool isRecording() const { return isRecording_; }
    std::vector<KeyCombination> heldByOthers() const;
    std::string charactersOf(std::uint16_t macKeyCode) const { return map_.characters(macKeyCode, group_); }

    /// True if the event is about keys; then call `act`.
    bool take(const xcb_generic_event_t& event);
    /// Handles the events. True if requests must be sent. Main thread.
    bool act();
    std::vector<KeyboardEvent> takeEvents() { return std::exchange(events_, {}); }

  private:
    struct Claim {
        KeyCombination combination;
        std::vector<std::pair<xcb_keycode_t, std::uint16_t>> grabs; // key and state
        bool isGrabbed = false; // also false if KOVA has released the grab after a try
        bool isRefused = false; // the server refused the last try
        bool isHeldByOther = false;
    };
    struct Grab { // a request without a result yet
        unsigned int sequence;
        KeyCombination combination;
    };

    void configureExtension();
    void requestMap();
    void takeMap(const void* names, const void* map);
    bool takeError(const xcb_generic_event_t& event);
    bool takeKey(const xcb_key_press_event_t& event, bool isPress);
    void stopExpectingReleases();
    std::vector<Claim> wantedClaims() const;
    void updateClaims();
    void grab(Claim& claim);
    void probeInputExtensionGrab(const Claim& claim);
    void noteRefusal(const KeyCombination& combination);
    void ungrab(Claim& claim);
    void requestGrabResults();
    void useGrabResults();

    const XConnection& connection_;
    std::deque<PendingReplies>& pendingReplies_;
    std::function<void()> scheduleRecordingRetry_;
    std::uint8_t firstEvent_ = 0; // of XKB; 0: the extension is not usable
    bool hasInputExtension_ = false;
    KeyboardMap map_;
    std::uint8_t group_ = 0; // the active layout
    bool isMapDue_ = false;
    bool isMapRequested_ = false;

    std::vector<KeyCombination> wanted_;
    bool isListening_ = false;
    bool isRecording_ = false;
    bool hasKeyboard_ = false;
    int recordingTries_ = 0;
    std::vector<Claim> claims_;
    std::vector<Grab> pendingGrabs_;
    int pendingResultRequests_ = 0;
    bool areGrabResultsKnown_ = false;
    bool mustReport_ = false; // report `grabResultsKnown` even if nothing has changed

    PressedKeys pressedKeys_;
    bool mustSend_ = false;
    std::vector<KeyboardEvent> events_;
};

} // namespace kova::x11
