#include "windowing/RequestedHiding.h"

#include <gtest/gtest.h>

namespace kova {
namespace {

TEST(RequestedHiding, ARequestCountsAsDoneForOneSecondAndThenTheReportedStateCounts) {
    constexpr pid_t kMail = 10, kEditor = 20;
    constexpr bool kHidden = true, kShown = false;
    RequestedHiding hiding;
    EXPECT_TRUE(hiding.isHidden(kMail, kHidden, Seconds(100)));
    EXPECT_FALSE(hiding.isHidden(kMail, kShown, Seconds(100)));

    hiding.hide(kMail, Seconds(100));
    EXPECT_TRUE(hiding.isHidden(kMail, kShown, Seconds(100)));
    EXPECT_FALSE(hiding.isHidden(kEditor, kShown, Seconds(100))) << "nothing was requested for the editor";
    hiding.show(kMail, Seconds(100.2));
    EXPECT_FALSE(hiding.isHidden(kMail, kHidden, Seconds(100.2))) << "the desktop still reports the former request";
    hiding.hide(kMail, Seconds(100.4));
    EXPECT_TRUE(hiding.isHidden(kMail, kShown, Seconds(100.4)));

    hiding.show(kEditor, Seconds(101.2));
    EXPECT_TRUE(hiding.isHidden(kMail, kShown, Seconds(101.3)))
        << "the request to show the editor does not affect Mail";
    EXPECT_FALSE(hiding.isHidden(kMail, kShown, Seconds(101.4))) << "the application has refused to hide";
    EXPECT_FALSE(hiding.isHidden(kEditor, kHidden, Seconds(102.1)));
    EXPECT_TRUE(hiding.isHidden(kEditor, kHidden, Seconds(102.3))) << "the user has hidden the editor";
}

} // namespace
} // namespace kova
