// The context menu of footers and the menu of the tray, connected to a complete agent on the simulated desktop.
#include "tests/ui/WindowStage.h"

#include "ui/AgentActions.h"
#include "ui/client/AgentTexts.h"
#include "ui/tray/MenuBuilder.h"
#include "ui/tray/Tray.h"
#include "ui/windows/Translations.h"

#include <QApplication>
#include <QTranslator>

#include <gtest/gtest.h>

#include <set>

namespace kova::ui::testing {

namespace {

class Menus : public WindowStage {
  protected:
    Menus() {
        desk.arrange();
        // The windows are Terminal, which has the focus, Notes and Mail.
        ask("place", {{"window", "Mail"}, {"tile", "1"}});
        desk.settle();
        EXPECT_TRUE(until([&] { return tile(0).applications.size() == 2 && tile(1).applications.size() == 1; }));
    }
    const TileContents& tile(std::size_t index) { return link.contents()->tiles.at(index); }
    std::string windowIn(std::size_t index, const char* application) {
        for (const StackEntry& entry : tile(index).applications) {
            if (entry.application.name == application) return entry.window;
        }
        ADD_FAILURE() << application;
        return {};
    }
    /// Waits for an open menu; null, and a failure, if none opens.
    QMenu* shown() {
        EXPECT_TRUE(until([] { return QApplication::activePopupWidget() != nullptr; }));
        return qobject_cast<QMenu*>(QApplication::activePopupWidget());
    }
    static QAction* action(const QMenu* of, const QString& title) {
        for (QAction* each : of ? of->actions() : QList<QAction*>()) {
            if (each->text().section(u'\t', 0, 0) == title) return each;
        }
        ADD_FAILURE() << "no entry " << title.toStdString();
        return nullptr;
    }
    /// Opens the context menu of the application's entry in a footer and chooses the menu entry at `path`.
    void choose(std::size_t index, const char* application, const QStringList& path) {
        actions.showEntryMenu(tile(index).id, windowIn(index, application), {});
        QMenu* level = shown();
        for (const QString& title : path) {
            QAction* found = action(level, title);
            ASSERT_TRUE(found);
            if (found->menu()) {
                level = found->menu();
            } else {
                found->trigger();
            }
        }
        while (QWidget* open = QApplication::activePopupWidget()) open->close();
    }

    std::vector<std::pair<std::string, nlohmann::json>> opened;
    AgentActions actions{
        link, nullptr, [] {},
        [this](const std::string& what, const nlohmann::json& parameters) { opened.emplace_back(what, parameters); }};
};

} // namespace

TEST_F(Menus, TheContextMenuOfAFooterActsOnItsWindow) {
    choose(0, "Terminal", {QStringLiteral("Bring to Front")});
    EXPECT_TRUE(until([&] { return tile(0).applications.front().application.name == "Terminal"; }));
    choose(0, "Mail", {QStringLiteral("Move to"), QStringLiteral("Secondary")});
    EXPECT_TRUE(until([&] { return tile(1).applications.size() == 2; }));
    choose(1, "Mail", {QStringLiteral("Float")});
    EXPECT_TRUE(until([&] { return tile(1).applications.size() == 1; }));

    choose(1, "Notes", {QStringLiteral("Rule for Notes"), QStringLiteral("Always in Secondary")});
    ASSERT_TRUE(until([&] { return !opened.empty(); })) << "rules are off, so an alert offers to enable them";
    EXPECT_EQ(opened[0].first, "alert");
    EXPECT_EQ(opened[0].second["method"], "rules.on");
    desk.controller().perform(action::Switch{action::Setting::continuousManagement, true});
    choose(1, "Notes", {QStringLiteral("Rule for Notes"), QStringLiteral("Leave Alone")});
    EXPECT_TRUE(until([&] { return desk.state().rules->size() == 2; }));
    EXPECT_EQ(std::get<disposition::Tile>((*desk.state().rules)[0].disposition).slotID, "secondary-1");
    EXPECT_TRUE(std::holds_alternative<disposition::Ignore>((*desk.state().rules)[1].disposition));

    choose(1, "Notes", {QStringLiteral("Force Quit Notes…")});
    ASSERT_EQ(opened.size(), 2U);
    EXPECT_TRUE(desk.desktop.isRunning("Notes")) << "the alert asks for confirmation first";
    ask(opened[1].second["method"], opened[1].second["parameters"]);
    EXPECT_FALSE(desk.desktop.isRunning("Notes"));
    choose(0, "Terminal", {QStringLiteral("Quit Terminal")});
    ASSERT_TRUE(until([&] { return desk.state().lastActionMessage->value_or("") == "Quit requested for Terminal"; }));
    desk.settle(); // the application takes a moment to end
    EXPECT_FALSE(desk.desktop.isRunning("Terminal"));
}

TEST_F(Menus, TheTraysMenuShowsTheAgentsStateAtTheTimeOfOpening) {
    std::vector<std::string> chosen;
    Tray tray(
        link, [] {}, [&](const std::string& id) { chosen.push_back(id); });
    tray.setAgentConnected(true);
    EXPECT_FALSE(tray.item()) << "the panel cannot show the item yet";
    tray.setHasTrayWindow(true);
    ASSERT_TRUE(tray.item());
    ASSERT_FALSE(tray.item()->contextMenu()) << "the toolkit would open the menu before its entries have arrived";
    for (const auto why : {QSystemTrayIcon::Context, QSystemTrayIcon::Trigger}) {
        for (const bool isPaused : {true, false}) {
            desk.controller().perform(action::Switch{action::Setting::isPaused, isPaused});
            Q_EMIT tray.item()->activated(why);
            QAction* pause = action(shown(), QStringLiteral("Pause KOVA"));
            ASSERT_TRUE(pause);
            EXPECT_EQ(pause->isChecked(), isPaused);
            pause->trigger();
            while (QWidget* open = QApplication::activePopupWidget()) open->close();
        }
    }
    EXPECT_EQ(chosen, std::vector<std::string>(4, "pause"));
}

TEST_F(Menus, TitlesAndMessagesAreInTheUsersLanguage) {
    desk.controller().perform(action::CaptureScene{"Focus"});
    const auto items = decodeMenu(JsonCursor(ask("menu")["result"], ""));
    installTranslations(QLocale(QStringLiteral("de_DE")));
    const auto translators = QCoreApplication::instance()->findChildren<QTranslator*>();
    if (translators.isEmpty()) GTEST_SKIP() << "built without translations";

    std::set<std::string> english;
    const auto check = [&](const auto& self, const std::vector<MenuItem>& list) -> void {
        for (const MenuItem& item : list) {
            const bool isName = item.id.starts_with("scene.") || item.id.starts_with("layout.") ||
                                item.id.starts_with("place.") || item.title.empty();
            const bool isSame = titleInUsersLanguage(item).toStdString() == item.title;
            if (isSame != isName) english.insert(item.title);
            self(self, item.entries);
        }
    };
    check(check, items);
    EXPECT_EQ(english, std::set<std::string>()) << "these titles are neither names nor translated";

    const std::pair<const char*, const char*> texts[]{
        {"Last window action undone", "Letzte Fensteraktion rückgängig gemacht"},
        {"Moved Mail to the left zone", "Mail in die linke Zone verschoben"},
        {"Moved Mail to Primary", "Mail nach Primary verschoben"},
        {"Moved How to cook to Primary", "Moved How to cook to Primary"}, // ambiguous: contains “to” twice
        {"Scene “50 %1” captured", "Szene „50 %1“ festgehalten"},
        {"Mail did not fit in the selected tile, so KOVA automatically claimed 2 additional tiles",
         "Mail passte nicht in die gewählte Kachel, daher hat KOVA 2 weitere Kacheln hinzugenommen"},
        {"Something new", "Something new"},
        {"", ""}};
    for (const auto& [text, expected] : texts) EXPECT_EQ(inUsersLanguage(text).toStdString(), expected);
    for (QTranslator* translator : translators) {
        QCoreApplication::removeTranslator(translator);
        delete translator;
    }
}

} // namespace kova::ui::testing
