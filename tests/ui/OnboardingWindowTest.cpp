// The window for new users.
#include "tests/ui/WindowStage.h"

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QStackedWidget>
#include <QTest>

namespace kova::ui::testing {

class Onboarding : public WindowStage {
  protected:
    void openWindow() {
        window = open("onboarding");
        pages = window->findChild<QStackedWidget*>();
        ASSERT_TRUE(pages);
    }
    void click(const char* button) { QTest::mouseClick(control<QPushButton>(window, button), Qt::LeftButton); }
    QString text(const char* label) { return control<QLabel>(window, label)->text(); }

    HostedWindow* window = nullptr;
    QStackedWidget* pages = nullptr;
};

TEST_F(Onboarding, ShowsAtOnceThatThePermissionWasGranted) {
    permission.isAskable = true;
    desk.desktop.setTrusted(false);
    desk.settle();
    openWindow();
    ASSERT_TRUE(until([&] { return text("permissionState") == "Accessibility permission is required"; }));
    click("next");
    EXPECT_EQ(pages->currentIndex(), 1);
    click("askForPermission");
    EXPECT_TRUE(until([&] { return permission.timesAsked == 1; }));
    desk.desktop.setTrusted(true);
    desk.settle();
    EXPECT_TRUE(until([&] { return text("permissionState") == "KOVA has the permission."; }));
    EXPECT_FALSE(control<QPushButton>(window, "askForPermission")->isEnabled());
    EXPECT_EQ(pages->currentIndex(), 1) << "only the user changes the page";
}

TEST_F(Onboarding, OffersSettingsAndAFirstArrangementThatCanBeUndone) {
    openWindow();
    ASSERT_TRUE(until([&] { return text("permissionState") == "KOVA has the permission."; }));
    click("next");
    EXPECT_EQ(pages->currentIndex(), 2) << "the page about a granted permission is skipped";
    auto* login = control<QCheckBox>(window, "login");
    auto* dock = control<QCheckBox>(window, "dock");
    ASSERT_TRUE(until([&] { return login->isVisible() && dock->isVisible(); }));
    EXPECT_EQ(dock->accessibleDescription(),
              "Optional. KOVA leaves your current Dock behavior untouched unless you change this option. Changing it "
              "briefly restarts the Dock.");
    QTest::mouseClick(dock, Qt::LeftButton, {}, {5, 5});
    EXPECT_TRUE(until([&] { return ask("dock.status")["result"]["isOn"] == true; }));
    EXPECT_EQ(ask("login.status")["result"]["isOn"], false) << "only the clicked setting changes";
    ask("login.on");
    EXPECT_TRUE(until([&] { return login->isChecked(); })) << "the box shows a change by a command";

    const std::string before = desk.tiles();
    click("next");
    EXPECT_FALSE(control<QPushButton>(window, "undo")->isEnabled());
    click("arrange");
    EXPECT_TRUE(until([&] { return text("arranged") == "Windows arranged into zones — Undo is available"; }));
    desk.settle();
    EXPECT_NE(desk.tiles(), before);
    click("undo");
    EXPECT_TRUE(until([&] { return !control<QPushButton>(window, "undo")->isEnabled(); }));
    desk.settle();
    EXPECT_EQ(desk.tiles(), before);
    click("back");
    EXPECT_EQ(pages->currentIndex(), 2);
    click("next");
    click("next");
    EXPECT_TRUE(until([&] { return !host.window("onboarding"); })) << "Done closes the window";
}

class GoldenOnboarding : public Onboarding {};

TEST_F(GoldenOnboarding, MatchesTheGoldenPicture) {
    permission.isAskable = true;
    desk.desktop.setTrusted(false);
    desk.settle();
    openWindow();
    ASSERT_TRUE(until([&] { return text("permissionState") == "Accessibility permission is required"; }));
    for (int page = 0; page < pages->count(); ++page) {
        compareWithGoldens(*window, "onboarding-" + std::to_string(page + 1));
        if (page + 1 < pages->count()) click("next");
    }
}

} // namespace kova::ui::testing
