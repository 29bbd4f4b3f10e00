#include "platform/macos/MacKeyMonitors.h"

#include "platform/macos/Contained.h"
#include "platform/macos/EventMonitors.h"

#include "windowing/SystemConflicts.h"

#import <ApplicationServices/ApplicationServices.h>
#import <Carbon/Carbon.h>

namespace kova::macos {

namespace {

constexpr NSEventMask kKeyDown = NSEventMaskKeyDown;
static_assert(kKeyDown == 1 << 10);

constexpr unichar kFirstCharacter = 0x20;
constexpr unichar kDelete = 0x7F;
// The system assigns the characters of this range to keys that type no character, such as arrows.
constexpr unichar kFirstFunctionKey = 0xF700;
constexpr unichar kLastFunctionKey = 0xF8FF;

KeyPress keyPress(NSEvent* event) {
    return {.keyCode = event.keyCode,
            .modifierFlags = event.modifierFlags,
            .isRepeat = event.isARepeat != NO,
            .charactersIgnoringModifiers = text(event.charactersIgnoringModifiers)};
}

unsigned numberIn(NSDictionary* record, CFStringRef key) {
    id value = record[(__bridge NSString*)key];
    return [value isKindOfClass:NSNumber.class] ? [value unsignedIntValue] : 0;
}

SystemHotKey systemHotKey(NSDictionary* record) {
    return {.keyCode = static_cast<std::uint16_t>(numberIn(record, kHISymbolicHotKeyCode)),
            .carbonModifiers = numberIn(record, kHISymbolicHotKeyModifiers),
            .isEnabled = numberIn(record, kHISymbolicHotKeyEnabled) != 0};
}

bool isPrintable(NSString* characters) {
    if (characters.length == 0) return false;
    const unichar first = [characters characterAtIndex:0];
    return first >= kFirstCharacter && first != kDelete && !(first >= kFirstFunctionKey && first <= kLastFunctionKey);
}

} // namespace

struct MacKeyMonitors::Recording {
    std::function<bool(const KeyPress&)> recorder; // empty once the recording has ended
    Subscription others, own;

    void handle(const KeyPress& press) {
        const auto record = recorder; // a copy, since the recorder may end the recording
        if (record && record(press)) end();
    }
    void end() { recorder = nullptr; }
    bool isOn() const { return recorder != nullptr; }
};

MacKeyMonitors::~MacKeyMonitors() {
    if (const auto recording = recording_.lock()) recording->end();
}

Subscription MacKeyMonitors::addGlobalMonitor(std::function<void(const KeyPress&)> monitor) {
    // A press that is recorded is not reported. This is checked when the press arrives, since the press may have ended
    // the recording by the time its value is delivered.
    auto readUnlessRecording = lifetime_.guard([this](NSEvent* event, std::optional<KeyPress>& press) {
        const auto recording = recording_.lock();
        if (!recording || !recording->isOn()) press = keyPress(event);
    });
    const auto read = [readUnlessRecording = std::move(readUnlessRecording)](NSEvent* event) mutable {
        std::optional<KeyPress> press;
        readUnlessRecording(event, press);
        return press;
    };
    return monitorEvents<KeyPress>(queue_, EventSource::others, kKeyDown, read, lifetime_.guard(std::move(monitor)));
}

Subscription MacKeyMonitors::addLocalMonitor(std::function<bool(const KeyPress&)> monitor) {
    auto callMonitor = lifetime_.guard(
        [monitor = std::move(monitor)](const KeyPress& press, bool& isConsumed) { isConsumed = monitor(press); });
    return watchOwnEvents(kKeyDown, [callMonitor = std::move(callMonitor)](NSEvent* event) mutable {
        bool isConsumed = false;
        callMonitor(keyPress(event), isConsumed);
        return isConsumed;
    });
}

std::vector<KeyCombination> MacKeyMonitors::heldByOthers() const {
    @autoreleasepool {
        CFArrayRef copied = nullptr;
        if (CopySymbolicHotKeys(&copied) != noErr) return {};
        NSArray* records = CFBridgingRelease(copied);
        std::vector<SystemHotKey> keys;
        for (id record in records) {
            if ([record isKindOfClass:NSDictionary.class]) keys.push_back(systemHotKey(record));
        }
        return heldBySystem(claimed_, keys);
    }
}

void MacKeyMonitors::claim(const std::vector<KeyCombination>& combinations) {
    claimed_ = combinations;
    queue_.post(lifetime_.guard([this] { claimObservers_.notify(); }));
}

Subscription MacKeyMonitors::observeHeldByOthers(std::function<void()> changed) {
    return claimObservers_.add(std::move(changed));
}

Subscription MacKeyMonitors::recordKeys(std::function<bool(const KeyPress&)> recorder,
                                        std::function<void(const std::string& reason)> failed) {
    if (const auto former = recording_.lock()) former->end();
    const auto recording = std::make_shared<Recording>();
    recording_ = recording;
    recording->recorder = std::move(recorder);
    const auto weak = std::weak_ptr(recording);
    recording->others =
        monitorEvents<KeyPress>(queue_, EventSource::others, kKeyDown, keyPress, [weak](const KeyPress& press) {
            if (const auto alive = weak.lock()) alive->handle(press);
        });
    recording->own = watchOwnEvents(kKeyDown, [weak](NSEvent* event) {
        const auto alive = weak.lock();
        if (!alive || !alive->isOn()) return false;
        alive->handle(keyPress(event));
        return true;
    });
    if (!AXIsProcessTrusted() && !NSApp.active) {
        queue_.post([weak, failed = std::move(failed)] {
            if (weak.lock() && failed) failed("Keys can be recorded only with the Accessibility permission");
        });
    }
    return Subscription(recording);
}

std::string MacKeyMonitors::charactersOf(std::uint16_t keyCode) const {
    @autoreleasepool {
        const auto press = Owned<CGEventRef>::adopt(CGEventCreateKeyboardEvent(nullptr, keyCode, true));
        if (!press) return {};
        CGEventSetFlags(press.get(), CGEventFlags(0));
        NSString* characters = [NSEvent eventWithCGEvent:press.get()].charactersIgnoringModifiers;
        return isPrintable(characters) ? text(characters) : std::string();
    }
}

} // namespace kova::macos
