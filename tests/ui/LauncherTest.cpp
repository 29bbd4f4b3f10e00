// The launcher and the palette, driven by keyboard and pointer, connected to a complete agent.
#include "cli/Verbs.h"
#include "tests/ui/WindowStage.h"
#include "ui/launcher/Entries.h"
#include "ui/launcher/PaletteAnswers.h"
#include "ui/launcher/PaletteCommands.h"
#include "ui/windows/EmptyListText.h"
#include "ui/windows/FieldError.h"

#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QtTest>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <fstream>
#include <set>

namespace kova::ui::testing {

namespace {

class Launching : public WindowStage {
  protected:
    Launching() {
        for (const char* name : {"Firefox", "Files", "LibreOffice Réseau", "Fuzz"}) {
            desk.desktop.install(
                name, {.bundleIdentifier = BundleID(std::string("org.example.") + name), .startsAfter = Seconds(0)});
        }
        desk.arrange();
    }
    HostedWindow* openAt(const std::string& what, const SlotID& slot) {
        HostedWindow* window = open(what, {{"tile", desk.target("A", slot)}});
        field = control<QLineEdit>(window, "search");
        entries = control<QListView>(window, "entries");
        return window;
    }
    std::vector<std::string> titles() const {
        std::vector<std::string> found;
        for (int row = 0; row < entries->model()->rowCount(); ++row)
            found.push_back(entries->model()->index(row, 0).data().toString().toStdString());
        return found;
    }
    bool listsAtLeast(std::size_t least) {
        return until([&] { return titles().size() >= least; });
    }
    /// The text in the middle of the empty list; empty if that text is hidden.
    std::string textInEmptyList() const {
        const auto* text = entries->findChild<EmptyListText*>();
        return text->isVisible() ? text->text().toStdString() : std::string();
    }
    bool isClosed(const char* what) {
        return until([&] { return !host.window(what); });
    }

    QLineEdit* field = nullptr;
    QListView* entries = nullptr;
};

using Titles = std::vector<std::string>;

} // namespace

TEST(FuzzyQuery, MatchesLettersInOrderFromTheBeginningOfAWord) {
    const struct {
        const char* query;
        const char* name;
        bool fits;
    } cases[]{{"ffx", "Firefox", true},
              {"FIRE", "Firefox", true},
              {"fox", "Firefox", true},
              {"reseau", "LibreOffice Réseau", true},
              {"rés lib", "LibreOffice Reseau", true},
              {"lof", "LibreOffice Réseau", true},
              {"strasse", "Straße", false},
              {"zed", "Żed", true},
              {"x", "Firefox", false},
              {"ma il", "Mail", false},
              {"gimp 2", "GIMP-2.10", true}};
    for (const auto& [query, name, fits] : cases) {
        EXPECT_EQ(FuzzyQuery(QString::fromUtf8(query)).score(folded(QString::fromUtf8(name))).has_value(), fits)
            << query << " in " << name;
    }
    const auto score = [](const char* query, const char* name) {
        return FuzzyQuery(QString::fromUtf8(query)).score(folded(QString::fromUtf8(name))).value_or(-1);
    };
    EXPECT_GT(score("mail", "Mail"), score("mail", "Mailbox"));
    EXPECT_GT(score("mail", "Mailbox"), score("mail", "Web Mail"));
    EXPECT_GT(score("mail", "Web Mail"), score("mail", "Marginalia"));
}

TEST_F(Launching, ListsMostUsedFirstFiltersWhileTypingAndLaunchesIntoTheTile) {
    ask("launch", {{"application", "Maps"}, {"tile", "1"}});
    HostedWindow* window = openAt("launcher", "secondary-1");
    ASSERT_TRUE(window);
    EXPECT_TRUE(!titles().empty() || textInEmptyList() == "Loading…") << textInEmptyList();
    ASSERT_TRUE(listsAtLeast(5));
    EXPECT_EQ(textInEmptyList(), "");
    EXPECT_EQ(titles(), (Titles{"Maps", "Files", "Firefox", "Fuzz", "LibreOffice Réseau"}));
    const CGRect tile = link.contents()->tile(desk.target("A", "secondary-1").text())->frame;
    EXPECT_TRUE(QRectF(tile.origin.x, tile.origin.y, tile.size.width, tile.size.height).contains(window->geometry()));
    EXPECT_EQ(window->focusWidget(), field);

    QTest::keyClicks(field, QStringLiteral("f"));
    EXPECT_EQ(titles(), (Titles{"Fuzz", "Files", "Firefox"}));
    QTest::keyClick(field, Qt::Key_Down);
    QTest::keyClick(field, Qt::Key_Down);
    EXPECT_EQ(entries->currentIndex().data().toString(), QStringLiteral("Firefox"));
    QTest::keyClicks(field, QStringLiteral("qq"));
    EXPECT_EQ(textInEmptyList(), "Nothing found");
    field->clear();
    QTest::keyClicks(field, QStringLiteral("ffx"));
    EXPECT_EQ(titles(), (Titles{"Firefox"}));
    QTest::keyClick(field, Qt::Key_Return);
    ASSERT_TRUE(isClosed("launcher"));
    desk.settle();
    EXPECT_NE(desk.tiles().find("| Firefox"), std::string::npos) << desk.tiles();
    EXPECT_EQ(ask("app.list")["result"]["applications"][1]["launches"], 1);
}

TEST_F(Launching, ShowsTheReasonOfARefusalAndClosesByEscapeOrWhenItLosesTheFocus) {
    HostedWindow* window = openAt("launcher", "focus-main");
    ASSERT_TRUE(window && listsAtLeast(5));
    desk.desktop.setTrusted(false);
    desk.settle();
    QTest::keyClick(field, Qt::Key_Return);
    QLabel* error = window->findChild<QLabel*>(); // its only label
    ASSERT_TRUE(until([&] { return !error->isHidden(); }));
    EXPECT_FALSE(error->text().isEmpty());
    QTest::keyClick(field, Qt::Key_Escape);
    EXPECT_TRUE(isClosed("launcher"));

    ASSERT_TRUE(openAt("launcher", "focus-main"));
    ASSERT_TRUE(until([&] { return host.window("launcher")->isActiveWindow(); }));
    QWidget other;
    other.show();
    other.activateWindow();
    EXPECT_TRUE(isClosed("launcher")) << "a click on another window closes the launcher";
}

/// Removes the focus when a window is hidden, as on a Mac, before the toolkit reports that the window is hidden.
class FocusLostBeforeHide : public QObject {
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Hide) QApplication::setActiveWindow(nullptr);
        return false;
    }
};

TEST_F(Launching, OnlyClosingAWindowThatHasTheFocusGivesTheFocusBack) {
    struct CountingFocus : WindowFocus {
        explicit CountingFocus(int& count) : count_(count) {}
        void restoreFocus() override { ++count_; }
        int& count_;
    };
    int restored = 0;
    host.setFocus(std::make_unique<CountingFocus>(restored));
    FocusLostBeforeHide system;
    HostedWindow* window = openAt("launcher", "focus-main");
    ASSERT_TRUE(window && until([&] { return window->isActiveWindow(); }));
    window->installEventFilter(&system);
    QTest::keyClick(field, Qt::Key_Escape);
    ASSERT_TRUE(isClosed("launcher"));
    EXPECT_EQ(restored, 1);

    window = openAt("launcher", "focus-main");
    ASSERT_TRUE(window && until([&] { return window->isActiveWindow(); }));
    QWidget other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(isClosed("launcher"));
    EXPECT_EQ(restored, 1) << "the user has focused another window";
}

TEST_F(Launching, TheSettingsGetTheFocusBackWhenAPaletteThatWasOpenedFromThemCloses) {
    struct RecordedFocus : WindowFocus {
        explicit RecordedFocus(std::vector<std::string>& recorded) : recorded_(recorded) {}
        void giveFocusTo(QWidget& window) override {
            recorded_.push_back(window.objectName().toStdString());
            WindowFocus::giveFocusTo(window);
        }
        void restoreFocus() override { recorded_.push_back("given back"); }
        std::vector<std::string>& recorded_;
    };
    std::vector<std::string> recorded;
    host.setFocus(std::make_unique<RecordedFocus>(recorded));
    HostedWindow* settings = open("settings");
    settings->setObjectName("settings");
    ASSERT_TRUE(until([&] { return settings->isActiveWindow(); }));
    ASSERT_TRUE(openAt("palette", "focus-main"));
    ASSERT_TRUE(until([&] { return host.window("palette")->isActiveWindow(); }));
    recorded.clear();
    QTest::keyClick(field, Qt::Key_Escape);
    ASSERT_TRUE(isClosed("palette"));
    EXPECT_EQ(recorded, std::vector<std::string>{"settings"});
    ASSERT_TRUE(until([&] { return settings->isActiveWindow(); }));
    settings->close();
    ASSERT_TRUE(isClosed("settings"));
    EXPECT_EQ(recorded, (std::vector<std::string>{"settings", "given back"}))
        << "no window of kova-ui is open, so the application gets the focus back";
}

// The other window does not take the focus, just as a footer does not.
TEST_F(Launching, APressOnAnotherWindowOfThisProgramClosesTheLauncher) {
    ASSERT_TRUE(openAt("launcher", "focus-main"));
    QWindow footer;
    footer.setFlags(Qt::ToolTip);
    footer.setGeometry(0, 0, 100, 30);
    footer.show();
    QTest::mouseClick(host.window("launcher")->windowHandle(), Qt::LeftButton, {}, QPoint(5, 5));
    QCoreApplication::processEvents();
    EXPECT_TRUE(host.window("launcher")) << "a press inside does not close the launcher";
    QTest::mouseClick(&footer, Qt::LeftButton);
    EXPECT_TRUE(isClosed("launcher"));
}

TEST_F(Launching, ThePaletteFindsWindowsScenesLayoutsAndCommandsForItsTile) {
    ask("scene.capture", {{"name", "Writing"}});
    std::size_t count = commandEntries({}).size();
    for (const auto& [method, key] : {std::pair("app.list", "applications"), std::pair("query.windows", "windows"),
                                      std::pair("scene.list", "scenes"), std::pair("layout.list", "layouts")}) {
        count += ask(method)["result"][key].size();
    }
    ASSERT_TRUE(openAt("palette", "secondary-1"));
    QTest::keyClick(field, Qt::Key_Down);
    const QString selected = entries->currentIndex().data().toString();
    ASSERT_TRUE(titles().size() < count && listsAtLeast(count));
    EXPECT_EQ(entries->currentIndex().data().toString(), selected)
        << "the entry stays selected when further entries arrive";
    QTest::keyClick(field, Qt::Key_Escape);
    ASSERT_TRUE(isClosed("palette"));
    const auto run = [&](const char* typed, const char* expected) {
        ASSERT_TRUE(openAt("palette", "secondary-1"));
        ASSERT_TRUE(listsAtLeast(count));
        QTest::keyClicks(field, QString::fromUtf8(typed));
        ASSERT_FALSE(titles().empty()) << typed;
        EXPECT_EQ(titles().front(), expected);
        QTest::keyClick(field, Qt::Key_Return);
        EXPECT_TRUE(isClosed("palette")) << typed;
        desk.settle();
    };
    run("inbox", "Inbox — Mail");
    EXPECT_NE(desk.tiles().find("| Mail"), std::string::npos) << desk.tiles();
    run("quad gr", "Quad Grid (2×2)");
    EXPECT_EQ(ask("query.displays")["result"]["displays"][0]["layout"]["id"], "jarvis.quad-grid");
    run("writing", "Writing");
    EXPECT_EQ(ask("query.displays")["result"]["displays"][0]["layout"]["id"], "jarvis.dual-split");
    run("pause", "Pause KOVA");
    EXPECT_EQ(ask("status")["result"]["isPaused"], true);
}

// On a real desktop, the palette has the focus when the user chooses a command. Therefore the palette remembers which
// window had the focus when the palette opened.
TEST_F(Launching, CommandsOfThePaletteActOnTheWindowThatHadTheFocusWhenItOpened) {
    desk.desktop.userFocuses("Terminal");
    desk.settle();
    ASSERT_NE(desk.tiles().find("Terminal"), std::string::npos) << desk.tiles();
    ASSERT_TRUE(openAt("palette", "secondary-1"));
    ASSERT_TRUE(listsAtLeast(commandEntries({}).size() + 1));
    desk.desktop.userFocuses("Notes");
    desk.settle();
    QTest::keyClicks(field, QStringLiteral("float the w"));
    ASSERT_FALSE(titles().empty());
    QTest::keyClick(field, Qt::Key_Return);
    EXPECT_TRUE(isClosed("palette"));
    desk.settle();
    EXPECT_EQ(desk.tiles().find("Terminal"), std::string::npos) << desk.tiles();
    EXPECT_NE(desk.tiles().find("Notes"), std::string::npos) << desk.tiles();
}

TEST_F(Launching, ThePaletteAsksForTheArgumentsOfACommandInTheSameField) {
    ask("scene.capture", {{"name", "Writing"}});
    ask("scene.capture", {{"name", "Reading"}});
    const auto answer = [&](const char* typed, const char* expected) {
        QTest::keyClicks(field, QString::fromUtf8(typed));
        ASSERT_TRUE(until([&] { return !titles().empty() && titles().front() == expected; }))
            << expected << (titles().empty() ? "" : titles().front());
        QTest::keyClick(field, Qt::Key_Return);
    };
    const auto expectClosed = [&] {
        EXPECT_TRUE(isClosed("palette"));
        desk.settle();
    };
    ASSERT_TRUE(openAt("palette", "secondary-1"));
    answer("rename sc", "Rename a scene…");
    EXPECT_EQ(field->text(), QString());
    answer("wri", "Writing");
    QTest::keyClick(field, Qt::Key_Backspace); // back to the previous question
    answer("read", "Reading");
    answer("Evening", "New name: “Evening”");
    expectClosed();
    EXPECT_EQ(ask("scene.list")["result"]["scenes"][1]["name"], "Evening");

    ASSERT_TRUE(openAt("palette", "secondary-1"));
    answer("set the tile in", "Set the tile inset…");
    answer("200", "Points from 0 to 100: “200”");
    auto* error = host.window("palette")->findChild<FieldError*>();
    ASSERT_TRUE(until([&] { return error->isVisible(); })) << "the value is refused";
    field->clear();
    answer("12", "Points from 0 to 100: “12”");
    expectClosed();

    ASSERT_TRUE(openAt("palette", "secondary-1"));
    answer("move a div", "Move a divider…");
    answer("primary", "Between Primary and Secondary");
    answer("30", "Points to the right or downwards: “30”");
    expectClosed();

    ASSERT_TRUE(openAt("palette", "secondary-1"));
    answer("leave alone", "Add a rule: leave alone…");
    answer("mail", "Inbox — Mail");
    expectClosed();
    EXPECT_EQ(ask("rule.list")["result"]["rules"][0]["disposition"], "ignore");

    ASSERT_TRUE(openAt("palette", "secondary-1"));
    answer("force an", "Force an application to quit…");
    answer("mail", "Inbox — Mail");
    EXPECT_TRUE(isClosed("palette"));
    QTest::mouseClick(control<QPushButton>(host.window("alert"), "confirm"), Qt::LeftButton);
    EXPECT_TRUE(isClosed("alert"));
    desk.settle();
    EXPECT_FALSE(desk.desktop.isRunning("Mail"));
}

TEST_F(Launching, TheAgentAcceptsTheParametersOfEveryCommandOfThePalette) {
    ask("scene.capture", {{"name", "Writing"}});
    for (const auto& disposition : {"float", "ignore"})
        ask("rule.add", {{"window", "mail"}, {"disposition", disposition}});
    for (LauncherEntry& entry : commandEntries(desk.displayIDOf("A").text())) {
        if (entry.method == "quit" || entry.method == "ui.off") continue; // these end the agent or this program
        for (const Question& question : entry.questions) {
            const std::string method = methodOf(question.subject);
            const auto answers = method.empty() ? std::vector{typedAnswer(question, QStringLiteral("1"))}
                                                : answersIn(ask(method)["result"], question);
            ASSERT_FALSE(answers.empty() && question.subject != Subject::learnedApplication) << entry.method;
            entry.parameters.update(answers.empty() ? nlohmann::json{{question.key, "mail"}}
                                                    : answers.back().parameters);
        }
        if (!entry.parameters.contains("window")) {
            nlohmann::json onMissingWindow = entry.parameters;
            onMissingWindow["window"] = "no such window";
            const bool takesWindow =
                ask(entry.method, onMissingWindow)["error"]["code"] > 0; // not an invalid parameter
            EXPECT_EQ(actsOnFocusedWindow(entry.method), takesWindow) << entry.method;
        }
        const nlohmann::json reply = ask(entry.method, entry.parameters);
        if (reply.contains("error")) {
            EXPECT_GT(reply["error"]["code"], 0) << entry.method << ": " << reply; // not an invalid parameter
        }
        ask("resume");
        reopen();
    }
}

TEST(PaletteCommands, CoverEveryVerbThatChangesSomething) {
    const std::set<std::string> offeredAsLists{"launch", "layout.select",
                                               "scene.open"}; // the palette lists each application, layout and scene
    std::ifstream file(KOVA_DOCS "/control-schema.json");
    const nlohmann::json methods = nlohmann::json::parse(file).at("methods");
    std::set<std::string> offered = offeredAsLists;
    for (const LauncherEntry& entry : commandEntries("display")) offered.insert(entry.method);
    for (const cli::Verb& verb : cli::verbs()) {
        if (verb.method.empty()) continue;
        const std::string method(verb.method);
        const nlohmann::json& described = methods.at(method);
        const bool needNotBeOffered = described.value("isReadOnly", false) || described.contains("notInPalette");
        EXPECT_TRUE(needNotBeOffered || offered.contains(method)) << verb.name;
    }
}

class GoldenLaunching : public Launching {};

TEST_F(GoldenLaunching, MatchesTheGoldenPictures) {
    desk.opens("Letters", {.title = "A title that is far too long for the row that it has in the palette's list"})
        .settle();
    desk.desktop.install("متصفح الويب السريع", {.bundleIdentifier = BundleID("org.example.browser")});
    icon = [](const ApplicationName& application, int size) {
        QPixmap picture(size, size);
        picture.fill(QColor::fromHsv(static_cast<int>(application.name.size()) * 29 % 360, 200, 200));
        return application.name == "Fuzz" ? QPixmap() : picture;
    };
    HostedWindow* window = openAt("launcher", "focus-main");
    ASSERT_TRUE(window && listsAtLeast(6));
    compareWithGoldens(*window, "launcher");
    QTest::keyClick(field, Qt::Key_Escape);
    ASSERT_TRUE(isClosed("launcher"));
    window = openAt("palette", "secondary-1");
    const auto isLetter = [](const std::string& title) { return title.starts_with("A title"); };
    ASSERT_TRUE(window && until([&] { return std::ranges::count_if(titles(), isLetter) == 1; }));
    QTest::keyClicks(field, QStringLiteral("le"));
    compareWithGoldens(*window, "palette");
}

} // namespace kova::ui::testing
