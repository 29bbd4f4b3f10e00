#include "ui/dialogs/AlertWindow.h"

#include "ui/client/AgentTexts.h"
#include "ui/overlay/Drawing.h"
#include "ui/style/PaintedIcon.h"
#include "ui/windows/JsonText.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include <algorithm>
#include <memory>
#include <utility>

namespace kova::ui {

namespace {

using nlohmann::json;

constexpr int kAlertColumns = 52; // width of the texts, in average characters
constexpr int kMostRows = 9;      // a longer list of applications scrolls

const WindowRegistration alertRegistration({"alert", [](WindowServices& services) -> std::unique_ptr<HostedWindow> {
                                                return std::make_unique<AlertWindow>(services);
                                            }});

QString alertText(const json& alert, const char* key) {
    return inUsersLanguage(memberText(alert, key).toStdString());
}

} // namespace

AlertWindow::AlertWindow(WindowServices& services) :
    services_(services), picture_(new AlertPicture(services.palette)), title_(new QLabel), text_(new QLabel),
    list_(new QListWidget), error_(new FieldError), confirm_(new QPushButton), cancel_(new QPushButton) {
    setWindowFlags(Qt::Dialog);
    setWindowTitle(QStringLiteral("KOVA"));
    QFont bold = title_->font();
    bold.setBold(true);
    title_->setFont(bold);
    for (QLabel* label : {title_, text_}) {
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
        label->setMinimumWidth(fontMetrics().averageCharWidth() * kAlertColumns);
    }
    list_->setObjectName(QStringLiteral("applications"));
    list_->setAccessibleName(tr("Applications that would end"));
    list_->setAccessibleDescription(tr("These applications would be ended without being asked"));
    list_->setSelectionMode(QAbstractItemView::NoSelection);
    confirm_->setObjectName(QStringLiteral("confirm"));
    confirm_->setAccessibleDescription(tr("Carries out the action that the text describes"));
    cancel_->setObjectName(QStringLiteral("cancel"));
    error_->setObjectName(QStringLiteral("error"));
    connect(confirm_, &QPushButton::clicked, this, &AlertWindow::confirm);
    connect(cancel_, &QPushButton::clicked, this, &QWidget::close);
    connect(&services.agent, &AgentSession::connectionChanged, this, [this] {
        if (!services_.agent.isConnected()) close();
    });

    auto* texts = new QVBoxLayout;
    for (QWidget* each : std::initializer_list<QWidget*>{title_, text_, list_, error_}) texts->addWidget(each);
    auto* above = new QHBoxLayout;
    above->setSpacing(fontMetrics().height());
    above->addWidget(picture_, 0, Qt::AlignTop);
    above->addLayout(texts, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(confirm_);
    buttons->addWidget(cancel_);
    auto* whole = new QVBoxLayout(this);
    whole->addLayout(above);
    whole->addStretch(1);
    whole->addLayout(buttons);
}

void AlertWindow::present(const json& parameters) {
    answer(false); // a new alert replaces an open one; the open one counts as canceled
    alert_ = parameters;
    const QString confirm = alertText(parameters, "confirm"), cancel = alertText(parameters, "cancel");
    const QString close = confirm.isEmpty() ? tr("Close") : confirm;
    const bool isQuestion = !cancel.isEmpty();
    title_->setText(alertText(parameters, "title"));
    text_->setText(alertText(parameters, "text"));
    picture_->show(isQuestion ? AlertKind::warning : AlertKind::information);
    confirm_->setText(confirm);
    confirm_->setVisible(isQuestion);
    cancel_->setText(isQuestion ? cancel : close);
    cancel_->setAccessibleDescription(isQuestion ? tr("Changes nothing") : tr("Closes this message"));
    error_->clear();
    listApplications(parameters.value("applications", json::array()));
    for (QPushButton* each : {confirm_, cancel_}) each->setAutoDefault(true);
    cancel_->setDefault(true);
    cancel_->setFocus();
    layout()->activate();
    adjustSize();
}

void AlertWindow::listApplications(const json& applications) {
    const int size = fontMetrics().height() * 3 / 2;
    list_->clear();
    list_->setIconSize({size, size});
    for (const json& each : applications) {
        const ApplicationName application{memberText(each, "bundleIdentifier").toStdString(),
                                          memberText(each, "name").toStdString()};
        const auto draw = [&services = services_, family = font().family(), application](QPainter& painter,
                                                                                         const QRectF& area) {
            const Style style{.palette = services.palette ? services.palette() : Palette(),
                              .fontFamily = family,
                              .icon = services.icon};
            drawIcon(painter, area.toRect(), application, style);
        };
        auto* item = new QListWidgetItem(paintedIcon(draw), QString::fromStdString(application.name), list_);
        item->setFlags(Qt::ItemIsEnabled);
    }
    list_->setVisible(list_->count() > 0);
    const int rows = std::min(list_->count(), kMostRows);
    list_->setFixedHeight(list_->sizeHintForRow(0) * rows + 2 * list_->frameWidth());
}

void AlertWindow::confirm() {
    const std::string method = memberText(alert_, "method").toStdString();
    if (method.empty()) {
        answer(true);
        close();
        return;
    }
    callFor(*error_, services_.agent, method, alert_.value("parameters", json::object()),
            {.done = [this](const json&) { close(); }});
}

void AlertWindow::answer(bool isConfirmed) {
    const json alert = std::exchange(alert_, nullptr);
    if (!alert.is_object() || !alert.contains("id")) return;
    services_.agent.call(this, "ui.answer", {{"id", alert["id"]}, {"isConfirmed", isConfirmed}});
}

void AlertWindow::closeEvent(QCloseEvent* event) {
    answer(false);
    HostedWindow::closeEvent(event);
}

} // namespace kova::ui
