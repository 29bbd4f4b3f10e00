#include "ui/windows/EmptyListText.h"

#include <QEvent>
#include <QListView>
#include <QTreeView>

#include <utility>

namespace kova::ui {

EmptyListText::EmptyListText(QAbstractItemView& list) : QLabel(list.viewport()), list_(list) {
    setTextFormat(Qt::PlainText);
    setAlignment(Qt::AlignCenter);
    setWordWrap(true);
    setMargin(fontMetrics().height());
    setForegroundRole(QPalette::PlaceholderText);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    list.viewport()->installEventFilter(this);
    const QAbstractItemModel* model = list.model();
    connect(model, &QAbstractItemModel::rowsInserted, this, &EmptyListText::refresh);
    connect(model, &QAbstractItemModel::rowsRemoved, this, &EmptyListText::refresh);
    connect(model, &QAbstractItemModel::modelReset, this, &EmptyListText::refresh);
    hide();
}

void EmptyListText::say(const QString& text) {
    setText(text);
    refresh();
}

void EmptyListText::refresh() {
    const bool wasShown = !isHidden(), isShown = !text().isEmpty() && !hasVisibleRow();
    setVisible(isShown);
    if (isShown && !wasShown) description_ = list_.accessibleDescription();
    if (isShown) list_.setAccessibleDescription(text());
    if (!isShown && wasShown) list_.setAccessibleDescription(std::exchange(description_, {}));
}

bool EmptyListText::hasVisibleRow() const {
    const auto* tree = qobject_cast<const QTreeView*>(&list_);
    const auto* column = qobject_cast<const QListView*>(&list_);
    for (int row = 0; row < list_.model()->rowCount(); ++row) {
        const bool isHidden = tree ? tree->isRowHidden(row, {}) : column && column->isRowHidden(row);
        if (!isHidden) return true;
    }
    return false;
}

bool EmptyListText::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Resize) setGeometry(list_.viewport()->rect());
    return QLabel::eventFilter(watched, event);
}

} // namespace kova::ui
