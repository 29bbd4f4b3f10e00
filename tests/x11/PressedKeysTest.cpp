// Distinguishes new presses from repetitions, with releases that the server reports and releases that it does not
// report.
#include "platform/x11/PressedKeys.h"

#include <gtest/gtest.h>

namespace kova::x11 {
namespace {

constexpr xcb_keycode_t kH = 43, kJ = 44;

TEST(PressedKeys, RepeatUntilTheyAreReleased) {
    PressedKeys keys;
    // Pressed while the server's clock wraps around.
    EXPECT_FALSE(keys.press(kH, 0xFFFFFF00));
    EXPECT_TRUE(keys.press(kH, 0xFFFFFF00 + 660));
    EXPECT_TRUE(keys.press(kH, 0xFFFFFF00 + 700));
    EXPECT_FALSE(keys.release(kH)) << "no other key is pressed";
    EXPECT_FALSE(keys.press(kH, 500));
    EXPECT_FALSE(keys.press(kH, 3501)) << "the release before this press was lost";
    PressedKeys::Bits down{};
    down[kJ / 8] = 1 << kJ % 8;
    keys.setPressed(down);
    EXPECT_FALSE(keys.press(kH, 3600)) << "the release of the key was reported to another program";
    EXPECT_TRUE(keys.press(kJ, 9000)) << "the key was pressed already";
    EXPECT_TRUE(keys.press(kJ, 9040));
    keys.release(kJ);
    EXPECT_FALSE(keys.press(kJ, 9080));
}

TEST(PressedKeys, WithUnreportedReleasesRepeatOnlyWhenTheServerWouldRepeatThem) {
    PressedKeys keys;
    // Presses H, then J, then releases H: the grab ends, and the release of J will not be reported.
    const auto overlap = [&](xcb_timestamp_t at) {
        keys.release(kJ);
        EXPECT_FALSE(keys.press(kH, at));
        EXPECT_FALSE(keys.press(kJ, at + 50)) << "before the first key is released";
        EXPECT_TRUE(keys.release(kH));
        keys.stopExpectingReleases();
        keys.setRepeatDelay(400);
    };
    // J is released unnoticed, and pressed again before it would repeat, or long after.
    for (const xcb_timestamp_t again : {100U, 430U, 600U, 2900U}) {
        overlap(10000);
        EXPECT_FALSE(keys.press(kJ, 10000 + again)) << again;
        EXPECT_TRUE(keys.press(kJ, 10000 + again + 400)) << "releases of the key are reported again";
    }
    // J stays pressed. Once it has repeated, its release counts as reported again, so even a late press is a
    // repetition.
    overlap(20000);
    for (const xcb_timestamp_t later : {452U, 490U, 530U, 2000U}) {
        EXPECT_TRUE(keys.press(kJ, 20000 + later)) << later;
    }
    // J has repeated already when its release stops being reported. Then it may repeat after a short time, but not
    // after a long time.
    overlap(30000);
    EXPECT_TRUE(keys.press(kJ, 30450));
    keys.stopExpectingReleases();
    EXPECT_TRUE(keys.press(kJ, 30490));
    keys.stopExpectingReleases();
    EXPECT_FALSE(keys.press(kJ, 31500));
}

} // namespace
} // namespace kova::x11
