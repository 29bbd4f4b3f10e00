// The functions with which tests act as users, applications and the machine.
#include "platform/simulated/SimulatedDesktop.h"

#include <algorithm>
#include <cctype>
#include <stdexcept>
#include <utility>

namespace kova {

namespace {

constexpr CGSize kUsualSize = {800, 600};
constexpr int kCascadeSteps = 10;
constexpr double kCascadeStep = 30;

std::string asciiLowercased(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    return text;
}

[[noreturn]] void throwUnknownName(std::string_view name) {
    throw std::out_of_range("there is no \"" + std::string(name) + "\"");
}

} // namespace

SimulatedDesktop::SimulatedDesktop() = default;

// Displays

const SimulatedDisplay& SimulatedDesktop::display(std::string_view name) const {
    for (const auto& candidate : displays_) {
        if (candidate.name == name) return candidate;
    }
    throwUnknownName(name);
}

SimulatedDisplay& SimulatedDesktop::display(std::string_view name) {
    return const_cast<SimulatedDisplay&>(std::as_const(*this).display(name));
}

CGRect SimulatedDesktop::frameOfDisplay(std::string_view name) const {
    return displayFrame(display(name));
}

CGRect SimulatedDesktop::displayFrame(const SimulatedDisplay& display) const {
    return {*display.origin, display.size};
}

CGRect SimulatedDesktop::displayFrameUnder(const CGRect& frame) const {
    for (const auto& display : displays_) {
        if (containsPoint(displayFrame(display), frame.origin)) return displayFrame(display);
    }
    return displays_.empty() ? CGRect{} : displayFrame(displays_.front());
}

CGPoint SimulatedDesktop::firstDisplayOrigin() const {
    return displays_.empty() ? CGPoint{} : *displays_.front().origin;
}

void SimulatedDesktop::displaysChanged() {
    if (!displays_.empty() && !strandsWindows_) {
        const CGRect first = displayFrame(displays_.front());
        for (auto& [number, window] : windows_) {
            if (!isOnSomeDisplay(window)) setFrameOf(window, {first.origin, window.frame.size});
            if (window.isFullScreen) setFrameOf(window, displayFrameUnder(window.frame));
        }
    }
    // The frames that a poll reads are relative to the first display's corner, which may have moved.
    changed();
    queue_.post(lifetime_.guard([this] { screenObservers_.notify(); }));
}

void SimulatedDesktop::addDisplay(SimulatedDisplay display) {
    if (!display.uuid) display.uuid = "UUID-OF-" + display.name;
    if (!display.origin) {
        double right = 0;
        for (const auto& other : displays_) right = std::max(right, maxX(displayFrame(other)));
        display.origin = CGPoint{right, 0};
    }
    displays_.push_back(std::move(display));
    displaysChanged();
}

void SimulatedDesktop::removeDisplay(std::string_view name) {
    const auto* removed = &display(name);
    displays_.erase(displays_.begin() + (removed - displays_.data()));
    displaysChanged();
}

void SimulatedDesktop::resizeDisplay(std::string_view name, CGSize size) {
    display(name).size = size;
    displaysChanged();
}

void SimulatedDesktop::renameDisplay(std::string_view name, std::string newName) {
    display(name).name = std::move(newName);
    displaysChanged();
}

void SimulatedDesktop::setPanels(std::string_view name, CGRect panels) {
    display(name).panels = panels;
    displaysChanged();
}

void SimulatedDesktop::makeFirstDisplay(std::string_view name) {
    const auto* first = &display(name);
    const auto position = displays_.begin() + (first - displays_.data());
    std::rotate(displays_.begin(), position, position + 1);
    displaysChanged();
}

// Applications

const SimulatedDesktop::Application& SimulatedDesktop::application(std::string_view name) const {
    for (const auto& candidate : applications_) {
        if (candidate.name == name) return candidate;
    }
    throwUnknownName(name);
}

SimulatedDesktop::Application& SimulatedDesktop::application(std::string_view name) {
    return const_cast<Application&>(std::as_const(*this).application(name));
}

const SimulatedDesktop::Application* SimulatedDesktop::findApplication(pid_t processIdentifier) const {
    for (const auto& candidate : applications_) {
        if (candidate.record.processIdentifier == processIdentifier) return &candidate;
    }
    return nullptr;
}

SimulatedDesktop::Application* SimulatedDesktop::findApplication(pid_t processIdentifier) {
    return const_cast<Application*>(std::as_const(*this).findApplication(processIdentifier));
}

pid_t SimulatedDesktop::launch(std::string name, ApplicationTraits traits) {
    auto bundleIdentifier = traits.bundleIdentifier.value_or(BundleID("sim." + asciiLowercased(name)));
    RunningApplication record{
        .processIdentifier = ++lastProcessIdentifier_,
        .localizedName = traits.hasName ? std::optional(name) : std::nullopt,
        .bundleIdentifier = traits.hasBundleIdentifier ? std::optional(std::move(bundleIdentifier)) : std::nullopt,
        .bundlePath = std::move(traits.bundlePath),
        .icon = std::move(traits.icon),
        .activationPolicy = traits.activationPolicy,
        .isPartOfDesktop = traits.isPartOfDesktop};
    if (name == "KOVA") record.processIdentifier = kOwnProcessIdentifier;
    applications_.push_back({.record = std::move(record),
                             .name = std::move(name),
                             .listsWindowsTwice = traits.listsWindowsTwice,
                             .lingersWhenHidden = traits.lingersWhenHidden,
                             .isVerified = traits.isVerified});
    changed();
    return applications_.back().record.processIdentifier;
}

void SimulatedDesktop::quit(std::string_view name) {
    end(application(name).record.processIdentifier);
}

void SimulatedDesktop::end(pid_t process) {
    for (const auto* window : livingWindows()) {
        if (window->processIdentifier() == process) remove(*window);
    }
    std::erase_if(applications_, [&](const auto& candidate) { return candidate.record.processIdentifier == process; });
    if (frontmost_ == process) focusNextApplication();
    changed();
}

void SimulatedDesktop::beginTerminating(std::string_view name) {
    application(name).record.isTerminated = true;
    changed();
}

void SimulatedDesktop::userHides(std::string_view name, bool hide) {
    setHidden(application(name), hide);
}

void SimulatedDesktop::setResponding(std::string_view name, bool responds) {
    const bool isSame = std::exchange(application(name).responds, responds) == responds;
    if (announcesWithoutRequest()) return changed();
    if (!isSame) announcements_.noteLoss();
}

void SimulatedDesktop::stealNextActivation(std::string_view name) {
    activationThief_ = processIdentifier(name);
}

pid_t SimulatedDesktop::processIdentifier(std::string_view name) const {
    return application(name).record.processIdentifier;
}

bool SimulatedDesktop::isHidden(std::string_view name) const {
    return application(name).record.isHidden;
}

void SimulatedDesktop::setHidden(Application& application, bool hidden) {
    if (hidingStyle_ == HidingStyle::iconifiesWindows) return iconifyWindows(application, hidden);
    if (application.record.isHidden == hidden) return;
    application.record.isHidden = hidden;
    if (hidden && frontmost_ == application.record.processIdentifier) focusNextApplication();
    changed();
}

void SimulatedDesktop::iconifyWindows(Application& application, bool iconify) {
    bool isAnyIconified = false;
    for (auto& [number, window] : windows_) {
        if (window.processIdentifier() != application.record.processIdentifier) continue;
        const bool isAffected = iconify ? !window.isMinimized : window.wasIconifiedByHiding;
        if (isAffected) setMinimized(window, iconify);
        window.wasIconifiedByHiding = iconify && (isAffected || window.wasIconifiedByHiding);
        isAnyIconified = isAnyIconified || window.wasIconifiedByHiding;
    }
    application.record.isHidden = isAnyIconified;
    if (iconify && frontmost_ == application.record.processIdentifier) focusNextApplication();
    changed();
}

// Windows

std::string SimulatedDesktop::freeLabel(const std::string& applicationName) const {
    const auto isTaken = [&](const std::string& label) {
        return std::any_of(windows_.begin(), windows_.end(),
                           [&](const auto& entry) { return entry.second.label() == label; });
    };
    std::string label = applicationName;
    for (int count = 2; isTaken(label); ++count) label = applicationName + " " + std::to_string(count);
    return label;
}

std::string SimulatedDesktop::open(std::string_view applicationName, WindowTraits traits) {
    auto& owner = application(applicationName);
    const std::uint64_t number = lastWindowNumber_ += kNumbersPerWindow;
    if (!traits.virtualDesktop) traits.virtualDesktop = virtualDesktop_;
    if (!traits.frame) {
        const double shift = 100 + kCascadeStep * (openedCount_ % kCascadeSteps);
        const CGPoint corner = firstDisplayOrigin();
        traits.frame = CGRect{{corner.x + shift, corner.y + shift}, kUsualSize};
    }
    const auto& window = windows_
                             .emplace(number, SimulatedWindow(number, owner.record.processIdentifier,
                                                              freeLabel(owner.name), std::move(traits)))
                             .first->second;
    stacking_.insert(stacking_.begin(), number);
    ++openedCount_;
    if (isOnScreen(window)) {
        owner.focusedWindow = number;
        frontmost_ = owner.record.processIdentifier;
    }
    changed(owner);
    return window.label();
}

const SimulatedWindow& SimulatedDesktop::window(std::string_view label) const {
    for (const auto& [number, candidate] : windows_) {
        if (candidate.label() == label) return candidate;
    }
    throwUnknownName(label);
}

SimulatedWindow& SimulatedDesktop::mutableWindow(std::string_view label) {
    return const_cast<SimulatedWindow&>(std::as_const(*this).window(label));
}

const SimulatedWindow* SimulatedDesktop::findWindow(std::uint64_t number) const {
    const auto found = windows_.find(number);
    return found == windows_.end() ? nullptr : &found->second;
}

SimulatedWindow* SimulatedDesktop::findWindow(std::uint64_t number) {
    return const_cast<SimulatedWindow*>(std::as_const(*this).findWindow(number));
}

std::vector<const SimulatedWindow*> SimulatedDesktop::livingWindows() const {
    std::vector<const SimulatedWindow*> living;
    for (const auto& [number, candidate] : windows_) living.push_back(&candidate);
    return living;
}

void SimulatedDesktop::remove(const SimulatedWindow& window) {
    changed(window);
    const auto number = window.number();
    if (window.isFullScreen && spaceStyle_ == SpaceStyle::listsShown) leaveOwnSpace(*findWindow(number));
    showNextTabOf(window);
    std::erase(stacking_, number);
    windows_.erase(number);
    ++closedCount_;
}

void SimulatedDesktop::close(std::string_view label) {
    remove(window(label));
}

bool SimulatedDesktop::isOnSomeDisplay(const CGRect& frame) const {
    return std::any_of(displays_.begin(), displays_.end(),
                       [&](const auto& display) { return intersectionArea(displayFrame(display), frame) > 0; });
}

void SimulatedDesktop::setFrameOf(SimulatedWindow& window, const CGRect& frame) {
    if (window.frame == frame) return;
    window.frame = frame;
    changed(window);
}

void SimulatedDesktop::userMoves(std::string_view label, const CGRect& frameOnDesktop) {
    auto& moved = mutableWindow(label);
    const CGRect display = displayFrameUnder(frameOnDesktop);
    setFrameOf(moved, {frameOnDesktop.origin, moved.frameResizedTo(frameOnDesktop.size, display).size});
}

const SimulatedWindow* SimulatedDesktop::parentOf(const SimulatedWindow& window) const {
    for (const auto& [number, candidate] : windows_) {
        const bool mayBeParent =
            candidate.processIdentifier() == window.processIdentifier() && number != window.number();
        if (mayBeParent && window.traits().dialogOf == candidate.label()) return &candidate;
    }
    return nullptr;
}

std::vector<SimulatedWindow*> SimulatedDesktop::familyOf(const SimulatedWindow& window) {
    const auto topmostParent = [this](const SimulatedWindow* of) {
        while (const auto* parent = parentOf(*of)) of = parent;
        return of;
    };
    std::vector<SimulatedWindow*> family;
    for (auto& [number, candidate] : windows_) {
        if (topmostParent(&candidate) == topmostParent(&window)) family.push_back(&candidate);
    }
    return family;
}

void SimulatedDesktop::setMinimized(SimulatedWindow& window, bool minimized) {
    for (SimulatedWindow* member : familyOf(window)) setMinimizedAlone(*member, minimized);
}

void SimulatedDesktop::setMinimizedAlone(SimulatedWindow& window, bool minimized) {
    if (window.isMinimized == minimized) return;
    window.isMinimized = minimized;
    // With this style an application with a restored window is not hidden.
    if (!minimized && hidingStyle_ == HidingStyle::iconifiesWindows) {
        window.wasIconifiedByHiding = false;
        findApplication(window.processIdentifier())->record.isHidden = false;
    }
    changed(window);
}

bool SimulatedDesktop::isMinimizedByItself(const SimulatedWindow& window) const {
    return window.isMinimized &&
           !(window.wasIconifiedByHiding && findApplication(window.processIdentifier())->record.isHidden);
}

/// With `HidingStyle::iconifiesWindows` all windows of a hidden application are minimized. A request for such a window
/// only changes whether the window is restored together with the application.
void SimulatedDesktop::setMinimizedByRequest(SimulatedWindow& window, bool minimized) {
    Application& owner = *findApplication(window.processIdentifier());
    if (hidingStyle_ == HidingStyle::hidesApplication || !owner.record.isHidden || !window.isMinimized) {
        return setMinimized(window, minimized);
    }
    window.wasIconifiedByHiding = !minimized;
    owner.record.isHidden = std::any_of(windows_.begin(), windows_.end(), [&](const auto& entry) {
        return entry.second.processIdentifier() == window.processIdentifier() && entry.second.wasIconifiedByHiding;
    });
    changed(window);
}

void SimulatedDesktop::userMinimizes(std::string_view label, bool minimize) {
    setMinimized(mutableWindow(label), minimize);
}

void SimulatedDesktop::replaceWindowManager(Seconds duration) {
    managerComesAt_ = queue_.uptime() + duration;
    queue_.after(duration + kSettlingTime, [this] {
        for (auto& [number, window] : windows_) setMinimizedAlone(window, false);
        for (auto& application : applications_) setHidden(application, false);
        ++windowManagerChanges_;
        changed();
    });
}

void SimulatedDesktop::userFocuses(std::string_view label) {
    auto& chosen = mutableWindow(label);
    auto& owner = *findApplication(chosen.processIdentifier());
    setHidden(owner, false);
    setMinimized(chosen, false);
    if (chosen.isBackgroundTab) showTab(label);
    if (!isOnShownSpace(chosen)) showVirtualDesktop(chosen.virtualDesktop);
    raise(chosen);
    owner.focusedWindow = chosen.number();
    frontmost_ = chosen.processIdentifier();
    changed(owner);
}

void SimulatedDesktop::setMinimumSize(std::string_view label, CGSize size) {
    mutableWindow(label).setMinimumSize(size);
    changed(window(label));
}

void SimulatedDesktop::setTitle(std::string_view label, std::string title) {
    mutableWindow(label).title = std::move(title);
    changed(window(label));
}

void SimulatedDesktop::loseWindow(std::string_view label, bool lose) {
    mutableWindow(label).isLost = lose;
    changed(*findApplication(window(label).processIdentifier()));
}

void SimulatedDesktop::renumber(std::string_view label) {
    renumber(mutableWindow(label));
    changed(*findApplication(window(label).processIdentifier()));
}

void SimulatedDesktop::renumber(SimulatedWindow& window) {
    const std::uint64_t former = window.number();
    const std::uint64_t number = lastWindowNumber_ += kNumbersPerWindow;
    auto entry = windows_.extract(former);
    entry.key() = number;
    entry.mapped().renumber(number);
    windows_.insert(std::move(entry));
    std::replace(stacking_.begin(), stacking_.end(), former, number);
    for (auto& application : applications_) {
        if (application.focusedWindow == former) application.focusedWindow = number;
    }
}

void SimulatedDesktop::raise(const SimulatedWindow& window) {
    std::erase(stacking_, window.number());
    stacking_.insert(stacking_.begin(), window.number());
    for (const auto& [number, other] : windows_) {
        if (parentOf(other) == &window) raise(other); // its dialogs stay above it
    }
}

void SimulatedDesktop::focusNextApplication() {
    frontmost_.reset();
    for (const auto number : stacking_) {
        const auto& next = *findWindow(number);
        if (!isOnScreen(next)) continue;
        frontmost_ = next.processIdentifier();
        return;
    }
}

} // namespace kova
