// The pane of rules for new windows: lists, adds, changes and deletes rules, and switches all of them on or off.
#pragma once

#include "ui/settings/RuleTable.h"
#include "ui/settings/WindowPicker.h"
#include "ui/windows/EmptyListText.h"
#include "ui/windows/FieldError.h"
#include "ui/windows/Pane.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QVBoxLayout>

#include <nlohmann/json.hpp>

namespace kova::ui {

class RulesPane : public Pane {
    Q_OBJECT

  public:
    explicit RulesPane(WindowServices& services);
    void opened() override;

  private:
    void buildSwitch(QVBoxLayout& column);
    void buildNew(QVBoxLayout& column);
    void buildList(QVBoxLayout& column);
    void buildSelected(QVBoxLayout& column);

    void showRules();
    void showSelected();
    void fillDispositions(const nlohmann::json& slots);
    void fillWindowMenu();
    nlohmann::json selectedRule() const;

    void change(const char* member, const nlohmann::json& value);
    void changeDisposition(int index);
    void addForFocused(nlohmann::json disposition);
    void addForWindow(const std::string& window, nlohmann::json disposition);
    void addForWindowAt(QPoint pixels);

    WindowServices& services_;
    QCheckBox* isOn_ = nullptr;
    FieldError* switchError_ = nullptr;
    QComboBox* newDisposition_ = nullptr;
    QMenu* windowMenu_ = nullptr;
    QLabel* pickingHint_ = nullptr;
    FieldError* newError_ = nullptr;
    RuleTable* table_ = nullptr;
    EmptyListText* noRule_ = nullptr;
    QPushButton* up_ = nullptr;
    QPushButton* down_ = nullptr;
    QPushButton* delete_ = nullptr;
    FieldError* listError_ = nullptr;
    QGroupBox* selected_ = nullptr;
    QString shownID_; // id of the rule that `selected_` shows
    QLineEdit* title_ = nullptr;
    QComboBox* disposition_ = nullptr;
    QLabel* windows_ = nullptr;
    FieldError* selectedError_ = nullptr;
    WindowPicker picker_;
};

} // namespace kova::ui
