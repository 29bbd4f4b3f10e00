// The pane of scenes: captures, opens, renames, deletes, exports and imports them, and lists what opening the selected
// scene would change.
#pragma once

#include "ui/dialogs/DocumentFile.h"
#include "ui/settings/ScenePicture.h"
#include "ui/windows/EmptyListText.h"
#include "ui/windows/FieldError.h"
#include "ui/windows/Pane.h"

#include <QFrame>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <nlohmann/json.hpp>

#include <map>

namespace kova::ui {

class ScenesPane : public Pane {
    Q_OBJECT

  public:
    explicit ScenesPane(WindowServices& services);
    void opened() override;

  private:
    void buildCapture(QVBoxLayout& column);
    void buildList(QVBoxLayout& column);
    void buildDeleted(QVBoxLayout& column);
    void buildDifferences(QVBoxLayout& column);
    void buildFiles(QVBoxLayout& column);

    void showScenes();
    QTreeWidgetItem* rowFor(const QString& id, int row);
    void showScene(QTreeWidgetItem& item, const nlohmann::json& scene);
    void readPicture(const nlohmann::json& scene);
    void selectionChanged();
    void readDifferences();
    QString selectedID() const;

    void capture();
    void open();
    void rename(const QTreeWidgetItem* item);
    void showName(const QString& id);
    void remove();
    void undelete();
    void exportTo(const QString& path);
    void chooseExport();
    void chooseImport();
    void readImport(const QString& path);
    void showImport(const QString& fileName, const nlohmann::json& result);
    void addImport();

    WindowServices& services_;
    QLineEdit* name_ = nullptr;
    FieldError* captureError_ = nullptr;
    QTreeWidget* list_ = nullptr;
    EmptyListText* noScene_ = nullptr;
    ScenePictures* pictures_ = nullptr;
    QPushButton* open_ = nullptr;
    QPushButton* rename_ = nullptr;
    QPushButton* delete_ = nullptr;
    FieldError* listError_ = nullptr;
    QWidget* deleted_ = nullptr;
    QLabel* deletedText_ = nullptr;
    QTreeWidget* differences_ = nullptr;
    EmptyListText* noDifference_ = nullptr;
    FieldError* fileError_ = nullptr;
    QFrame* import_ = nullptr;
    QLabel* importText_ = nullptr;
    QPushButton* add_ = nullptr;

    QByteArray document_; // the file that the shown summary describes
    /// For the id of each scene whose picture was requested: the time of the scene's last change.
    std::map<std::string, std::string> pictureVersions_;
    bool isFilling_ = false;
};

} // namespace kova::ui
