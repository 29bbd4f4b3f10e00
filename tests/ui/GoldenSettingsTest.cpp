// Compares each pane of the settings with the pictures under golden/.
#include "tests/ui/GoldenPicture.h"
#include "tests/ui/WindowStage.h"
#include "ui/windows/Translations.h"

#include <QApplication>
#include <QLabel>
#include <QTranslator>

namespace kova::ui::testing {

namespace {

class GoldenSettings : public WindowStage {
  protected:
    HostedWindow* openAt(const std::string& pane) {
        HostedWindow* window = open("settings", {{"pane", pane}});
        EXPECT_TRUE(until([&] { return host.session() && host.session()->state().contains("themes"); }));
        return window;
    }
};

} // namespace

TEST_F(GoldenSettings, PanesThatShowTheAgentsStateMatchTheGoldenPictures) {
    desk.opens("Sheet", {.minimumSize = {{1500, 600}}}).opens("Plan", {.minimumSize = {{1500, 600}}}).settle();
    for (const std::string pane : {"general", "layouts", "shortcuts", "appearance"})
        compareWithGoldens(*openAt(pane), "settings-" + pane);
}

TEST_F(GoldenSettings, TheLayoutsPaneInNeonAndGermanMatchesTheGoldenPicture) {
    installTranslations(QLocale(QLocale::German));
    desk.opens("Sheet", {.minimumSize = {{1500, 1600}}}).opens("Plan", {.minimumSize = {{1500, 1600}}}).settle();
    HostedWindow* window = openAt("layouts");
    ask("theme.select", {{"theme", "jarvis.neon-cyan"}});
    ASSERT_TRUE(until([&] { return link.contents()->appearance.isDark.value_or(false); }));
    style(Brightness::light);
    QCoreApplication::processEvents(); // the new palette reaches the controls
    compareWithGolden(picture(*window, 1), "settings-layouts-neon-german", 1);
    for (QTranslator* each : qApp->findChildren<QTranslator*>()) delete each;
}

TEST_F(GoldenSettings, TheAboutPaneMatchesTheGoldenPictures) {
    HostedWindow* window = openAt("about");
    auto* version = control<QLabel>(window, "version");
    EXPECT_TRUE(until([&] { return version->text().size() > 5; }));
    version->setText(QStringLiteral("KOVA 1.2.3"));
    compareWithGoldens(*window, "settings-about");
}

} // namespace kova::ui::testing
