// New presses distinguished from keys that repeat, with releases that the server reports and those that it does not.
#include "platform/x11/HeldKeys.h"

#include <gtest/gtest.h>

namespace kova::x11 {
namespace {

constexpr xcb_keycode_t kH = 43, kJ = 44;

TEST(HeldKeys, RepeatUntilTheyAreReleased) {
    HeldKeys keys;
    // Held across the turn of the server's clock.
    EXPECT_FALSE(keys.press(kH, 0xFFFFFF00));
    EXPECT_TRUE(keys.press(kH, 0xFFFFFF00 + 660));
    EXPECT_TRUE(keys.press(kH, 0xFFFFFF00 + 700));
    EXPECT_FALSE(keys.release(kH)) << "nothing else is down";
    EXPECT_FALSE(keys.press(kH, 500));
    EXPECT_FALSE(keys.press(kH, 3501)) << "its release was lost";
    HeldKeys::Bits down{};
    down[kJ / 8] = 1 << kJ % 8;
    keys.areDown(down);
    EXPECT_FALSE(keys.press(kH, 3600)) << "its release went elsewhere";
    EXPECT_TRUE(keys.press(kJ, 9000)) << "the key was down before";
    EXPECT_TRUE(keys.press(kJ, 9040));
    keys.release(kJ);
    EXPECT_FALSE(keys.press(kJ, 9080));
}

TEST(HeldKeys, ReleasedTowardsOtherProgramsDoNotCountAsHeld) {
    HeldKeys keys;
    const auto overlap = [&](xcb_timestamp_t at) {
        keys.release(kJ);
        EXPECT_FALSE(keys.press(kH, at));
        EXPECT_FALSE(keys.press(kJ, at + 50)) << "before the first is up";
        EXPECT_TRUE(keys.release(kH));
        keys.loseSight();
        keys.setRepeatDelay(400);
    };
    // Let go and pressed again before it would repeat, and long after.
    for (const xcb_timestamp_t again : {100U, 430U, 600U, 2900U}) {
        overlap(10000);
        EXPECT_FALSE(keys.press(kJ, 10000 + again)) << again;
        EXPECT_TRUE(keys.press(kJ, 10000 + again + 400)) << "in sight again";
    }
    // Held on: it repeats in its time, and is in sight again.
    overlap(20000);
    for (const xcb_timestamp_t later : {452U, 490U, 530U, 2000U}) {
        EXPECT_TRUE(keys.press(kJ, 20000 + later)) << later;
    }
    // Held so long that it repeated before the first one was released.
    overlap(30000);
    EXPECT_TRUE(keys.press(kJ, 30450));
    keys.loseSight();
    EXPECT_TRUE(keys.press(kJ, 30490));
    keys.loseSight();
    EXPECT_FALSE(keys.press(kJ, 31500));
}

} // namespace
} // namespace kova::x11
