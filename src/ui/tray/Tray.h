// The status item of the desktop's panel, with the agent's menu. The entries are requested whenever the menu opens.
// Menu and item are not created before the panel can show the item.
#pragma once

#include "ui/client/AgentLink.h"

#include <QMenu>
#include <QObject>
#include <QPoint>
#include <QSystemTrayIcon>

#include <functional>
#include <memory>
#include <vector>

namespace kova::ui {

class Tray : public QObject {
  public:
    /// `styleMenus` is called before a menu is created or opened, `choose` with the id of the chosen entry.
    Tray(AgentLink& link, std::function<void()> styleMenus, std::function<void(const std::string& id)> choose);

    /// The item is shown while the agent is connected and the panel can show status items.
    void setAgentConnected(bool isConnected);
    /// `hasWindow`: whether a system tray window exists on the X server.
    void setHasTrayWindow(bool hasWindow);
    /// Opens the menu at that point of the screen, in pixels.
    void openMenu(QPoint at);
    /// Null until the panel can show the item.
    QSystemTrayIcon* item() { return item_.get(); }

  private:
    void watchBus();
    void update();
    void refresh(std::function<void()> done);

    AgentLink& link_;
    std::function<void()> styleMenus_;
    std::function<void(const std::string&)> choose_;
    std::unique_ptr<QMenu> menu_;  // the item's menu, which a host shows
    std::vector<MenuItem> items_;  // the entries of `menu_`
    std::unique_ptr<QMenu> popup_; // for `openMenu`; separate, since a panel may keep `menu_` open
    std::unique_ptr<QSystemTrayIcon> item_;
    bool isAgentConnected_ = false, hasTrayWindow_ = false;
    bool hasHost_ = false; // a panel shows status items that it finds on the message bus
};

} // namespace kova::ui
