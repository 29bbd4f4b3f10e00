// The user interface as a whole: owns the connection to the agent, the overlay, the status item (`Tray`) and the
// windows, and passes the agent's contents on to them. Main thread only.
#pragma once

#include "ui/AgentActions.h"
#include "ui/client/AgentLink.h"
#include "ui/overlay/Overlay.h"
#include "ui/style/ApplicationIcons.h"
#include "ui/style/DesktopPreferences.h"
#include "ui/tray/Tray.h"
#include "ui/windows/WindowHost.h"

#include <memory>
#include <string>

namespace kova::ui {

class Program : public QObject {
  public:
    explicit Program(const std::string& socketPath);
    void start();

  private:
    void contentsChanged();
    void applyDesktopStyle();
    Palette palette() const;
    void styleWidgets();

    AgentLink link_;
    ApplicationIcons icons_;
    DesktopPreferences preferences_;
    AgentActions actions_;
    std::unique_ptr<OverlayPlatform> platform_;
    std::unique_ptr<Overlay> overlay_;
    Tray tray_;
    WindowHost windows_;
    bool isAgentConnected_ = false;
    bool isRefreshScheduled_ = false;
    std::string lastProblem_;
    Appearance styledAppearance_; // the appearance for which the widgets were last styled
#if defined(Q_OS_MACOS)
    std::shared_ptr<const void> macAppearance_; // follows the system's settings
#endif
};

} // namespace kova::ui
