// Key presses, wherever on the desktop the keyboard is: combinations that are claimed from the server, so that no
// other program hears of them, and for a moment the whole keyboard while a shortcut is recorded.
//
// A claim holds with Caps Lock, Num Lock and Scroll Lock on or off, and follows the keyboard: another layout, another
// keyboard, another modifier. A combination that another program has claimed stays with it, and is tried again whenever
// that may have changed; nothing wakes up for that alone.
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
        pressed,      // a claimed combination, or what was pressed with it
        recorded,     // any key, while the keyboard is ours
        notRecording, // another program holds the keyboard
        claimsKnown,  // which keys other programs hold
    };
    Kind kind;
    KeyPress press{};
};

class Keyboard {
  public:
    /// Waits for the server. `asked` gets the questions that the main thread does not wait for; `tryAgain` calls `try`
    /// a little later, on the main thread.
    Keyboard(const XConnection& connection, std::deque<PendingReplies>& asked, std::function<void()> tryAgain);

    /// False on a server that cannot tell its keys by name: nothing is heard there.
    bool isUsable() const { return firstEvent_ != 0; }
    /// What is to be claimed, in place of what was before; held only while there are listeners and none records.
    void claim(std::vector<KeyCombination> combinations);
    void listen(bool listens);
    void record(bool records);
    /// Tries to claim what another program held.
    void tryHeld();
    /// Tries to get the whole keyboard; `act` follows.
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
        bool isRefused = false;                                     // the newest try, as far as is known
        bool isHeldByOther = false;
    };
    struct Grab { // whose answer is awaited
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
    std::uint8_t firstEvent_ = 0; // of XKB; 0: the server has none of use
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
    bool mustTell_ = false; // that the claims are known, even if nothing about them is new

    HeldKeys held_;
    bool mustSend_ = false;
    std::vector<KeyNews> news_;
};

} // namespace kova::x11
