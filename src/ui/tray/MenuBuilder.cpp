#include "ui/tray/MenuBuilder.h"

#include "ui/client/AgentTexts.h"

namespace kova::ui {

namespace {

/// The title, then a tab and the shortcut. `&` is escaped, since it would mark a mnemonic. The menu only shows the
/// shortcut; the agent handles it.
QString labelOf(const MenuItem& item) {
    QString label = titleInUsersLanguage(item);
    label.replace(u'&', QStringLiteral("&&"));
    if (!item.shortcut.empty()) label += u'\t' + QString::fromStdString(item.shortcut);
    return label;
}

} // namespace

void fillMenu(QMenu& menu, const std::vector<MenuItem>& items, const std::function<void(const std::string&)>& choose) {
    menu.clear();
    qDeleteAll(menu.findChildren<QMenu*>(Qt::FindDirectChildrenOnly));
    for (const MenuItem& item : items) {
        if (item.kind == MenuItem::Kind::separator) {
            menu.addSeparator();
        } else if (item.kind == MenuItem::Kind::submenu) {
            QMenu* submenu = menu.addMenu(labelOf(item));
            submenu->setEnabled(item.isEnabled);
            fillMenu(*submenu, item.entries, choose);
        } else {
            QAction* action = menu.addAction(labelOf(item));
            const bool isHeading = item.kind == MenuItem::Kind::heading;
            action->setEnabled(item.isEnabled && !isHeading);
            action->setCheckable(item.isChecked);
            action->setChecked(item.isChecked);
            if (!isHeading)
                QObject::connect(action, &QAction::triggered, action, [choose, id = item.id] { choose(id); });
        }
    }
}

} // namespace kova::ui
