// Alerts of the agent and of the overlay's menus, and the file panels that the menu opens.
#include "tests/ui/WindowStage.h"

#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QtTest>

#include <fstream>
#include <optional>

namespace kova::ui::testing {

namespace {

class Dialogs : public WindowStage {
  protected:
    HostedWindow* shown(const char* what) {
        EXPECT_TRUE(until([&] { return host.window(what) && host.window(what)->isVisible(); })) << what;
        return host.window(what);
    }
    bool isClosed(const char* what) {
        return until([&] { return !host.window(what); });
    }
    void chooseFromMenu(const char* id) { EXPECT_TRUE(ask("menu.choose", {{"id", id}}).contains("result")) << id; }
    void chooseFile(const char* what, const std::filesystem::path& path) {
        HostedWindow* window = shown(what);
        ASSERT_TRUE(window);
        ASSERT_TRUE(window->findChild<QFileDialog*>()->isVisible());
        // Emits the signal directly, since the panel enables its button only after it has read the folder.
        Q_EMIT window->findChild<QFileDialog*>()->fileSelected(QString::fromStdString(path.string()));
    }
    QString errorOf(const char* what) {
        auto* error = control<QLabel>(host.window(what), "error");
        if (!error) return {};
        EXPECT_TRUE(until([&] { return !error->text().isEmpty(); }));
        return error->text();
    }
    TemporaryFolder files;
};

} // namespace

TEST_F(Dialogs, OnlyTheButtonConfirmsAQuestionOfTheAgent) {
    std::optional<bool> answer;
    const auto openQuestion = [&] {
        answer.reset();
        dialogs.confirm({.title = "Delete?", .text = "All rules.", .confirmButton = "Delete", .cancelButton = "Keep"},
                        [&](bool isConfirmed) { answer = isConfirmed; });
        return shown("alert");
    };
    const auto expectAnswer = [&](bool expected) {
        EXPECT_TRUE(until([&] { return answer.has_value(); }));
        EXPECT_EQ(answer, expected);
    };
    HostedWindow* window = openQuestion();
    EXPECT_EQ(window->focusWidget(), control<QPushButton>(window, "cancel"));
    QTest::keyClick(window->focusWidget(), Qt::Key_Space);
    expectAnswer(false);
    ASSERT_TRUE(isClosed("alert"));
    QTest::keyClick(openQuestion(), Qt::Key_Escape);
    expectAnswer(false);
    ASSERT_TRUE(isClosed("alert"));
    QTest::mouseClick(control<QPushButton>(openQuestion(), "confirm"), Qt::LeftButton);
    expectAnswer(true);
    ASSERT_TRUE(isClosed("alert"));

    openQuestion();
    dialogs.inform({.title = "Done", .text = "No rule is left.", .confirmButton = "OK", .cancelButton = {}});
    expectAnswer(false);
    ASSERT_TRUE(until([&] { return !control<QPushButton>(host.window("alert"), "confirm")->isVisible(); }));
    EXPECT_EQ(control<QPushButton>(host.window("alert"), "cancel")->text(), QStringLiteral("OK"));
}

TEST_F(Dialogs, ForceQuitAllListsTheApplicationsAndEndsOnlyThose) {
    chooseFromMenu("force-quit-all");
    HostedWindow* window = shown("alert");
    auto* list = control<QListWidget>(window, "applications");
    ASSERT_EQ(list->count(), 3);
    EXPECT_EQ(list->item(0)->text(), QStringLiteral("Mail"));
    EXPECT_FALSE(list->item(0)->icon().isNull());
    EXPECT_EQ(control<QPushButton>(window, "confirm")->text(), QStringLiteral("Force Quit All"));
    desk.opens("Later").settle();
    QTest::mouseClick(control<QPushButton>(window, "confirm"), Qt::LeftButton);
    ASSERT_TRUE(isClosed("alert"));
    EXPECT_TRUE(until([&] {
        desk.settle();
        return !desk.desktop.isRunning("Mail");
    }));
    EXPECT_TRUE(desk.desktop.isRunning("Later")) << "an application that was not listed keeps running";
}

TEST_F(Dialogs, AnAlertOfTheOverlayCallsItsMethodAndShowsTheError) {
    HostedWindow* window = open("alert", {{"title", "Force Mail to quit?"},
                                          {"confirm", "Force Quit"},
                                          {"cancel", "Cancel"},
                                          {"method", "app.forceQuit"},
                                          {"parameters", {{"window", "no such window"}}}});
    QTest::mouseClick(control<QPushButton>(window, "confirm"), Qt::LeftButton);
    auto* error = control<QLabel>(window, "error");
    EXPECT_TRUE(until([&] { return error->isVisible(); }));
    EXPECT_TRUE(window->isVisible());
    QTest::mouseClick(control<QPushButton>(window, "cancel"), Qt::LeftButton);
    EXPECT_TRUE(isClosed("alert"));
}

TEST_F(Dialogs, ScenesAndRulesAreExportedAndImportedByTheMenusFilePanels) {
    ask("scene.capture", {{"name", "Work"}});
    const auto file = files.path() / "desk.json";
    chooseFromMenu("export");
    EXPECT_EQ(shown("exportDocument")->findChild<QFileDialog*>()->findChild<QLineEdit*>()->text(),
              QStringLiteral("KOVA-Workspace.json"));
    chooseFile("exportDocument", files.path() / "missing" / "desk.json");
    EXPECT_TRUE(errorOf("exportDocument").startsWith("Export failed: "));
    chooseFile("exportDocument", file);
    ASSERT_TRUE(isClosed("exportDocument"));
    std::ifstream written(file);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(written), {}), ask("export")["result"]["text"]);

    ask("scene.delete", {{"scene", "Work"}});
    const auto broken = files.path() / "broken.json";
    std::ofstream(broken) << "{";
    chooseFromMenu("import");
    chooseFile("importDocument", broken);
    EXPECT_TRUE(errorOf("importDocument").startsWith("Import failed: "));
    chooseFile("importDocument", file);
    ASSERT_TRUE(isClosed("importDocument"));
    EXPECT_EQ(ask("scene.list")["result"]["scenes"].size(), 1u);

    chooseFromMenu("import");
    QTest::keyClick(shown("importDocument")->findChild<QLineEdit*>(), Qt::Key_Escape);
    EXPECT_TRUE(isClosed("importDocument"));
}

class GoldenDialogs : public Dialogs {};

TEST_F(GoldenDialogs, MatchTheGoldenPictures) {
    for (const char* name : {"A Long Name of an Application", "Calendar", "Draw", "Editor", "Files", "Games", "Help"})
        desk.opens(name);
    desk.settle();
    chooseFromMenu("force-quit-all");
    compareWithGoldens(*shown("alert"), "alert-question");
    dialogs.inform({.title = "No Open Applications",
                    .text = "There are no regular applications to close. KOVA and Finder are always kept open.",
                    .confirmButton = "OK",
                    .cancelButton = {}});
    ASSERT_TRUE(until([&] { return !control<QPushButton>(host.window("alert"), "confirm")->isVisible(); }));
    compareWithGoldens(*host.window("alert"), "alert-message");
}

} // namespace kova::ui::testing
