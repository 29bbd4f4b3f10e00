#include "ui/settings/ApplicationsPane.h"

#include "ui/windows/JsonText.h"

#include <QAction>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QStringList>
#include <QVBoxLayout>
#include <QtMath>

#include <set>

namespace kova::ui {

namespace {

using nlohmann::json;

const PaneRegistration
    applicationsRegistration({70, "applications", [] { return ApplicationsPane::tr("Applications"); },
                              [](WindowServices& services) -> Pane* { return new ApplicationsPane(services); }});

enum ApplicationColumn {
    kApplicationName,
    kApplicationRole,
    kApplicationMinimumSize,
    kApplicationTiles,
    kApplicationColumnCount
};
constexpr int kKeyRole = Qt::UserRole;

QString roleText(const QString& role) {
    if (role == QLatin1String("browser")) return ApplicationsPane::tr("Browser");
    if (role == QLatin1String("productivity")) return ApplicationsPane::tr("Productivity");
    if (role == QLatin1String("coding agent")) return ApplicationsPane::tr("Coding agent");
    if (role == QLatin1String("utility")) return ApplicationsPane::tr("Utility");
    return ApplicationsPane::tr("Other");
}

/// Returns a dash for 0, which means that no window refused to shrink in this direction.
QString lengthText(double points) {
    return points > 0 ? QString::number(qRound(points)) : QStringLiteral("–");
}

QString sizeText(const json& size) {
    if (!size.is_object()) return QStringLiteral("–");
    return QStringLiteral("%1 × %2").arg(lengthText(size.value("width", 0.0)), lengthText(size.value("height", 0.0)));
}

/// One line per tile: first the tiles that have this preferred application, then the tiles that KOVA has learned.
QStringList tileTexts(const json& application) {
    QStringList lines;
    for (const json& name : application.value("preferredTiles", json::array())) {
        lines << ApplicationsPane::tr("%1 (preferred)").arg(QString::fromStdString(name.get<std::string>()));
    }
    for (const json& place : application.value("places", json::array())) {
        const QString slot =
            memberText(place, "name").isEmpty() ? memberText(place, "slot") : memberText(place, "name");
        const QString layout = memberText(place.value("layout", json()), "name");
        const QString where = ApplicationsPane::tr("%1 of %2", "tile of layout").arg(slot, layout);
        if (place.value("isByUser", false)) {
            lines << ApplicationsPane::tr("%1 (put there by you)").arg(where);
        } else {
            lines << (place.value("isUsual", false) ? where : ApplicationsPane::tr("%1 (seldom)").arg(where));
        }
    }
    return lines;
}

} // namespace

ApplicationsPane::ApplicationsPane(WindowServices& services) : services_(services) {
    auto* about =
        new QLabel(tr("Arrangements choose a tile for a window by the role of its application and by where it "
                      "was kept before. A minimum size is what a window has shown by refusing to shrink."));
    about->setWordWrap(true);
    list_ = new QTreeWidget;
    list_->setObjectName(QStringLiteral("applications"));
    list_->setAccessibleName(tr("Applications"));
    list_->setAccessibleDescription(tr("What KOVA has learned about each application. The Delete key deletes it"));
    list_->setColumnCount(kApplicationColumnCount);
    list_->setHeaderLabels({tr("Application"), tr("Role"), tr("Minimum size"), tr("Tiles")});
    list_->setRootIsDecorated(false);
    list_->setAllColumnsShowFocus(true);
    list_->setAlternatingRowColors(true);
    list_->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel); // a row has a line for each of its tiles
    list_->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    list_->header()->setSectionResizeMode(kApplicationTiles, QHeaderView::Stretch);
    nothingLearned_ = new EmptyListText(*list_);
    forget_ = new QPushButton(tr("&Forget"));
    forget_->setObjectName(QStringLiteral("forget"));
    forget_->setAccessibleDescription(
        tr("Deletes what KOVA has learned about the selected application; KOVA learns it anew"));
    done_ = new QLabel;
    done_->setObjectName(QStringLiteral("forgotten"));
    done_->setTextFormat(Qt::PlainText);
    done_->setWordWrap(true);
    error_ = new FieldError;
    error_->setObjectName(QStringLiteral("forgetError"));

    auto* row = new QHBoxLayout;
    row->addWidget(forget_);
    row->addWidget(done_, 1);
    auto* column = new QVBoxLayout(this);
    column->addWidget(about);
    column->addWidget(list_, 1);
    column->addLayout(row);
    column->addWidget(error_);

    auto* remove = new QAction(list_);
    remove->setShortcut(Qt::Key_Delete);
    remove->setShortcutContext(Qt::WidgetShortcut);
    list_->addAction(remove);
    connect(remove, &QAction::triggered, this, [this] { forget(); });
    connect(forget_, &QPushButton::clicked, this, [this] { forget(); });
    connect(list_, &QTreeWidget::currentItemChanged, this, [this] { selectionChanged(); });
    connect(&services_.agent, &AgentSession::changed, this, [this](const std::set<std::string>& sections) {
        if (sections.contains("learned")) showLearned();
    });
}

void ApplicationsPane::opened() {
    services_.agent.follow("settings");
    showLearned();
}

void ApplicationsPane::showLearned() {
    const QTreeWidgetItem* before = list_->currentItem();
    const QString selected = before ? before->data(kApplicationName, kKeyRole).toString() : QString();
    const json learned = services_.agent.state().value("learned", json::object());
    learned.empty() ? nothingLearned_->sayLoading() : nothingLearned_->say(tr("Nothing learned yet"));
    list_->clear();
    for (const json& application : learned.value("applications", json::array())) addApplication(application);
    for (int row = 0; row < list_->topLevelItemCount(); ++row) {
        QTreeWidgetItem* item = list_->topLevelItem(row);
        if (item->data(kApplicationName, kKeyRole).toString() == selected) list_->setCurrentItem(item);
    }
    selectionChanged();
}

void ApplicationsPane::addApplication(const json& application) {
    const QStringList lines = tileTexts(application);
    const QString key = memberText(application, "key"), title = memberText(application, "name");
    auto* item = new QTreeWidgetItem(list_);
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
    item->setData(kApplicationName, kKeyRole, key);
    item->setText(kApplicationName, title);
    item->setToolTip(kApplicationName, key);
    if (services_.icon) {
        const int size = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, list_);
        QPixmap icon = services_.icon({key.toStdString(), title.toStdString()}, qCeil(size * devicePixelRatioF()));
        icon.setDevicePixelRatio(devicePixelRatioF());
        if (!icon.isNull()) item->setIcon(kApplicationName, icon);
    }
    item->setText(kApplicationRole, roleText(memberText(application, "role")));
    item->setText(kApplicationMinimumSize, sizeText(application.value("minimumSize", json())));
    item->setText(kApplicationTiles, lines.isEmpty() ? QStringLiteral("–") : lines.join(u'\n'));
    item->setToolTip(kApplicationTiles, lines.join(u'\n'));
}

void ApplicationsPane::selectionChanged() {
    forget_->setEnabled(list_->currentItem() != nullptr);
}

void ApplicationsPane::forget() {
    const QTreeWidgetItem* item = list_->currentItem();
    if (!item) return;
    callFor(*error_, services_.agent, "app.forget",
            {{"application", item->data(kApplicationName, kKeyRole).toString().toStdString()}},
            {.done = [this](const json& result) { done_->setText(memberText(result, "message")); },
             .refused = [this] { done_->clear(); }});
}

} // namespace kova::ui
