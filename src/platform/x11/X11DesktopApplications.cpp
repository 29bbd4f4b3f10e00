// Lists, hides and shows running applications; reports displays.
#include "platform/x11/LocalProcesses.h"
#include "platform/x11/X11Parts.h"

#include <unistd.h>

#include <algorithm>

namespace kova {

using namespace x11;

namespace {

/// A little longer than the time in which a window must leave the screen.
constexpr Seconds kHidingTimeout{1.1};

RunningApplication describe(const X11Application& application, bool isHidden) {
    RunningApplication running;
    running.processIdentifier = application.processIdentifier;
    const ApplicationIdentity& identity = application.identity;
    if (!identity.localizedName.empty()) running.localizedName = identity.localizedName;
    if (!identity.bundleIdentifier.empty()) running.bundleIdentifier = identity.bundleIdentifier;
    running.bundlePath = identity.bundlePath;
    running.icon.name = identity.iconName;
    running.activationPolicy =
        application.isRegular ? ApplicationActivationPolicy::regular : ApplicationActivationPolicy::accessory;
    running.isHidden = isHidden;
    running.isPartOfDesktop = application.isPartOfDesktop;
    return running;
}

} // namespace

pid_t X11Desktop::ownProcessIdentifier() const {
    return getpid();
}

std::vector<RunningApplication> X11Desktop::runningApplications() const {
    // The first call of every poll.
    if (!parts_->isMainThread()) parts_->bringUpToDate();
    const MutexLock lock(parts_->mutex);
    std::vector<RunningApplication> running;
    parts_->applications.forEach([&](const X11Application& application) {
        parts_->mutex.assertHeld();
        running.push_back(describe(application, parts_->hider.isApplicationHidden(application.processIdentifier)));
    });
    return running;
}

std::optional<RunningApplication> X11Desktop::runningApplication(pid_t processIdentifier) const {
    const auto found = parts_->applications.find(processIdentifier);
    if (!found) return std::nullopt;
    const MutexLock lock(parts_->mutex);
    return describe(*found, parts_->hider.isApplicationHidden(processIdentifier));
}

bool X11Desktop::isApplicationHidden(pid_t processIdentifier) const {
    if (!parts_->applications.contains(processIdentifier)) return false;
    const MutexLock lock(parts_->mutex);
    return parts_->hider.isApplicationHidden(processIdentifier);
}

std::optional<pid_t> X11Desktop::frontmostApplication() const {
    const MutexLock lock(parts_->mutex);
    parts_->catchUp();
    const ClientWindow* active = parts_->model.client(parts_->model.activeWindow);
    if (!active) return std::nullopt;
    return active->processIdentifier;
}

ApplicationIcon X11Desktop::iconForFile(const std::string&) const {
    return {};
}

ApplicationIcon X11Desktop::systemSymbolIcon(const std::string& name) const {
    // The name in icon themes for programs without an icon.
    return name == "macwindow" ? ApplicationIcon{"application-x-executable", nullptr} : ApplicationIcon{};
}

std::optional<std::string> X11Desktop::processStartIdentity(pid_t processIdentifier) const {
    return x11::startOf(processIdentifier);
}

void X11Desktop::resolveLeftoverHiddenWindows(LeftoverWindows leftoverWindows) {
    if (leftoverWindows == LeftoverWindows::stayHidden) return;
    {
        const MutexLock lock(parts_->mutex);
        parts_->hider.showAll();
    }
    parts_->send();
}

void X11Desktop::hide(pid_t processIdentifier) {
    const MutexLock lock(parts_->mutex);
    if (!parts_->hider.hide(processIdentifier)) return;
    parts_->changes.note();
    parts_->sendSoon();
    // A window manager that does not iconify sends no event: a poll must find that the application is not hidden.
    parts_->queue.after(kHidingTimeout, parts_->lifetime.guard([this] {
        parts_->handleEffects({});
        parts_->changes.note();
        parts_->changes.callBackIfDue();
    }));
}

void X11Desktop::unhide(pid_t processIdentifier) {
    const MutexLock lock(parts_->mutex);
    if (!parts_->hider.unhide(processIdentifier)) return;
    parts_->changes.note();
    parts_->sendSoon();
}

void X11Desktop::activate(pid_t processIdentifier) {
    const MutexLock lock(parts_->mutex);
    parts_->requests.activateApplication(processIdentifier, parts_->mainWindowOf(processIdentifier));
    parts_->sendSoon();
}

void X11Desktop::restoreHidden() {
    {
        const MutexLock lock(parts_->mutex);
        parts_->hider.showAll();
    }
    parts_->send();
}

// Displays

std::vector<Screen> X11Desktop::screens() const {
    const MutexLock lock(parts_->mutex);
    return parts_->displays.arrangement().screens;
}

Subscription X11Desktop::observeSystemActivity(std::function<void(SystemActivityEvent)> observer) {
    const MutexLock lock(parts_->mutex);
    auto subscription = parts_->screenPower.observe(std::move(observer));
    parts_->queryScreenPower();
    parts_->sendSoon();
    return subscription;
}

Subscription X11Desktop::observeScreens(std::function<void()> changed) {
    return parts_->screenObservers.add(std::move(changed));
}

std::optional<CGPoint> X11Desktop::pointerLocation() const {
    const MutexLock lock(parts_->mutex);
    parts_->queryPointer();
    parts_->sendSoon();
    if (!parts_->model.pointer) return std::nullopt;
    return parts_->displays.space().pointOnScreen(parts_->model.pointer->first, parts_->model.pointer->second);
}

} // namespace kova
