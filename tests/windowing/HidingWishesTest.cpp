#include "windowing/HidingWishes.h"

#include <gtest/gtest.h>

namespace kova {
namespace {

TEST(HidingWishes, CountAsDoneUntilTheDesktopHasHadTimeToTell) {
    constexpr pid_t kMail = 10, kEditor = 20;
    constexpr bool kHidden = true, kShown = false;
    HidingWishes wishes;
    EXPECT_TRUE(wishes.isHidden(kMail, kHidden, Seconds(100)));
    EXPECT_FALSE(wishes.isHidden(kMail, kShown, Seconds(100)));

    wishes.hide(kMail, Seconds(100));
    EXPECT_TRUE(wishes.isHidden(kMail, kShown, Seconds(100)));
    EXPECT_FALSE(wishes.isHidden(kEditor, kShown, Seconds(100))) << "nothing was asked of it";
    wishes.show(kMail, Seconds(100.2));
    EXPECT_FALSE(wishes.isHidden(kMail, kHidden, Seconds(100.2))) << "the desktop still tells of the former wish";
    wishes.hide(kMail, Seconds(100.4));
    EXPECT_TRUE(wishes.isHidden(kMail, kShown, Seconds(100.4)));

    wishes.show(kEditor, Seconds(101.2));
    EXPECT_TRUE(wishes.isHidden(kMail, kShown, Seconds(101.3))) << "each has its own time";
    EXPECT_FALSE(wishes.isHidden(kMail, kShown, Seconds(101.4))) << "it has refused";
    EXPECT_FALSE(wishes.isHidden(kEditor, kHidden, Seconds(102.1)));
    EXPECT_TRUE(wishes.isHidden(kEditor, kHidden, Seconds(102.3))) << "its user has hidden it";
}

} // namespace
} // namespace kova
