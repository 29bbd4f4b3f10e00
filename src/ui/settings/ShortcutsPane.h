// The keyboard shortcuts: the keys of each action, which of them have no effect and why, and changing them. The agent
// records new keys, since it gets key presses whichever window has the focus, and knows which keys are in use.
#pragma once

#include "ui/settings/SettingControls.h"
#include "ui/windows/Pane.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>

#include <memory>
#include <string>

namespace kova::ui {

class ShortcutsPane final : public Pane {
    Q_OBJECT

  public:
    explicit ShortcutsPane(WindowServices& services);

  private:
    QWidget* buttons();
    void showState(const nlohmann::json& state);
    void showShortcut(QTreeWidgetItem& item, const nlohmann::json& shortcut);
    QString remarkOn(const nlohmann::json& shortcut) const;
    QTreeWidgetItem* itemOf(const std::string& action) const;
    /// Empty when none is chosen.
    std::string chosenAction() const;
    void filter(const QString& text);
    void record();
    void cancelRecording();
    void endRecording();
    void heard(const std::string& method, const nlohmann::json& parameters);
    void updateButtons();

    AgentSession& agent_;
    QLineEdit* search_;
    QTreeWidget* table_;
    QLabel* prompt_;
    FieldError* error_;
    QPushButton* record_ = nullptr;
    QPushButton* clear_ = nullptr;
    QPushButton* restore_ = nullptr;
    /// While a shortcut is recorded: the agent ends a recording, and releases the keyboard, when the connection of the
    /// client that asked for it ends.
    std::unique_ptr<AgentSession> recorder_;
    std::string recorded_;       // the action
    QString shownInsteadOfKeys_; // of that action, once the agent listens
    bool canHearKeys_ = true;
};

} // namespace kova::ui
