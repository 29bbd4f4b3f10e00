#include "ui/settings/RulesPane.h"

#include "ui/settings/RuleTexts.h"
#include "ui/windows/JsonText.h"

#include <QFormLayout>
#include <QHBoxLayout>

#include <set>
#include <utility>

namespace kova::ui {

namespace {

using nlohmann::json;

const PaneRegistration rulesRegistration({40, "rules", [] { return RulesPane::tr("Rules"); },
                                          [](WindowServices& services) -> Pane* { return new RulesPane(services); }});

constexpr int kDispositionRole = Qt::UserRole;
constexpr int kLongestWindowList = 4; // lines

json dispositionOf(const QComboBox& box, int index) {
    return json::parse(box.itemData(index, kDispositionRole).toByteArray().toStdString(), nullptr, false);
}

void addDisposition(QComboBox& box, const QString& text, const json& disposition) {
    box.addItem(text);
    box.setItemData(box.count() - 1, QByteArray::fromStdString(disposition.dump()), kDispositionRole);
}

/// The index of the disposition's entry. A missing entry is added, for example for a slot that no layout has.
int indexOf(QComboBox& box, const json& disposition, const QString& text) {
    for (int index = 0; index < box.count(); ++index) {
        if (dispositionOf(box, index) == disposition) return index;
    }
    addDisposition(box, text, disposition);
    return box.count() - 1;
}

json dispositionOf(const json& rule) {
    json out{{"disposition", rule.value("disposition", "float")}};
    if (out["disposition"] == "tile") out["slot"] = rule.value("slot", json());
    return out;
}

} // namespace

RulesPane::RulesPane(WindowServices& services) : services_(services) {
    auto* column = new QVBoxLayout(this);
    buildSwitch(*column);
    buildNew(*column);
    buildList(*column);
    buildSelected(*column);
    connect(&picker_, &WindowPicker::picked, this, [this](QPoint position) {
        pickingHint_->hide();
        addForWindowAt(position);
    });
    connect(&picker_, &WindowPicker::canceled, pickingHint_, &QLabel::hide);
    connect(&services_.agent, &AgentSession::changed, this, [this](const std::set<std::string>& sections) {
        if (sections.contains("rules")) showRules();
        if (sections.contains("windows")) fillWindowMenu();
    });
}

void RulesPane::opened() {
    services_.agent.follow();
    services_.agent.follow("settings");
    services_.agent.call(this, "layout.list", json::object(), [this](const Response& response) {
        if (response.error.empty()) fillDispositions(response.result.value("slots", json::array()));
    });
    showRules();
    fillWindowMenu();
}

void RulesPane::buildSwitch(QVBoxLayout& column) {
    isOn_ = new QCheckBox(tr("&Continuously apply window rules"));
    isOn_->setObjectName(QStringLiteral("rulesOn"));
    isOn_->setAccessibleDescription(tr("Applies the rules once to each open window and once to each new window"));
    auto* explanation = new QLabel(tr("Rules are explainable and run only when continuous management is enabled."));
    explanation->setWordWrap(true);
    switchError_ = new FieldError;
    column.addWidget(isOn_);
    column.addWidget(explanation);
    column.addWidget(switchError_);
    connect(isOn_, &QCheckBox::clicked, this, [this](bool isOn) {
        callFor(*switchError_, services_.agent, isOn ? "rules.on" : "rules.off", json::object(),
                {.refused = [this, isOn] { isOn_->setChecked(!isOn); }});
    });
}

void RulesPane::buildNew(QVBoxLayout& column) {
    newDisposition_ = new QComboBox;
    newDisposition_->setObjectName(QStringLiteral("newDisposition"));
    newDisposition_->setAccessibleDescription(tr("What a new rule does with the windows of the application"));
    auto* label = new QLabel(tr("&New rule:"));
    label->setBuddy(newDisposition_);
    auto* forFocused = new QPushButton(tr("Rule for &Focused App"));
    forFocused->setObjectName(QStringLiteral("ruleForFocused"));
    forFocused->setAccessibleDescription(tr("Adds a rule for the application whose window was focused last"));
    auto* forWindow = new QPushButton(tr("Rule for a &Window"));
    forWindow->setObjectName(QStringLiteral("ruleForWindow"));
    forWindow->setAccessibleDescription(tr("Adds a rule for the application of an open window"));
    windowMenu_ = new QMenu(forWindow);
    windowMenu_->setObjectName(QStringLiteral("windowMenu"));
    forWindow->setMenu(windowMenu_);
    auto* exclude = new QPushButton(tr("E&xclude from KOVA"));
    exclude->setObjectName(QStringLiteral("exclude"));
    exclude->setAccessibleDescription(
        tr("Adds a rule by which KOVA ignores the windows of the application that was focused last"));
    pickingHint_ = new QLabel(tr("Click the window that the rule is for. Escape cancels."));
    pickingHint_->setWordWrap(true);
    pickingHint_->hide();
    newError_ = new FieldError;
    newError_->setObjectName(QStringLiteral("newError"));

    const auto addRow = [&](std::initializer_list<QWidget*> controls) {
        auto* row = new QHBoxLayout;
        for (QWidget* each : controls) row->addWidget(each);
        row->addStretch();
        column.addLayout(row);
    };
    addRow({label, newDisposition_, forFocused, forWindow});
    addRow({exclude});
    column.addWidget(pickingHint_);
    column.addWidget(newError_);
    fillDispositions(json::array());
    connect(forFocused, &QPushButton::clicked, this,
            [this] { addForFocused(dispositionOf(*newDisposition_, newDisposition_->currentIndex())); });
    connect(exclude, &QPushButton::clicked, this, [this] { addForFocused({{"disposition", "ignore"}}); });
}

void RulesPane::buildList(QVBoxLayout& column) {
    table_ = new RuleTable;
    table_->setObjectName(QStringLiteral("rules"));
    table_->setAccessibleName(tr("Rules"));
    table_->setAccessibleDescription(tr("The first rule that matches a window decides. Drag rules to change their "
                                        "order, or press Alt with the up or down arrow"));
    noRule_ = new EmptyListText(*table_);
    up_ = new QPushButton(tr("Move &Up"));
    up_->setObjectName(QStringLiteral("moveUp"));
    up_->setAccessibleDescription(tr("Lets the selected rule decide before the rule that is above it now"));
    down_ = new QPushButton(tr("Move &Down"));
    down_->setObjectName(QStringLiteral("moveDown"));
    down_->setAccessibleDescription(tr("Lets the selected rule decide after the rule that is below it now"));
    delete_ = new QPushButton(tr("De&lete"));
    delete_->setObjectName(QStringLiteral("deleteRule"));
    delete_->setAccessibleDescription(tr("Deletes the selected rule"));
    listError_ = new FieldError;
    listError_->setObjectName(QStringLiteral("listError"));

    auto* row = new QHBoxLayout;
    for (QPushButton* button : {up_, down_, delete_}) row->addWidget(button);
    row->addStretch();
    column.addWidget(table_, 1);
    column.addLayout(row);
    column.addWidget(listError_);

    const auto remove = [this](const QString& id) {
        callFor(*listError_, services_.agent, "rule.delete", {{"rule", id.toStdString()}});
    };
    connect(table_, &RuleTable::selectionMoved, this, [this] { showSelected(); });
    connect(table_, &RuleTable::deletionWanted, this, remove);
    connect(table_, &RuleTable::moveWanted, this, [this](const QString& id, int place) {
        callFor(*listError_, services_.agent, "rule.move", {{"rule", id.toStdString()}, {"to", place}});
    });
    connect(table_, &RuleTable::switchWanted, this, [this](const QString& id, bool isEnabled) {
        callFor(*listError_, services_.agent, isEnabled ? "rule.enable" : "rule.disable", {{"rule", id.toStdString()}},
                {.refused = [this] { showRules(); }});
    });
    connect(up_, &QPushButton::clicked, this, [this] { table_->moveSelected(-1); });
    connect(down_, &QPushButton::clicked, this, [this] { table_->moveSelected(1); });
    connect(delete_, &QPushButton::clicked, this, [this, remove] { remove(table_->selectedID()); });
}

void RulesPane::buildSelected(QVBoxLayout& column) {
    selected_ = new QGroupBox(tr("Selected rule"));
    title_ = new QLineEdit;
    title_->setObjectName(QStringLiteral("ruleTitle"));
    title_->setPlaceholderText(tr("Any title"));
    title_->setAccessibleDescription(tr("Only windows whose title contains this text, in upper or lower case"));
    disposition_ = new QComboBox;
    disposition_->setObjectName(QStringLiteral("ruleDisposition"));
    disposition_->setAccessibleDescription(tr("What the selected rule does with a new window"));
    windows_ = new QLabel;
    windows_->setObjectName(QStringLiteral("ruleWindows"));
    windows_->setWordWrap(true);
    windows_->setTextFormat(Qt::PlainText);
    windows_->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    windows_->setMinimumHeight(2 * fontMetrics().lineSpacing());
    selectedError_ = new FieldError;
    selectedError_->setObjectName(QStringLiteral("selectedError"));

    auto* form = new QFormLayout(selected_);
    form->addRow(tr("&Title contains:"), title_);
    form->addRow(tr("W&hat happens:"), disposition_);
    form->addRow(tr("Open windows:"), windows_);
    form->addRow(selectedError_);
    column.addWidget(selected_);
    connect(title_, &QLineEdit::editingFinished, this, [this] {
        if (title_->text() != memberText(selectedRule(), "title")) change("title", title_->text().toStdString());
    });
    connect(disposition_, &QComboBox::activated, this, [this](int index) { changeDisposition(index); });
}

void RulesPane::showRules() {
    const json list = services_.agent.state().value("rules", json::object());
    isOn_->setChecked(list.value("isOn", false));
    table_->show(list.value("rules", json::array()));
    list.empty() ? noRule_->sayLoading() : noRule_->say(tr("No rules yet"));
}

json RulesPane::selectedRule() const {
    const std::string id = table_->selectedID().toStdString();
    const json list = services_.agent.state().value("rules", json::object()).value("rules", json::array());
    for (const json& rule : list) {
        if (rule.value("id", "") == id) return rule;
    }
    return nullptr;
}

void RulesPane::showSelected() {
    const json rule = selectedRule();
    const bool isThere = rule.is_object();
    const int number = isThere ? rule.value("number", 1) : 0;
    selected_->setEnabled(isThere);
    up_->setEnabled(isThere && number > 1);
    down_->setEnabled(isThere && number < table_->topLevelItemCount());
    delete_->setEnabled(isThere);
    selectedError_->clear();
    const QString title = isThere ? memberText(rule, "title") : QString();
    // An update of the same rule, for example after a window has opened, must not replace the text that is being typed.
    const bool isSameRule = table_->selectedID() == shownID_;
    shownID_ = table_->selectedID();
    if (!isSameRule || !title_->hasFocus() || !title_->isModified()) title_->setText(title);
    windows_->setText(isThere ? RuleTexts::windows(rule).split(u'\n').mid(0, kLongestWindowList).join(u'\n')
                              : QString());
    windows_->setToolTip(isThere ? RuleTexts::windows(rule) : QString());
    if (isThere) disposition_->setCurrentIndex(indexOf(*disposition_, dispositionOf(rule), RuleTexts::action(rule)));
}

void RulesPane::fillDispositions(const json& slots) {
    for (QComboBox* box : {newDisposition_, disposition_}) {
        if (!box) continue;
        const json before = dispositionOf(*box, box->currentIndex());
        const QString textBefore = box->currentText();
        box->clear();
        addDisposition(*box, tr("Float"), {{"disposition", "float"}});
        addDisposition(*box, tr("Ignore"), {{"disposition", "ignore"}});
        for (const json& slot : slots) {
            addDisposition(*box, tr("Tile %1").arg(memberText(slot, "name")),
                           {{"disposition", "tile"}, {"slot", slot.value("id", "")}});
        }
        if (before.is_object()) box->setCurrentIndex(indexOf(*box, before, textBefore));
    }
}

void RulesPane::fillWindowMenu() {
    if (windowMenu_->isVisible()) return;
    windowMenu_->clear();
    if (WindowPicker::isPossible()) {
        QAction* pick = windowMenu_->addAction(tr("&Pick with the Pointer"));
        connect(pick, &QAction::triggered, this, [this] {
            pickingHint_->show();
            picker_.start(this);
        });
        windowMenu_->addSeparator();
    }
    for (const json& window : services_.agent.state().value("windows", json::array())) {
        QAction* action = windowMenu_->addAction(RuleTexts::window(window).replace(u'&', QStringLiteral("&&")));
        connect(action, &QAction::triggered, this, [this, id = window.value("id", "")] {
            addForWindow(id, dispositionOf(*newDisposition_, newDisposition_->currentIndex()));
        });
    }
}

void RulesPane::change(const char* member, const json& value) {
    title_->setModified(false);
    callFor(*selectedError_, services_.agent, "rule.change",
            {{"rule", table_->selectedID().toStdString()}, {member, value}}, {.refused = [this] { showRules(); }});
}

void RulesPane::changeDisposition(int index) {
    json parameters = dispositionOf(*disposition_, index);
    parameters["rule"] = table_->selectedID().toStdString();
    callFor(*selectedError_, services_.agent, "rule.change", std::move(parameters),
            {.refused = [this] { showSelected(); }});
}

/// Uses the window that was focused last, since now the settings window has the focus.
void RulesPane::addForFocused(json disposition) {
    callFor(*newError_, services_.agent, "query.focus", json::object(),
            {.done = [this, wanted = std::move(disposition)](const json& focus) {
                const json last = focus.value("last", json());
                if (!last.is_object()) return newError_->showReason(tr("No focused application window found"));
                addForWindow(last.value("id", ""), wanted);
            }});
}

void RulesPane::addForWindow(const std::string& window, json disposition) {
    disposition["window"] = window;
    callFor(*newError_, services_.agent, "rule.add", std::move(disposition),
            {.done = [this](const json& result) { table_->select(memberText(result.value("rule", json()), "id")); }});
}

void RulesPane::addForWindowAt(QPoint pixels) {
    const OverlayContents* overlay = services_.overlay ? services_.overlay() : nullptr;
    const double scale = overlay && !overlay->displays.empty() ? overlay->displays.front().scale : 1;
    const QPoint at = pixels - (services_.origin ? services_.origin() : QPoint());
    callFor(*newError_, services_.agent, "query.windowAt", {{"x", at.x() / scale}, {"y", at.y() / scale}},
            {.done = [this](const json& result) {
                const json window = result.value("window", json());
                if (!window.is_object()) return newError_->showReason(tr("No window that KOVA manages is there"));
                addForWindow(window.value("id", ""), dispositionOf(*newDisposition_, newDisposition_->currentIndex()));
            }});
}

} // namespace kova::ui
