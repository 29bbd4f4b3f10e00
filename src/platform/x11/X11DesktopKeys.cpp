// Keys, wherever on the desktop they are pressed.
#include "platform/x11/X11Parts.h"

namespace kova {

using namespace x11;

namespace {

constexpr Seconds kRecordingPause{0.05};
/// How often, at most, whoever asks who holds a key has it tried again, and a window that comes or goes is taken for
/// the end of the program that held it.
constexpr Seconds kPauseBetweenQuestions{1}, kPauseBetweenChanges{10};

/// Something that is kept by a subscription, and what is to happen once it is dropped.
template <class Thing>
struct Kept {
    explicit Kept(Thing kept) : thing(std::move(kept)) {}
    Kept(const Kept&) = delete;
    Kept& operator=(const Kept&) = delete;
    ~Kept() { dropped(); }

    Thing thing;
    std::function<void()> dropped;
};

} // namespace

Subscription X11Desktop::addGlobalMonitor(std::function<void(const KeyPress&)> monitor) {
    const auto listen = [parts = parts_.get()] {
        const std::lock_guard lock(parts->mutex);
        if (parts->hand) parts->hand->listenToKeys(parts->keyMonitors.hasAny());
    };
    auto kept = std::make_shared<Kept<Subscription>>(parts_->keyMonitors.add(std::move(monitor)));
    kept->dropped = [kept = kept.get(), guarded = parts_->lifetime.guard(listen)]() mutable {
        kept->thing = {};
        guarded();
    };
    listen();
    return Subscription(std::move(kept));
}

/// No window of ours ever has the keyboard but for the moment in which a divider is dragged.
Subscription X11Desktop::addLocalMonitor(std::function<bool(const KeyPress&)>) {
    return {};
}

void X11Desktop::claim(const std::vector<KeyCombination>& combinations) {
    {
        const std::lock_guard lock(parts_->mutex);
        if (parts_->hand) return parts_->hand->claimKeys(combinations);
    }
    parts_->queue.post(parts_->lifetime.guard([parts = parts_.get()] { parts->heldKeysObservers.notify(); }));
}

std::vector<KeyCombination> X11Desktop::heldByOthers() const {
    const std::lock_guard lock(parts_->mutex);
    if (!parts_->hand) return {};
    auto held = parts_->hand->keyboard().heldByOthers();
    if (!held.empty()) parts_->tryHeldKeys(Parts::HeldKeysReason::asked);
    return held;
}

Subscription X11Desktop::observeHeldByOthers(std::function<void()> known) {
    return parts_->heldKeysObservers.add(std::move(known));
}

Subscription X11Desktop::recordKeys(std::function<bool(const KeyPress&)> recorder,
                                    std::function<void(const std::string&)> failed) {
    const auto end = [parts = parts_.get()] {
        if (parts->keyRecorder.expired()) parts->stopRecordingKeys();
    };
    auto kept = std::make_shared<Kept<Parts::KeyRecorder>>(Parts::KeyRecorder{std::move(recorder), std::move(failed)});
    kept->dropped = parts_->lifetime.guard(end);
    parts_->keyRecorder = std::shared_ptr<Parts::KeyRecorder>(kept, &kept->thing);
    const std::lock_guard lock(parts_->mutex);
    if (parts_->hand && parts_->hand->keyboard().isUsable()) {
        parts_->hand->recordKeys(true);
    } else {
        parts_->queue.post(parts_->lifetime.guard([parts = parts_.get()] {
            parts->failRecordingKeys("The X server cannot tell which key is which: it lacks the XKEYBOARD extension");
        }));
    }
    return Subscription(std::move(kept));
}

std::string X11Desktop::charactersOf(std::uint16_t keyCode) const {
    const std::lock_guard lock(parts_->mutex);
    return parts_->hand ? parts_->hand->keyboard().charactersOf(keyCode) : std::string();
}

void X11Desktop::Parts::stopRecordingKeys() {
    const std::lock_guard lock(mutex);
    if (hand) hand->recordKeys(false);
}

void X11Desktop::Parts::tryRecordingAgain() {
    queue.after(kRecordingPause, lifetime.guard([this] {
        const std::lock_guard lock(mutex);
        hand->tryRecording();
    }));
}

void X11Desktop::Parts::failRecordingKeys(const std::string& reason) {
    const auto recorder = std::exchange(keyRecorder, {}).lock();
    stopRecordingKeys();
    if (recorder) recorder->failed(reason);
}

/// Locked by the caller.
void X11Desktop::Parts::tryHeldKeys(HeldKeysReason reason) {
    const Seconds now = queue.uptime();
    const Seconds since = now - heldKeysTried;
    if (!hand || (reason == HeldKeysReason::windowsChanged && since < kPauseBetweenChanges) ||
        (reason == HeldKeysReason::asked && since < kPauseBetweenQuestions))
        return;
    heldKeysTried = now;
    hand->tryHeldKeys();
}

void X11Desktop::Parts::tellOf(const KeyNews& news) {
    switch (news.kind) {
    case KeyNews::Kind::pressed:
        return keyMonitors.notify(news.press);
    case KeyNews::Kind::recorded:
        if (const auto recorder = keyRecorder.lock(); recorder && recorder->take(news.press)) {
            // Unless another one has begun meanwhile.
            if (keyRecorder.lock() == recorder) keyRecorder.reset();
            if (keyRecorder.expired()) stopRecordingKeys();
        }
        return;
    case KeyNews::Kind::notRecording:
        return failRecordingKeys("Another program holds the keyboard; close its menu or dialog and try again");
    case KeyNews::Kind::claimsKnown:
        return heldKeysObservers.notify();
    }
}

} // namespace kova
