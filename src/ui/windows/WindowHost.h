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
        std::function<void()> styleWidgets{}; // before the first window is made
    };
    explicit WindowHost(Surroundings surroundings);
    ~WindowHost() override;

    /// Absent: windows are activated as the toolkit does.
    void setFocus(std::unique_ptr<WindowFocus> focus);
    /// False when there is no such window.
    bool show(const std::string& what, const nlohmann::json& parameters = nlohmann::json::object());
    /// Null when it is not open.
    HostedWindow* window(const std::string& what) const;
    bool isAnyOpen() const { return !windows_.empty(); }

  protected:
    /// Escape closes a window whose controls do not use the key themselves.
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void closed(const HostedWindow* window, bool hadKeyboard);

    Surroundings surroundings_;
    std::unique_ptr<AgentSession> agent_;
    std::optional<WindowServices> services_;
    std::unique_ptr<WindowFocus> focus_;
    std::map<std::string, std::unique_ptr<HostedWindow>> windows_;
    QTimer rest_; // after the last window was closed
};

} // namespace kova::ui
