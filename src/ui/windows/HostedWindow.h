// The interface of a window of kova-ui, and the services that it gets. Main thread only.
#pragma once

#include "ui/client/AgentSession.h"
#include "ui/style/Style.h"
#include "ui/windows/Registry.h"

#include <QPoint>
#include <QWidget>

#include <functional>
#include <memory>

namespace kova::ui {

/// All members outlive every window.
struct WindowServices {
    AgentSession& agent;
    IconSource icon{};
    std::function<const OverlayContents*()> overlay{}; // null while the agent is away
    std::function<Palette()> palette{};
    std::function<QPoint()> origin{}; // of the agent's points, in pixels on the screen
    /// Opens a window by its name, as the notification `show` does.
    std::function<void(const std::string& what, const nlohmann::json& parameters)> show{};
};

/// A window without parent. It is made when it is opened and destroyed after it was closed.
class HostedWindow : public QWidget {
    Q_OBJECT

  public:
    using QWidget::QWidget;
    /// Before the window is shown, and again at a request while it is open. `parameters` are those of the notification
    /// `show`.
    virtual void present(const nlohmann::json& parameters) { (void)parameters; }
};

struct WindowKind {
    const char* name; // the `what` of the notification
    std::unique_ptr<HostedWindow> (*make)(WindowServices& services);
};
using WindowRegistration = Registry<WindowKind>::Addition;

} // namespace kova::ui
