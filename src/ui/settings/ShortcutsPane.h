// The pane of keyboard shortcuts: shows and changes the keys of each action, and shows why keys have no effect. The
// agent records new keys: it receives pressed keys whichever window has the focus, and knows which keys are in use.
#pragma once

#include "ui/settings/SettingControls.h"
#include "ui/windows/EmptyListText.h"
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
    /// The id of the chosen action; empty if none is chosen.
    std::string chosenAction() const;
    void filter(const QString& text);
    void record();
    void cancelRecording();
    void endRecording();
    void notified(const std::string& method, const nlohmann::json& parameters);
    QString whyNoRecording() const;
    void updateButtons();

    AgentSession& agent_;
    QLineEdit* search_;
    QTreeWidget* table_;
    EmptyListText* noShortcut_ = nullptr;
    QLabel* prompt_;
    FieldError* error_;
    QPushButton* record_ = nullptr;
    QPushButton* clear_ = nullptr;
    QPushButton* restore_ = nullptr;
    /// The connection for a recording; null if there is none. When it is closed, the agent ends the recording.
    std::unique_ptr<AgentSession> recorder_;
    std::string recordedAction_; // the action whose keys are recorded
    QString recordingPrompt_;    // shown instead of the keys of `recordedAction_`
    bool canRecord_ = true;
};

} // namespace kova::ui
