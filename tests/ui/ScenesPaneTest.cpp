// The scenes in the settings window.
#include "tests/linux/TemporaryFolder.h"
#include "tests/ui/WindowStage.h"

#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QTreeWidget>

#include <cstdlib>
#include <ctime>
#include <fstream>

namespace kova::ui::testing {

using nlohmann::json;

class ScenesInSettings : public WindowStage {
  protected:
    ScenesInSettings() {
        setenv("TZ", "UTC", 1);
        tzset();
        QLocale::setDefault(QLocale::c());
        desk.arrange();
    }
    void openPane() {
        window = open("settings", {{"pane", "scenes"}});
        list = control<QTreeWidget>(window, "scenes");
    }
    std::string shown() const {
        std::string names;
        for (int row = 0; row < list->topLevelItemCount(); ++row) {
            names += (row > 0 ? ", " : "") + list->topLevelItem(row)->text(1).toStdString();
        }
        return names;
    }
    bool untilShown(const std::string& names) {
        const bool isShown = until([&] { return shown() == names; });
        EXPECT_EQ(shown(), names);
        return isShown;
    }
    void select(int row) { list->setCurrentItem(list->topLevelItem(row)); }
    void click(const char* button) { QTest::mouseClick(control<QPushButton>(window, button), Qt::LeftButton); }
    QString text(const char* label) { return control<QLabel>(window, label)->text(); }
    /// Chooses the file in the dialog that the button opens.
    void choose(const char* button, const std::string& path) {
        click(button);
        auto* dialog = window->findChild<QFileDialog*>();
        ASSERT_TRUE(dialog);
        Q_EMIT dialog->fileSelected(QString::fromStdString(path));
        dialog->close();
        until([&] { return !window->findChild<QFileDialog*>(); });
    }

    TemporaryFolder files;
    HostedWindow* window = nullptr;
    QTreeWidget* list = nullptr;
};

TEST_F(ScenesInSettings, AreCapturedRenamedDeletedAndRestored) {
    openPane();
    auto* name = control<QLineEdit>(window, "sceneName");
    EXPECT_EQ(name->placeholderText(), "Scene name (optional)");
    QTest::keyClicks(name, "Work");
    QTest::keyClick(name, Qt::Key_Return);
    ASSERT_TRUE(untilShown("Work"));
    EXPECT_EQ(name->text(), "");
    ask("scene.capture", {{"name", "Play"}});
    ASSERT_TRUE(untilShown("Work, Play")) << "the list shows a scene that a command captured";

    select(0);
    list->setFocus();
    QTest::keyClick(list, Qt::Key_F2);
    auto* editor = list->findChild<QLineEdit*>();
    ASSERT_TRUE(editor);
    QTest::keyClick(editor, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(editor, "De");
    const QPointer<QLineEdit> open = editor;
    ask("scene.capture", {{"name", "Music"}});
    ask("scene.rename", {{"scene", "Play"}, {"newName", "Games"}});
    ask("scene.rename", {{"scene", "Work"}, {"newName", "Office"}});
    ASSERT_TRUE(untilShown("Work, Games, Music")) << "other scenes are shown while the name is typed";
    ASSERT_TRUE(open && open->text() == "De");
    ask("scene.delete", {{"scene", "Music"}});
    ask("scene.rename", {{"scene", "Games"}, {"newName", "Play"}});
    ASSERT_TRUE(untilShown("Work, Play"));
    ASSERT_TRUE(open && open->text() == "De");
    QTest::keyClicks(editor, "sk");
    QTest::keyClick(editor, Qt::Key_Return);
    ASSERT_TRUE(untilShown("Desk, Play"));
    EXPECT_TRUE(until([&] { return ask("scene.list")["result"]["scenes"][0]["name"] == "Desk"; }));
    list->topLevelItem(0)->setText(1, "  ");
    EXPECT_TRUE(until([&] { return text("listError") == "A scene needs a name"; }));
    EXPECT_TRUE(untilShown("Desk, Play")) << "the former name is shown again";

    QTest::keyClick(list, Qt::Key_Delete);
    ASSERT_TRUE(untilShown("Play"));
    EXPECT_EQ(text("deletedText"), "Scene “Desk” deleted");
    click("undelete");
    EXPECT_TRUE(untilShown("Desk, Play"));

    select(1);
    click("renameScene");
    ASSERT_TRUE(list->findChild<QLineEdit*>()) << "the name is edited in its place";
    ask("scene.rename", {{"scene", "Play"}, {"newName", "Games"}});
    QTest::keyClick(list->findChild<QLineEdit*>(), Qt::Key_Escape);
    ASSERT_TRUE(untilShown("Desk, Games")) << "a command renamed the scene while its name was edited";
    select(0);
    click("deleteScene");
    ASSERT_TRUE(untilShown("Games"));
    ask("scene.rename", {{"scene", "Games"}, {"newName", "Toys"}});
    EXPECT_TRUE(untilShown("Toys")) << "the list shows a new name that a command gave";
    ask("scene.undelete");
    EXPECT_TRUE(until([&] { return list->topLevelItemCount() == 2; }))
        << "the list shows a scene that a command restored";
    for (const char* scene : {"Toys", "Desk"}) ask("scene.delete", {{"scene", scene}});
    EXPECT_TRUE(untilShown("")) << "the list shows that a command deleted the scenes";
}

TEST_F(ScenesInSettings, ListWhatOpeningWouldChangeAndAreOpened) {
    ask("scene.capture", {{"name", "Work"}});
    const std::string before = desk.tiles();
    openPane();
    ASSERT_TRUE(until([&] { return text("noDifference") == "Nothing: the workspace is as in the scene."; }));
    ask("layout.select", {{"layout", "jarvis.quad-grid"}});
    const auto* differences = control<QTreeWidget>(window, "differences");
    ASSERT_TRUE(until([&] { return differences->topLevelItemCount() > 0; }));
    EXPECT_EQ(differences->topLevelItem(0)->text(1), "Dual Split (2)");
    EXPECT_EQ(differences->topLevelItem(0)->text(2), QString::fromUtf8("Quad Grid (2×2)"));
    click("openScene");
    EXPECT_TRUE(until([&] { return differences->topLevelItemCount() == 0; }));
    desk.settle();
    EXPECT_EQ(desk.tiles(), before);

    desk.desktop.setTrusted(false);
    desk.settle();
    click("openScene");
    EXPECT_TRUE(until([&] { return text("listError") == "Accessibility permission is required"; }));
}

TEST_F(ScenesInSettings, AreExportedAndAreImportedAfterASummary) {
    ask("scene.capture", {{"name", "Work"}});
    ask("rule.add", {{"application", "mail"}, {"disposition", "float"}});
    openPane();
    ASSERT_TRUE(untilShown("Work"));
    const std::string path = (files.path() / "desk.json").string();
    choose("export", path);
    const auto contents = [&] {
        std::ifstream file(path);
        return std::string(std::istreambuf_iterator<char>(file), {});
    };
    ASSERT_TRUE(until([&] { return !contents().empty(); }));
    EXPECT_EQ(contents(), ask("export")["result"]["text"]);
    choose("import", path);
    EXPECT_TRUE(until([&] { return text("importText").startsWith("Nothing in “desk.json” is new."); }));
    EXPECT_FALSE(control<QPushButton>(window, "addImport")->isVisible());

    ask("scene.delete", {{"scene", "Work"}});
    choose("import", path);
    const QString summary = "A scene would be added from “desk.json”: Work\n"
                            "Already there and left unchanged: 1";
    EXPECT_TRUE(until([&] { return text("importText") == summary; })) << text("importText").toStdString();
    EXPECT_EQ(shown(), "") << "before the confirmation no scene is added";
    click("addImport");
    EXPECT_TRUE(untilShown("Work"));

    std::ofstream(path) << "{";
    choose("import", path);
    EXPECT_TRUE(until([&] { return text("fileError").startsWith("Import failed: "); }));
    std::ofstream(path) << "\xff";
    choose("import", path);
    EXPECT_TRUE(until([&] { return text("fileError") == "Import failed: “desk.json” is not UTF-8 text"; }));
    choose("export", (files.path() / "missing" / "desk.json").string());
    EXPECT_TRUE(until([&] { return text("fileError").startsWith("Export failed: "); }));
}

class GoldenScenesInSettings : public ScenesInSettings {};

TEST_F(GoldenScenesInSettings, MatchTheGoldenPictures) {
    ask("scene.capture", {{"name", "Work"}});
    ask("layout.select", {{"layout", "jarvis.quad-grid"}});
    desk.arrange();
    ask("scene.capture", {{"name", "Everything"}});
    openPane();
    ASSERT_TRUE(until([&] { return list->topLevelItemCount() == 2; }));
    select(0);
    ASSERT_TRUE(until([&] { return control<QTreeWidget>(window, "differences")->topLevelItemCount() > 0; }));
    compareWithGoldens(*window, "settings-scenes");
}

} // namespace kova::ui::testing
