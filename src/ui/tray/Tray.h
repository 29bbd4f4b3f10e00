// The status item of the desktop's panel, with the agent's menu. The entries are requested whenever the menu opens. No
// menu and no item of the toolkit is created before the panel has a place for it.
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
    /// `styleMenus` is called before a menu is made or opens, `choose` with the id of an entry that is chosen.
    Tray(AgentLink& link, std::function<void()> styleMenus, std::function<void(const std::string& id)> choose);

    /// The item is shown while the agent is connected, as soon as the desktop has a place for status items.
    void setAgentThere(bool isThere);
    /// A window that takes status items has appeared on the X server, or has disappeared.
    void setHasTrayWindow(bool hasWindow);
    /// The menu at that point of the screen, in pixels.
    void openMenu(QPoint at);
    /// Null where there is no place for it yet.
    QSystemTrayIcon* item() { return item_.get(); }

  private:
    void watchBus();
    void update();
    void refresh(std::function<void()> done);

    AgentLink& link_;
    std::function<void()> styleMenus_;
    std::function<void(const std::string&)> choose_;
    std::unique_ptr<QMenu> menu_;  // of the item, where a host of the panel shows it
    std::vector<MenuItem> items_;  // in it
    std::unique_ptr<QMenu> popup_; // of its own, since a panel may keep the other one
    std::unique_ptr<QSystemTrayIcon> item_;
    bool isAgentThere_ = false, hasTrayWindow_ = false, hasHost_ = false;
};

} // namespace kova::ui
