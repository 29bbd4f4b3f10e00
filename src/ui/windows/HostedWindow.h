// The interface of a window of kova-ui, and the services that each window gets. Main thread only.
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
    std::function<const OverlayContents*()> overlay{}; // null while there is no connection to the agent
    std::function<Palette()> palette{};
    std::function<Brightness()> brightness{}; // the desktop's preference
    std::function<QPoint()> origin{};         // the screen position, in pixels, of the agent's point (0, 0)
    /// Opens a window by the name that the notification `show` uses.
    std::function<void(const std::string& what, const nlohmann::json& parameters)> show{};
};

/// A top-level window. It is created when it is opened, and destroyed after it was closed.
class HostedWindow : public QWidget {
    Q_OBJECT

  public:
    using QWidget::QWidget;
    /// Called before the window is shown, and at each further request to show it. `parameters` are the parameters of
    /// the notification `show`.
    virtual void present(const nlohmann::json& parameters) { (void)parameters; }
};

struct WindowKind {
    const char* name; // the parameter `what` of the notification `show`
    std::unique_ptr<HostedWindow> (*make)(WindowServices& services);
};
using WindowRegistration = Registry<WindowKind>::Addition;

} // namespace kova::ui
