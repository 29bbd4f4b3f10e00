// Carries out what a person does with the overlay by the agent's methods, and shows the menus for it. Main thread only.
#pragma once

#include "ui/client/AgentLink.h"
#include "ui/overlay/OverlayActions.h"
#include "ui/style/Style.h"

#include <QMenu>

namespace kova::ui {

class AgentActions final : public OverlayActions {
  public:
    explicit AgentActions(AgentLink& link) : link_(link) {}
    void setIcons(IconSource icon) { icon_ = std::move(icon); }

    void bringForward(const std::string& window) override;
    void stepStack(const std::string& tile, StackStep step) override;
    void place(const std::string& window, const std::string& tile) override;
    void undo() override;
    void chooseApplication(const std::string& tile, QPoint at) override;
    void showEntryMenu(const std::string& tile, const std::string& window, QPoint at) override;
    void showStackMenu(const std::string& tile, QPoint at) override;

  private:
    void listApplications(const std::string& tile, const nlohmann::json& result, QPoint at);
    void addMoves(const TileContents& tile, const std::string& window);
    void addRules(const TileContents& tile, const ApplicationName& application);
    void forceQuit(const std::string& window, const std::string& applicationName);

    AgentLink& link_;
    IconSource icon_;
    QMenu menu_;
};

} // namespace kova::ui
