#include "platform/x11/PressedKeys.h"

namespace kova::x11 {

namespace {

/// In milliseconds. A press that comes later than this after the last press of the same key is not a repetition: the
/// release in between was lost.
constexpr std::int32_t kLongestRepeatDelay = 3000;
/// Tolerances in milliseconds for the time of a repetition, which normally comes after the repeat delay. A busy server
/// sends it later.
constexpr std::int32_t kTooEarly = 10, kTooLate = 100;

} // namespace

bool PressedKeys::press(xcb_keycode_t key, xcb_timestamp_t time) {
    if (!first_) first_ = key;
    const auto [known, isNew] = held_.try_emplace(key);
    const bool repeats = !isNew && isRepetition(known->second, time);
    known->second = {.pressed = time, .repeats = repeats};
    return repeats;
}

bool PressedKeys::isRepetition(const Held& held, xcb_timestamp_t time) const {
    if (!held.pressed) return held.isReleaseReported;
    const auto since = static_cast<std::int32_t>(time - *held.pressed);
    if (held.isReleaseReported) return since <= kLongestRepeatDelay;
    // The key may have been released since. Only a press at the time when the server would repeat the key counts as a
    // repetition.
    return since <= repeatDelay_ + kTooLate && (held.repeats || since >= repeatDelay_ - kTooEarly);
}

void PressedKeys::setPressed(const Bits& keys) {
    first_.reset();
    held_.clear();
    for (std::size_t key = 0; key < 8 * keys.size(); ++key) {
        if ((keys[key / 8] >> (key % 8) & 1) != 0) held_[static_cast<xcb_keycode_t>(key)] = {};
    }
}

bool PressedKeys::release(xcb_keycode_t key) {
    held_.erase(key);
    if (first_ != key) return false;
    first_.reset();
    return !held_.empty();
}

void PressedKeys::stopExpectingReleases() {
    first_.reset();
    for (auto& [key, held] : held_) held.isReleaseReported = false;
}

} // namespace kova::x11
