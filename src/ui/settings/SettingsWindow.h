// The settings: a list of panes, and the one that is chosen. A pane is made when it is first shown.
#pragma once

#include "ui/windows/Pane.h"

#include <QListWidget>
#include <QStackedWidget>

#include <string_view>
#include <vector>

namespace kova::ui {

class SettingsWindow final : public HostedWindow {
    Q_OBJECT

  public:
    explicit SettingsWindow(WindowServices& services);
    /// `pane` names the pane to show; without one it is the one that was shown last.
    void present(const nlohmann::json& parameters) override;

  private:
    void addPanes();
    void showPane(int row);
    void selectPane(std::string_view name);

    WindowServices& services_;
    std::vector<PaneKind> kinds_; // in the order of the list
    QListWidget* list_;
    QStackedWidget* pages_; // a page for each pane, empty until it is shown
};

} // namespace kova::ui
