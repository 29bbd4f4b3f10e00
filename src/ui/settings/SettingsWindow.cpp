#include "ui/settings/SettingsWindow.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QScreen>
#include <QScrollArea>
#include <QShortcut>

#include <algorithm>
#include <memory>
#include <string>

namespace kova::ui {

namespace {

// The unit is the height of a line of text.
constexpr int kWindowWidth = 54, kWindowHeight = 40, kListWidth = 10;

std::string& lastPane() {
    static std::string name;
    return name;
}

const WindowRegistration settingsRegistration({"settings",
                                               [](WindowServices& services) -> std::unique_ptr<HostedWindow> {
                                                   return std::make_unique<SettingsWindow>(services);
                                               }});

} // namespace

SettingsWindow::SettingsWindow(WindowServices& services) :
    services_(services), kinds_(Registry<PaneKind>::entries()), list_(new QListWidget(this)),
    pages_(new QStackedWidget(this)) {
    std::ranges::sort(kinds_, {}, &PaneKind::order);
    setWindowTitle(tr("KOVA Settings"));
    services_.agent.follow("settings");
    addPanes();
    auto* side = new QVBoxLayout;
    auto* label = new QLabel(tr("&Panes"), this);
    label->setBuddy(list_);
    side->addWidget(label);
    side->addWidget(list_);
    auto* columns = new QHBoxLayout(this);
    columns->addLayout(side);
    columns->addWidget(pages_, 1);
    const int line = fontMetrics().height();
    list_->setFixedWidth(kListWidth * line);
    resize(QSize(kWindowWidth * line, kWindowHeight * line).boundedTo(screen()->availableSize()));
    connect(list_, &QListWidget::currentRowChanged, this, &SettingsWindow::showPane);
    const auto step = [this](int by) {
        list_->setCurrentRow(std::clamp(list_->currentRow() + by, 0, list_->count() - 1));
    };
    connect(new QShortcut(QKeySequence::NextChild, this), &QShortcut::activated, this, [step] { step(1); });
    connect(new QShortcut(QKeySequence::PreviousChild, this), &QShortcut::activated, this, [step] { step(-1); });
}

void SettingsWindow::addPanes() {
    list_->setObjectName(QStringLiteral("panes"));
    list_->setAccessibleName(tr("Panes"));
    list_->setAccessibleDescription(tr("Chooses the settings that are shown beside the list"));
    for (const PaneKind& kind : kinds_) {
        list_->addItem(kind.title());
        list_->item(list_->count() - 1)->setSizeHint(QSize(0, fontMetrics().height() * 2));
        auto* page = new QScrollArea(pages_);
        page->setWidgetResizable(true);
        page->setFrameShape(QFrame::NoFrame);
        page->setFocusPolicy(Qt::NoFocus); // the page scrolls when a control in it gets the focus
        page->setAccessibleName(kind.title());
        pages_->addWidget(page);
    }
}

void SettingsWindow::present(const nlohmann::json& parameters) {
    const auto named = parameters.find("pane");
    selectPane(named != parameters.end() && named->is_string() ? named->get<std::string>() : lastPane());
}

void SettingsWindow::selectPane(std::string_view name) {
    const auto found = std::ranges::find_if(kinds_, [&](const PaneKind& kind) { return name == kind.name; });
    if (found != kinds_.end()) return list_->setCurrentRow(static_cast<int>(found - kinds_.begin()));
    if (list_->currentRow() < 0) list_->setCurrentRow(0);
}

void SettingsWindow::showPane(int row) {
    if (row < 0) return;
    const PaneKind& kind = kinds_[static_cast<std::size_t>(row)];
    lastPane() = kind.name;
    auto* page = static_cast<QScrollArea*>(pages_->widget(row));
    if (!page->widget()) page->setWidget(kind.make(services_));
    pages_->setCurrentIndex(row);
    static_cast<Pane*>(page->widget())->opened();
}

} // namespace kova::ui
