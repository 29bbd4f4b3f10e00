// Key presses, whichever window is focused: passive grabs of combinations, so that no other program gets them, and a
// grab of the whole keyboard while a shortcut is recorded.
//
// A combination is grabbed for all states of Caps Lock, Num Lock and Scroll Lock, and again after changes of layout,
// keyboard or modifiers. A combination that another program holds is tried again whenever that may have changed; no
// timer wakes the agent for that.
#pragma once

#include "platform/x11/HeldKeys.h"
#include "platform/x11/PendingReplies.h"
#include "platform/x11/X11KeyboardMap.h"

#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace kova::x11 {

struct KeyNews {
    enum class Kind {
        pressed,      // a grabbed combination, or a key pressed with it
        recorded,     // any key, while the keyboard is grabbed
        notRecording, // another program holds the keyboard
        claimsKnown,  // which combinations other programs hold
    };
    Kind kind;
    KeyPress press{};
};

class Keyboard {
  public:
    /// Waits for the server. `asked` gets the requests whose replies the main thread does not wait for; `tryAgain` must
    /// call `tryRecording` after a pause, on the main thread.
    Keyboard(const XConnection& connection, std::deque<PendingReplies>& asked, std::function<void()> tryAgain);

    /// False on a server without XKB names of keys: no key is reported.
    bool isUsable() const { return firstEvent_ != 0; }
    /// Sets the combinations to grab, which replace the former ones. They are grabbed only while there are observers
    /// and no recording.
    void claim(std::vector<KeyCombination> combinations);
    void listen(bool listens);
    void record(bool records);
    /// Tries again to grab combinations that another program held.
    void tryHeld();
    /// Tries to grab the whole keyboard; call `act` afterwards.
    void tryRecording();

    bool isListening() const { return isListening_; }
    bool isRecording() const { return isRecording_; }
    std::vector<KeyCombination> heldByOthers() const;
    std::string charactersOf(std::uint16_t macKeyCode) const { return map_.characters(macKeyCode, group_); }

    /// True when the event is about keys; then `act` has something to do.
    bool take(const xcb_generic_event_t& event);
    /// True when requests wait to be sent. Main thread.
    bool act();
    std::vector<KeyNews> takeNews() { return std::exchange(news_, {}); }

  private:
    struct Claim {
        KeyCombination combination;
        std::vector<std::pair<xcb_keycode_t, std::uint16_t>> grabs; // key and state
        bool isGrabbed = false;                                     // not only tried
        bool isRefused = false;                                     // the result of the newest try, if known
        bool isHeldByOther = false;
    };
    struct Grab { // a request without a result yet
        unsigned int sequence;
        KeyCombination combination;
    };

    void begin();
    void askForMap();
    void takeMap(const void* names, const void* map);
    bool takeError(const xcb_generic_event_t& event);
    bool takeKey(const xcb_key_press_event_t& event, bool isPress);
    void loseSightOfKeys();
    std::vector<Claim> wantedClaims() const;
    void updateClaims();
    void grab(Claim& claim);
    void askOtherKindOfGrab(const Claim& claim);
    void refuse(const KeyCombination& combination);
    void ungrab(Claim& claim);
    void askWhetherRefused();
    void settleClaims();

    const XConnection& connection_;
    std::deque<PendingReplies>& asked_;
    std::function<void()> tryAgain_;
    std::uint8_t firstEvent_ = 0; // of XKB; 0: the extension is not usable
    bool hasInputExtension_ = false;
    KeyboardMap map_;
    std::uint8_t group_ = 0;
    bool isMapDue_ = false;
    bool isAskingForMap_ = false;

    std::vector<KeyCombination> wanted_;
    bool isListening_ = false;
    bool isRecording_ = false;
    bool hasKeyboard_ = false;
    int recordingTries_ = 0;
    std::vector<Claim> claims_;
    std::vector<Grab> unanswered_;
    int questionsOpen_ = 0;
    bool areAnswersIn_ = false;
    bool mustReport_ = false; // report `claimsKnown` even if nothing has changed

    HeldKeys held_;
    bool mustSend_ = false;
    std::vector<KeyNews> news_;
};

} // namespace kova::x11
