// The status item of the desktop's panel, with the agent's menu. The entries are asked for whenever the menu opens.
#pragma once

#include "ui/client/AgentLink.h"

#include <QMenu>
#include <QSystemTrayIcon>

#include <memory>

namespace kova::ui {

class Tray {
  public:
    explicit Tray(AgentLink& link);
    /// While the agent is there; on a desktop without a place for such items nothing is shown.
    void show(bool isAgentThere);
    /// The menu at that point of the screen, in pixels, or at the pointer.
    void openMenu(QPoint at);

  private:
    void refresh(std::function<void()> done);

    AgentLink& link_;
    QMenu menu_;
    QMenu popup_; // of its own, since a panel may keep the other one
    std::unique_ptr<QSystemTrayIcon> item_;
};

} // namespace kova::ui
