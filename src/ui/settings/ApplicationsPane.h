// Shows what KOVA has learned about each application, and lets the user delete it.
#pragma once

#include "ui/windows/EmptyListText.h"
#include "ui/windows/FieldError.h"
#include "ui/windows/Pane.h"

#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>

#include <nlohmann/json.hpp>

namespace kova::ui {

class ApplicationsPane : public Pane {
    Q_OBJECT

  public:
    explicit ApplicationsPane(WindowServices& services);
    void opened() override;

  private:
    void showLearned();
    void addApplication(const nlohmann::json& application);
    void selectionChanged();
    void forget();

    WindowServices& services_;
    QTreeWidget* list_ = nullptr;
    EmptyListText* nothingLearned_ = nullptr;
    QPushButton* forget_ = nullptr;
    QLabel* done_ = nullptr;
    FieldError* error_ = nullptr;
};

} // namespace kova::ui
