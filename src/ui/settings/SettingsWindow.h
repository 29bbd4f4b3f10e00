// The settings: a list of panes, and beside it the chosen pane. A pane is created when it is first shown.
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
    /// The parameter `pane` names the pane to show; if absent, the pane that was shown last is shown.
    void present(const nlohmann::json& parameters) override;

  private:
    void addPanes();
    void showPane(int row);
    void selectPane(std::string_view name);

    WindowServices& services_;
    std::vector<PaneKind> kinds_; // in the order of the list
    QListWidget* list_;
    QStackedWidget* pages_; // one page per pane, empty until the pane is first shown
};

} // namespace kova::ui
