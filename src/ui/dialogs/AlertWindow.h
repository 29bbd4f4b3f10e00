// A message, or a question that may list the applications it concerns. Cancel is the default button: Enter, Escape and
// the end of the agent do not confirm.
#pragma once

#include "ui/dialogs/AlertPicture.h"
#include "ui/windows/FieldError.h"
#include "ui/windows/HostedWindow.h"

#include <QLabel>
#include <QListWidget>
#include <QPushButton>

namespace kova::ui {

/// Parameters: "title", "text", "confirm", "cancel" (empty for a message), "applications" [{name, bundleIdentifier}];
/// and either "id", if the agent waits for the user's answer, or "method" and "parameters" to call on confirmation.
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
    AlertPicture* picture_;
    QLabel* title_;
    QLabel* text_;
    QListWidget* list_;
    FieldError* error_;
    QPushButton* confirm_;
    QPushButton* cancel_;
    nlohmann::json alert_; // the parameters; null once the user has answered
};

} // namespace kova::ui
