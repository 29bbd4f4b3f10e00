// Turns the user's actions on the overlay into requests to the agent, and shows the overlay's menus. Main thread only.
#pragma once

#include "ui/client/AgentLink.h"
#include "ui/overlay/OverlayActions.h"
#include "ui/style/Style.h"

#include <QCoreApplication>
#include <QMenu>
#include <QString>

#include <functional>
#include <memory>

namespace kova::ui {

class AgentActions final : public OverlayActions {
    Q_DECLARE_TR_FUNCTIONS(kova::ui::AgentActions)

  public:
    /// `styleMenus` is called before a menu is created or opened. `openWindow` opens the window of kova-ui with the
    /// name `what`.
    AgentActions(AgentLink& link, IconSource icon, std::function<void()> styleMenus,
                 std::function<void(const std::string& what, const nlohmann::json& parameters)> openWindow) :
        link_(link),
        icon_(std::move(icon)), styleMenus_(std::move(styleMenus)), openWindow_(std::move(openWindow)) {}

    void bringForward(const std::string& window) override;
    void stepStack(const std::string& tile, StackStep step) override;
    void place(const std::string& window, const std::string& tile) override;
    void undo(const std::string& method) override;
    void chooseApplication(const std::string& tile) override;
    void showEntryMenu(const std::string& tile, const std::string& window, QPoint at) override;
    void showStackMenu(const std::string& tile, QPoint at) override;

  private:
    void addMoveMenu(const TileContents& tile, const std::string& window);
    void addRuleMenu(const TileContents& tile, const ApplicationName& application);
    void offerToEnableRules();
    /// Opens an alert that asks for confirmation; the alert sends the request.
    void confirmForceQuit(const std::string& window, const ApplicationName& application);

    /// Removes the entries of the menu that all calls share, and returns the menu. The first call creates the menu; the
    /// constructor does not, because a menu loads the toolkit's styles.
    QMenu& emptyMenu();

    AgentLink& link_;
    IconSource icon_;
    std::function<void()> styleMenus_;
    std::function<void(const std::string& what, const nlohmann::json& parameters)> openWindow_;
    std::unique_ptr<QMenu> menu_;
};

} // namespace kova::ui
