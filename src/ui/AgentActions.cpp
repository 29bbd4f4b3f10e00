#include "ui/AgentActions.h"

#include "layout/TileTarget.h"

#include <QApplication>
#include <QIcon>
#include <QStyle>

#include <algorithm>
#include <utility>

namespace kova::ui {

namespace {

using nlohmann::json;

QString titleOf(const std::string& utf8) {
    return QString::fromStdString(utf8).replace(u'&', QStringLiteral("&&"));
}

int iconSize() {
    return QApplication::style()->pixelMetric(QStyle::PM_SmallIconSize);
}

} // namespace

QMenu& AgentActions::emptyMenu() {
    styleMenus_();
    if (!menu_) menu_ = std::make_unique<QMenu>();
    menu_->clear();
    qDeleteAll(menu_->findChildren<QMenu*>(Qt::FindDirectChildrenOnly));
    return *menu_;
}

void AgentActions::bringForward(const std::string& window) {
    link_.call("focus.window", {{"window", window}});
}

void AgentActions::stepStack(const std::string& tile, StackStep step) {
    link_.call("stack", {{"step", step == StackStep::next ? "next" : "previous"}, {"tile", tile}});
}

void AgentActions::place(const std::string& window, const std::string& tile) {
    link_.call("place", {{"window", window}, {"tile", tile}});
}

void AgentActions::undo(const std::string& method) {
    link_.call(method);
}

void AgentActions::chooseApplication(const std::string& tile) {
    openWindow_("launcher", {{"tile", tile}});
}

void AgentActions::showStackMenu(const std::string& tileID, QPoint at) {
    const TileContents* tile = link_.contents() ? link_.contents()->tile(tileID) : nullptr;
    if (!tile) return;
    QMenu& menu = emptyMenu();
    for (const StackEntry& entry : tile->applications) {
        const std::string& title = entry.title.empty() ? entry.application.name : entry.title;
        QAction* action = menu.addAction(titleOf(title));
        if (icon_) action->setIcon(icon_(entry.application, iconSize()));
        QObject::connect(action, &QAction::triggered, action, [this, window = entry.window] { bringForward(window); });
    }
    menu.popup(at);
}

void AgentActions::showEntryMenu(const std::string& tileID, const std::string& window, QPoint at) {
    const TileContents* tile = link_.contents() ? link_.contents()->tile(tileID) : nullptr;
    if (!tile) return;
    const auto entry = std::ranges::find(tile->applications, window, &StackEntry::window);
    if (entry == tile->applications.end()) return;
    QMenu& menu = emptyMenu();
    const auto add = [&](const QString& title, auto&& act) {
        QAction* action = menu.addAction(title);
        QObject::connect(action, &QAction::triggered, action, act);
    };
    add(tr("Bring to Front"), [this, window] { bringForward(window); });
    addMoveMenu(*tile, window);
    add(tr("Float"), [this, window] { link_.call("float", {{"window", window}}); });
    menu.addSeparator();
    addRuleMenu(*tile, entry->application);
    menu.addSeparator();
    const std::string name = entry->application.name;
    add(tr("Quit %1").arg(titleOf(name)), [this, window] { link_.call("app.quit", {{"window", window}}); });
    add(tr("Force Quit %1…").arg(titleOf(name)),
        [this, window, application = entry->application] { confirmForceQuit(window, application); });
    menu.popup(at);
}

void AgentActions::addMoveMenu(const TileContents& tile, const std::string& window) {
    QMenu* tiles = menu_->addMenu(tr("Move to"));
    const OverlayContents& contents = *link_.contents();
    for (const DisplayContents& display : contents.displays) {
        if (contents.displays.size() > 1) tiles->addSection(titleOf(display.name));
        for (const TileContents& other : contents.tiles) {
            if (other.display != display.id) continue;
            QAction* action = tiles->addAction(titleOf(other.name));
            action->setEnabled(other.id != tile.id);
            QObject::connect(action, &QAction::triggered, action, [this, window, id = other.id] { place(window, id); });
        }
    }
}

void AgentActions::addRuleMenu(const TileContents& tile, const ApplicationName& application) {
    QMenu* rules = menu_->addMenu(tr("Rule for %1").arg(titleOf(application.name)));
    const std::string named = application.id.empty() ? application.name : application.id;
    const auto add = [&](const QString& title, const nlohmann::json& parameters) {
        QAction* action = rules->addAction(title);
        QObject::connect(action, &QAction::triggered, action, [this, parameters] {
            link_.call("rule.add", parameters, [this](const Response& added) {
                if (added.result.is_object() && !added.result.value("isOn", true)) offerToEnableRules();
            });
        });
    };
    add(tr("Always in %1").arg(titleOf(tile.name)),
        {{"application", named}, {"disposition", "tile"}, {"slot", TileTarget::from(tile.id).slot.text()}});
    add(tr("Always Float"), {{"application", named}, {"disposition", "float"}});
    add(tr("Leave Alone"), {{"application", named}, {"disposition", "ignore"}});
}

/// Called after a rule was added while rules are off: offers to enable them.
void AgentActions::offerToEnableRules() {
    openWindow_("alert",
                {{"title", tr("The rule is not applied yet").toStdString()},
                 {"text", tr("Rules run only when continuous management is enabled. Enable it now?").toStdString()},
                 {"confirm", tr("Enable").toStdString()},
                 {"cancel", tr("Not Now").toStdString()},
                 {"method", "rules.on"},
                 {"parameters", json::object()}});
}

void AgentActions::confirmForceQuit(const std::string& window, const ApplicationName& application) {
    const json listed{{"name", application.name}, {"bundleIdentifier", application.id}};
    openWindow_("alert",
                {{"title", tr("Force %1 to quit?").arg(QString::fromStdString(application.name)).toStdString()},
                 {"text", tr("Changes that were not saved are lost.").toStdString()},
                 {"confirm", tr("Force Quit").toStdString()},
                 {"cancel", tr("Cancel").toStdString()},
                 {"applications", json::array({listed})},
                 {"method", "app.forceQuit"},
                 {"parameters", {{"window", window}}}});
}

} // namespace kova::ui
