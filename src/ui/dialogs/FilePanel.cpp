#include "ui/dialogs/FilePanel.h"

#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QPushButton>

#include <map>

namespace kova::ui {

namespace {

struct FilePanel {
    Q_DECLARE_TR_FUNCTIONS(kova::ui::FilePanel)
};

struct Texts {
    QString name, description;
};

/// The texts of each control. The keys are the object names that the toolkit gives the controls.
std::map<QString, Texts> textsOf(const QFileDialog& panel) {
    const bool isExport = panel.acceptMode() == QFileDialog::AcceptSave;
    return {
        {"lookInCombo", {FilePanel::tr("Folder"), FilePanel::tr("The folder that is shown, and the folders above it")}},
        {"backButton", {FilePanel::tr("Back"), FilePanel::tr("Shows the folder that was shown before")}},
        {"forwardButton", {FilePanel::tr("Forward"), FilePanel::tr("Shows the folder that was left with “Back”")}},
        {"toParentButton", {FilePanel::tr("Folder Above"), FilePanel::tr("Shows the folder that contains this one")}},
        {"newFolderButton",
         {FilePanel::tr("New Folder"), FilePanel::tr("Creates a folder in the folder that is shown")}},
        {"listModeButton", {FilePanel::tr("Names"), FilePanel::tr("Lists only the names of the files")}},
        {"detailModeButton", {FilePanel::tr("Details"), FilePanel::tr("Lists files with their size, type and date")}},
        {"sidebar", {FilePanel::tr("Places"), FilePanel::tr("Frequently used folders")}},
        {"listView", {FilePanel::tr("Files"), FilePanel::tr("The files and folders in the folder that is shown")}},
        {"treeView", {FilePanel::tr("Files"), FilePanel::tr("The files and folders in the folder that is shown")}},
        {"fileNameEdit",
         {FilePanel::tr("File name"), isExport ? FilePanel::tr("The name of the file to write; a path is possible")
                                               : FilePanel::tr("The name of the file to read; a path is possible")}},
        {"fileTypeCombo", {FilePanel::tr("File type"), FilePanel::tr("Which files are listed")}},
    };
}

} // namespace

void describeFilePanel(QFileDialog& panel) {
    const auto texts = textsOf(panel);
    for (QWidget* each : panel.findChildren<QWidget*>()) {
        const auto found = texts.find(each->objectName());
        if (found == texts.end()) continue;
        each->setAccessibleName(found->second.name);
        each->setAccessibleDescription(found->second.description);
    }
    const auto* buttons = panel.findChild<QDialogButtonBox*>();
    if (!buttons) return;
    const bool isExport = panel.acceptMode() == QFileDialog::AcceptSave;
    for (QAbstractButton* each : buttons->buttons()) {
        const bool isCancel = buttons->buttonRole(each) == QDialogButtonBox::RejectRole;
        each->setAccessibleDescription(isCancel ? FilePanel::tr("Closes the file panel and leaves everything as it is")
                                       : isExport ? FilePanel::tr("Writes the file with that name")
                                                  : FilePanel::tr("Reads the chosen file"));
    }
}

} // namespace kova::ui
