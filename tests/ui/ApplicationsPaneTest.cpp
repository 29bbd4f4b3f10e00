// The pane of the settings that shows what was learned about applications.
#include "tests/ui/WindowStage.h"

#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QTreeWidget>

namespace kova::ui::testing {

class ApplicationsInSettings : public WindowStage {
  protected:
    ApplicationsInSettings() {
        desk.arrange();
        ask("layout.prefer", {{"tile", "focus-main"}, {"application", "Terminal"}});
        ask("place", {{"window", "notes"}, {"tile", "1"}});
    }
    void openPane() {
        window = open("settings", {{"pane", "applications"}});
        list = control<QTreeWidget>(window, "applications");
    }
    /// The text in the column of the application's row; empty if there is no such row.
    std::string shown(const char* application, int column) const {
        const auto found = list->findItems(application, Qt::MatchExactly);
        return found.isEmpty() ? "" : found.front()->text(column).toStdString();
    }

    HostedWindow* window = nullptr;
    QTreeWidget* list = nullptr;
};

TEST_F(ApplicationsInSettings, ShowLearnedPlacesUntilTheyAreForgotten) {
    openPane();
    ASSERT_TRUE(until([&] { return list->topLevelItemCount() > 1; }));
    EXPECT_EQ(shown("Notes", 1), "Productivity");
    EXPECT_NE(shown("Notes", 3).find("(put there by you)"), std::string::npos) << shown("Notes", 3);
    EXPECT_EQ(shown("Terminal", 3).substr(0, 19), "Primary (preferred)");
    EXPECT_EQ(shown("Terminal", 2), "–");
    desk.opens("Zoom", {.unannouncedMinimumSize = {{1500, 400}}}).settle();
    ask("place", {{"window", "zoom"}, {"tile", "2"}});
    desk.settleFully();
    EXPECT_TRUE(until([&] { return shown("Zoom", 2).starts_with("1500 ×"); }))
        << "the open pane shows what is learned now: " << shown("Zoom", 2);

    list->setCurrentItem(list->findItems("Notes", Qt::MatchExactly).front());
    QTest::mouseClick(control<QPushButton>(window, "forget"), Qt::LeftButton);
    EXPECT_TRUE(until([&] { return shown("Notes", 0).empty(); }));
    EXPECT_EQ(control<QLabel>(window, "forgotten")->text(), "Forgot the minimum sizes and tiles of Notes");
    list->setFocus();
    list->setCurrentItem(list->findItems("Zoom", Qt::MatchExactly).front());
    QTest::keyClick(list, Qt::Key_Delete);
    EXPECT_TRUE(until([&] { return shown("Zoom", 2).empty() || shown("Zoom", 2) == "–"; }));
    ask("app.forget", {{"application", "Terminal"}});
    EXPECT_TRUE(until([&] { return shown("Terminal", 3).find("preferred") == std::string::npos; }))
        << "the pane shows that a command forgot the application";
}

class GoldenApplicationsInSettings : public ApplicationsInSettings {};

TEST_F(GoldenApplicationsInSettings, MatchTheGoldenPictures) {
    openPane();
    ASSERT_TRUE(until([&] { return list->topLevelItemCount() > 1; }));
    compareWithGoldens(*window, "settings-applications");
}

} // namespace kova::ui::testing
