// The settings window with a complete agent: choices take effect, and changes by commands are shown.
#include "support/Version.h"
#include "tests/ui/FakeAgent.h"
#include "tests/ui/WindowStage.h"
#include "ui/settings/SettingsWindow.h"
#include "ui/windows/EmptyListText.h"
#include "ui/windows/FieldError.h"
#include "ui/windows/Pane.h"

#include <QtTest/qtest.h>
#include <QtTest/qtestkeyboard.h>
#include <QtTest/qtestmouse.h>

#include <QCheckBox>
#include <QComboBox>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QProcess>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTreeWidget>

#include <set>

namespace kova::ui::testing {

namespace {

using nlohmann::json;

class Settings : public WindowStage {
  protected:
    /// Opens the settings window with that pane, and waits until the agent's state has arrived.
    HostedWindow* openAt(const std::string& pane) {
        HostedWindow* window = open("settings", {{"pane", pane}});
        QApplication::setActiveWindow(window);
        EXPECT_TRUE(until([&] { return host.session() && host.session()->state().contains("themes"); }));
        return window;
    }
    json section(const std::string& name) { return host.session()->state().value(name, json()); }
    json settings() { return ask("query.state")["result"]["state"]["settings"]; }
    /// Waits until the check box shows that state; returns false if it does not show it in time.
    bool shows(HostedWindow* window, const char* box, bool isOn) {
        return until([&] { return control<QCheckBox>(window, box)->isChecked() == isOn; });
    }
    /// The error that is shown below a control of the pane; empty if there is none.
    static std::string refusalIn(const QWidget* window) {
        for (const auto* error : window->findChildren<FieldError*>()) {
            if (error->isVisible()) return error->text().toStdString();
        }
        return {};
    }
};

} // namespace

TEST_F(Settings, EachSwitchOfTheGeneralPaneChangesASettingOfTheAgent) {
    HostedWindow* window = openAt("general");
    struct Switch {
        const char* box;
        const char* method; // switches the setting off
        json parameters;
        std::function<bool()> isOn;
    };
    const auto systemSetting = [&](const char* method) {
        return [this, method] { return ask(method)["result"]["isOn"].get<bool>(); };
    };
    const auto setting = [&](const char* name) { return [this, name] { return settings()[name].get<bool>(); }; };
    const json off = {{"isOn", false}};
    const std::vector<Switch> switches{
        {"startAtLogin", "login.off", json::object(), systemSetting("login.status")},
        {"hideDock", "dock.off", json::object(), systemSetting("dock.status")},
        {"arrangeAfterLaunch", "arrangeAfterLaunch", off, setting("autoArrangeOnLaunch")},
        {"bringForward", "bringForward", off, setting("bringsNextForward")},
    };
    for (const Switch& each : switches) {
        SCOPED_TRACE(each.box);
        ask(each.method, each.parameters);
        EXPECT_TRUE(shows(window, each.box, false)) << "the box shows a change by a command";
        auto* box = control<QCheckBox>(window, each.box);
        box->setFocus();
        QTest::keyClick(box, Qt::Key_Space);
        EXPECT_TRUE(until(each.isOn));
        EXPECT_TRUE(box->isChecked());
        EXPECT_EQ(refusalIn(window), "");
    }
    QTest::mouseClick(control<QCheckBox>(window, "userInterface"), Qt::LeftButton, {}, QPoint(8, 8));
    EXPECT_TRUE(until([&] { return !userInterface.isOn; }));
}

TEST_F(Settings, TheTileInsetMovesWindowsWhileItIsTyped) {
    HostedWindow* window = openAt("general");
    auto* inset = control<QSpinBox>(window, "tileInset");
    EXPECT_TRUE(until([&] { return inset->value() == settings()["tileInset"]; }));
    inset->setFocus();
    inset->selectAll();
    QTest::keyClicks(inset, "24");
    EXPECT_TRUE(until([&] { return settings()["tileInset"] == 24; }));
    QTest::keyClick(inset, Qt::Key_Up);
    EXPECT_TRUE(until([&] { return settings()["tileInset"] == 25; }));
    ask("layout.setInset", {{"points", 7}});
    EXPECT_TRUE(until([&] { return inset->value() == 7; })) << "the field shows a change by a command";
}

TEST_F(Settings, AnErrorIsShownBelowItsControlAndTheControlIsReset) {
    HostedWindow* window = openAt("general");
    settingProblem = "The login item cannot be written";
    auto* box = control<QCheckBox>(window, "startAtLogin");
    QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(8, 8));
    EXPECT_TRUE(until([&] { return refusalIn(window) == settingProblem; }));
    EXPECT_FALSE(box->isChecked());
    settingProblem.reset();
    QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(8, 8));
    EXPECT_TRUE(until([&] { return box->isChecked() && refusalIn(window).empty(); }));
}

TEST_F(Settings, PanesAreChosenByKeyboardAndTheLastOneIsShownAgain) {
    HostedWindow* window = openAt("general");
    auto* panes = control<QListWidget>(window, "panes");
    QTest::keyClick(window, Qt::Key_P, Qt::AltModifier);
    EXPECT_TRUE(panes->hasFocus());
    QTest::keyClick(panes, Qt::Key_End);
    EXPECT_EQ(panes->currentRow(), panes->count() - 1);
    const QString last = panes->currentItem()->text();
    QTest::keyClick(panes, Qt::Key_Escape);
    EXPECT_TRUE(until([&] { return !host.window("settings"); }));
    EXPECT_EQ(control<QListWidget>(open("settings"), "panes")->currentItem()->text(), last);
}

// The agent's state lists the windows that should be open. When the user closes such a window, kova-ui reports it.
TEST_F(Settings, OpenAndCloseAsTheAgentsStateSays) {
    const auto follow = [&] {
        return until([&] {
            host.follow(link.contents()->windows);
            return (host.window("settings") != nullptr) == !link.contents()->windows.empty();
        });
    };
    ask("settings.show", {{"pane", "general"}});
    EXPECT_TRUE(until([&] { return !link.contents()->windows.empty(); }));
    EXPECT_TRUE(follow());
    host.window("settings")->close();
    EXPECT_TRUE(until([&] { return !closedByUser.empty(); }));
    host.follow(link.contents()->windows);
    EXPECT_EQ(host.window("settings"), nullptr) << "the window stays closed until a new request";
    ask("ui.show", {{"what", "settings"}});
    EXPECT_TRUE(until([&] {
        host.follow(link.contents()->windows);
        return host.window("settings") != nullptr;
    }));
    ask("ui.hide", {{"what", "settings"}});
    EXPECT_TRUE(until([&] {
        host.follow(link.contents()->windows);
        return !host.window("settings");
    }));
    EXPECT_EQ(closedByUser, std::vector<std::string>{"settings"});
}

TEST_F(Settings, AppearanceIsAppliedAtOnceAndShowsChangesByCommands) {
    HostedWindow* window = openAt("appearance");
    const auto active = [&](const char* list, const char* things) {
        const json all = ask(list)["result"][things];
        for (const json& each : all) {
            if (each["isActive"]) return each["id"].get<std::string>();
        }
        return std::string();
    };
    EXPECT_TRUE(until([&] { return window->findChildren<QRadioButton*>().size() == 7; }))
        << "there must be buttons for two themes and five accents";
    QTest::mouseClick(control<QRadioButton>(window, "jarvis.neon-cyan"), Qt::LeftButton, {}, QPoint(8, 8));
    EXPECT_TRUE(until([&] { return active("theme.list", "themes") == "jarvis.neon-cyan"; }));
    auto* amber = control<QRadioButton>(window, "reactor-amber");
    amber->setFocus();
    QTest::keyClick(amber, Qt::Key_Space);
    EXPECT_TRUE(until([&] { return active("accent.list", "accentColors") == "reactor-amber"; }));
    ask("accent.select", {{"accentColor", "signal-magenta"}});
    ask("theme.select", {{"theme", "kova.native"}});
    EXPECT_TRUE(until([&] {
        return control<QRadioButton>(window, "signal-magenta")->isChecked() &&
               control<QRadioButton>(window, "kova.native")->isChecked();
    }));
    for (const auto& [box, method] : {std::pair("useThemeBackground", "theme.background"),
                                      {"showTileBackgrounds", "theme.tileBackgrounds"},
                                      {"showBrain", "theme.brain"}}) {
        SCOPED_TRACE(box);
        ask(method, {{"isOn", false}});
        EXPECT_TRUE(shows(window, box, false));
        QTest::mouseClick(control<QCheckBox>(window, box), Qt::LeftButton, {}, QPoint(8, 8));
        EXPECT_TRUE(until([&, name = box] { return settings()[name] == true; }));
    }
}

class ShortcutSettings : public Settings {
  protected:
    HostedWindow* window = openAt("shortcuts");
    QTreeWidget* table = control<QTreeWidget>(window, "shortcuts");
    QTreeWidgetItem* row(const QString& title) {
        const auto found = table->findItems(title, Qt::MatchExactly, 0);
        EXPECT_EQ(found.size(), 1) << title.toStdString();
        return found.isEmpty() ? nullptr : found.front();
    }
    std::string keysOf(const std::string& action) {
        const json list = ask("shortcut.list");
        for (const json& each : list["result"]["shortcuts"]) {
            if (each["action"] == action) return each["keys"].is_string() ? each["keys"] : json("none");
        }
        return "no such action";
    }
    bool isRecording() { return ask("shortcut.list")["result"]["isRecording"]; }
    void record(const QString& title) {
        table->setCurrentItem(row(title));
        table->setFocus();
        QTest::keyClick(table, Qt::Key_Return);
        EXPECT_TRUE(until([&] { return row(title)->text(1) == QStringLiteral("Type Shortcut…"); }));
    }
};

TEST_F(ShortcutSettings, KeysAreRecordedByTheAgentAndRefusedIfInUse) {
    record("Focus Left");
    desk.desktop.keyboard().press(37, modifierFlag::control | modifierFlag::option); // the keys of Focus Right
    EXPECT_TRUE(until([&] { return refusalIn(window).find("Focus Right") != std::string::npos; })) << refusalIn(window);
    EXPECT_TRUE(isRecording()) << "the recording must continue after a refusal";
    desk.desktop.keyboard().press(5, modifierFlag::control | modifierFlag::option);
    EXPECT_TRUE(until([&] { return row("Focus Left")->text(1) == QStringLiteral("Ctrl+Alt+G"); }));
    EXPECT_EQ(keysOf("focusLeft"), "Ctrl+Alt+G");
    EXPECT_EQ(refusalIn(window), "");

    record("Focus Left");
    desk.desktop.keyboard().press(53, 0); // Escape
    EXPECT_TRUE(until([&] { return row("Focus Left")->text(1) == QStringLiteral("Ctrl+Alt+G"); }));
    EXPECT_FALSE(isRecording());
    record("Focus Left");
    QTest::mouseClick(control<QPushButton>(window, "recordShortcut"), Qt::LeftButton);
    EXPECT_EQ(row("Focus Left")->text(1), QStringLiteral("Ctrl+Alt+G")) << "a canceled recording keeps the former keys";
    EXPECT_TRUE(until([&] {
        desk.advance(Seconds(0.3));
        return !isRecording();
    })) << "the agent has ended the recording";
    QTest::mouseClick(control<QPushButton>(window, "clearShortcut"), Qt::LeftButton);
    EXPECT_TRUE(until([&] { return keysOf("focusLeft") == "none" && row("Focus Left")->text(1).isEmpty(); }));
    QTest::mouseClick(control<QPushButton>(window, "restoreShortcuts"), Qt::LeftButton);
    EXPECT_TRUE(until([&] { return keysOf("focusLeft") != "none" && !row("Focus Left")->text(1).isEmpty(); }));
    ask("shortcut.clear", {{"action", "focusLeft"}});
    EXPECT_TRUE(until([&] { return row("Focus Left")->text(1).isEmpty(); }))
        << "the row shows that a command cleared the keys";
    ask("shortcut.restoreDefaults");
    EXPECT_TRUE(until([&] { return !row("Focus Left")->text(1).isEmpty(); }))
        << "the row shows keys that a command restored";
}

TEST_F(ShortcutSettings, ShowConflictsWithOtherProgramsAndAreFoundByNameAndKeys) {
    desk.desktop.keyboard().claimByOther({5, modifierFlag::control | modifierFlag::option});
    ask("shortcut.set", {{"action", "focusLeft"}, {"keys", "ctrl+alt+g"}});
    desk.settle();
    EXPECT_TRUE(until([&] { return row("Focus Left")->text(2) == QStringLiteral("In use by another program"); }));
    desk.desktop.keyboard().setDelivery(SimulatedKeyboard::Delivery::observed); // as on a Mac
    ask("shortcut.set", {{"action", "focusRight"}, {"keys", "ctrl+alt+r"}});
    EXPECT_TRUE(until([&] { return row("Focus Left")->text(2) == QStringLiteral("In use by the system"); }));
    desk.desktop.keyboard().setDelivery(SimulatedKeyboard::Delivery::claimed);
    ask("shortcut.set", {{"action", "focusRight"}, {"keys", "ctrl+alt+t"}});
    EXPECT_TRUE(until([&] { return row("Focus Left")->text(1) == QStringLiteral("Ctrl+Alt+G"); }));
    const auto found = [&](const QString& words) {
        auto* search = control<QLineEdit>(window, "searchShortcuts");
        search->clear();
        QTest::keyClicks(search, words);
        std::set<std::string> titles;
        for (int i = 0; i < table->topLevelItemCount(); ++i) {
            if (!table->topLevelItem(i)->isHidden()) titles.insert(table->topLevelItem(i)->text(0).toStdString());
        }
        return titles;
    };
    EXPECT_EQ(found("left foc"), std::set<std::string>{"Focus Left"});
    EXPECT_EQ(found("alt+g"), std::set<std::string>{"Focus Left"});
    EXPECT_GT(found("").size(), 15u);
    EXPECT_TRUE(found("no such action").empty());
    EXPECT_FALSE(control<QPushButton>(window, "recordShortcut")->isEnabled())
        << "an action that the search hides must not stay chosen";
}

TEST_F(Settings, LayoutsAreChosenByTheirPicturesAndLayoutsThatAreTooSmallAreMarked) {
    desk.opens("Sheet", {.minimumSize = {{1500, 600}}}).opens("Plan", {.minimumSize = {{1500, 600}}}).settle();
    HostedWindow* window = openAt("layouts");
    auto* layouts = control<QListWidget>(window, "layouts");
    const auto row = [&](const QString& name) {
        const auto found = layouts->findItems(name, Qt::MatchStartsWith);
        EXPECT_EQ(found.size(), 1) << name.toStdString();
        return found.isEmpty() ? nullptr : found.front();
    };
    const auto inForce = [&] { return ask("query.displays")["result"]["displays"][0]["layout"]["name"]; };
    EXPECT_TRUE(until([&] { return layouts->count() == 13; })) << "the list must show the catalogue and “Automatic”";
    EXPECT_EQ(row("Dual Stack")->text(), QStringLiteral("Dual Stack (2)"));
    const auto remarkOn = [&](const QString& name) { return row(name)->text().section(u'\n', 1).toStdString(); };
    EXPECT_EQ(remarkOn("Dual Split"), "246 pt too narrow");
    EXPECT_EQ(remarkOn("Triple Stack"), "173 pt too short");
    EXPECT_TRUE(row("Dual Split")->toolTip().contains("is 246 pt too narrow."));
    desk.opens("Poster", {.minimumSize = {{1500, 1600}}}).settle();
    EXPECT_TRUE(until([&] { return row("Quad Grid")->toolTip().contains(QStringLiteral("Poster")); }));
    EXPECT_EQ(remarkOn("Quad Grid"), QStringLiteral("246 × 934 pt too small").toStdString());
    EXPECT_TRUE(row("Quad Grid")->toolTip().contains("is 246 pt too narrow and 934 pt too short."));
    layouts->setCurrentItem(row("Quad Grid"));
    layouts->setFocus();
    QTest::keyClick(layouts, Qt::Key_Return);
    EXPECT_TRUE(until([&] { return inForce() == row("Quad Grid")->text().section(u'\n', 0, 0).toStdString(); }));
    EXPECT_FALSE(control<QPushButton>(window, "resetSizes")->isEnabled());
    ask("divider.drag", {{"split", "root"}, {"boundary", 0}, {"points", 40}});
    EXPECT_TRUE(until([&] { return control<QPushButton>(window, "resetSizes")->isEnabled(); }));
    QTest::mouseClick(control<QPushButton>(window, "resetSizes"), Qt::LeftButton);
    EXPECT_TRUE(until([&] { return !control<QPushButton>(window, "resetSizes")->isEnabled(); }));
    layouts->setCurrentItem(row("Automatic"));
    QTest::keyClick(layouts, Qt::Key_Return);
    EXPECT_TRUE(until([&] { return ask("query.displays")["result"]["displays"][0]["selection"] == "automatic"; }));
    desk.desktop.addDisplay({.name = "Beamer"});
    desk.settle();
    EXPECT_TRUE(until([&] { return control<QComboBox>(window, "displays")->count() == 2; }));
}

/// Sets an environment variable for a test, and restores it when the test ends.
class ChangedVariable {
  public:
    ChangedVariable(const char* name, const QByteArray& value) :
        name_(name), wasSet_(qEnvironmentVariableIsSet(name)), before_(qgetenv(name)) {
        qputenv(name, value);
    }
    ~ChangedVariable() { wasSet_ ? qputenv(name_, before_) : qunsetenv(name_); }
    ChangedVariable(const ChangedVariable&) = delete;
    ChangedVariable& operator=(const ChangedVariable&) = delete;

  private:
    const char* name_;
    bool wasSet_;
    QByteArray before_;
};

TEST_F(Settings, TheCommandLineWritesAReportAndItsErrorsAreShown) {
    const ChangedVariable path("PATH", QFileInfo(QStringLiteral(KOVA_UI_PROGRAM)).path().toLocal8Bit());
    HostedWindow* window = openAt("about");
    auto* version = control<QLabel>(window, "version");
    EXPECT_TRUE(until([&] { return version->text().contains(QStringLiteral(KOVA_VERSION)); }));
    QTemporaryDir reports;
    const ChangedVariable state("XDG_STATE_HOME", reports.path().toLocal8Bit());
    QTest::mouseClick(control<QPushButton>(window, "showLog"), Qt::LeftButton);
    EXPECT_TRUE(until([&] { return refusalIn(window).find("There is no log at") != std::string::npos; }))
        << refusalIn(window);
    const QString report = reports.filePath(QStringLiteral("report.txt"));
    const auto write = [&] {
        QTest::mouseClick(control<QPushButton>(window, "bugReport"), Qt::LeftButton);
        auto* dialog = control<QFileDialog>(window, "reportFile");
        dialog->selectFile(report);
        QMetaObject::invokeMethod(dialog, "accept");
    };
    write();
    EXPECT_TRUE(until([&] { return control<QLabel>(window, "result")->text().contains(report); })) << refusalIn(window);
    EXPECT_GT(QFileInfo(report).size(), 1000);
    EXPECT_EQ(refusalIn(window), "");
    write();
    EXPECT_TRUE(until([&] { return refusalIn(window).find("is there already") != std::string::npos; }));
}

TEST_F(Settings, UpdatesCanBeCheckedAndSwitchedWhereKovaUpdatesItself) {
    HostedWindow* window = openAt("about");
    ASSERT_TRUE(shows(window, "checksForUpdates", true));
    const auto click = [&](const char* box) {
        QTest::mouseClick(control<QCheckBox>(window, box), Qt::LeftButton, {}, QPoint(8, 8));
    };
    click("downloadsUpdates");
    EXPECT_TRUE(until([&] { return updates.downloads; }));
    click("checksForUpdates");
    EXPECT_TRUE(until([&] { return !updates.checks && !control<QCheckBox>(window, "downloadsUpdates")->isEnabled(); }));
    EXPECT_TRUE(ask("updates.download", {{"isOn", false}}).contains("error")) << "downloads require automatic checks";
    ask("updates.automatic", {{"isOn", true}});
    EXPECT_TRUE(shows(window, "checksForUpdates", true)) << "the box shows a change by a command";
    QTest::mouseClick(control<QPushButton>(window, "checkNow"), Qt::LeftButton);
    EXPECT_TRUE(until([&] { return updates.isChecking && !control<QPushButton>(window, "checkNow")->isEnabled(); }));
    EXPECT_EQ(ask("updates.check")["result"]["isChecking"], true) << "a check is pending";
}

// The agent of this test has no scenes, rules, displays or keyboard.
TEST(EmptySettings, ListsSayWhyTheyAreEmptyAndButtonsWhyTheyAreDisabled) {
    const QTemporaryDir folder;
    FakeAgent agent(folder.filePath(QStringLiteral("agent.sock")).toStdString());
    AgentSession session(folder.filePath(QStringLiteral("agent.sock")).toStdString());
    WindowServices services{.agent = session};
    std::map<std::string, std::unique_ptr<Pane>> panes;
    for (const PaneKind& kind : Registry<PaneKind>::entries()) {
        panes[kind.name].reset(kind.make(services));
        panes[kind.name]->opened();
    }
    const auto textIn = [&](const char* pane, const char* list) {
        const auto* view = panes[pane]->findChild<QAbstractItemView*>(QString::fromLatin1(list));
        const auto* text = view->findChild<EmptyListText*>();
        EXPECT_EQ(text->isHidden(), text->text().isEmpty()) << list;
        EXPECT_EQ(view->accessibleDescription(), text->text()) << list;
        return text->text().toStdString();
    };
    const std::pair<const char*, const char*> lists[]{{"scenes", "scenes"},
                                                      {"rules", "rules"},
                                                      {"layouts", "layouts"},
                                                      {"applications", "applications"},
                                                      {"shortcuts", "shortcuts"}};
    for (const auto& [pane, list] : lists) EXPECT_EQ(textIn(pane, list), "Loading…") << list;

    const json focusLeft{{"action", "focusLeft"},
                         {"title", "Focus Left"},
                         {"keys", "Ctrl+Alt+Left"},
                         {"isHeldByOther", false},
                         {"conflict", nullptr}};
    agent.setState({{"scenes", {{"scenes", json::array()}}},
                    {"rules", {{"rules", json::array()}, {"isOn", true}}},
                    {"layouts", {{"displays", json::array()}}},
                    {"displays", json::array()},
                    {"learned", {{"applications", json::array()}}},
                    {"shortcuts", {{"canHearKeys", false}, {"shortcuts", {focusLeft}}}}});
    session.follow();
    QElapsedTimer clock;
    for (clock.start(); session.state().empty() && clock.elapsed() < 20000;) {
        agent.serve();
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    }
    EXPECT_TRUE(textIn("scenes", "scenes").starts_with("No scenes yet"));
    EXPECT_EQ(textIn("rules", "rules"), "No rules yet");
    EXPECT_EQ(textIn("layouts", "layouts"), "No display is connected");
    EXPECT_EQ(textIn("applications", "applications"), "Nothing learned yet");
    auto* search = panes["shortcuts"]->findChild<QLineEdit*>(QStringLiteral("searchShortcuts"));
    search->setText(QStringLiteral("no such action"));
    EXPECT_EQ(textIn("shortcuts", "shortcuts"), "Nothing found");
    search->clear();

    auto* record = panes["shortcuts"]->findChild<QPushButton*>(QStringLiteral("recordShortcut"));
    EXPECT_FALSE(record->isEnabled());
    EXPECT_TRUE(record->toolTip().contains("kova shortcut set")) << record->toolTip().toStdString();
    EXPECT_EQ(record->accessibleDescription(), record->toolTip());
}

TEST_F(Settings, StartingKovaUITwiceShowsTheSettings) {
    QProcess second;
    second.start(QStringLiteral(KOVA_UI_PROGRAM), {QStringLiteral("--socket"), QString::fromStdString(socketPath())});
    EXPECT_TRUE(until([&] { return second.state() == QProcess::NotRunning && !link.contents()->windows.empty(); }));
    EXPECT_EQ(second.exitCode(), 0);
    EXPECT_TRUE(link.contents()->windows.contains("settings"));
}

} // namespace kova::ui::testing
