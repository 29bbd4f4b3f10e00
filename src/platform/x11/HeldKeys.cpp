#include "platform/x11/HeldKeys.h"

namespace kova::x11 {

namespace {

/// In milliseconds. A press this long after the last one of the same key is no repetition: a release was lost.
constexpr std::int32_t kLongestRepeatDelay = 3000;
/// Tolerances in milliseconds: a repetition comes on time, or late if the server is busy.
constexpr std::int32_t kTooEarly = 10, kTooLate = 100;

} // namespace

bool HeldKeys::press(xcb_keycode_t key, xcb_timestamp_t time) {
    if (!first_) first_ = key;
    const auto [known, isNew] = held_.try_emplace(key);
    const bool repeats = !isNew && isRepetition(known->second, time);
    known->second = {.pressed = time, .repeats = repeats};
    return repeats;
}

bool HeldKeys::isRepetition(const Held& held, xcb_timestamp_t time) const {
    if (!held.pressed) return held.isInSight;
    const auto since = static_cast<std::int32_t>(time - *held.pressed);
    if (held.isInSight) return since <= kLongestRepeatDelay;
    // The key may have been released since. Only a press at the time of the server's repetition counts as one.
    return since <= repeatDelay_ + kTooLate && (held.repeats || since >= repeatDelay_ - kTooEarly);
}

void HeldKeys::areDown(const Bits& keys) {
    first_.reset();
    held_.clear();
    for (std::size_t key = 0; key < 8 * keys.size(); ++key) {
        if ((keys[key / 8] >> (key % 8) & 1) != 0) held_[static_cast<xcb_keycode_t>(key)] = {};
    }
}

bool HeldKeys::release(xcb_keycode_t key) {
    held_.erase(key);
    if (first_ != key) return false;
    first_.reset();
    return !held_.empty();
}

void HeldKeys::loseSight() {
    first_.reset();
    for (auto& [key, held] : held_) held.isInSight = false;
}

} // namespace kova::x11
