// Opens the windows of kova-ui by name, one of each kind at a time, and destroys them after they were closed. While
// none is open there is neither a window nor a connection for windows. Main thread only.
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
    struct Surroundings {
        std::string socketPath;
        IconSource icon{};
        std::function<const OverlayContents*()> overlay{};
        std::function<Palette()> palette{};
        std::function<QPoint()> origin{};
        std::function<void()> styleWidgets{}; // before the first window is made
        /// The user has closed a window that the agent wants to be open.
        std::function<void(const std::string& what)> closedByUser{};
    };
    explicit WindowHost(Surroundings surroundings);
    ~WindowHost() override;

    /// Absent: windows are activated as the toolkit does.
    void setFocus(std::unique_ptr<WindowFocus> focus);
    /// False when there is no such window.
    bool show(const std::string& what, const nlohmann::json& parameters = nlohmann::json::object());
    /// Opens the windows that the agent has newly listed as open, and closes those that it lists no more. Windows
    /// opened by `show` stay.
    void follow(const std::map<std::string, ShownWindow>& wanted);
    /// Null when it is not open.
    HostedWindow* window(const std::string& what) const;
    /// The connection of the windows to the agent; null when none was open lately.
    const AgentSession* session() const { return agent_.get(); }
    bool isAnyOpen() const { return !windows_.empty(); }

  protected:
    /// Escape closes a window whose controls do not use the key themselves.
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    struct Closing {
        const HostedWindow* window = nullptr;
        bool hadKeyboard = false;
    };
    void closed(const HostedWindow* window, bool hadKeyboard);

    Surroundings surroundings_;
    std::unique_ptr<AgentSession> agent_;
    std::optional<WindowServices> services_;
    std::unique_ptr<WindowFocus> focus_;
    std::map<std::string, std::unique_ptr<HostedWindow>> windows_;
    const HostedWindow* newest_ = nullptr;      // shown last; compared only
    std::map<std::string, ShownWindow> wanted_; // by the agent
    Closing closing_;                           // from a window's request to close until it is hidden
    QTimer rest_;                               // after the last window was closed
};

} // namespace kova::ui
