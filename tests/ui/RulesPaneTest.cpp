// The rules in the settings window.
#include "tests/ui/WindowStage.h"
#include "ui/settings/RuleTable.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDropEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QPushButton>
#include <QTest>

namespace kova::ui::testing {

using nlohmann::json;

class RulesInSettings : public WindowStage {
  protected:
    void openPane() {
        window = open("settings", {{"pane", "rules"}});
        table = control<RuleTable>(window, "rules");
    }
    void add(json parameters) { ask("rule.add", parameters); }
    json rules() { return ask("rule.list")["result"]["rules"]; }
    /// The names of the listed rules; a star marks an enabled rule.
    std::string shown() const {
        std::string names;
        for (int row = 0; row < table->topLevelItemCount(); ++row) {
            const QTreeWidgetItem* item = table->topLevelItem(row);
            names +=
                (row > 0 ? ", " : "") + item->text(0).toStdString() + (item->checkState(0) == Qt::Checked ? "*" : "");
        }
        return names;
    }
    bool untilShown(const std::string& names) {
        const bool isShown = until([&] { return shown() == names; });
        EXPECT_EQ(shown(), names);
        return isShown;
    }
    void select(int row) { table->setCurrentItem(table->topLevelItem(row)); }
    void click(const char* button) { QTest::mouseClick(control<QPushButton>(window, button), Qt::LeftButton); }
    /// Drops a row onto another row, at `height` within that row, from 0 (top) to 1.
    void drop(int row, int onto, double height) {
        select(row);
        const QRect place = table->visualItemRect(table->topLevelItem(onto));
        QMimeData data;
        QDropEvent event(QPointF(place.left() + 5, place.top() + height * place.height()), Qt::MoveAction, &data,
                         Qt::LeftButton, Qt::NoModifier);
        table->dropEvent(&event);
    }
    void addThree() {
        add({{"application", "mail"}, {"disposition", "float"}});
        add({{"application", "notes"}, {"disposition", "tile"}, {"slot", "focus-main"}});
        add({{"application", "terminal"}, {"disposition", "ignore"}});
    }

    HostedWindow* window = nullptr;
    RuleTable* table = nullptr;
};

constexpr const char* kThree = "Mail floats*, Notes → Primary*, Terminal ignored*";

TEST_F(RulesInSettings, AreOrderedByPointerAndKeyboardAndFollowCommands) {
    addThree();
    openPane();
    ASSERT_TRUE(untilShown(kThree));
    drop(2, 0, 0.2);
    ASSERT_TRUE(untilShown("Terminal ignored*, Mail floats*, Notes → Primary*"));
    drop(0, 1, 0.8);
    ASSERT_TRUE(untilShown("Mail floats*, Terminal ignored*, Notes → Primary*"));
    drop(1, 1, 0.8); // has no effect: the row is already at this place
    QTest::keyClick(table, Qt::Key_Down, Qt::AltModifier);
    ASSERT_TRUE(untilShown(kThree));
    EXPECT_EQ(table->currentItem()->text(0), "Terminal ignored") << "the moved rule stays selected";
    QTest::keyClick(table, Qt::Key_Down, Qt::AltModifier); // has no effect: the row is the last one
    click("moveUp");
    ASSERT_TRUE(untilShown("Mail floats*, Terminal ignored*, Notes → Primary*"));
    QTest::keyClick(table, Qt::Key_Space);
    ASSERT_TRUE(untilShown("Mail floats*, Terminal ignored, Notes → Primary*"));
    EXPECT_EQ(rules()[1]["isEnabled"], false);
    QTest::keyClick(table, Qt::Key_Delete);
    ASSERT_TRUE(untilShown("Mail floats*, Notes → Primary*"));
    EXPECT_EQ(table->currentItem()->text(0), "Notes → Primary") << "the neighbor of the deleted rule is selected";

    ask("rule.disable", {{"rule", "1"}});
    ask("rules.on");
    EXPECT_TRUE(untilShown("Mail floats, Notes → Primary*"));
    EXPECT_TRUE(until([&] { return control<QCheckBox>(window, "rulesOn")->isChecked(); }));
    QTest::mouseClick(control<QCheckBox>(window, "rulesOn"), Qt::LeftButton, {}, {5, 5});
    EXPECT_TRUE(until([&] { return ask("rule.list")["result"]["isOn"] == false; }));

    select(0);
    click("moveDown");
    ASSERT_TRUE(untilShown("Notes → Primary*, Mail floats"));
    click("deleteRule");
    ASSERT_TRUE(untilShown("Notes → Primary*"));
    add({{"application", "terminal"}, {"disposition", "ignore"}});
    ask("rule.move", {{"rule", "2"}, {"to", 1}});
    EXPECT_TRUE(untilShown("Terminal ignored*, Notes → Primary*")) << "the list shows a move by a command";
    ask("rule.change", {{"rule", "1"}, {"disposition", "tile"}, {"slot", "secondary-1"}});
    EXPECT_TRUE(until([&] { return table->topLevelItem(0)->text(2) == "Tile Secondary 1"; }))
        << "the list shows a change by a command";
    ask("rule.delete", {{"rule", "1"}});
    EXPECT_TRUE(untilShown("Notes → Primary*")) << "the list shows a deletion by a command";
}

TEST_F(RulesInSettings, AreAddedForTheLastFocusedWindowAndForOtherOpenWindows) {
    openPane();
    auto* disposition = control<QComboBox>(window, "newDisposition");
    ASSERT_TRUE(until([&] { return disposition->count() > 3; })) << "the slots of the layouts are listed";
    click("ruleForFocused");
    ASSERT_TRUE(untilShown("Terminal floats*"));
    click("exclude");
    ASSERT_TRUE(untilShown("Terminal floats*, Terminal ignored*"));
    auto* openWindows = control<QMenu>(window, "windowMenu");
    ASSERT_TRUE(until([&] { return openWindows->actions().size() >= 5; }))
        << "the menu has the picker, a separator and three windows";
    disposition->setCurrentIndex(disposition->findText("Tile Primary"));
    for (QAction* action : openWindows->actions()) {
        if (action->text() == "Mail – Inbox") action->trigger();
    }
    ASSERT_TRUE(untilShown("Terminal floats*, Terminal ignored*, Mail → Primary*"));
    EXPECT_EQ(table->currentItem()->text(0), "Mail → Primary");

    // The next click picks the window under the pointer.
    desk.arrange();
    const json tile = ask("query.tiles")["result"]["tiles"][0];
    const std::string there = tile["application"];
    openWindows->actions().front()->trigger();
    QTest::mousePress(
        window, Qt::LeftButton, {},
        window->mapFromGlobal(QPoint(tile["frame"]["x"].get<int>() + 60, tile["frame"]["y"].get<int>() + 60)));
    EXPECT_TRUE(until([&] { return rules().size() == 4; }));
    EXPECT_EQ(rules()[3]["name"], there + " → focus-main");
    openWindows->actions().front()->trigger();
    QTest::keyClick(window, Qt::Key_Escape);
    EXPECT_TRUE(window->isVisible()) << "Escape only cancels the picking";
}

TEST_F(RulesInSettings, TheSelectedRuleShowsItsWindowsAndCanBeChanged) {
    addThree();
    add({{"application", "mail"}, {"disposition", "ignore"}});
    openPane();
    ASSERT_TRUE(until([&] { return table->topLevelItemCount() == 4; }));
    const auto* windows = control<QLabel>(window, "ruleWindows");
    select(3);
    EXPECT_EQ(windows->text(), "Mail – Inbox (an earlier rule decides)");
    EXPECT_EQ(table->topLevelItem(3)->text(3), "0");
    select(0);
    EXPECT_EQ(windows->text(), "Mail – Inbox");
    desk.opens("Mail", {.title = "Draft"}).settle();
    EXPECT_TRUE(until([&] { return windows->text() == "Mail – Inbox\nMail – Draft"; }))
        << windows->text().toStdString();

    auto* title = control<QLineEdit>(window, "ruleTitle");
    QTest::keyClicks(title, " draft ");
    QTest::keyClick(title, Qt::Key_Return);
    EXPECT_TRUE(until([&] { return windows->text() == "Mail – Draft"; }));
    EXPECT_EQ(rules()[0]["title"], "draft");
    auto* disposition = control<QComboBox>(window, "ruleDisposition");
    ASSERT_TRUE(until([&] { return disposition->count() > 3; }));
    disposition->setFocus();
    QTest::keyClick(disposition, Qt::Key_Down);
    EXPECT_TRUE(until([&] { return rules()[0]["disposition"] == "ignore"; }));

    title->setFocus();
    ASSERT_TRUE(until([&] { return title->hasFocus(); }));
    QTest::keyClicks(title, "s");
    ask("rule.delete", {{"rule", "1"}});
    EXPECT_TRUE(until([&] { return table->topLevelItemCount() == 3 && title->text().isEmpty(); }))
        << "the text that was typed for a deleted rule must not become the title of its neighbor";
}

TEST_F(RulesInSettings, ErrorsAreShownAtTheControl) {
    desk.desktop.setTrusted(false);
    desk.settle();
    openPane();
    click("ruleForFocused");
    const auto* error = control<QLabel>(window, "newError");
    EXPECT_TRUE(until([&] { return error->isVisible(); }));
    EXPECT_EQ(error->text(), "No focused application window found");
}

class GoldenRulesInSettings : public RulesInSettings {};

TEST_F(GoldenRulesInSettings, MatchTheGoldenPictures) {
    addThree();
    ask("rules.on");
    ask("rule.disable", {{"rule", "3"}});
    openPane();
    ASSERT_TRUE(until(
        [&] { return table->topLevelItemCount() == 3 && control<QComboBox>(window, "ruleDisposition")->count() > 3; }));
    select(1);
    compareWithGoldens(*window, "settings-rules");
}

} // namespace kova::ui::testing
