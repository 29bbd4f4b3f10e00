#include "ui/settings/RuleTable.h"

#include "ui/settings/RuleTexts.h"
#include "ui/windows/JsonText.h"

#include <QDropEvent>
#include <QHeaderView>
#include <QKeyEvent>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <utility>

namespace kova::ui {

namespace {

constexpr int kRuleIDRole = Qt::UserRole;
enum RuleColumn { kRuleName, kRuleCriterion, kRuleAction, kRuleWindows, kRuleColumnCount };

} // namespace

RuleTable::RuleTable(QWidget* parent) : QTreeWidget(parent) {
    setColumnCount(kRuleColumnCount);
    setHeaderLabels({tr("Rule"), tr("For"), tr("What happens"), tr("Open windows")});
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setSelectionMode(SingleSelection);
    setDragDropMode(InternalMove);
    setDropIndicatorShown(true);
    header()->setStretchLastSection(false);
    header()->setSectionResizeMode(QHeaderView::Stretch);
    header()->setSectionResizeMode(kRuleAction, QHeaderView::ResizeToContents);
    header()->setSectionResizeMode(kRuleWindows, QHeaderView::ResizeToContents);
    connect(this, &QTreeWidget::itemChanged, this, [this](QTreeWidgetItem* item, int column) {
        if (isFilling_ || column != kRuleName) return;
        Q_EMIT switchWanted(item->data(kRuleName, kRuleIDRole).toString(), item->checkState(kRuleName) == Qt::Checked);
    });
    connect(this, &QTreeWidget::currentItemChanged, this, [this] {
        if (!isFilling_) Q_EMIT selectionMoved();
    });
}

/// Keeps the rows if their rules are the same. New rows would disturb a drag, and an update may arrive during a drag,
/// for example when a window opens or closes.
void RuleTable::show(const nlohmann::json& rules) {
    isFilling_ = true;
    if (!hasRowsOf(rules)) rebuild(static_cast<int>(rules.size()));
    const QString before = std::exchange(selectedBefore_, {});
    const int rowBefore = std::exchange(rowBefore_, -1);
    int row = 0;
    for (const nlohmann::json& rule : rules) {
        QTreeWidgetItem* item = topLevelItem(row++);
        item->setText(kRuleName, memberText(rule, "label"));
        item->setText(kRuleCriterion, RuleTexts::criterion(rule));
        item->setText(kRuleAction, RuleTexts::action(rule));
        item->setText(kRuleWindows, RuleTexts::windowCount(rule));
        item->setToolTip(kRuleWindows, RuleTexts::windows(rule));
        item->setCheckState(kRuleName, rule.value("isEnabled", true) ? Qt::Checked : Qt::Unchecked);
        item->setData(kRuleName, kRuleIDRole, memberText(rule, "id"));
    }
    if (!selectShown(idToSelect_)) (void)selectShown(before);
    if (selectedRow() < 0 && rowBefore >= 0 && row > 0) { // the selected rule was deleted: selects its neighbor
        setCurrentItem(topLevelItem(std::min(rowBefore, row - 1)));
    }
    isFilling_ = false;
    Q_EMIT selectionMoved();
}

bool RuleTable::hasRowsOf(const nlohmann::json& rules) const {
    if (static_cast<std::size_t>(topLevelItemCount()) != rules.size()) return false;
    for (int row = 0; row < topLevelItemCount(); ++row) {
        if (idAt(row) != memberText(rules[static_cast<std::size_t>(row)], "id")) return false;
    }
    return true;
}

void RuleTable::rebuild(int rows) {
    selectedBefore_ = selectedID();
    rowBefore_ = selectedRow();
    clear();
    for (int row = 0; row < rows; ++row) {
        auto* item = new QTreeWidgetItem(this);
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable | Qt::ItemIsDragEnabled);
        item->setTextAlignment(kRuleWindows, Qt::AlignRight | Qt::AlignVCenter);
    }
}

QString RuleTable::idAt(int row) const {
    const QTreeWidgetItem* item = topLevelItem(row);
    return item ? item->data(kRuleName, kRuleIDRole).toString() : QString();
}

int RuleTable::selectedRow() const {
    return currentItem() ? indexOfTopLevelItem(currentItem()) : -1;
}

QString RuleTable::selectedID() const {
    return idAt(selectedRow());
}

void RuleTable::select(const QString& id) {
    if (!selectShown(id)) idToSelect_ = id;
}

/// Returns false if the rule is not in the list.
bool RuleTable::selectShown(const QString& id) {
    for (int row = 0; row < topLevelItemCount(); ++row) {
        if (id.isEmpty() || idAt(row) != id) continue;
        idToSelect_.clear();
        setCurrentItem(topLevelItem(row));
        return true;
    }
    return false;
}

void RuleTable::moveSelected(int places) {
    const int row = selectedRow(), to = row + places;
    if (places != 0 && row >= 0 && to >= 0 && to < topLevelItemCount()) Q_EMIT moveWanted(idAt(row), to + 1);
}

/// The number of rows above the gap that is nearest to the position.
int RuleTable::gapAt(QPoint position) const {
    QTreeWidgetItem* item = itemAt(position);
    if (!item) return topLevelItemCount();
    const int row = indexOfTopLevelItem(item);
    return position.y() < visualItemRect(item).center().y() ? row : row + 1;
}

/// Only requests the move; the rows change after the agent has moved the rule.
void RuleTable::dropEvent(QDropEvent* event) {
    const int row = selectedRow(), gap = gapAt(event->position().toPoint());
    event->setDropAction(Qt::IgnoreAction);
    event->accept();
    setState(NoState);
    viewport()->update();
    moveSelected((gap > row ? gap - 1 : gap) - row);
}

void RuleTable::keyPressEvent(QKeyEvent* event) {
    const bool hasAlt = event->modifiers() & Qt::AltModifier;
    if (hasAlt && (event->key() == Qt::Key_Up || event->key() == Qt::Key_Down)) {
        return moveSelected(event->key() == Qt::Key_Up ? -1 : 1);
    }
    if (event->key() == Qt::Key_Space && currentItem()) { // works in every column
        const bool isChecked = currentItem()->checkState(kRuleName) == Qt::Checked;
        return currentItem()->setCheckState(kRuleName, isChecked ? Qt::Unchecked : Qt::Checked);
    }
    if (event->key() == Qt::Key_Delete && selectedRow() >= 0) return Q_EMIT deletionWanted(selectedID());
    QTreeWidget::keyPressEvent(event);
}

} // namespace kova::ui
