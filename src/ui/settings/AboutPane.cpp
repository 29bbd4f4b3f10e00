#include "ui/settings/AboutPane.h"

#include "support/Version.h"
#include "ui/dialogs/FilePanel.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QProcessEnvironment>
#include <QScrollBar>
#include <QStandardPaths>

#include <utility>

namespace kova::ui {

using nlohmann::json;

namespace {

const PaneRegistration aboutRegistration({80, "about", [] { return AboutPane::tr("About"); },
                                          [](WindowServices& services) -> Pane* { return new AboutPane(services); }});

constexpr int kLogLines = 200;

/// The path of `kova`; empty if it is not found. The first match counts: beside this program, in the folder bin two
/// folders up (on a Mac beside the application), in a folder of the PATH.
QString commandLineProgram() {
    const QDir here(QCoreApplication::applicationDirPath());
#if defined(Q_OS_MACOS)
    const QString folders[] = {QStringLiteral("."), QStringLiteral("../../..")};
#else
    const QString folders[] = {QStringLiteral("."), QStringLiteral("../../bin")};
#endif
    for (const QString& folder : folders) {
        const QFileInfo program(here.filePath(folder + QStringLiteral("/kova")));
        if (program.isFile() && program.isExecutable()) return program.filePath();
    }
    return QStandardPaths::findExecutable(QStringLiteral("kova"));
}

AgentRequest switchTo(const char* method, bool isOn) {
    return {method, {{"isOn", isOn}}};
}

} // namespace

AboutPane::AboutPane(WindowServices& services) : agent_(services.agent), version_(new QLabel(this)) {
    version_->setObjectName(QStringLiteral("version"));
    QFont large = version_->font();
    large.setPointSizeF(large.pointSizeF() * 1.5);
    version_->setFont(large);
    version_->setText(QStringLiteral("KOVA"));
    auto* column = new QVBoxLayout(this);
    column->addWidget(version_);
    column->addWidget(explanation(tr("Divides each display into named tiles and keeps windows in them."), this));
    column->addWidget(updatesGroup());
    column->addWidget(logGroup(), 1);
    column->addStretch();
}

QWidget* AboutPane::updatesGroup() {
    updates_ = new QGroupBox(tr("Updates"), this);
    auto* column = new QVBoxLayout(updates_);
    checksForUpdates_ = new SettingSwitch(
        agent_, tr("Check for &updates automatically"), {},
        [](bool isOn) { return switchTo("updates.automatic", isOn); }, updates_);
    downloadsUpdates_ = new SettingSwitch(
        agent_, tr("&Download updates automatically"), {}, [](bool isOn) { return switchTo("updates.download", isOn); },
        updates_);
    checkNow_ = new QPushButton(tr("Check &Now"), updates_);
    checkNow_->setAccessibleDescription(tr("Looks for a newer version now"));
    updateError_ = new FieldError(updates_);
    for (QWidget* each : {static_cast<QWidget*>(checksForUpdates_), static_cast<QWidget*>(downloadsUpdates_),
                          static_cast<QWidget*>(updateError_)})
        column->addWidget(each);
    column->addWidget(checkNow_, 0, Qt::AlignLeft);
    connect(checkNow_, &QPushButton::clicked, this, [this] { callFor(*updateError_, agent_, "updates.check"); });
    checksForUpdates_->box().setObjectName(QStringLiteral("checksForUpdates"));
    downloadsUpdates_->box().setObjectName(QStringLiteral("downloadsUpdates"));
    checkNow_->setObjectName(QStringLiteral("checkNow"));
    updates_->hide();
    followSections(agent_, this, {"updates"}, [this](const json& state) { showUpdates(sectionOf(state, "updates")); });
    return updates_;
}

QWidget* AboutPane::logGroup() {
    auto* group = new QGroupBox(tr("Log and report"), this);
    group->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum); // does not expand until the log is shown
    auto* column = new QVBoxLayout(group);
    auto* buttons = new QHBoxLayout;
    showLog_ = new QPushButton(tr("Show &Log"), group);
    showLog_->setObjectName(QStringLiteral("showLog"));
    showLog_->setAccessibleDescription(tr("Shows the newest lines of the agent's log"));
    report_ = new QPushButton(tr("Write &Bug Report…"), group);
    report_->setObjectName(QStringLiteral("bugReport"));
    report_->setAccessibleDescription(
        tr("Writes the agent's state, preferences and log into a file; titles and other texts of yours are replaced"));
    buttons->addWidget(showLog_);
    buttons->addWidget(report_);
    buttons->addStretch(1);
    column->addLayout(buttons);
    result_ = explanation({}, group);
    result_->setObjectName(QStringLiteral("result"));
    error_ = new FieldError(group);
    log_ = new QPlainTextEdit(group);
    log_->setObjectName(QStringLiteral("log"));
    log_->setReadOnly(true);
    log_->setTabChangesFocus(true);
    log_->setLineWrapMode(QPlainTextEdit::NoWrap);
    log_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    log_->setAccessibleName(tr("Log"));
    log_->setAccessibleDescription(tr("The newest lines of the agent's log, the last one at the end"));
    log_->hide();
    column->addWidget(result_);
    column->addWidget(error_);
    column->addWidget(log_, 1);
    connect(showLog_, &QPushButton::clicked, this, &AboutPane::showLog);
    connect(report_, &QPushButton::clicked, this, &AboutPane::askForReportFile);
    return group;
}

void AboutPane::opened() {
    agent_.call(this, "status", json::object(), [this](const Response& response) {
        const std::string agent = response.result.is_object() ? response.result.value("version", "") : "";
        const QString ours = QStringLiteral(KOVA_VERSION);
        const QString theirs = QString::fromStdString(agent);
        version_->setText(theirs.isEmpty() || theirs == ours ? tr("KOVA %1").arg(ours)
                                                             : tr("KOVA %1, user interface %2").arg(theirs, ours));
    });
    agent_.follow("settings");
}

void AboutPane::showUpdates(const json& updates) {
    updates_->setVisible(updates.is_object());
    if (!updates.is_object()) return;
    const bool checks = updates.at("checksAutomatically");
    checkNow_->setEnabled(!updates.at("isChecking").get<bool>());
    checksForUpdates_->showState(checks);
    downloadsUpdates_->showState(updates.at("downloadsAutomatically"));
    downloadsUpdates_->box().setEnabled(checks);
}

void AboutPane::showLog() {
    runCommand({QStringLiteral("log"), QStringLiteral("-n"), QString::number(kLogLines)},
               [this](const QString& printed) {
                   log_->setPlainText(printed);
                   log_->parentWidget()->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Expanding);
                   log_->show();
                   log_->verticalScrollBar()->setValue(log_->verticalScrollBar()->maximum());
               });
}

void AboutPane::askForReportFile() {
    auto* dialog = new QFileDialog(this, tr("Write Bug Report"), QDir::homePath());
    dialog->setObjectName(QStringLiteral("reportFile"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setOption(QFileDialog::DontConfirmOverwrite); // the command line does not overwrite files
    dialog->selectFile(QStringLiteral("KOVA-report.txt"));
    describeFilePanel(*dialog);
    connect(dialog, &QFileDialog::fileSelected, this, [this](const QString& path) {
        runCommand({QStringLiteral("bugreport"), path}, [this](const QString& printed) { result_->setText(printed); });
    });
    dialog->open();
}

void AboutPane::runCommand(const QStringList& arguments, std::function<void(const QString& printed)> done) {
    const QString program = commandLineProgram();
    result_->clear();
    if (program.isEmpty()) return error_->showReason(tr("The command line “kova” is not installed."));
    auto* process = new QProcess(this);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("KOVA_SOCKET"), QString::fromStdString(agent_.socketPath()));
    process->setProcessEnvironment(environment);
    const auto ended = [this, process, done = std::move(done)] {
        const bool hasRun =
            process->error() != QProcess::FailedToStart && process->exitStatus() == QProcess::NormalExit;
        const bool isDone = hasRun && process->exitCode() == 0;
        const QByteArray printed = isDone ? process->readAllStandardOutput() : process->readAllStandardError();
        const QString text = QString::fromUtf8(printed).trimmed();
        error_->showReason(isDone ? QString() : text.isEmpty() ? tr("The command line ended unexpectedly.") : text);
        if (isDone) done(text);
        process->deleteLater();
    };
    connect(process, &QProcess::finished, this, ended);
    connect(process, &QProcess::errorOccurred, this, [ended](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart) ended();
    });
    process->start(program, arguments);
}

} // namespace kova::ui
