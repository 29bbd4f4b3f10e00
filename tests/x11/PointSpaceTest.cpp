// The conversion of pixels and points, and the settings that determine how many pixels a point has.
#include "platform/x11/PointSpace.h"
#include "platform/x11/ScaleSettings.h"
#include "platform/x11/X11DividerHandles.h"

#include <gtest/gtest.h>

#include <string>

namespace kova::x11 {
namespace {

constexpr PixelRect kFirst = {1920, 100, 2560, 1440};

std::string describe(const PixelRect& r) {
    return std::to_string(r.x) + "," + std::to_string(r.y) + " " + std::to_string(r.width) + "x" +
           std::to_string(r.height);
}

TEST(PointSpace, ConvertsRectanglesPointsAndSizes) {
    struct Case {
        double scale;
        CGRect points;
        const char* pixels;
    };
    const Case cases[] = {
        {1, makeRect(10, 20, 300, 200), "1930,120 300x200"},    {2, makeRect(10, 20, 300, 200), "1940,140 600x400"},
        {1.25, makeRect(10, 20, 301, 200), "1933,125 376x250"}, // edges at 12.5 and 388.75
        {1.5, makeRect(11, 20, 100, 200), "1937,130 150x300"},  // both edges lie between pixels
        {1.5, makeRect(-11, -21, 100, 10), "1904,69 150x15"},   // also on a display further left and higher
        {1.5, makeRect(-1, 0, 2, 2), "1919,100 3x3"},
    };
    for (const Case& each : cases) {
        const PointSpace space(each.scale, kFirst);
        EXPECT_EQ(describe(space.pixels(each.points)), each.pixels) << each.scale;
        const CGRect onScreen = flipped(each.points, kFirst.height / each.scale);
        EXPECT_EQ(describe(space.pixelsFromScreen(onScreen)), each.pixels) << each.scale;
    }
    const PointSpace twice(2, kFirst);
    EXPECT_EQ(twice.pointOnScreen(1920 + 30, 100 + 1440 - 50), (CGPoint{15, 25}));
    EXPECT_EQ(twice.pointsOnScreen({0, 0, 1920, 1080}), makeRect(-960, 230, 960, 540));
    const WindowSizeHints hints = {
        .minimum = {200, 100}, .base = {4, 8}, .increment = {14, 26}, .leastAspect = 1.5, .mostAspect = 2};
    EXPECT_EQ(twice.points(hints),
              (WindowSizeHints{
                  .minimum = {100, 50}, .base = {2, 4}, .increment = {7, 13}, .leastAspect = 1.5, .mostAspect = 2}));

    // A divider's handle is 8 points thick.
    const auto handleAtScale = [](double scale) {
        const PointSpace space(scale, {0, 0, 2560, 1440});
        return placeOfHandle("id", flipped(makeRect(99, 10, 2, 500), 1440 / scale), LayoutAxis::horizontal, space);
    };
    EXPECT_EQ(describe(handleAtScale(1).rect), "96,10 8x500");
    EXPECT_EQ(describe(handleAtScale(2).rect), "192,20 16x1000");
    EXPECT_EQ(handleAtScale(2).doubleClickTolerancePixels, 6);
}

// A frame in points that is written and read back moves each edge by at most half a pixel.
TEST(PointSpace, AFrameThatIsReadAndWrittenBackStaysTheSame) {
    for (double scale = 1; scale <= 4; scale += 0.25) {
        const PointSpace space(scale, kFirst);
        for (int n = -500; n < 5000; n += 7) {
            const PixelRect rect = {n, 3000 - n, 100 + (n + 500) / 3, 90 + (n + 500) / 2};
            ASSERT_EQ(describe(space.pixels(space.points(rect))), describe(rect)) << scale;
            ASSERT_EQ(describe(space.pixelsFromScreen(space.pointsOnScreen(rect))), describe(rect)) << scale;
            const CGRect points = makeRect(n, 3000 - n, 100 + n % 300, 90 + n % 500);
            const CGRect back = space.points(space.pixels(points));
            ASSERT_TRUE(nearlyEqual(back, points, 1 / scale + 1e-5))
                << scale << " " << n; // a size may differ by a whole pixel
            // The width of a window does not depend on its position: a moved terminal keeps its number of columns.
            const double columns = space.points(n % 80 * 7 + 700);
            ASSERT_EQ(space.pixels(makeRect(n, 0, columns, columns)).width, n % 80 * 7 + 700) << scale << " " << n;
        }
    }
}

std::string setting(std::uint8_t kind, const std::string& name, const std::string& value) {
    std::string bytes = {static_cast<char>(kind), 0, static_cast<char>(name.size()), 0};
    bytes += name;
    bytes.append((4 - name.size() % 4) % 4, '\0');
    return bytes + std::string("\7\0\0\0", 4) + value;
}

std::string word(std::uint32_t value) {
    std::string bytes;
    for (int i = 0; i < 4; ++i) bytes += static_cast<char>(value >> (8 * i));
    return bytes;
}

SharedSettings readFrom(const std::string& bytes) {
    return sharedSettingsIn({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
}

TEST(Scale, IsReadFromSettingsOfOtherPrograms) {
    const std::string head(8, '\0');
    const std::string factor = setting(0, "Gdk/WindowScalingFactor", word(2));
    const std::string dpi = setting(0, "Xft/DPI", word(144 * 1024));
    const std::string theme = setting(1, "Net/ThemeName", word(5) + "Mauve" + std::string(3, '\0'));
    const std::string color = setting(2, "Net/Tint", std::string(8, '\1'));
    const SharedSettings both = {144.0, 2};
    EXPECT_EQ(readFrom(head + word(4) + theme + factor + color + dpi), both);
    const std::string big("\1\0\0\0\0\0\0\7\0\0\0\1\0\0\0\7Xft/DPI\0\0\0\0\0\0\3\0\0", 33);
    EXPECT_EQ(readFrom(big), (SharedSettings{192.0, std::nullopt}));
    // Reads up to the first violation of the format, and never beyond the end.
    EXPECT_EQ(readFrom(head + word(4'000'000'000) + factor), (SharedSettings{std::nullopt, 2}));
    EXPECT_EQ(readFrom(head + word(2) + setting(9, "Odd", word(1)) + factor), SharedSettings{});
    EXPECT_EQ(readFrom(head + word(1) + setting(0, "Xft/DPI", word(0xFFFFFFFF))), SharedSettings{})
        << "a negative value is ignored";
    const std::string whole = head + word(4) + theme + factor + color + dpi;
    for (std::size_t length = 0; length < whole.size(); ++length) {
        EXPECT_NE(readFrom(whole.substr(0, length)), both) << length;
    }

    EXPECT_EQ(dotsPerInchIn("Xcursor.size:\t24\nXft.dpi:\t192\nXft.hinting:\t1\n"), 192.0);
    EXPECT_EQ(dotsPerInchIn("Xft.dpi: 120.5"), 120.5);
    for (const char* none :
         {"", "Xft.dpi:", "Xft.dpi:\tlarge\n", "Xft.dpi:\t-96\n", "Xft.dpiX: 96", "my.Xft.dpi: 192"}) {
        EXPECT_EQ(dotsPerInchIn(none), std::nullopt) << none;
    }
}

TEST(Scale, IsRoundedToQuartersAndPrefersTheWindowScalingFactor) {
    struct Case {
        SharedSettings shared;
        std::optional<double> resource;
        double scale;
    };
    const Case cases[] = {
        {{}, {}, 1},         {{}, 96.0, 1},       {{}, 120.0, 1.25},  {{}, 144.0, 1.5},       {{}, 192.0, 2},
        {{}, 72.0, 1},       {{}, 101.0, 1},      {{}, 9600.0, 4},    {{96.0, {}}, 192.0, 1}, {{144.0, 1}, {}, 1.5},
        {{192.0, 2}, {}, 2}, {{240.0, 2}, {}, 2}, {{{}, 2}, 96.0, 2}, {{{}, 9}, {}, 4},       {{{}, 1}, 192.0, 2},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(scaleOf(each.shared, each.resource), each.scale)
            << each.shared.dotsPerInch.value_or(0) << " " << each.shared.windowScalingFactor.value_or(0) << " "
            << each.resource.value_or(0);
    }
}

} // namespace
} // namespace kova::x11
