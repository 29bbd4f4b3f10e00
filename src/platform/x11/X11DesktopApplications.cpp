// Applications, hidden and brought back; displays; and what the desktop tells of its health.
#include "platform/x11/LocalProcesses.h"
#include "platform/x11/X11Parts.h"

#include <unistd.h>

#include <algorithm>

namespace kova {

using namespace x11;

namespace {

/// A little longer than a hidden window is given to leave the screen.
constexpr Seconds kPatienceWithHiding{1.1};

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
    // The first question of every poll.
    if (!parts_->isMainThread()) parts_->bringUpToDate();
    const std::lock_guard lock(parts_->mutex);
    std::vector<RunningApplication> running;
    running.reserve(parts_->applications.size());
    for (const X11Application& application : parts_->applications) {
        running.push_back(describe(application, parts_->isApplicationHidden(application.processIdentifier)));
    }
    return running;
}

std::optional<RunningApplication> X11Desktop::runningApplication(pid_t processIdentifier) const {
    const std::lock_guard lock(parts_->mutex);
    const auto found = std::ranges::find(parts_->applications, processIdentifier, &X11Application::processIdentifier);
    if (found == parts_->applications.end()) return std::nullopt;
    return describe(*found, parts_->isApplicationHidden(processIdentifier));
}

std::optional<pid_t> X11Desktop::frontmostApplication() const {
    const std::lock_guard lock(parts_->mutex);
    parts_->catchUp();
    const ClientWindow* active = parts_->model.client(parts_->model.activeWindow);
    if (!active) return std::nullopt;
    return active->processIdentifier;
}

ApplicationIcon X11Desktop::iconForFile(const std::string&) const {
    return {};
}

ApplicationIcon X11Desktop::systemSymbolIcon(const std::string& name) const {
    // The icon theme's word for a program without a picture of its own.
    return name == "macwindow" ? ApplicationIcon{"application-x-executable", nullptr} : ApplicationIcon{};
}

std::optional<std::string> X11Desktop::processStartIdentity(pid_t processIdentifier) const {
    return x11::startOf(processIdentifier);
}

void X11Desktop::settleHiddenWindows(LeftWindows leftWindows) {
    if (leftWindows == LeftWindows::stayHidden) return;
    {
        const std::lock_guard lock(parts_->mutex);
        parts_->bringAllBack();
    }
    parts_->send();
}

void X11Desktop::hide(pid_t processIdentifier) {
    const std::lock_guard lock(parts_->mutex);
    std::vector<HiddenWindow> leaving;
    for (const xcb_window_t window : parts_->model.windowsOf(processIdentifier)) {
        const ClientWindow* client = parts_->model.client(window);
        if (client && client->isManaged() && parts_->model.isOnCurrentDesktop(*client) &&
            (!parts_->model.isMinimized(*client) || parts_->mayStillReturn(*client)))
            leaving.push_back(parts_->recordOf(*client, TakenAway::byHiding));
    }
    parts_->hidden.add(leaving);
    // On record before they go: the agent may end at any moment. Without a window manager they go later.
    if (parts_->model.windowManager().isPresent) parts_->hidden.writeFile();
    for (const HiddenWindow& hidden : leaving) {
        if (ClientWindow* client = parts_->model.client(hidden.window)) parts_->minimize(*client);
    }
    if (leaving.empty()) return;
    parts_->noteChange();
    parts_->sendSoon();
    // A window manager that does not iconify says nothing: then the application is not hidden, and a poll must see it.
    parts_->queue.after(kPatienceWithHiding, parts_->lifetime.guard([this] {
        parts_->settle({});
        parts_->noteChange();
        parts_->callWhenChanged();
    }));
}

void X11Desktop::unhide(pid_t processIdentifier) {
    const std::lock_guard lock(parts_->mutex);
    const auto coming = parts_->hidden.takeHidden(processIdentifier, parts_->queue.uptime());
    for (const xcb_window_t window : coming) parts_->bringBack(window);
    if (coming.empty()) return;
    parts_->noteChange();
    parts_->sendSoon();
}

void X11Desktop::activate(pid_t processIdentifier) {
    const std::lock_guard lock(parts_->mutex);
    parts_->outbox.activateApplication(processIdentifier, parts_->mainWindowOf(processIdentifier));
    parts_->sendSoon();
}

void X11Desktop::restoreHidden() {
    {
        const std::lock_guard lock(parts_->mutex);
        parts_->bringAllBack();
    }
    parts_->send();
}

void X11Desktop::Parts::bringAllBack() {
    for (const xcb_window_t window : hidden.takeAll(queue.uptime())) bringBack(window);
}

void X11Desktop::Parts::bringBack(xcb_window_t window) {
    // A window that nobody lists was unmapped under another window manager, or by an agent before this one.
    ClientWindow* client = model.client(window);
    client ? restore(*client) : mapAgain(window);
}

// Displays

bool X11Desktop::Parts::arrangeDisplays() {
    std::vector<Panel> panels;
    for (const xcb_window_t window : model.clientOrder()) {
        const ClientWindow* client = model.client(window);
        if (!client || (!client->strut && !client->partialStrut)) continue;
        const auto& strut = client->partialStrut ? client->partialStrut : client->strut;
        if (model.isShown(*client)) panels.push_back({*strut, model.outerFrame(*client)});
    }
    std::optional<PixelRect> workarea;
    if (model.currentDesktop < model.workareas.size()) workarea = model.workareas[model.currentDesktop];
    if (monitors.empty()) monitors = displays.monitors();
    const PixelRect root{0, 0, model.rootSize.first, model.rootSize.second};
    const auto told = displays.isTold() ? MonitorsTold::all : MonitorsTold::none;
    auto next = describeDisplays(monitors, told, panels, workarea, root, scale.scale());
    if (next == arrangement) return false;
    arrangement = std::move(next);
    model.displayRects.clear();
    for (const Monitor& monitor : monitors) model.displayRects.push_back(monitor.rect);
    if (model.displayRects.empty() && told == MonitorsTold::none) model.displayRects.push_back(root);
    return true;
}

std::vector<Screen> X11Desktop::screens() const {
    const std::lock_guard lock(parts_->mutex);
    return parts_->arrangement.screens;
}

Subscription X11Desktop::observeScreens(std::function<void()> changed) {
    return parts_->screenObservers.add(std::move(changed));
}

std::optional<CGPoint> X11Desktop::pointerLocation() const {
    const std::lock_guard lock(parts_->mutex);
    parts_->askPointer();
    parts_->sendSoon();
    if (!parts_->model.pointer) return std::nullopt;
    return parts_->arrangement.space.pointOnScreen(parts_->model.pointer->first, parts_->model.pointer->second);
}

} // namespace kova
