// The platform interfaces of the simulated desktop.
#include "platform/simulated/SimulatedDesktop.h"

#include <algorithm>
#include <array>

namespace kova {

namespace {

constexpr std::uint64_t kInnermost = 2; // the depth of the innermost element: a button in a group in the window
constexpr Seconds kSpringDelay{0.1};

bool isPlausible(const AttributeWrite& write) {
    if (const auto* point = std::get_if<CGPoint>(&write.value)) return isFinite(CGRect{*point, {}});
    if (const auto* size = std::get_if<CGSize>(&write.value)) {
        return isFinite(*size) && size->width >= 0 && size->height >= 0;
    }
    return true;
}

bool concernsFrame(const AttributeWrite& write) {
    return write.attribute == AccessibilityAttribute::position || write.attribute == AccessibilityAttribute::size;
}

} // namespace

void SimulatedDesktop::announceChange() {
    if (!changeCallback_) return;
    queue_.post(lifetime_.guard([this, request = changeRequest_, callback = std::exchange(changeCallback_, nullptr)] {
        if (request == changeRequest_) callback();
    }));
}

void SimulatedDesktop::addToJournal(std::string line) {
    journal_.push_back(std::move(line));
}

void SimulatedDesktop::requireMainThread(const char* call) const {
    if (pollingQueue_.isRunningJob()) violations_.push_back(std::string(call) + " on the polling queue");
}

const SimulatedWindow* SimulatedDesktop::windowOf(const AccessibilityElement& element) const {
    const auto number = element.hash - element.hash % kNumbersPerWindow;
    const auto retained = retained_.find(number);
    const auto* window = retained == retained_.end() ? findWindow(number) : &retained->second;
    return window && window->processIdentifier() == element.processIdentifier ? window : nullptr;
}

AccessibilityElement SimulatedDesktop::elementOf(const SimulatedWindow& window) const {
    return {window.processIdentifier(), window.number(), nullptr};
}

// AccessibilityServicing

bool SimulatedDesktop::requestTrust(bool prompt) {
    requireMainThread("requestTrust");
    if (prompt && !isTrusted_) {
        ++promptCount_;
        if (answerToPrompt_) setTrusted(true);
    }
    return isTrusted_;
}

AccessibilityElement SimulatedDesktop::applicationElement(pid_t processIdentifier) const {
    return {processIdentifier, 0, nullptr};
}

std::optional<WindowSizeHints> SimulatedDesktop::sizeHints(const AccessibilityElement& element) const {
    const auto* window = windowOf(element);
    return window && isTrusted_ ? window->sizeHints() : std::nullopt;
}

bool SimulatedDesktop::areSizesReliable(const AccessibilityElement&) const {
    return !managerComesAt_ || queue_.uptime() >= *managerComesAt_ + kSettlingTime;
}

AttributeValue SimulatedDesktop::value(const SimulatedWindow& window, AccessibilityAttribute attribute) const {
    if (window.traits().unreadable.contains(attribute)) return {};
    switch (attribute) {
    case AccessibilityAttribute::role:
        return window.traits().role;
    case AccessibilityAttribute::subrole:
        return window.traits().subrole ? AttributeValue(*window.traits().subrole) : AttributeValue();
    case AccessibilityAttribute::title:
        return window.title;
    case AccessibilityAttribute::minimized:
        return isMinimizedByItself(window);
    case AccessibilityAttribute::fullScreen:
        return window.isFullScreen;
    case AccessibilityAttribute::maximized:
        return window.isMaximized;
    case AccessibilityAttribute::position:
        return frameForWindowService(window).origin;
    case AccessibilityAttribute::size:
        return window.frame.size;
    case AccessibilityAttribute::minSize:
        return window.traits().minimumSize ? AttributeValue(*window.traits().minimumSize) : AttributeValue();
    case AccessibilityAttribute::minimumSize:
        return window.traits().otherMinimumSize ? AttributeValue(*window.traits().otherMinimumSize) : AttributeValue();
    case AccessibilityAttribute::parent: {
        const SimulatedWindow* parent = parentOf(window);
        return parent ? elementOf(*parent) : applicationElement(window.processIdentifier());
    }
    case AccessibilityAttribute::main:
    case AccessibilityAttribute::focused:
        return findApplication(window.processIdentifier())->focusedWindow == window.number();
    case AccessibilityAttribute::windows:
    case AccessibilityAttribute::focusedWindow:
    case AccessibilityAttribute::frontmost:
    case AccessibilityAttribute::enhancedUserInterface:
        return {};
    }
    return {};
}

AttributeValue SimulatedDesktop::value(const Application& application, AccessibilityAttribute attribute) const {
    if (attribute == AccessibilityAttribute::role) return std::string("AXApplication");
    if (attribute == AccessibilityAttribute::title) return application.name;
    if (attribute == AccessibilityAttribute::enhancedUserInterface && style_ == DesktopStyle::mac) {
        return application.isEnhanced;
    }
    if (attribute == AccessibilityAttribute::frontmost) return frontmost_ == application.record.processIdentifier;
    if (attribute == AccessibilityAttribute::windows) {
        std::vector<AccessibilityElement> elements;
        for (const auto& [number, window] : windows_) {
            if (window.processIdentifier() != application.record.processIdentifier || !isListed(window)) continue;
            elements.insert(elements.end(), application.listsWindowsTwice ? 2 : 1, elementOf(window));
        }
        return elements;
    }
    if (attribute == AccessibilityAttribute::focusedWindow) {
        if (const auto* window = focusedWindow(application)) return elementOf(*window);
    }
    return {};
}

AttributeValue SimulatedDesktop::valueInside(const SimulatedWindow& window, std::uint64_t depth,
                                             AccessibilityAttribute attribute) const {
    if (attribute == AccessibilityAttribute::role) return std::string(depth == kInnermost ? "AXButton" : "AXGroup");
    if (attribute != AccessibilityAttribute::parent) return {};
    const auto elementAt = [&](std::uint64_t otherDepth) {
        return AccessibilityElement{window.processIdentifier(), window.number() + otherDepth, nullptr};
    };
    switch (window.traits().inside) {
    case InnerElements::nested:
        return elementAt(depth - 1);
    case InnerElements::cyclic:
        return elementAt(depth == kInnermost ? 1 : kInnermost);
    case InnerElements::orphaned:
        return {};
    }
    return {};
}

std::vector<AttributeValue> SimulatedDesktop::readAttributes(const AccessibilityElement& element,
                                                             std::span<const AccessibilityAttribute> attributes) const {
    ++readCount_;
    std::vector<AttributeValue> values(attributes.size());
    const auto* owner = findApplication(element.processIdentifier);
    if (!owner || !isTrusted_ || isPermissionStale_ || !waitForResponse(*owner)) return values;
    const auto* window = windowOf(element);
    if (!window && element.hash != 0) return values;
    const auto depth = element.hash % kNumbersPerWindow;
    std::transform(attributes.begin(), attributes.end(), values.begin(), [&](AccessibilityAttribute attribute) {
        if (!window) return value(*owner, attribute);
        return depth == 0 ? value(*window, attribute) : valueInside(*window, depth, attribute);
    });
    return values;
}

void SimulatedDesktop::writeAttributes(const AccessibilityElement& element, std::span<const AttributeWrite> writes) {
    requireMainThread("writeAttributes");
    std::string line;
    for (const auto& write : writes) {
        line += (line.empty() ? "" : ", ") + describeWrite(write);
        if (!isPlausible(write)) violations_.push_back("impossible write: " + describeWrite(write));
    }
    auto* owner = findApplication(element.processIdentifier);
    auto* window = const_cast<SimulatedWindow*>(windowOf(element));
    addToJournal((window ? window->label() : owner ? owner->name : "no window") + ": " + line);
    if (!owner || !isInTime(*owner) || !isTrusted_ || isPermissionStale_) return;
    if (!window) {
        for (const auto& write : writes) {
            const auto* isOn = std::get_if<bool>(&write.value);
            if (isOn && write.attribute == AccessibilityAttribute::enhancedUserInterface) owner->isEnhanced = *isOn;
        }
        const AttributeWrite frontmost{AccessibilityAttribute::frontmost, true};
        const bool isRequested = std::any_of(writes.begin(), writes.end(), [&](const auto& write) {
            return write.attribute == frontmost.attribute && write.value == frontmost.value;
        });
        if (isRequested && element.hash == 0 && !owner->record.isHidden) frontmost_ = element.processIdentifier;
        return;
    }
    window->writeCount += 1;
    window->frameWriteCount += std::any_of(writes.begin(), writes.end(), concernsFrame) ? 1 : 0;
    if (window->traits().vanishesAtWrite == window->writeCount) return remove(*window);
    const std::vector<AttributeWrite> kept(writes.begin(), writes.end());
    if (window->traits().writeDelay <= Seconds(0)) return apply(window->number(), kept);
    queue_.after(window->traits().writeDelay,
                 lifetime_.guard([this, number = window->number(), kept] { apply(number, kept); }));
}

void SimulatedDesktop::apply(std::uint64_t windowNumber, const std::vector<AttributeWrite>& writes) {
    auto* window = findWindow(windowNumber);
    if (!window) return;
    const CGRect before = window->frame;
    for (const auto& write : writes) apply(*window, write);
    if (window->frame == before || window->springsBackTimes == 0) return;
    window->springsBackTimes -= 1;
    springBackLater(*window, before);
}

void SimulatedDesktop::springBackLater(const SimulatedWindow& window, const CGRect& frame) {
    queue_.after(kSpringDelay, lifetime_.guard([this, number = window.number(), frame] {
        auto* springing = findWindow(number);
        if (springing && isOnSomeDisplay(frame)) setFrameOf(*springing, frame);
    }));
}

void SimulatedDesktop::apply(SimulatedWindow& window, const AttributeWrite& write) {
    const CGRect display = displayFrameUnder(window.frame);
    const auto* point = std::get_if<CGPoint>(&write.value);
    const auto* size = std::get_if<CGSize>(&write.value);
    if (concernsFrame(write)) {
        if (placesWindows_) return;
        window.isMaximized = false;
    }
    // A value of the wrong type for the attribute is ignored.
    if (point && write.attribute == AccessibilityAttribute::position) {
        const CGPoint corner = firstDisplayOrigin();
        const CGPoint origin = {point->x + corner.x, point->y + corner.y};
        // If the window moves to another display, the frame of that display limits its position.
        setFrameOf(window, window.frameMovedTo(origin, displayFrameUnder({origin, {}})));
    } else if (size && write.attribute == AccessibilityAttribute::size) {
        if (queue_.uptime() < std::max(stalledUntil_, managerComesAt_.value_or(Seconds{0}))) return;
        setFrameOf(window, window.frameResizedTo(*size, display));
    } else if (const auto* boolean = std::get_if<bool>(&write.value)) {
        if (write.attribute == AccessibilityAttribute::minimized) setMinimizedByRequest(window, *boolean);
        if (write.attribute == AccessibilityAttribute::maximized) setMaximized(window.label(), *boolean);
        if (*boolean &&
            (write.attribute == AccessibilityAttribute::main || write.attribute == AccessibilityAttribute::focused)) {
            findApplication(window.processIdentifier())->focusedWindow = window.number();
        }
    }
}

void SimulatedDesktop::performAction(const AccessibilityElement& element, AccessibilityAction action) {
    requireMainThread("performAction");
    const auto* window = windowOf(element);
    addToJournal((window ? window->label() : "no window") + ": " + std::string(actionName(action)));
    if (window && isTrusted_ && !isPermissionStale_) raise(*window);
}

std::optional<AccessibilityElement> SimulatedDesktop::elementAtPosition(CGPoint point) const {
    requireMainThread("elementAtPosition");
    ++readCount_;
    if (!isTrusted_ || isPermissionStale_) return std::nullopt;
    for (const auto number : stacking_) {
        const auto& window = *findWindow(number);
        if (!isOnScreen(window) || !containsPoint(frameForWindowService(window), point)) continue;
        return AccessibilityElement{window.processIdentifier(), window.number() + kInnermost, nullptr};
    }
    return std::nullopt;
}

std::vector<OnScreenWindow> SimulatedDesktop::onScreenWindows() const {
    std::vector<OnScreenWindow> shown;
    for (const auto number : stacking_) {
        const auto& window = *findWindow(number);
        if (!isOnScreen(window) || window.isLost) continue;
        shown.push_back({window.processIdentifier(), window.traits().layer, frameForWindowService(window)});
    }
    return shown;
}

void SimulatedDesktop::flush() {
    requireMainThread("flush");
}

// ApplicationServicing

/// This desktop never reuses a process number, so the number alone identifies the process.
std::optional<std::string> SimulatedDesktop::processStartIdentity(pid_t processIdentifier) const {
    const auto program = forkingPrograms_.find(processIdentifier);
    const bool isProgram = program != forkingPrograms_.end() && !program->second;
    if (!isProgram && !findApplication(processIdentifier)) return std::nullopt;
    return "start of " + std::to_string(processIdentifier);
}

std::vector<RunningApplication> SimulatedDesktop::runningApplications() const {
    std::vector<RunningApplication> running;
    for (const auto& application : applications_) running.push_back(application.record);
    return running;
}

std::optional<RunningApplication> SimulatedDesktop::runningApplication(pid_t processIdentifier) const {
    const auto* application = findApplication(processIdentifier);
    if (!application) return std::nullopt;
    return application->record;
}

ApplicationIcon SimulatedDesktop::iconForFile(const std::string& path) const {
    return {.name = path.ends_with(".app") ? "icon of " + path : "", .image = nullptr};
}

ApplicationIcon SimulatedDesktop::systemSymbolIcon(const std::string& name) const {
    return {.name = "symbol " + name, .image = nullptr};
}

void SimulatedDesktop::hide(pid_t processIdentifier) {
    requireMainThread("hide");
    auto* application = findApplication(processIdentifier);
    if (!application) return;
    addToJournal(application->name + ": hide");
    setHidden(*application, true);
}

void SimulatedDesktop::unhide(pid_t processIdentifier) {
    requireMainThread("unhide");
    auto* application = findApplication(processIdentifier);
    if (!application) return;
    addToJournal(application->name + ": unhide");
    setHidden(*application, false);
}

void SimulatedDesktop::activate(pid_t processIdentifier) {
    requireMainThread("activate");
    const auto* application = findApplication(processIdentifier);
    if (!application) return;
    addToJournal(application->name + ": activate");
    if (application->record.isHidden) return;
    frontmost_ = processIdentifier;
    if (activationThief_ && activationThief_ != processIdentifier) frontmost_ = std::exchange(activationThief_, {});
    changed();
}

const SimulatedWindow* SimulatedDesktop::focusedWindow(const Application& application) const {
    const auto* chosen = findWindow(application.focusedWindow);
    if (chosen && isOnScreen(*chosen)) return chosen;
    for (const auto number : stacking_) {
        const auto& window = *findWindow(number);
        if (window.processIdentifier() == application.record.processIdentifier && isOnScreen(window)) return &window;
    }
    return nullptr;
}

// ScreenServicing

std::vector<Screen> SimulatedDesktop::screens() const {
    requireMainThread("screens");
    std::vector<Screen> screens;
    const CGPoint corner = firstDisplayOrigin();
    for (const auto& display : displays_) {
        const CGRect frame = displayFrame(display);
        // In screen space y grows upwards from the lower left corner of the first display.
        const CGRect onScreen = {{minX(frame) - corner.x, corner.y + displays_.front().size.height - maxY(frame)},
                                 frame.size};
        const auto& panels = display.panels;
        const CGRect visible = {{minX(onScreen) + panels.origin.x, minY(onScreen) + panels.size.height},
                                {frame.size.width - panels.origin.x - panels.size.width,
                                 frame.size.height - panels.origin.y - panels.size.height}};
        screens.push_back({display.canTellUUID ? display.uuid : std::nullopt, display.name, onScreen, visible});
    }
    return screens;
}

Subscription SimulatedDesktop::observeScreens(std::function<void()> changed) {
    return screenObservers_.add(std::move(changed));
}

Subscription SimulatedDesktop::observeSystemActivity(std::function<void(SystemActivityEvent)> observer) {
    requireMainThread("observeSystemActivity");
    return systemActivityObservers_.add(std::move(observer));
}

std::optional<CGPoint> SimulatedDesktop::pointerLocation() const {
    requireMainThread("pointerLocation");
    if (!pointerOnDesktop_ || displays_.empty()) return std::nullopt;
    return onScreen(*pointerOnDesktop_);
}

/// In screen space y grows upwards from the lower left corner of the first display.
CGPoint SimulatedDesktop::onScreen(CGPoint pointOnDesktop) const {
    const CGPoint corner = firstDisplayOrigin();
    const double height = displays_.empty() ? 0 : displays_.front().size.height;
    return {pointOnDesktop.x - corner.x, corner.y + height - pointOnDesktop.y};
}

// DesktopChangeServicing

std::optional<std::uint64_t> SimulatedDesktop::changeCount() const {
    if (!announcesAllChanges_) return std::nullopt;
    return changeCount_;
}

void SimulatedDesktop::notifyWhenChanged(std::uint64_t count, std::function<void()> callback) {
    requireMainThread("notifyWhenChanged");
    ++changeRequest_;
    changeCallback_ = std::move(callback);
    if (changeCount_ != count) announceChange();
}

} // namespace kova
