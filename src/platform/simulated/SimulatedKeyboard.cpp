#include "platform/simulated/SimulatedKeyboard.h"

#include "windowing/KeyCodes.h"

namespace kova {

void SimulatedKeyboard::press(std::uint16_t keyCode, std::uint64_t modifierFlags) {
    deliver({keyCode, modifierFlags, false, charactersOf(keyCode)});
}

void SimulatedKeyboard::repeat(std::uint16_t keyCode, std::uint64_t modifierFlags) {
    deliver({keyCode, modifierFlags, true, charactersOf(keyCode)});
}

void SimulatedKeyboard::deliver(const KeyPress& press) {
    if (isKeyboardHeldByOther_) return;
    if (const auto recorder = recorder_.lock()) {
        queue_.post(lifetime_.guard([this, press, recording = std::weak_ptr(recorder)] {
            const auto current = recording.lock();
            if (current && current == recorder_.lock() && (*current)(press)) recorder_.reset();
        }));
        return;
    }
    if (focus_ == Focus::ownWindow) {
        if (!isConsumedByLocalMonitor(press)) typed_.push_back(press);
        return;
    }
    const KeyCombination combination{press.keyCode, press.modifierFlags & modifierFlag::ofShortcuts};
    const bool isClaimed = claimed().contains(combination);
    const bool isObserved = delivery_ == Delivery::observed || isClaimed;
    if (isObserved) queue_.post(lifetime_.guard([this, press] { globalMonitors_.notify(press); }));
    if (!isClaimed && !heldByOthers_.contains(combination)) typed_.push_back(press);
}

bool SimulatedKeyboard::isConsumedByLocalMonitor(const KeyPress& press) {
    const auto present = localMonitors_;
    for (const auto& weak : present) {
        const auto monitor = weak.lock();
        if (monitor && (*monitor)(press)) return true;
    }
    return false;
}

void SimulatedKeyboard::claimByOther(KeyCombination combination) {
    if (!claimed().contains(combination)) heldByOthers_.insert(combination);
}

void SimulatedKeyboard::releaseByOther(KeyCombination combination) {
    heldByOthers_.erase(combination);
    notifyHeldByOthers();
}

std::set<KeyCombination> SimulatedKeyboard::claimed() const {
    std::set<KeyCombination> ours;
    if (delivery_ == Delivery::observed || !globalMonitors_.hasAny() || !recorder_.expired()) return ours;
    for (const KeyCombination& combination : requested_) {
        if (!heldByOthers_.contains(combination)) ours.insert(combination);
    }
    return ours;
}

// The platform interfaces

Subscription SimulatedKeyboard::addGlobalMonitor(std::function<void(const KeyPress&)> monitor) {
    return globalMonitors_.add(std::move(monitor));
}

Subscription SimulatedKeyboard::addLocalMonitor(std::function<bool(const KeyPress&)> monitor) {
    auto kept = std::make_shared<LocalMonitor>(std::move(monitor));
    std::erase_if(localMonitors_, [](const auto& known) { return known.expired(); });
    localMonitors_.push_back(kept);
    return Subscription(std::move(kept));
}

void SimulatedKeyboard::claim(const std::vector<KeyCombination>& combinations) {
    requested_ = {combinations.begin(), combinations.end()};
    notifyHeldByOthers();
}

void SimulatedKeyboard::notifyHeldByOthers() {
    queue_.post(lifetime_.guard([this] { heldObservers_.notify(); }));
}

std::vector<KeyCombination> SimulatedKeyboard::heldByOthers() const {
    std::vector<KeyCombination> held;
    if (!globalMonitors_.hasAny() || !recorder_.expired()) return held;
    for (const KeyCombination& combination : requested_) {
        if (heldByOthers_.contains(combination)) held.push_back(combination);
    }
    return held;
}

Subscription SimulatedKeyboard::observeHeldByOthers(std::function<void()> known) {
    return heldObservers_.add(std::move(known));
}

Subscription SimulatedKeyboard::recordKeys(std::function<bool(const KeyPress&)> recorder,
                                           std::function<void(const std::string& reason)> failed) {
    auto kept = std::make_shared<LocalMonitor>(std::move(recorder));
    if (isKeyboardHeldByOther_) {
        queue_.post([recording = std::weak_ptr(kept), failed = std::move(failed)] {
            if (recording.lock()) failed("Another program holds the keyboard");
        });
    } else {
        recorder_ = kept;
        notifyHeldByOthers();
    }
    // Claims have no effect during a recording. At its end, `heldByOthers` may therefore change.
    return Subscription(std::shared_ptr<void>(
        kept.get(), [kept, notifyUnlessEnded = lifetime_.guard([this] { notifyHeldByOthers(); })](void*) mutable {
            kept.reset();
            notifyUnlessEnded();
        }));
}

std::string SimulatedKeyboard::charactersOf(std::uint16_t keyCode) const {
    const auto found = layout_.find(keyCode);
    return found == layout_.end() ? std::string(americanCharacterOf(keyCode)) : found->second;
}

} // namespace kova
