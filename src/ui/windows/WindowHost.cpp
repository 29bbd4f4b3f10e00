#include "ui/windows/WindowHost.h"

#include "support/posix/ReleasedMemory.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QPixmapCache>

#include <algorithm>
#include <chrono>
#include <utility>

namespace kova::ui {

namespace {

// The time from the closing of the last window until the connection is closed and unused memory is released to the
// system. A window that is opened earlier reuses the connection.
constexpr std::chrono::seconds kIdleDelay{3};

} // namespace

WindowHost::WindowHost(Environment environment) :
    environment_(std::move(environment)), focus_(std::make_unique<WindowFocus>()) {
    idleTimer_.setSingleShot(true);
    connect(&idleTimer_, &QTimer::timeout, this, [this] {
        services_.reset();
        agent_.reset();
        focus_->forget();
        QPixmapCache::clear();
        releaseUnusedMemory();
    });
}

WindowHost::~WindowHost() = default;

void WindowHost::setFocus(std::unique_ptr<WindowFocus> focus) {
    focus_ = std::move(focus);
}

HostedWindow* WindowHost::window(const std::string& what) const {
    const auto found = windows_.find(what);
    return found == windows_.end() ? nullptr : found->second.get();
}

/// The name of the window of kova-ui that has the focus.
std::optional<std::string> WindowHost::focusedWindow() const {
    for (const auto& [name, window] : windows_) {
        if (window && window->isActiveWindow()) return name;
    }
    return std::nullopt;
}

bool WindowHost::show(const std::string& what, const nlohmann::json& parameters) {
    const auto& kinds = Registry<WindowKind>::entries();
    const auto kind = std::ranges::find(kinds, what, [](const WindowKind& each) { return std::string(each.name); });
    if (kind == kinds.end()) return false;
    idleTimer_.stop();
    if (!agent_) {
        if (environment_.styleWidgets) environment_.styleWidgets();
        agent_ = std::make_unique<AgentSession>(environment_.socketPath);
        services_.emplace(WindowServices{
            .agent = *agent_,
            .icon = environment_.icon,
            .overlay = environment_.overlay,
            .palette = environment_.palette,
            .brightness = environment_.brightness,
            .origin = environment_.origin,
            .show = [this](const std::string& other, const nlohmann::json& with) { show(other, with); }});
    }
    std::unique_ptr<HostedWindow>& window = windows_[what];
    if (!window) {
        window = kind->make(*services_);
        window->installEventFilter(this);
    }
    window->present(parameters);
    if (!window->isVisible()) {
        if (const auto opener = focusedWindow()) openers_[what] = *opener;
        focus_->prepare(*window);
    }
    window->show();
    lastShown_ = window.get();
    focus_->giveFocusTo(*window);
    return true;
}

void WindowHost::follow(const std::map<std::string, ShownWindow>& wanted) {
    const auto before = std::exchange(wanted_, wanted);
    for (const auto& [name, window] : wanted) {
        const auto known = before.find(name);
        if (known != before.end() && known->second.request == window.request) continue;
        show(name, window.pane ? nlohmann::json{{"pane", *window.pane}} : nlohmann::json::object());
    }
    for (const auto& [name, window] : before) {
        if (HostedWindow* open = wanted.contains(name) ? nullptr : this->window(name)) open->close();
    }
}

bool WindowHost::eventFilter(QObject* watched, QEvent* event) {
    auto* window = qobject_cast<HostedWindow*>(watched);
    if (!window) return false;
    if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
        window->close();
        return true;
    }
    // The focus is read before the window is hidden, since some systems take the focus away before the toolkit reports
    // that the window is hidden.
    if (event->type() == QEvent::Close) closing_ = {window, window->isActiveWindow()};
    // A window may ignore its close event, so only a hidden window has been closed.
    if (event->type() == QEvent::Hide && !event->spontaneous()) {
        const Closing closing = std::exchange(closing_, {});
        const bool hadFocus = window->isActiveWindow() || (closing.window == window && closing.hadFocus);
        QMetaObject::invokeMethod(
            this, [this, window, hadFocus] { closed(window, hadFocus); }, Qt::QueuedConnection);
    }
    return false;
}

void WindowHost::closed(const HostedWindow* window, bool hadFocus) {
    const auto found = std::ranges::find_if(windows_, [&](const auto& entry) { return entry.second.get() == window; });
    if (found == windows_.end() || found->second->isVisible()) return;
    const std::string what = found->first;
    const auto shown = [this](const auto& entry) { return entry.second.get() == lastShown_; };
    const bool isReplaced = lastShown_ != window && std::ranges::any_of(windows_, shown);
    windows_.erase(found);
    const auto opener = openers_.extract(what);
    if (wanted_.contains(what) && environment_.closedByUser) environment_.closedByUser(what);
    if (hadFocus && !isReplaced) {
        HostedWindow* before = opener ? this->window(opener.mapped()) : nullptr;
        if (before && before->isVisible()) {
            focus_->giveFocusTo(*before);
        } else {
            focus_->restoreFocus();
        }
    }
    if (windows_.empty()) idleTimer_.start(kIdleDelay);
}

} // namespace kova::ui
