// The overlay as a person sees it, compared with the pictures under golden/. After a change of the drawing look at the new
// pictures, then renew the kept ones: KOVA_RENEW_GOLDEN=1 ui_tests --gtest_filter='Golden*'
#include "tests/ui/Sample.h"

#include <QDir>

#include <gtest/gtest.h>

#include <cstdlib>

namespace kova::ui::testing {

namespace {

constexpr int kSameWithin = 40;           // of 255, each component: edges of letters drift between versions of fonts
constexpr double kMostOtherPixels = 0.006; // share of the picture

double shareOfOtherPixels(const QImage& one, const QImage& other) {
    if (one.size() != other.size()) return 1;
    int others = 0;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            const QColor a = one.pixelColor(x, y), b = other.pixelColor(x, y);
            others += std::abs(a.red() - b.red()) > kSameWithin || std::abs(a.green() - b.green()) > kSameWithin ||
                      std::abs(a.blue() - b.blue()) > kSameWithin;
        }
    }
    return static_cast<double>(others) / (one.width() * one.height());
}

void compare(const Sample& sample, bool isComposited, const std::string& name) {
    SCOPED_TRACE(name);
    PicturePlatform platform(isComposited);
    NotedActions actions;
    Overlay overlay(platform, actions);
    overlay.setTaste(tasteOf(sample.look));
    overlay.show(contentsOf(sampleState(sample)));
    const QImage seen = platform.screen(QSize(800, 500) * sample.scale);
    const QString path = QStringLiteral(KOVA_GOLDEN "/") + QString::fromStdString(name) + QStringLiteral(".png");
    if (std::getenv("KOVA_RENEW_GOLDEN")) {
        ASSERT_TRUE(seen.save(path, "PNG", 0));
        return;
    }
    const QImage golden(path);
    ASSERT_FALSE(golden.isNull()) << path.toStdString() << " is missing";
    const double others = shareOfOtherPixels(seen, golden);
    if (others <= kMostOtherPixels) return;
    const QString kept = QDir::tempPath() + QStringLiteral("/kova-ui-") + QString::fromStdString(name) + QStringLiteral(".png");
    seen.save(kept);
    ADD_FAILURE() << others * 100 << " % of the pixels differ; see " << kept.toStdString();
}

} // namespace

TEST(Golden, TilesWithOneSixAndTwelveWindows) {
    for (const auto& [look, lookName] : {std::pair(Look::dark, "dark"), std::pair(Look::light, "light"), std::pair(Look::neon, "neon")}) {
        for (const int scale : {1, 2}) {
            for (const int windows : {1, 6, 12}) {
                compare({.windows = windows, .scale = static_cast<double>(scale), .look = look, .hasMessage = windows == 6}, true,
                        std::string(lookName) + "-" + std::to_string(windows) + "@" + std::to_string(scale));
            }
        }
    }
}

TEST(Golden, CarriedWindowsAndBareDesktops) {
    compare({.isDragging = true, .hasMessage = false}, true, "dark-drag");
    compare({.look = Look::light, .isDragging = true, .hasMessage = false}, true, "light-drag");
    compare({.look = Look::neon, .isDragging = true, .hasMessage = false}, true, "neon-drag");
    compare({.useThemeBackground = false}, true, "dark-over-wallpaper");
    compare({.look = Look::light, .useThemeBackground = false, .isDragging = true}, false, "light-without-compositor");
}

} // namespace kova::ui::testing
