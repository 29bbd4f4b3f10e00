#include "ui/settings/ScenesPane.h"

#include "ui/windows/JsonText.h"

#include <QDateTime>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLocale>

#include <set>

namespace kova::ui {

namespace {

using nlohmann::json;

const PaneRegistration scenesRegistration({50, "scenes", [] { return ScenesPane::tr("Scenes"); },
                                           [](WindowServices& services) -> Pane* { return new ScenesPane(services); }});

enum SceneColumn { kScenePicture, kSceneName, kSceneWindows, kSceneCaptured, kSceneColumnCount };
constexpr int kNameRole = Qt::UserRole + 1; // data of the picture column: the scene's name in the agent's state

QString idOf(const QTreeWidgetItem* item) {
    return item->data(kScenePicture, ScenePictures::kIDRole).toString();
}

QString timeOf(const json& scene) {
    const QDateTime time = QDateTime::fromString(memberText(scene, "createdAt"), Qt::ISODate);
    return QLocale().toString(time.toLocalTime(), QLocale::ShortFormat);
}

QPushButton* button(const QString& text, const char* objectName, const QString& description) {
    auto* made = new QPushButton(text);
    made->setObjectName(QLatin1String(objectName));
    made->setAccessibleDescription(description);
    return made;
}

} // namespace

ScenesPane::ScenesPane(WindowServices& services) : services_(services) {
    auto* column = new QVBoxLayout(this);
    buildCapture(*column);
    buildList(*column);
    buildDeleted(*column);
    buildDifferences(*column);
    buildFiles(*column);
    connect(&services_.agent, &AgentSession::changed, this, [this](const std::set<std::string>& sections) {
        if (sections.contains("scenes")) showScenes();
        for (const char* section : {"windows", "tiles", "displays", "settings"}) {
            if (sections.contains(section)) return readDifferences();
        }
    });
}

void ScenesPane::opened() {
    services_.agent.follow();
    services_.agent.follow("settings");
    showScenes();
}

void ScenesPane::buildCapture(QVBoxLayout& column) {
    auto* what = new QLabel(tr("A Scene restores layouts, windows, tile stacks, display roles, and theme."));
    what->setWordWrap(true);
    name_ = new QLineEdit;
    name_->setObjectName(QStringLiteral("sceneName"));
    name_->setPlaceholderText(tr("Scene name (optional)"));
    name_->setAccessibleName(tr("Scene name (optional)"));
    name_->setAccessibleDescription(tr("Without a name, the scene is named after the current time"));
    auto* captureNow = button(tr("&Capture Workspace as Scene"), "capture",
                              tr("Saves the layouts, the windows in their tiles and the theme as they are now"));
    captureError_ = new FieldError;
    captureError_->setObjectName(QStringLiteral("captureError"));

    auto* row = new QHBoxLayout;
    row->addWidget(name_, 1);
    row->addWidget(captureNow);
    column.addWidget(what);
    column.addLayout(row);
    column.addWidget(captureError_);
    connect(name_, &QLineEdit::returnPressed, this, [this] { capture(); });
    connect(captureNow, &QPushButton::clicked, this, [this] { capture(); });
}

void ScenesPane::buildList(QVBoxLayout& column) {
    list_ = new QTreeWidget;
    list_->setObjectName(QStringLiteral("scenes"));
    list_->setAccessibleName(tr("Scenes"));
    list_->setAccessibleDescription(tr("Return opens the selected scene, F2 renames it, Delete deletes it"));
    list_->setColumnCount(kSceneColumnCount);
    list_->setHeaderLabels({QString(), tr("Name"), tr("Windows"), tr("Captured")});
    list_->setRootIsDecorated(false);
    list_->setAllColumnsShowFocus(true);
    list_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    list_->header()->setStretchLastSection(false);
    list_->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    list_->header()->setSectionResizeMode(kSceneName, QHeaderView::Stretch);
    // The lists scroll, so that their contents do not make the pane higher than the window.
    list_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Ignored);
    list_->setMinimumHeight(9 * fontMetrics().lineSpacing());
    pictures_ = new ScenePictures(services_, list_);
    list_->setItemDelegateForColumn(kScenePicture, pictures_);
    noScene_ = new EmptyListText(*list_);
    open_ = button(tr("&Open"), "openScene", tr("Restores the layouts, windows and theme of the selected scene"));
    rename_ = button(tr("&Rename"), "renameScene", tr("Gives the selected scene another name"));
    delete_ = button(tr("De&lete"), "deleteScene", tr("Deletes the selected scene; this can be undone"));
    listError_ = new FieldError;
    listError_->setObjectName(QStringLiteral("listError"));

    auto* row = new QHBoxLayout;
    for (QPushButton* each : {open_, rename_, delete_}) row->addWidget(each);
    row->addStretch();
    column.addWidget(list_, 3);
    column.addLayout(row);
    column.addWidget(listError_);

    const auto startRenaming = [this] {
        if (list_->currentItem()) list_->editItem(list_->currentItem(), kSceneName);
    };
    const auto addKey = [this](QKeySequence key, auto act) {
        auto* action = new QAction(list_);
        action->setShortcut(key);
        action->setShortcutContext(Qt::WidgetShortcut);
        list_->addAction(action);
        connect(action, &QAction::triggered, this, act);
    };
    addKey(Qt::Key_F2, startRenaming);
    addKey(Qt::Key_Delete, [this] { remove(); });
    connect(rename_, &QPushButton::clicked, this, startRenaming);
    connect(delete_, &QPushButton::clicked, this, [this] { remove(); });
    connect(open_, &QPushButton::clicked, this, [this] { open(); });
    connect(list_, &QTreeWidget::itemActivated, this, [this] { open(); });
    connect(list_, &QTreeWidget::currentItemChanged, this, [this] {
        if (!isFilling_) selectionChanged();
    });
    connect(list_, &QTreeWidget::itemChanged, this, [this](const QTreeWidgetItem* item, int changed) {
        if (!isFilling_ && changed == kSceneName) rename(item);
    });
    // Shows changes that arrived while the name was edited.
    connect(list_->itemDelegate(), &QAbstractItemDelegate::closeEditor, this, &ScenesPane::showScenes,
            Qt::QueuedConnection);
}

void ScenesPane::buildDeleted(QVBoxLayout& column) {
    deleted_ = new QWidget;
    deletedText_ = new QLabel;
    deletedText_->setObjectName(QStringLiteral("deletedText"));
    deletedText_->setTextFormat(Qt::PlainText);
    deletedText_->setWordWrap(true);
    auto* undo = button(tr("&Undo"), "undelete", tr("Brings back the scene that was deleted last"));
    auto* row = new QHBoxLayout(deleted_);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(deletedText_, 1);
    row->addWidget(undo);
    deleted_->hide();
    column.addWidget(deleted_);
    connect(undo, &QPushButton::clicked, this, [this] { undelete(); });
}

void ScenesPane::buildDifferences(QVBoxLayout& column) {
    auto* group = new QGroupBox(tr("What opening the scene changes"));
    differences_ = new QTreeWidget;
    differences_->setObjectName(QStringLiteral("differences"));
    differences_->setAccessibleName(tr("What opening the scene changes"));
    differences_->setAccessibleDescription(
        tr("A line for each difference between the selected scene and the current workspace"));
    differences_->setColumnCount(3);
    differences_->setHeaderLabels({tr("What"), tr("In the scene"), tr("Now")});
    differences_->setRootIsDecorated(false);
    differences_->setSelectionMode(QAbstractItemView::NoSelection);
    differences_->header()->setSectionResizeMode(QHeaderView::Stretch);
    differences_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Ignored);
    differences_->setMinimumHeight(5 * fontMetrics().lineSpacing());
    noDifference_ = new EmptyListText(*differences_);
    noDifference_->setObjectName(QStringLiteral("noDifference"));
    (new QVBoxLayout(group))->addWidget(differences_);
    column.addWidget(group, 2);
}

void ScenesPane::buildFiles(QVBoxLayout& column) {
    auto* about = new QLabel(tr("Portable JSON · local-first"));
    auto* exportAll =
        button(tr("&Export…"), "export", tr("Writes all scenes and rules to a file that another machine can import"));
    auto* importAll = button(tr("&Import…"), "import", tr("Reads scenes and rules of a file and says what is new"));
    fileError_ = new FieldError;
    fileError_->setObjectName(QStringLiteral("fileError"));
    import_ = new QFrame;
    import_->setObjectName(QStringLiteral("importSummary"));
    import_->setFrameShape(QFrame::StyledPanel);
    importText_ = new QLabel;
    importText_->setObjectName(QStringLiteral("importText"));
    importText_->setTextFormat(Qt::PlainText);
    importText_->setWordWrap(true);
    add_ = button(tr("&Add"), "addImport", tr("Adds the new scenes and rules after the existing ones"));
    auto* cancel = button(tr("Do &Not Add"), "cancelImport", tr("Leaves scenes and rules as they are"));

    auto* row = new QHBoxLayout;
    row->addWidget(about);
    row->addStretch();
    row->addWidget(exportAll);
    row->addWidget(importAll);
    auto* summary = new QHBoxLayout(import_);
    summary->addWidget(importText_, 1);
    summary->addWidget(add_);
    summary->addWidget(cancel);
    import_->hide();
    column.addLayout(row);
    column.addWidget(fileError_);
    column.addWidget(import_);
    connect(exportAll, &QPushButton::clicked, this, [this] { chooseExport(); });
    connect(importAll, &QPushButton::clicked, this, [this] { chooseImport(); });
    connect(add_, &QPushButton::clicked, this, [this] { addImport(); });
    connect(cancel, &QPushButton::clicked, import_, &QWidget::hide);
}

/// Keeps the rows of scenes that still exist, since the user may be editing the name of one of them.
void ScenesPane::showScenes() {
    const json scenes = services_.agent.state().value("scenes", json::object()).value("scenes", json::array());
    isFilling_ = true;
    std::set<QString> ids;
    for (const json& scene : scenes) ids.insert(memberText(scene, "id"));
    for (int row = list_->topLevelItemCount(); row-- > 0;) {
        if (!ids.contains(idOf(list_->topLevelItem(row)))) delete list_->takeTopLevelItem(row);
    }
    int row = 0;
    for (const json& scene : scenes) {
        showScene(*rowFor(memberText(scene, "id"), row++), scene);
        readPicture(scene);
    }
    if (!list_->currentItem()) list_->setCurrentItem(list_->topLevelItem(0));
    isFilling_ = false;
    if (services_.agent.state().contains("scenes")) {
        noScene_->say(tr("No scenes yet. Capture the workspace as the first one."));
    } else {
        noScene_->sayLoading();
    }
    selectionChanged();
}

/// Moves the scene's item to the row and returns it. If the scene has no item, returns a new one.
QTreeWidgetItem* ScenesPane::rowFor(const QString& id, int row) {
    int found = row;
    while (found < list_->topLevelItemCount() && idOf(list_->topLevelItem(found)) != id) ++found;
    if (found == row && row < list_->topLevelItemCount()) return list_->topLevelItem(row);
    QTreeWidgetItem* item = list_->takeTopLevelItem(found);
    if (!item) {
        item = new QTreeWidgetItem;
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsEditable);
        item->setData(kScenePicture, ScenePictures::kIDRole, id);
        item->setTextAlignment(kSceneWindows, Qt::AlignRight | Qt::AlignVCenter);
    }
    list_->insertTopLevelItem(row, item);
    return item;
}

void ScenesPane::showScene(QTreeWidgetItem& item, const json& scene) {
    const QString title = memberText(scene, "name");
    item.setText(kSceneWindows, QString::number(scene.value("windows", 0)));
    item.setText(kSceneCaptured, timeOf(scene));
    // Any change in the column of names would replace the text in the open editor.
    if (list_->isPersistentEditorOpen(&item, kSceneName)) return;
    if (item.data(kScenePicture, kNameRole) != title) {
        item.setText(kSceneName, title);
        item.setData(kScenePicture, kNameRole, title);
        item.setData(kScenePicture, Qt::AccessibleTextRole, tr("Picture of %1").arg(title));
    }
    const bool isActive = scene.value("isActive", false);
    QFont font;
    font.setBold(isActive);
    item.setFont(kSceneName, font);
    item.setToolTip(kSceneName, isActive ? tr("Opened or captured last") : QString());
}

void ScenesPane::readPicture(const json& scene) {
    const std::string id = scene.value("id", ""), changed = scene.value("updatedAt", "");
    if (pictureVersions_[id] == changed) return;
    pictureVersions_[id] = changed;
    services_.agent.call(this, "scene.show", {{"scene", id}}, [this, id](const Response& response) {
        if (!response.error.empty()) return;
        pictures_->setScene(QString::fromStdString(id), response.result);
        list_->viewport()->update();
    });
}

QString ScenesPane::selectedID() const {
    const QTreeWidgetItem* item = list_->currentItem();
    return item ? idOf(item) : QString();
}

void ScenesPane::selectionChanged() {
    const bool isSelected = list_->currentItem() != nullptr;
    for (QPushButton* each : {open_, rename_, delete_}) each->setEnabled(isSelected);
    readDifferences();
}

void ScenesPane::readDifferences() {
    const QString id = selectedID();
    if (id.isEmpty()) {
        differences_->clear();
        return noDifference_->say({});
    }
    services_.agent.call(this, "scene.diff", {{"scene", id.toStdString()}}, [this, id](const Response& response) {
        if (id != selectedID()) return; // another scene has been selected since the request
        differences_->clear();
        for (const json& each :
             response.result.is_object() ? response.result.value("differences", json::array()) : json()) {
            new QTreeWidgetItem(differences_,
                                {memberText(each, "what"), memberText(each, "inScene"), memberText(each, "now")});
        }
        noDifference_->say(response.error.empty() ? tr("Nothing: the workspace is as in the scene.")
                                                  : QString::fromStdString(response.error));
    });
}

void ScenesPane::capture() {
    json parameters = json::object();
    if (!name_->text().isEmpty()) parameters["name"] = name_->text().toStdString();
    callFor(*captureError_, services_.agent, "scene.capture", std::move(parameters),
            {.done = [this](const json&) { name_->clear(); }});
}

void ScenesPane::open() {
    callFor(*listError_, services_.agent, "scene.open", {{"scene", selectedID().toStdString()}});
}

void ScenesPane::rename(const QTreeWidgetItem* item) {
    const QString id = idOf(item), wanted = item->text(kSceneName);
    if (wanted == item->data(kScenePicture, kNameRole).toString()) return;
    callFor(*listError_, services_.agent, "scene.rename",
            {{"scene", id.toStdString()}, {"newName", wanted.toStdString()}},
            {.refused = [this, id] { showName(id); }});
}

/// Shows the scene's name from the agent's state again, instead of a name that the user typed.
void ScenesPane::showName(const QString& id) {
    isFilling_ = true;
    for (int row = 0; row < list_->topLevelItemCount(); ++row) {
        QTreeWidgetItem* item = list_->topLevelItem(row);
        if (idOf(item) == id) item->setText(kSceneName, item->data(kScenePicture, kNameRole).toString());
    }
    isFilling_ = false;
}

void ScenesPane::remove() {
    if (selectedID().isEmpty()) return;
    callFor(*listError_, services_.agent, "scene.delete", {{"scene", selectedID().toStdString()}},
            {.done = [this](const json& result) {
                deletedText_->setText(memberText(result, "message"));
                deleted_->show();
            }});
}

void ScenesPane::undelete() {
    const auto hide = [this] { deleted_->hide(); };
    callFor(*listError_, services_.agent, "scene.undelete", json::object(),
            {.done = [hide](const json&) { hide(); }, .refused = hide});
}

} // namespace kova::ui
