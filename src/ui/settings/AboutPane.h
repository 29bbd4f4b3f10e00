// The pane that shows the version and the log, writes a bug report, and, if the agent checks for updates, shows them.
#pragma once

#include "ui/settings/SettingControls.h"
#include "ui/windows/Pane.h"

#include <QGroupBox>
#include <QPlainTextEdit>
#include <QProcess>
#include <QPushButton>

#include <functional>
#include <string>

namespace kova::ui {

class AboutPane final : public Pane {
    Q_OBJECT

  public:
    explicit AboutPane(WindowServices& services);
    void opened() override;

  private:
    QWidget* logGroup();
    QWidget* updatesGroup();
    void showUpdates(const nlohmann::json& updates);
    void showLog();
    void askForReportFile();
    /// Runs the command line with the arguments. Calls `done` with the output on success, else shows the error.
    void runCommand(const QStringList& arguments, std::function<void(const QString& printed)> done);

    AgentSession& agent_;
    QLabel* version_;
    QPlainTextEdit* log_ = nullptr;
    QPushButton* showLog_ = nullptr;
    QPushButton* report_ = nullptr;
    QLabel* result_ = nullptr;
    FieldError* error_ = nullptr;
    QGroupBox* updates_ = nullptr;
    SettingSwitch* checksForUpdates_ = nullptr;
    SettingSwitch* downloadsUpdates_ = nullptr;
    QPushButton* checkNow_ = nullptr;
    FieldError* updateError_ = nullptr;
};

} // namespace kova::ui
