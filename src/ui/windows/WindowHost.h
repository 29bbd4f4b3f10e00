// Opens the windows of kova-ui by name, at most one of each kind, and destroys them after they were closed. Soon after
// the last window was closed, the connection that they share is closed too. Main thread only.
#pragma once

#include "ui/windows/HostedWindow.h"
#include "ui/windows/WindowFocus.h"

#include <QTimer>

#include <map>
#include <memory>
#include <optional>
#include <string>

namespace kova::ui {

class WindowHost : public QObject {
    Q_OBJECT

  public:
    struct Environment {
        std::string socketPath;
        IconSource icon{};
        std::function<const OverlayContents*()> overlay{};
        std::function<Palette()> palette{};
        std::function<Brightness()> brightness{};
        std::function<QPoint()> origin{};
        std::function<void()> styleWidgets{}; // called before the first window is created
        /// Called when the user has closed a window that is in the list of `follow`.
        std::function<void(const std::string& what)> closedByUser{};
    };
    explicit WindowHost(Environment environment);
    ~WindowHost() override;

    /// Sets the way in which windows are focused. The default is the toolkit's way.
    void setFocus(std::unique_ptr<WindowFocus> focus);
    /// Returns false if there is no kind of window with that name.
    bool show(const std::string& what, const nlohmann::json& parameters = nlohmann::json::object());
    /// Opens the windows that are new in the agent's list `wanted`, and closes windows that are no longer in it.
    /// Windows opened by `show` stay open.
    void follow(const std::map<std::string, ShownWindow>& wanted);
    /// Null if the window is not open.
    HostedWindow* window(const std::string& what) const;
    /// The connection that the windows share; null if no window has been open for a while.
    const AgentSession* session() const { return agent_.get(); }
    bool isAnyOpen() const { return !windows_.empty(); }

  protected:
    /// Closes a window at Escape unless one of its controls handles the key, and notices closed windows.
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    struct Closing {
        const HostedWindow* window = nullptr;
        bool hadFocus = false;
    };
    void closed(const HostedWindow* window, bool hadFocus);
    std::optional<std::string> focusedWindow() const;

    Environment environment_;
    std::unique_ptr<AgentSession> agent_;
    std::optional<WindowServices> services_;
    std::unique_ptr<WindowFocus> focus_;
    std::map<std::string, std::unique_ptr<HostedWindow>> windows_;
    /// For the name of an open window: the name of the window of kova-ui that had the focus when it was opened.
    std::map<std::string, std::string> openers_;
    /// The window that was shown last. It may be destroyed, so the pointer is only compared.
    const HostedWindow* lastShown_ = nullptr;
    std::map<std::string, ShownWindow> wanted_; // the list of the last call of `follow`
    Closing closing_;                           // set from a window's close event until the window is hidden
    QTimer idleTimer_;                          // runs after the last window was closed
};

} // namespace kova::ui
