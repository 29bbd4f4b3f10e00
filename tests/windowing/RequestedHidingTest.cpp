#include "windowing/RequestedHiding.h"

#include <gtest/gtest.h>

namespace kova {
namespace {

TEST(RequestedHiding, CountsAsDoneUntilTheDesktopHasHadTimeToReport) {
    constexpr pid_t kMail = 10, kEditor = 20;
    constexpr bool kHidden = true, kShown = false;
    RequestedHiding hiding;
    EXPECT_TRUE(hiding.isHidden(kMail, kHidden, Seconds(100)));
    EXPECT_FALSE(hiding.isHidden(kMail, kShown, Seconds(100)));

    hiding.hide(kMail, Seconds(100));
    EXPECT_TRUE(hiding.isHidden(kMail, kShown, Seconds(100)));
    EXPECT_FALSE(hiding.isHidden(kEditor, kShown, Seconds(100))) << "nothing was asked of it";
    hiding.show(kMail, Seconds(100.2));
    EXPECT_FALSE(hiding.isHidden(kMail, kHidden, Seconds(100.2))) << "the desktop still tells of the former request";
    hiding.hide(kMail, Seconds(100.4));
    EXPECT_TRUE(hiding.isHidden(kMail, kShown, Seconds(100.4)));

    hiding.show(kEditor, Seconds(101.2));
    EXPECT_TRUE(hiding.isHidden(kMail, kShown, Seconds(101.3))) << "each has its own time";
    EXPECT_FALSE(hiding.isHidden(kMail, kShown, Seconds(101.4))) << "the application has refused the request";
    EXPECT_FALSE(hiding.isHidden(kEditor, kHidden, Seconds(102.1)));
    EXPECT_TRUE(hiding.isHidden(kEditor, kHidden, Seconds(102.3))) << "its user has hidden it";
}

} // namespace
} // namespace kova
