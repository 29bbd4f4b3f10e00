// The keyboard of the simulated desktop. A test presses keys as the user, and claims combinations or the whole keyboard
// as another program. A press that no program has claimed is typed into the window that has the keyboard focus.
#pragma once

#include "platform/simulated/VirtualTime.h"
#include "support/Lifetime.h"
#include "windowing/KeyMonitorServicing.h"

#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace kova {

class SimulatedKeyboard final : public KeyMonitorServicing {
  public:
    explicit SimulatedKeyboard(VirtualMainQueue& queue) : queue_(queue) {}

    /// Which programs get a key press while another application has the focus.
    enum class Delivery {
        claimed,  // a combination goes only to the program that claimed it first, and is not typed into a window
        observed, // as on a Mac: every program can observe every press, which is typed into the focused window as well
    };
    void setDelivery(Delivery delivery) { delivery_ = delivery; }
    /// The window that has the keyboard focus: a window of another application, or a window of KOVA.
    enum class Focus { otherApplication, ownWindow };
    void setFocus(Focus focus) { focus_ = focus; }

    /// Presses a key. Its character depends on the layout.
    void press(std::uint16_t keyCode, std::uint64_t modifierFlags = 0);
    /// Reports another repetition of a key that stays pressed.
    void repeat(std::uint16_t keyCode, std::uint64_t modifierFlags = 0);
    /// The presses that were typed into a window since the last call.
    std::vector<KeyPress> takeTyped() { return std::exchange(typed_, {}); }

    /// Lets another program claim the combination; no-op if KOVA has claimed it. With `Delivery::observed` the other
    /// program is the system.
    void claimByOther(KeyCombination combination);
    /// Lets the other program release the combination.
    void releaseByOther(KeyCombination combination);
    /// Sets whether another program gets all key presses.
    void setKeyboardHeldByOther(bool isHeld) { isKeyboardHeldByOther_ = isHeld; }
    /// Sets the characters of the keys that differ from those of an American keyboard.
    void setLayout(std::map<std::uint16_t, std::string> characters) { layout_ = std::move(characters); }
    /// The combinations whose presses only KOVA gets at present.
    std::set<KeyCombination> claimed() const;

    // KeyMonitorServicing
    Subscription addGlobalMonitor(std::function<void(const KeyPress&)> monitor) override;
    Subscription addLocalMonitor(std::function<bool(const KeyPress&)> monitor) override;
    void claim(const std::vector<KeyCombination>& combinations) override;
    std::vector<KeyCombination> heldByOthers() const override;
    KnownHolders knownHolders() const override {
        return delivery_ == Delivery::claimed ? KnownHolders::everyProgram : KnownHolders::systemOnly;
    }
    ModifierNames modifierNames() const override {
        return delivery_ == Delivery::claimed ? ModifierNames::words : ModifierNames::symbols;
    }
    Subscription observeHeldByOthers(std::function<void()> known) override;
    Subscription recordKeys(std::function<bool(const KeyPress&)> recorder,
                            std::function<void(const std::string& reason)> failed) override;
    std::string charactersOf(std::uint16_t keyCode) const override;

  private:
    using LocalMonitor = std::function<bool(const KeyPress&)>;

    void deliver(const KeyPress& press);
    bool isConsumedByLocalMonitor(const KeyPress& press);
    void notifyHeldByOthers();

    VirtualMainQueue& queue_;
    Delivery delivery_ = Delivery::claimed;
    Focus focus_ = Focus::otherApplication;
    std::map<std::uint16_t, std::string> layout_;
    std::set<KeyCombination> requested_; // by `claim`
    std::set<KeyCombination> heldByOthers_;
    bool isKeyboardHeldByOther_ = false;
    Observers<const KeyPress&> globalMonitors_;
    std::vector<std::weak_ptr<LocalMonitor>> localMonitors_;
    std::weak_ptr<LocalMonitor> recorder_;
    Observers<> heldObservers_;
    std::vector<KeyPress> typed_;
    Lifetime lifetime_;
};

} // namespace kova
