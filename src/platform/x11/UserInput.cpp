#include "platform/x11/UserInput.h"

namespace kova::x11 {

namespace {

/// The time between two queries of the pointer while the button is down.
constexpr Seconds kMotionInterval{1.0 / 60};
/// The time between two tries to grab the keyboard for a recording.
constexpr Seconds kRecordingPause{0.05};
/// The shortest times between two tries to grab combinations that other programs have grabbed: on request, and after
/// windows changed.
constexpr Seconds kPauseBetweenRequests{1}, kPauseBetweenChanges{10};

/// An object that a subscription owns, and the function that is called when the subscription ends.
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

UserInput::UserInput(MainQueue& queue, Mutex& mutex, const WindowModel& model, const DisplayKeeper& displays,
                     Calls calls) :
    queue_(queue),
    mutex_(mutex), calls_(std::move(calls)), model_(model), displays_(displays) {}

void UserInput::open(const std::string& displayName) {
    auto connected = XConnection::open(displayName);
    auto* opened = std::get_if<std::unique_ptr<XConnection>>(&connected);
    if (!opened) return;
    const MutexLock lock(mutex_);
    input_ = std::make_unique<InputConnection>(
        std::move(*opened), model_,
        InputConnection::Calls{.scheduleMotionEvents = [this] { scheduleMotionEvents(); },
                               .scheduleRecordingRetry = [this] { scheduleRecordingRetry(); },
                               .scheduleRead = [this] { scheduleRead(); }});
}

void UserInput::listen(const DescriptorWatch& watch) {
    if (!input_) return;
    const MutexLock lock(mutex_);
    watching_ = watch(input_->descriptor(), [this] { read(); });
}

// Events of the connection

void UserInput::read() {
    bool hasEnded = false;
    {
        const MutexLock lock(mutex_);
        input_->read();
        hasEnded = input_->isLost();
    }
    postEvents();
    calls_.hasRead();
    if (hasEnded) watching_.reset();
}

void UserInput::scheduleRead() {
    if (std::exchange(isReadDue_, true)) return;
    queue_.post(lifetime_.guard([this] {
        isReadDue_ = false;
        read();
    }));
}

/// Events are posted, not reported at once: observers may read and write windows, for which they need the lock.
void UserInput::postEvents() {
    const MutexLock lock(mutex_);
    if (const auto active = input_->takeActiveWindow()) calls_.activeWindow(*active);
    const PointSpace& space = displays_.space();
    // Events of handles are posted first. Pointer events are made from replies to queries, so the press of a handle is
    // older than the pointer event of the same press.
    for (const RootHandleEvent& onRoot : input_->takeHandleEvents()) {
        const DividerHandleEvent event{onRoot.kind, onRoot.id, space.pointOnScreen(onRoot.x, onRoot.y)};
        queue_.post(lifetime_.guard([this, event] { handleObservers_.notify(event); }));
    }
    for (const RootPointerEvent& onRoot : input_->takePointerEvents()) {
        const PointerEvent event{onRoot.kind, space.pointOnScreen(onRoot.x, onRoot.y), onRoot.isShiftDown};
        queue_.post(lifetime_.guard([this, event] { pointerObservers_.notify(event); }));
    }
    for (KeyboardEvent& event : input_->takeKeyboardEvents()) {
        queue_.post(lifetime_.guard([this, event = std::move(event)] { report(event); }));
    }
    if (input_->isFollowingPointer() && !pointerObservers_.hasAny()) input_->followPointer(false);
}

void UserInput::queryActiveWindow() {
    input_->queryActiveWindow();
}

bool UserInput::isConnected() const {
    return input_ && !input_->isLost();
}

// The pointer and the dividers

Subscription UserInput::observePointer(std::function<void(const PointerEvent&)> observer) {
    auto subscription = pointerObservers_.add(std::move(observer));
    const MutexLock lock(mutex_);
    if (input_) input_->followPointer(true);
    return subscription;
}

void UserInput::scheduleMotionEvents() {
    queue_.after(kMotionInterval, lifetime_.guard([this] {
        const MutexLock lock(mutex_);
        input_->resumeMotionEvents();
    }));
}

void UserInput::showHandles(const std::vector<DividerHandle>& handles) {
    const MutexLock lock(mutex_);
    handles_ = handles;
    placeHandles();
}

Subscription UserInput::observeHandles(std::function<void(const DividerHandleEvent&)> observer) {
    return handleObservers_.add(std::move(observer));
}

void UserInput::placeHandles() {
    if (!input_) return;
    std::vector<HandlePlace> places;
    for (const DividerHandle& handle : handles_) {
        places.push_back(placeOfHandle(handle.id, handle.frame, handle.axis, displays_.space()));
    }
    input_->showHandles(places);
}

void UserInput::displaysChanged() {
    placeHandles();
}

void UserInput::windowsChanged(bool haveMoved) {
    if (input_) input_->windowsChanged(haveMoved);
    if (haveMoved) retryGrabs(GrabRetryReason::windowsChanged);
}

bool UserInput::hasMisplacedHandles() const {
    return input_ && input_->hasMisplacedHandles();
}

// Keys

Subscription UserInput::addGlobalMonitor(std::function<void(const KeyPress&)> monitor) {
    auto kept = std::make_shared<Kept<Subscription>>(keyMonitors_.add(std::move(monitor)));
    kept->dropped = [kept = kept.get(), guarded = lifetime_.guard([this] { listenToKeys(); })]() mutable {
        kept->thing = {};
        guarded();
    };
    listenToKeys();
    return Subscription(std::move(kept));
}

void UserInput::listenToKeys() {
    const MutexLock lock(mutex_);
    if (input_) input_->listenToKeys(keyMonitors_.hasAny());
}

void UserInput::claim(const std::vector<KeyCombination>& combinations) {
    if (input_) {
        const MutexLock lock(mutex_);
        return input_->claimKeys(combinations);
    }
    queue_.post(lifetime_.guard([this] { heldByOthersObservers_.notify(); }));
}

std::vector<KeyCombination> UserInput::heldByOthers() {
    if (!input_) return {};
    const MutexLock lock(mutex_);
    auto held = input_->keyboard().heldByOthers();
    if (!held.empty()) retryGrabs(GrabRetryReason::requested);
    return held;
}

Subscription UserInput::observeHeldByOthers(std::function<void()> known) {
    return heldByOthersObservers_.add(std::move(known));
}

Subscription UserInput::recordKeys(std::function<bool(const KeyPress&)> recorder,
                                   std::function<void(const std::string&)> failed) {
    auto kept = std::make_shared<Kept<KeyRecorder>>(KeyRecorder{std::move(recorder), std::move(failed)});
    kept->dropped = lifetime_.guard([this] {
        if (keyRecorder_.expired()) stopRecordingKeys();
    });
    keyRecorder_ = std::shared_ptr<KeyRecorder>(kept, &kept->thing);
    const MutexLock lock(mutex_);
    if (input_ && input_->keyboard().isUsable()) {
        input_->recordKeys(true);
    } else {
        queue_.post(lifetime_.guard([this] {
            failRecordingKeys("KOVA cannot identify the keys: the X server lacks the XKEYBOARD extension");
        }));
    }
    return Subscription(std::move(kept));
}

std::string UserInput::charactersOf(std::uint16_t keyCode) const {
    if (!input_) return {};
    const MutexLock lock(mutex_);
    return input_->keyboard().charactersOf(keyCode);
}

void UserInput::stopRecordingKeys() {
    const MutexLock lock(mutex_);
    if (input_) input_->recordKeys(false);
}

void UserInput::scheduleRecordingRetry() {
    queue_.after(kRecordingPause, lifetime_.guard([this] {
        const MutexLock lock(mutex_);
        input_->tryRecording();
    }));
}

void UserInput::failRecordingKeys(const std::string& reason) {
    const auto recorder = std::exchange(keyRecorder_, {}).lock();
    stopRecordingKeys();
    if (recorder) recorder->failed(reason);
}

void UserInput::managerChanged() {
    retryGrabs(GrabRetryReason::managerChanged);
}

void UserInput::retryGrabs(GrabRetryReason reason) {
    const Seconds now = queue_.uptime();
    const Seconds since = now - grabsRetriedAt_;
    const bool isTooSoon = (reason == GrabRetryReason::windowsChanged && since < kPauseBetweenChanges) ||
                           (reason == GrabRetryReason::requested && since < kPauseBetweenRequests);
    if (!input_ || isTooSoon) return;
    grabsRetriedAt_ = now;
    input_->retryGrabs();
}

void UserInput::report(const KeyboardEvent& event) {
    switch (event.kind) {
    case KeyboardEvent::Kind::pressed:
        return keyMonitors_.notify(event.press);
    case KeyboardEvent::Kind::recorded:
        if (const auto recorder = keyRecorder_.lock(); recorder && recorder->take(event.press)) {
            // The recorder may have begun another recording.
            if (keyRecorder_.lock() == recorder) keyRecorder_.reset();
            if (keyRecorder_.expired()) stopRecordingKeys();
        }
        return;
    case KeyboardEvent::Kind::recordingFailed:
        return failRecordingKeys("Another program holds the keyboard; close its menu or dialog and try again");
    case KeyboardEvent::Kind::grabResultsKnown:
        return heldByOthersObservers_.notify();
    }
}

} // namespace kova::x11
