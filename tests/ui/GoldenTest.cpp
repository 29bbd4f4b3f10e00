// Compares the overlay on the screen with the pictures under golden/. After a change of the drawing, check the new
// pictures, then replace the stored ones: KOVA_RENEW_GOLDEN=1 ui_tests --gtest_filter='Golden*'
#include "tests/ui/GoldenPicture.h"
#include "tests/ui/Sample.h"

#include <QFontInfo>
#include <QPainter>
#include <QtTest/qtestmouse.h>

#include <gtest/gtest.h>

namespace kova::ui::testing {

namespace {

struct ShownSample {
    explicit ShownSample(const Sample& sample, bool isComposited = true) : platform(isComposited) {
        overlay.setDesktopStyle(desktopStyleOf(sample.theme));
        overlay.show(contentsOf(sampleState(sample)));
    }
    PicturePlatform platform;
    RecordedActions actions;
    Overlay overlay{platform, actions};
};

QImage pictureOf(const Sample& sample, bool isComposited = true) {
    return ShownSample(sample, isComposited).platform.screen(QSize(800, 500) * sample.scale);
}

void compare(const Sample& sample, bool isComposited, const std::string& name) {
    compareWithGolden(pictureOf(sample, isComposited), name, sample.scale);
}

/// The overlay over a wallpaper that is black at the left and white at the right.
QImage pictureOverWallpaper(const Sample& sample) {
    const ShownSample shown(sample);
    const QSize size = QSize(800, 500) * sample.scale;
    QLinearGradient wallpaper(0, 0, size.width() * 0.6, 0);
    wallpaper.setColorAt(0, Qt::black);
    wallpaper.setColorAt(1, Qt::white);
    return shown.platform.screen(size, wallpaper);
}

/// The overlay with the pointer on an icon, in a wide and in a narrow footer.
QImage pictureWithHoveredIcon(const Sample& sample) {
    const ShownSample shown(sample);
    for (const char* tile : {"d1::primary", "d1::reference"}) {
        FooterWindow& footer = *shown.overlay.footers().at(tile);
        QTest::mouseMove(&footer, footer.layoutInWindow().entries.back().area.center());
    }
    return shown.platform.screen(QSize(800, 500) * sample.scale);
}

} // namespace

class Golden : public ::testing::Test {
  protected:
    void SetUp() override {
        if (QFontInfo(QFont(QStringLiteral("DejaVu Sans"))).family() != QStringLiteral("DejaVu Sans")) {
            GTEST_SKIP() << "the font DejaVu Sans is missing";
        }
    }
};

TEST_F(Golden, ComparisonAcceptsSlightlyMovedLettersAndRefusesChangedShapes) {
    const QImage picture = pictureOf({});
    const auto changed = [&](auto&& change) {
        QImage other = picture;
        QPainter painter(&other);
        change(painter);
        return other;
    };
    const QRect entry = QRect(92, 294, 70, 20); // of the footer "Primary"
    const auto moved = [&](int by) {
        return changed(
            [&](QPainter& painter) { painter.drawImage(entry.topLeft() + QPoint(by, 0), picture.copy(entry)); });
    };
    EXPECT_TRUE(looksAlike(moved(1), picture, 1)) << "letters may move by one pixel";
    EXPECT_TRUE(looksAlike(moved(2), picture, 1)) << "letters may move by two pixels";
    EXPECT_FALSE(looksAlike(moved(4), picture, 1)) << "an entry has moved";
    const QImage withoutEntry = changed([&](QPainter& painter) { painter.fillRect(entry, picture.pixel(400, 304)); });
    EXPECT_FALSE(looksAlike(withoutEntry, picture, 1)) << "an entry is missing";
    const QRect plus(467, 294, 20, 20);
    const QImage withoutPlus = changed([&](QPainter& painter) { painter.fillRect(plus, picture.pixel(400, 304)); });
    EXPECT_FALSE(looksAlike(withoutPlus, picture, 1)) << "a plus is missing";
    EXPECT_FALSE(looksAlike(pictureOf({.windows = 5}), picture, 1)) << "a window is missing";
}

TEST_F(Golden, TilesWithOneSixAndTwelveWindowsMatchTheGoldenPictures) {
    for (const auto& [theme, themeName] :
         {std::pair(ThemeVariant::dark, "dark"), std::pair(ThemeVariant::light, "light"),
          std::pair(ThemeVariant::neon, "neon")}) {
        for (const int scale : {1, 2}) {
            for (const int windows : {1, 6, 12}) {
                compare({.windows = windows,
                         .scale = static_cast<double>(scale),
                         .theme = theme,
                         .hasMessage = windows == 6},
                        true, std::string(themeName) + "-" + std::to_string(windows) + "@" + std::to_string(scale));
            }
        }
    }
}

TEST_F(Golden, DragsNoticesLaunchesAndDesktopsWithoutBackdropMatchTheGoldenPictures) {
    compare({.isDragging = true, .hasMessage = false}, true, "dark-drag");
    compare({.theme = ThemeVariant::light, .isDragging = true, .hasMessage = false}, true, "light-drag");
    compare({.theme = ThemeVariant::neon, .isDragging = true, .hasMessage = false}, true, "neon-drag");
    compare({.hasNotice = true}, true, "dark-notice");
    compare({.theme = ThemeVariant::light, .isRightToLeft = true}, true, "light-right-to-left");
    compare({.windows = 1, .hasMessage = false, .hasBrain = true}, true, "dark-brain");
    for (const int scale : {1, 2}) {
        for (const auto& [theme, name] :
             {std::pair(ThemeVariant::dark, "dark"), std::pair(ThemeVariant::light, "light")}) {
            compareWithGolden(pictureOverWallpaper(
                                  {.scale = static_cast<double>(scale), .theme = theme, .useThemeBackground = false}),
                              std::string(name) + "-over-wallpaper@" + std::to_string(scale), scale);
        }
        compareWithGolden(pictureWithHoveredIcon({.windows = 12, .scale = static_cast<double>(scale)}),
                          "dark-hovered@" + std::to_string(scale), scale);
    }
    compare({.theme = ThemeVariant::light, .hasMessage = false, .isBusy = true}, true, "light-busy");
    compare({.scale = 2, .theme = ThemeVariant::neon, .hasMessage = false, .isBusy = true}, true, "neon-busy@2");
    compare({.theme = ThemeVariant::light, .useThemeBackground = false, .isDragging = true}, false,
            "light-without-compositor");
    compare({.windows = 12, .scale = 1.25, .hasMessage = false, .hasSpan = true}, true, "dark-span@1.25");
    compare({.windows = 12, .scale = 1.5, .theme = ThemeVariant::neon, .hasMessage = false, .hasSpan = true}, true,
            "neon-span@1.5");
}

} // namespace kova::ui::testing
