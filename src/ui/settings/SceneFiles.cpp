// The part of ScenesPane that exports scenes and rules to a file and imports them.
#include "ui/dialogs/FilePanel.h"
#include "ui/settings/ScenesPane.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QStringList>

namespace kova::ui {

namespace {

using nlohmann::json;

QFileDialog* fileDialog(QWidget* parent, const QString& title) {
    auto* dialog = new QFileDialog(parent, title, QDir::homePath());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setNameFilter(ScenesPane::tr("JSON files (*.json)"));
    dialog->setDefaultSuffix(QStringLiteral("json"));
    return dialog;
}

QString namesOf(const json& names) {
    QStringList list;
    for (const json& each : names) list << QString::fromStdString(each.get<std::string>());
    return list.join(QStringLiteral(", "));
}

} // namespace

void ScenesPane::chooseExport() {
    QFileDialog* dialog = fileDialog(this, tr("Export Scenes and Rules"));
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->selectFile(kDocumentName);
    describeFilePanel(*dialog);
    connect(dialog, &QFileDialog::fileSelected, this, [this](const QString& path) { exportTo(path); });
    dialog->open();
}

void ScenesPane::exportTo(const QString& path) {
    callFor(*fileError_, services_.agent, "export", json::object(), {.done = [this, path](const json& result) {
        if (const auto problem = writeDocument(path, result.value("text", ""))) fileError_->showReason(*problem);
    }});
}

void ScenesPane::chooseImport() {
    QFileDialog* dialog = fileDialog(this, tr("Import Scenes and Rules"));
    dialog->setFileMode(QFileDialog::ExistingFile);
    describeFilePanel(*dialog);
    connect(dialog, &QFileDialog::fileSelected, this, [this](const QString& path) { readImport(path); });
    dialog->open();
}

void ScenesPane::readImport(const QString& path) {
    import_->hide();
    const auto read = readDocument(path);
    if (const auto* problem = std::get_if<QString>(&read)) return fileError_->showReason(*problem);
    document_ = std::get<QByteArray>(read);
    sendDocument(services_.agent, this, document_, Importing::dryRun,
                 [this, name = QFileInfo(path).fileName()](const Response& response) {
                     fileError_->showReason(QString::fromStdString(response.error));
                     if (response.error.empty()) showImport(name, response.result);
                 });
}

void ScenesPane::showImport(const QString& fileName, const json& result) {
    const json added = result.value("added", json::object());
    const json scenes = added.value("scenes", json::array()), rules = added.value("rules", json::array());
    const auto known = static_cast<int>(result.value("scenes", std::size_t(0)) + result.value("rules", std::size_t(0)) -
                                        scenes.size() - rules.size());
    QStringList lines;
    if (scenes.size() == 1) lines << tr("A scene would be added from “%1”: %2").arg(fileName, namesOf(scenes));
    if (scenes.size() > 1) {
        lines << tr("%1 scenes would be added from “%2”: %3").arg(scenes.size()).arg(fileName, namesOf(scenes));
    }
    if (rules.size() == 1)
        lines << tr("A rule would be added from “%1”, as the last: %2").arg(fileName, namesOf(rules));
    if (rules.size() > 1) {
        lines
            << tr("%1 rules would be added from “%2”, as the last: %3").arg(rules.size()).arg(fileName, namesOf(rules));
    }
    if (lines.isEmpty()) lines << tr("Nothing in “%1” is new.").arg(fileName);
    if (known > 0) lines << tr("Already there and left unchanged: %1").arg(known);
    importText_->setText(lines.join(u'\n'));
    add_->setVisible(!scenes.empty() || !rules.empty());
    import_->show();
}

void ScenesPane::addImport() {
    sendDocument(services_.agent, this, document_, Importing::forReal, [this](const Response& response) {
        fileError_->showReason(QString::fromStdString(response.error));
        import_->hide();
        document_.clear();
    });
}

} // namespace kova::ui
