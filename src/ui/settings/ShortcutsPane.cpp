#include "ui/settings/ShortcutsPane.h"

#include "ui/windows/JsonText.h"

#include <QHBoxLayout>
#include <QHeaderView>

#include <utility>

namespace kova::ui {

using nlohmann::json;

namespace {

enum ShortcutColumn { kShortcutTitle, kShortcutKeys, kShortcutRemark, kShortcutColumnCount };
constexpr int kActionRole = Qt::UserRole;

const PaneRegistration
    shortcutsRegistration({30, "shortcuts", [] { return ShortcutsPane::tr("Shortcuts"); },
                           [](WindowServices& services) -> Pane* { return new ShortcutsPane(services); }});

} // namespace

ShortcutsPane::ShortcutsPane(WindowServices& services) :
    agent_(services.agent), search_(new QLineEdit(this)), table_(new QTreeWidget(this)), prompt_(explanation({}, this)),
    error_(new FieldError(this)) {
    auto* column = new QVBoxLayout(this);
    auto* searchLabel = new QLabel(tr("S&earch:"), this);
    searchLabel->setBuddy(search_);
    auto* searchRow = new QHBoxLayout;
    searchRow->addWidget(searchLabel);
    searchRow->addWidget(search_, 1);
    column->addLayout(searchRow);
    column->addWidget(table_, 1);
    column->addWidget(prompt_);
    column->addWidget(error_);
    column->addWidget(buttons());

    search_->setObjectName(QStringLiteral("searchShortcuts"));
    search_->setClearButtonEnabled(true);
    search_->setAccessibleDescription(tr("Shows the actions that have this text in their name or keys"));
    connect(search_, &QLineEdit::textChanged, this, &ShortcutsPane::filter);
    table_->setObjectName(QStringLiteral("shortcuts"));
    table_->setAccessibleName(tr("Keyboard shortcuts"));
    table_->setAccessibleDescription(tr("An action in each row, with its keys; Return records other keys for it"));
    table_->setColumnCount(kShortcutColumnCount);
    table_->setHeaderLabels({tr("Action"), tr("Keys"), tr("Remark")});
    table_->setRootIsDecorated(false);
    table_->setUniformRowHeights(true);
    table_->setTabKeyNavigation(false);
    table_->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    noShortcut_ = new EmptyListText(*table_);
    connect(table_, &QTreeWidget::itemActivated, this, &ShortcutsPane::record);
    connect(table_, &QTreeWidget::itemSelectionChanged, this, &ShortcutsPane::updateButtons);
    followSections(agent_, this, {"shortcuts"}, [this](const json& state) { showState(state); });
    noShortcut_->sayLoading();
    endRecording();
}

QWidget* ShortcutsPane::buttons() {
    auto* row = new QWidget(this);
    auto* line = new QHBoxLayout(row);
    line->setContentsMargins(0, 0, 0, 0);
    const auto add = [&](const QString& label, const char* name, const QString& text) {
        auto* button = new QPushButton(label, row);
        button->setObjectName(QString::fromLatin1(name));
        button->setAccessibleDescription(text);
        line->addWidget(button);
        return button;
    };
    record_ = add({}, "recordShortcut", {});
    clear_ = add(tr("&Clear"), "clearShortcut", tr("Removes the keys of the chosen action"));
    line->addStretch(1);
    restore_ = add(tr("Restore &Defaults"), "restoreShortcuts", tr("Restores the default keys of every action"));
    connect(record_, &QPushButton::clicked, this, [this] { recorder_ ? cancelRecording() : record(); });
    connect(clear_, &QPushButton::clicked, this, [this] {
        callFor(*error_, agent_, "shortcut.clear", {{"action", chosenAction()}});
    });
    connect(restore_, &QPushButton::clicked, this, [this] { callFor(*error_, agent_, "shortcut.restoreDefaults"); });
    return row;
}

void ShortcutsPane::showState(const json& state) {
    const json& section = sectionOf(state, "shortcuts");
    if (!section.is_object()) return;
    canRecord_ = section.at("canHearKeys");
    for (const json& shortcut : section.at("shortcuts")) {
        const std::string action = shortcut.at("action");
        QTreeWidgetItem* item = itemOf(action);
        if (!item) {
            item = new QTreeWidgetItem(table_);
            item->setData(kShortcutTitle, kActionRole, QString::fromStdString(action));
        }
        showShortcut(*item, shortcut);
    }
    filter(search_->text());
    updateButtons();
}

void ShortcutsPane::showShortcut(QTreeWidgetItem& item, const json& shortcut) {
    const QString name = memberText(shortcut, "title"), typed = memberText(shortcut, "keys"),
                  about = remarkOn(shortcut);
    item.setText(kShortcutTitle, name);
    const bool isRecorded = recorder_ && shortcut.at("action") == recordedAction_ && !recordingPrompt_.isEmpty();
    item.setText(kShortcutKeys, isRecorded ? recordingPrompt_ : typed);
    item.setText(kShortcutRemark, about);
    item.setData(kShortcutKeys, Qt::AccessibleTextRole, typed.isEmpty() ? tr("Keyboard shortcut not set") : typed);
}

QString ShortcutsPane::remarkOn(const json& shortcut) const {
    if (shortcut.at("isHeldByOther").get<bool>()) {
        return memberText(shortcut, "heldBy") == QLatin1String("system") ? tr("In use by the system")
                                                                         : tr("In use by another program");
    }
    if (!shortcut.at("conflict").is_string()) return {};
    const QTreeWidgetItem* other = itemOf(shortcut.at("conflict").get<std::string>());
    return tr("Same keys as “%1”").arg(other ? other->text(kShortcutTitle) : memberText(shortcut, "conflict"));
}

QTreeWidgetItem* ShortcutsPane::itemOf(const std::string& action) const {
    const QString name = QString::fromStdString(action);
    for (int i = 0; i < table_->topLevelItemCount(); ++i) {
        QTreeWidgetItem* item = table_->topLevelItem(i);
        if (item->data(kShortcutTitle, kActionRole).toString() == name) return item;
    }
    return nullptr;
}

std::string ShortcutsPane::chosenAction() const {
    const QTreeWidgetItem* item = table_->currentItem();
    return item && !item->isHidden() ? item->data(kShortcutTitle, kActionRole).toString().toStdString() : std::string();
}

void ShortcutsPane::filter(const QString& text) {
    const QStringList words = text.split(u' ', Qt::SkipEmptyParts);
    QTreeWidgetItem* first = nullptr;
    for (int i = 0; i < table_->topLevelItemCount(); ++i) {
        QTreeWidgetItem* item = table_->topLevelItem(i);
        const QString all =
            item->text(kShortcutTitle) + u' ' + item->text(kShortcutKeys) + u' ' + item->text(kShortcutRemark);
        const bool fits = std::all_of(words.begin(), words.end(),
                                      [&](const QString& word) { return all.contains(word, Qt::CaseInsensitive); });
        item->setHidden(!fits);
        if (fits && !first) first = item;
    }
    // Selects the first row, since arrow keys cannot select the only row of a list.
    const bool isChosenShown = table_->currentItem() && !table_->currentItem()->isHidden();
    if (!words.isEmpty() && first && !isChosenShown) table_->setCurrentItem(first);
    if (table_->topLevelItemCount() > 0) noShortcut_->say(tr("Nothing found"));
    updateButtons();
}

void ShortcutsPane::record() {
    const std::string action = chosenAction();
    if (action.empty() || recorder_) return;
    recorder_ = std::make_unique<AgentSession>(agent_.socketPath());
    recordedAction_ = action;
    recordingPrompt_.clear();
    connect(recorder_.get(), &AgentSession::notified, this, &ShortcutsPane::notified);
    connect(recorder_.get(), &AgentSession::connectionChanged, this, &ShortcutsPane::cancelRecording);
    callFor(*error_, *recorder_, "shortcut.record", {{"action", action}},
            {.done =
                 [this](const json& result) {
                     recordingPrompt_ = memberText(result, "prompt");
                     prompt_->setText(tr("Type the keys. Delete takes the shortcut away, Escape leaves it as it is."));
                     showState(agent_.state());
                 },
             .refused = [this] { endRecording(); }});
    updateButtons();
}

void ShortcutsPane::cancelRecording() {
    endRecording();
    showState(agent_.state());
}

void ShortcutsPane::endRecording() {
    // `recorder_` may be the sender of the signal that is being handled, so it is destroyed later.
    if (recorder_) {
        recorder_->disconnect(this);
        recorder_.release()->deleteLater();
    }
    updateButtons();
}

void ShortcutsPane::notified(const std::string& method, const json& parameters) {
    if (method != "recorded") return;
    try {
        error_->showReason(memberText(parameters, "message"));
        if (parameters.at("outcome") == "refused") return; // the recording continues
        endRecording();
        const json& shortcut = parameters.at("shortcut");
        if (QTreeWidgetItem* item = itemOf(shortcut.at("action"))) showShortcut(*item, shortcut);
    } catch (const json::exception& error) {
        qWarning("kova-ui: the shortcut that the agent sent cannot be decoded: %s", error.what());
    }
}

/// The reason why keys cannot be recorded now; empty if they can be recorded or are being recorded.
QString ShortcutsPane::whyNoRecording() const {
    if (recorder_) return {};
    if (!canRecord_) return tr("KOVA cannot record keys here. Set them with: kova shortcut set ACTION KEYS");
    return chosenAction().empty() ? tr("Choose an action to record keys for it.") : QString();
}

void ShortcutsPane::updateButtons() {
    const std::string action = chosenAction();
    record_->setText(recorder_ ? tr("&Cancel") : tr("&Record…"));
    const QString problem = whyNoRecording();
    record_->setEnabled(problem.isEmpty());
    record_->setToolTip(problem.isEmpty() ? tr("Click to record a keyboard shortcut") : problem);
    record_->setAccessibleDescription(problem.isEmpty() ? tr("Records keys for the chosen action, or ends recording")
                                                        : problem);
    if (!recorder_) prompt_->setText(problem.isEmpty() ? tr("Press Return to record keys for the action.") : problem);
    clear_->setEnabled(!recorder_ && !action.empty() && !table_->currentItem()->text(kShortcutKeys).isEmpty());
    restore_->setEnabled(!recorder_);
}

} // namespace kova::ui
