// Displays are computed from monitors and panels.
#include "platform/x11/Displays.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace kova::x11 {
namespace {

std::string text(const CGRect& r) {
    const auto number = [](double value) { return std::to_string(static_cast<long>(value)); };
    return number(minX(r)) + "," + number(minY(r)) + " " + number(r.size.width) + "x" + number(r.size.height);
}

std::string text(const PixelRect& r) {
    return text(makeRect(r.x, r.y, r.width, r.height));
}

Panel panel(const PixelRect& frame, const PixelEdges& depth) {
    Strut strut;
    strut.depth = depth;
    strut.leftStart = strut.rightStart = frame.y;
    strut.leftEnd = strut.rightEnd = frame.bottom() - 1;
    strut.topStart = strut.bottomStart = frame.x;
    strut.topEnd = strut.bottomEnd = frame.right() - 1;
    return {strut, frame};
}

std::vector<std::uint8_t> edid(std::uint8_t serial, const std::string& name) {
    std::vector<std::uint8_t> bytes(128, 0);
    std::fill_n(bytes.begin() + 1, 6, std::uint8_t{0xFF});
    bytes[8] = 0x10;
    bytes[9] = 0xAC;
    bytes[12] = serial;
    bytes[54 + 3] = 0xFC;
    std::ranges::copy(name + "\n   ", bytes.begin() + 54 + 5);
    return bytes;
}

TEST(Displays, AreListedWithThePrimaryFirstAndItsCornerIsTheOrigin) {
    // The top of the primary monitor is 100 pixels lower than the top of the monitor on its left.
    const std::vector<Monitor> monitors = {{"HDMI-1", false, {0, 0, 1920, 1080}, {}},
                                           {"DP-1", true, {1920, 100, 2560, 1440}, {}},
                                           {"DP-2", false, {4480, 100, 1000, 1000}, {}}};
    const auto displays = describeDisplays(monitors, MonitorReport::all, {}, std::nullopt, {0, 0, 5480, 1540});
    ASSERT_EQ(displays.screens.size(), 3U);
    EXPECT_EQ(displays.screens[0].localizedName, "DP-1");
    EXPECT_EQ(text(displays.screens[0].frame), "0,0 2560x1440");
    EXPECT_EQ(displays.screens[1].localizedName, "HDMI-1");
    // The top of HDMI-1 is 100 pixels above the top of the primary monitor.
    EXPECT_EQ(text(displays.screens[1].frame), "-1920,460 1920x1080");
    EXPECT_EQ(text(displays.screens[2].frame), "2560,440 1000x1000");
    EXPECT_EQ(text(displays.space.firstDisplay()), "1920,100 2560x1440");
    EXPECT_FALSE(displays.screens[0].displayUUID);

    // The server does not support monitors: the root window is the display.
    EXPECT_EQ(text(describeDisplays({}, MonitorReport::none, {}, std::nullopt, {0, 0, 800, 600}).screens.at(0).frame),
              "0,0 800x600");
    EXPECT_TRUE(describeDisplays({}, MonitorReport::all, {}, std::nullopt, {0, 0, 64, 64}).screens.empty())
        << "all outputs are off";
}

TEST(Displays, ExcludePanelsOnAnyEdgeFromTheVisibleFrame) {
    const PixelRect left = {0, 0, 1920, 1080}, right = {1920, 0, 1280, 1024}, root = {0, 0, 3200, 1080};
    struct Case {
        const char* what;
        std::vector<Panel> panels;
        const char* onLeft;
        const char* onRight;
    };
    const std::vector<Case> cases = {
        {"no panel", {}, "0,0 1920x1080", "1920,0 1280x1024"},
        {"top of the left monitor", {panel({0, 0, 1920, 30}, {0, 0, 30, 0})}, "0,30 1920x1050", "1920,0 1280x1024"},
        {"bottom of the right monitor, which is shorter",
         {panel({1920, 984, 1280, 40}, {0, 0, 0, 96})},
         "0,0 1920x1080",
         "1920,0 1280x984"},
        {"right edge of the left monitor",
         {panel({1870, 0, 50, 1080}, {0, 1330, 0, 0})},
         "0,0 1870x1080",
         "1920,0 1280x1024"},
        {"left edge of the right monitor",
         {panel({1920, 0, 60, 1024}, {1980, 0, 0, 0})},
         "0,0 1920x1080",
         "1980,0 1220x1024"},
        {"across both monitors", {panel({0, 0, 3200, 24}, {0, 0, 24, 0})}, "0,24 1920x1056", "1920,24 1280x1000"},
        {"two panels on one edge",
         {panel({0, 0, 900, 30}, {0, 0, 30, 0}), panel({900, 0, 900, 50}, {0, 0, 50, 0})},
         "0,50 1920x1030",
         "1920,0 1280x1024"},
        {"a panel that would cover a whole monitor",
         {panel({1920, 0, 1280, 1024}, {0, 1280, 0, 0})},
         "0,0 1920x1080",
         "1920,0 1280x1024"},
        {"impossible depths",
         {panel({0, 0, 10, 10}, {32767, 32767, 32767, 32767})},
         "0,0 1920x1080",
         "1920,0 1280x1024"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(text(visiblePart(left, c.panels, root)), c.onLeft) << c.what;
        EXPECT_EQ(text(visiblePart(right, c.panels, root)), c.onRight) << c.what;
    }

    const std::vector<Monitor> one = {{"DP-1", true, {0, 0, 1920, 1080}, {}}};
    const auto visible = [&](const std::optional<PixelRect>& workarea) {
        const std::vector<Panel> top = {panel({0, 0, 1920, 30}, {0, 0, 30, 0})};
        return text(
            describeDisplays(one, MonitorReport::all, top, workarea, {0, 0, 1920, 1080}).screens.at(0).visibleFrame);
    };
    // A work area on the monitor reduces the visible frame further.
    EXPECT_EQ(visible(std::nullopt), "0,0 1920x1050");
    EXPECT_EQ(visible(PixelRect{0, 30, 1920, 1000}), "0,50 1920x1000");
    EXPECT_EQ(visible(PixelRect{5000, 0, 10, 10}), "0,0 1920x1050");
}

TEST(Displays, KeepTheirIdWhenTheMonitorMovesToAnotherConnector) {
    const auto first = identityInEdid(edid(1, "Wide 34")), second = identityInEdid(edid(2, "Wide 34"));
    ASSERT_TRUE(first && second);
    EXPECT_EQ(first->name, "Wide 34");
    EXPECT_FALSE(identityInEdid(std::vector<std::uint8_t>(128, 0)));
    EXPECT_FALSE(identityInEdid(std::vector<std::uint8_t>(20, 0xFF)));

    const auto uuids = [](const std::vector<Monitor>& monitors) {
        std::vector<std::string> found;
        for (const Screen& screen :
             describeDisplays(monitors, MonitorReport::all, {}, std::nullopt, {0, 0, 4000, 1000}).screens) {
            found.push_back(screen.displayUUID.value_or("none"));
        }
        return found;
    };
    const Monitor a{"DP-1", true, {0, 0, 1000, 1000}, first}, b{"DP-2", false, {1000, 0, 1000, 1000}, second};
    const auto apart = uuids({a, b});
    EXPECT_NE(apart[0], apart[1]);
    // The same monitor, on another connector and with another frame.
    EXPECT_EQ(uuids({{"HDMI-3", true, {0, 0, 800, 600}, first}})[0], apart[0]);
    // Monitors with the same identity are distinguished by their connector. Without a serial number the id contains the
    // connector even if there is only one.
    for (const std::uint8_t serial : {std::uint8_t{1}, std::uint8_t{0}}) {
        const auto identity = identityInEdid(edid(serial, "Wide 34"));
        const Monitor one{"DP-1", true, {0, 0, 1000, 1000}, identity},
            two{"DP-2", false, {1000, 0, 1000, 1000}, identity};
        const auto twins = uuids({one, two});
        EXPECT_NE(twins[0], twins[1]);
        if (serial != 0) continue;
        EXPECT_EQ(uuids({one})[0], twins[0]);
        EXPECT_EQ(uuids({two})[0], twins[1]);
    }
    EXPECT_EQ(apart[0].size(), 36U);
    EXPECT_EQ(apart[0].find_first_not_of("0123456789ABCDEF-"), std::string::npos);
}

} // namespace
} // namespace kova::x11
