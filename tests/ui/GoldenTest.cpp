// The overlay as a person sees it, compared with the pictures under golden/. After a change of the drawing look at the
// new pictures, then renew the kept ones: KOVA_RENEW_GOLDEN=1 ui_tests --gtest_filter='Golden*'
#include "tests/ui/Sample.h"

#include <QDir>
#include <QFontInfo>
#include <QPainter>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

namespace kova::ui::testing {

namespace {

constexpr int kSameWithin = 12;         // of 255, each component
constexpr double kMostOtherPoints = 60; // less than a name or an icon has; in points, so that it counts at each scale

/// Whether the pixel lies within the colors that the picture has there and one pixel around: edges of letters drift
/// between versions of fonts, by no more than that.
bool isWithin(const QImage& picture, QPoint at, QRgb pixel) {
    int least[3] = {255, 255, 255}, most[3] = {};
    for (int y = std::max(0, at.y() - 1); y <= std::min(picture.height() - 1, at.y() + 1); ++y) {
        for (int x = std::max(0, at.x() - 1); x <= std::min(picture.width() - 1, at.x() + 1); ++x) {
            const QRgb near = picture.pixel(x, y);
            const int parts[3] = {qRed(near), qGreen(near), qBlue(near)};
            for (int i = 0; i < 3; ++i) {
                least[i] = std::min(least[i], parts[i]);
                most[i] = std::max(most[i], parts[i]);
            }
        }
    }
    const int parts[3] = {qRed(pixel), qGreen(pixel), qBlue(pixel)};
    for (int i = 0; i < 3; ++i) {
        if (parts[i] < least[i] - kSameWithin || parts[i] > most[i] + kSameWithin) return false;
    }
    return true;
}

/// Pixels of each picture that the other has not; both are of one size.
int otherPixels(const QImage& one, const QImage& other) {
    int others = 0;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            const QRgb a = one.pixel(x, y), b = other.pixel(x, y);
            if (a != b) others += !isWithin(other, {x, y}, a) || !isWithin(one, {x, y}, b);
        }
    }
    return others;
}

bool looksAlike(const QImage& one, const QImage& other, double scale) {
    return one.size() == other.size() && otherPixels(one, other) <= kMostOtherPoints * scale * scale;
}

QImage pictureOf(const Sample& sample, bool isComposited = true) {
    PicturePlatform platform(isComposited);
    NotedActions actions;
    Overlay overlay(platform, actions);
    overlay.setTaste(tasteOf(sample.look));
    overlay.show(contentsOf(sampleState(sample)));
    return platform.screen(QSize(800, 500) * sample.scale);
}

void compare(const Sample& sample, bool isComposited, const std::string& name) {
    SCOPED_TRACE(name);
    const QImage seen = pictureOf(sample, isComposited);
    const QString path = QStringLiteral(KOVA_GOLDEN "/") + QString::fromStdString(name) + QStringLiteral(".png");
    if (std::getenv("KOVA_RENEW_GOLDEN")) {
        ASSERT_TRUE(seen.save(path, "PNG", 0));
        return;
    }
    const QImage golden(path);
    ASSERT_FALSE(golden.isNull()) << path.toStdString() << " is missing";
    if (looksAlike(seen, golden, sample.scale)) return;
    const QString kept =
        QDir::tempPath() + QStringLiteral("/kova-ui-") + QString::fromStdString(name) + QStringLiteral(".png");
    seen.save(kept);
    ADD_FAILURE() << "differs from the golden picture; see " << kept.toStdString();
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

TEST_F(Golden, ComparisonTellsDriftFromChange) {
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
    EXPECT_TRUE(looksAlike(moved(1), picture, 1)) << "letters drift by a pixel";
    EXPECT_FALSE(looksAlike(moved(4), picture, 1)) << "an entry has moved";
    const QImage bare = changed([&](QPainter& painter) { painter.fillRect(entry, picture.pixel(400, 304)); });
    EXPECT_FALSE(looksAlike(bare, picture, 1)) << "an entry is missing";
    EXPECT_FALSE(looksAlike(pictureOf({.windows = 5}), picture, 1)) << "a window is missing";
}

TEST_F(Golden, TilesWithOneSixAndTwelveWindows) {
    for (const auto& [look, lookName] :
         {std::pair(Look::dark, "dark"), std::pair(Look::light, "light"), std::pair(Look::neon, "neon")}) {
        for (const int scale : {1, 2}) {
            for (const int windows : {1, 6, 12}) {
                compare(
                    {.windows = windows, .scale = static_cast<double>(scale), .look = look, .hasMessage = windows == 6},
                    true, std::string(lookName) + "-" + std::to_string(windows) + "@" + std::to_string(scale));
            }
        }
    }
}

TEST_F(Golden, CarriedWindowsAndBareDesktops) {
    compare({.isDragging = true, .hasMessage = false}, true, "dark-drag");
    compare({.look = Look::light, .isDragging = true, .hasMessage = false}, true, "light-drag");
    compare({.look = Look::neon, .isDragging = true, .hasMessage = false}, true, "neon-drag");
    compare({.useThemeBackground = false}, true, "dark-over-wallpaper");
    compare({.look = Look::light, .useThemeBackground = false, .isDragging = true}, false, "light-without-compositor");
}

} // namespace kova::ui::testing
