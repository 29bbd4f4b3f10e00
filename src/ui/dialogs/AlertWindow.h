// A message, or a question with the applications that it is about. Cancel is the default: Enter, Escape and the end of
// the agent confirm nothing.
#pragma once

#include "ui/windows/FieldError.h"
#include "ui/windows/HostedWindow.h"

#include <QLabel>
#include <QListWidget>
#include <QPushButton>

namespace kova::ui {

/// Parameters: "title", "text", "confirm", "cancel" (empty for a message), "applications" [{name, bundleIdentifier}],
/// and where the answer goes: "id" of a question of the agent, or "method" with "parameters" for the confirmation.
class AlertWindow final : public HostedWindow {
    Q_OBJECT

  public:
    explicit AlertWindow(WindowServices& services);
    void present(const nlohmann::json& parameters) override;

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    void listApplications(const nlohmann::json& applications);
    void confirm();
    void answer(bool isConfirmed);

    WindowServices& services_;
    QLabel* title_;
    QLabel* text_;
    QListWidget* list_;
    FieldError* error_;
    QPushButton* confirm_;
    QPushButton* cancel_;
    nlohmann::json alert_; // null once it is answered
};

} // namespace kova::ui
