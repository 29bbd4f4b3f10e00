#include "ui/style/Style.h"
#include "tests/linux/TemporaryFolder.h"
#include "ui/overlay/Drawing.h"
#include "ui/style/ApplicationIcons.h"
#include "ui/style/Colors.h"
#include "ui/style/WidgetPalette.h"
#include "ui/style/WindowStyle.h"

#include <QApplication>
#include <QFontInfo>
#include <QIcon>
#include <QListWidget>
#include <QtTest>

#include <gtest/gtest.h>

#include <fstream>
#include <memory>

namespace kova::ui {

namespace {

void expectDisabledTextIsPale(const Palette& palette) {
    const QPalette widgets = widgetPalette(palette);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::PlaceholderText}) {
        for (const QColor& background : {palette.panel, palette.raised}) {
            const double disabled = contrast(widgets.color(QPalette::Disabled, role), background);
            EXPECT_GE(disabled, 3);
            EXPECT_LE(disabled, 0.85 * contrast(palette.mutedText, background))
                << "a disabled text must be paler than an explanation";
        }
    }
}

} // namespace

// The contrast on a translucent panel is tested over the extreme wallpapers, white and black.
TEST(Palette, TextAndLinesAreLegibleInEachThemeWithEachAccent) {
    const ThemeRegistry registry;
    for (const auto& theme : registry.themes()) {
        for (const AccentColorOption& accent : accentColorOptions()) {
            for (const Brightness brightness : {Brightness::light, Brightness::dark}) {
                for (const Compositing compositing : {Compositing::absent, Compositing::running}) {
                    const std::string& id = theme->descriptor().id;
                    SCOPED_TRACE(id + " " + accent.id + (brightness == Brightness::dark ? " dark" : " light"));
                    Appearance appearance;
                    appearance.palette = registry.palette(id, accent.id);
                    if (theme->descriptor().visualStyle == ThemeVisualStyle::system) appearance.isDark = true;
                    const Palette palette = paletteFor(appearance, brightness, compositing);
                    for (const QColor& wallpaper : {QColor(Qt::white), QColor(Qt::black)}) {
                        const QColor panel = over(wallpaper, palette.panel);
                        for (const QColor& background : {panel, over(panel, palette.hovered), palette.raised,
                                                         over(palette.raised, palette.hovered), palette.backdropTop,
                                                         over(palette.backdropBottom, palette.tileFill)}) {
                            EXPECT_GE(contrast(palette.text, background), 4.5);
                            EXPECT_GE(contrast(palette.mutedText, background), 4.5);
                        }
                        EXPECT_GE(contrast(palette.accentLine, panel), 3);
                    }
                    EXPECT_GE(contrast(palette.accentLine, palette.raised), 3);
                    if (compositing == Compositing::absent) expectDisabledTextIsPale(palette);
                    EXPECT_GE(contrast(palette.accentText, palette.accentFill), 4.5);
                    for (const char* name : {"Mail", "Calendar", "Музыка", "متصفح الويب"}) {
                        for (const IconTone tone : {IconTone::full, IconTone::dim}) {
                            const LetterTile tile = letterTile(name, palette, tone);
                            EXPECT_GE(contrast(tile.letter, tile.background), 4.5) << name;
                        }
                    }
                }
            }
        }
    }
}

TEST(Colors, ContrastIsComputedAsInTheWebAccessibilityGuidelines) {
    EXPECT_NEAR(contrast(Qt::white, Qt::black), 21, 0.01);
    EXPECT_NEAR(contrast(QColor(0x77, 0x77, 0x77), Qt::white), 4.48, 0.01);
    EXPECT_EQ(legible(QColor(0x22, 0x22, 0x22), {Qt::white}, 4.5), QColor(0x22, 0x22, 0x22))
        << "a color with enough contrast is returned unchanged";
    EXPECT_EQ(legible(Qt::gray, {Qt::lightGray}, 20), QColor(Qt::black))
        << "no mixture has enough contrast, so white or black is returned";
}

TEST(Drawing, TheFirstLetterIsAWholeCharacter) {
    for (const auto& [name, first] : {std::pair("Mail", "M"),
                                      {" é", "é"},
                                      {"e\xCC\x81t", "e\xCC\x81"},
                                      {"", ""},
                                      {"👩‍💻 Studio", "👩‍💻"},
                                      {"𠮷野家", "𠮷"},
                                      {"متصفح", "م"}}) {
        EXPECT_EQ(firstGrapheme(QString::fromUtf8(name)), QString::fromUtf8(first)) << name;
    }
}

TEST(Style, RectanglesThatTouchInPointsTouchInPixels) {
    for (const double scale : {1.0, 1.25, 1.5, 2.0}) {
        const Style style{.scale = scale};
        const QRect left = style.px(makeRect(0.4, 0, 333.3, 20)), right = style.px(makeRect(333.7, 0, 100, 20));
        EXPECT_EQ(left.right() + 1, right.left()) << scale;
        EXPECT_EQ(style.px(makeRect(0, 0, 100, 20)).size(),
                  QSize(static_cast<int>(std::lround(100 * scale)), static_cast<int>(20 * scale)));
    }
}

TEST(WidgetFont, TheTextInSVGIconsIsDrawn) {
    applyWidgetFontHeight(13);
    EXPECT_EQ(QFontInfo(QApplication::font()).pixelSize(), 13);
    const TemporaryFolder folder;
    const std::string path = (folder.path() / "letter.svg").string();
    std::ofstream(path) << R"(<svg xmlns="http://www.w3.org/2000/svg" width="48" height="48"><text x="4" y="44">)"
                        << R"(<tspan style="font-size:50px">X</tspan></text></svg>)";
    const QImage image = QIcon(QString::fromStdString(path)).pixmap(48, 48).toImage();
    int drawn = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) drawn += qAlpha(image.pixel(x, y)) > 0 ? 1 : 0;
    }
    EXPECT_GT(drawn, 200) << "drawn pixels of " << image.width() * image.height();
}

TEST(WindowStyle, ASingleClickOnlySelectsAnEntryAlsoWhereTheDesktopWouldActivateIt) {
    struct SingleClickStyle : QProxyStyle {
        int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                      QStyleHintReturn* result) const override {
            return hint == SH_ItemView_ActivateItemOnSingleClick ? 1
                                                                 : QProxyStyle::styleHint(hint, option, widget, result);
        }
    };
    for (const bool isOurs : {false, true}) {
        std::unique_ptr<QStyle> style = std::make_unique<SingleClickStyle>();
        if (isOurs) style = std::make_unique<WindowStyle>(style.release());
        QListWidget list;
        list.setStyle(style.get());
        list.addItem(QStringLiteral("Scene"));
        int activated = 0;
        QObject::connect(&list, &QListWidget::itemActivated, [&] { ++activated; });
        list.show();
        const QPoint middle = list.visualItemRect(list.item(0)).center();
        QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, middle);
        EXPECT_EQ(activated, isOurs ? 0 : 1);
        EXPECT_EQ(list.currentRow(), 0);
    }
}

TEST(ApplicationIcons, TheIconOfTheDesktopEntryGroupIsUsed) {
    EXPECT_EQ(iconNameIn("[Desktop Entry]\nName=A\nIcon = editor \n[Desktop Action x]\nIcon=other\n"),
              QStringLiteral("editor"));
    EXPECT_EQ(iconNameIn("[Desktop Action x]\nIcon=other\n[Desktop Entry]\nIconName=no\n"), QString());
}

} // namespace kova::ui
