#include "windowing/AccessibilityWindowService.h"

#include "support/SameFrame.h"

namespace kova {

namespace {

constexpr std::string_view kWindowRole = "AXWindow";
// Limit for a chain of parents: some applications return a cycle.
constexpr int kDeepestNesting = 256;

} // namespace

WindowID windowID(pid_t processIdentifier, const AccessibilityElement& window) {
    return WindowID(std::to_string(processIdentifier) + ":" + std::to_string(window.hash));
}

AccessibilityWindowService::AccessibilityWindowService(AccessibilityServicing& accessibility,
                                                       ApplicationServicing& applications, ScreenServicing& screens,
                                                       std::shared_ptr<ChangeNotifications> changes, MainQueue& queue) :
    accessibility_(accessibility),
    applications_(applications), screens_(screens), changes_(std::move(changes)), queue_(queue),
    animations_(accessibility, queue) {}

AccessibilityPermissionState AccessibilityWindowService::permissionState() const {
    return accessibility_.isProcessTrusted() ? AccessibilityPermissionState::granted
                                             : AccessibilityPermissionState::denied;
}

AccessibilityPermissionState AccessibilityWindowService::requestPermission(bool prompt) {
    return accessibility_.requestTrust(prompt) ? AccessibilityPermissionState::granted
                                               : AccessibilityPermissionState::denied;
}

void AccessibilityWindowService::write(const AccessibilityElement& element, AccessibilityAttribute attribute,
                                       bool value) {
    const AttributeWrite write{attribute, value};
    accessibility_.writeAttributes(element, {&write, 1});
}

void AccessibilityWindowService::setFrameInteractive(const ManagedWindow& window, const CGRect& frame) {
    cancelPlacement(window.id);
    auto before = readFrame(window.element);
    if (!before) before = window.frame;
    const bool grows = before && frame.size.width >= before->size.width - kRoundingPoints &&
                       frame.size.height >= before->size.height - kRoundingPoints;
    std::array writes = {AttributeWrite{AccessibilityAttribute::position, frame.origin},
                         AttributeWrite{AccessibilityAttribute::size, frame.size}};
    if (!grows) std::swap(writes[0], writes[1]);
    animations_.write(window.element, writes);
}

void AccessibilityWindowService::move(const ManagedWindow& window, CGPoint origin) {
    const AttributeWrite write{AccessibilityAttribute::position, origin};
    animations_.write(window.element, {&write, 1});
}

bool AccessibilityWindowService::isRunning(pid_t processIdentifier) const {
    const auto application = applications_.runningApplication(processIdentifier);
    return application && !application->isTerminated;
}

void AccessibilityWindowService::requestFocus(const AccessibilityElement& window, pid_t processIdentifier) {
    write(accessibility_.applicationElement(processIdentifier), AccessibilityAttribute::frontmost, true);
    const std::array writes = {AttributeWrite{AccessibilityAttribute::main, true},
                               AttributeWrite{AccessibilityAttribute::focused, true}};
    accessibility_.writeAttributes(window, writes);
    accessibility_.performAction(window, AccessibilityAction::raise);
}

bool AccessibilityWindowService::restoreAndFocus(const ManagedWindow& window) {
    if (!accessibility_.isProcessTrusted()) return false;
    const std::array attributes = {AccessibilityAttribute::role};
    const auto role = accessibility_.readAttributes(window.element, attributes);
    if (role.empty() || role.front() != AttributeValue(std::string(kWindowRole))) return false;
    if (!isRunning(window.processIdentifier)) return false;

    applications_.unhide(window.processIdentifier);
    unminimize(window);
    requestFocus(window.element, window.processIdentifier);
    applications_.activate(window.processIdentifier);

    // Another application may activate itself now and take the focus, so the focus is requested a second time.
    queue_.post(lifetime_.guard([this, element = window.element, process = window.processIdentifier] {
        if (!isRunning(process)) return;
        requestFocus(element, process);
        flush();
    }));
    return true;
}

void AccessibilityWindowService::minimize(const ManagedWindow& window) {
    write(window.element, AccessibilityAttribute::minimized, true);
}

void AccessibilityWindowService::unminimize(const ManagedWindow& window) {
    write(window.element, AccessibilityAttribute::minimized, false);
}

void AccessibilityWindowService::maximize(const ManagedWindow& window) {
    cancelPlacement(window.id);
    write(window.element, AccessibilityAttribute::maximized, true);
}

void AccessibilityWindowService::raise(const ManagedWindow& window) {
    accessibility_.performAction(window.element, AccessibilityAction::raise);
}

void AccessibilityWindowService::presentDisplaced(const ManagedWindow& window,
                                                  DisplacedWindowPresentationAction action) {
    switch (action) {
    case DisplacedWindowPresentationAction::hideApplication:
        return applications_.hide(window.processIdentifier);
    case DisplacedWindowPresentationAction::minimizeWindow:
        return minimize(window);
    }
}

void AccessibilityWindowService::unhideApplication(pid_t processIdentifier) {
    applications_.unhide(processIdentifier);
}

bool AccessibilityWindowService::isApplicationHidden(pid_t processIdentifier) const {
    return applications_.isApplicationHidden(processIdentifier);
}

std::optional<std::pair<pid_t, AccessibilityElement>>
AccessibilityWindowService::windowElement(CGPoint pointOnScreen) const {
    if (!accessibility_.isProcessTrusted()) return std::nullopt;
    const auto screens = screens_.screens();
    if (screens.empty()) return std::nullopt;
    auto element = accessibility_.elementAtPosition(flipped(pointOnScreen, maxY(screens.front().frame)));

    constexpr std::array attributes = {AccessibilityAttribute::role, AccessibilityAttribute::parent};
    for (int depth = 0; element && depth < kDeepestNesting; ++depth) {
        const auto values = accessibility_.readAttributes(*element, attributes);
        if (values.size() != attributes.size()) return std::nullopt;
        if (values[0] == AttributeValue(std::string(kWindowRole)))
            return std::pair(element->processIdentifier, *element);
        const auto* parent = std::get_if<AccessibilityElement>(&values[1]);
        if (!parent) return std::nullopt;
        element = *parent;
    }
    return std::nullopt;
}

std::optional<WindowID> AccessibilityWindowService::focusedWindowID() const {
    const auto process = applications_.frontmostApplication();
    if (!process) return std::nullopt;
    const std::array attributes = {AccessibilityAttribute::focusedWindow};
    const auto values = accessibility_.readAttributes(accessibility_.applicationElement(*process), attributes);
    if (values.empty()) return std::nullopt;
    const auto* window = std::get_if<AccessibilityElement>(&values.front());
    if (!window) return std::nullopt;
    return windowID(*process, *window);
}

void AccessibilityWindowService::flush() {
    accessibility_.flush();
}

} // namespace kova
