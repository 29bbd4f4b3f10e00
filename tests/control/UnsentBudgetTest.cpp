#include "control/UnsentBudget.h"

#include <gtest/gtest.h>

#include <string>

namespace kova {
namespace {

TEST(UnsentBudget, DropsTheClientThatHasReadNothingForTheLongestTime) {
    UnsentBudget budget(100);
    std::string dropped;
    UnsentBudget::Account a(budget, [&] { dropped += "a"; }), b(budget, [&] { dropped += "b"; }),
        c(budget, [&] { dropped += "c"; });
    const UnsentBudget::Clock::time_point start{};
    const auto at = [start](int second) { return start + std::chrono::seconds(second); };
    a.setUnread(40, at(1));
    b.setUnread(50, at(2));
    EXPECT_EQ(budget.unreadBytes(), 90U);
    a.setUnread(30, at(3)); // a has read some of its output
    c.setUnread(30, at(4));
    EXPECT_EQ(dropped, "b");
    EXPECT_TRUE(b.isDropped());
    EXPECT_EQ(budget.unreadBytes(), 60U);
    b.setUnread(1000, at(5));
    EXPECT_EQ(budget.unreadBytes(), 60U) << "a dropped client no longer counts";
    c.setUnread(500, at(6)); // a is dropped; then c may exceed the limit, since no other client has unread bytes
    EXPECT_EQ(dropped, "ba");
    EXPECT_EQ(budget.unreadBytes(), 500U);
    {
        UnsentBudget::Account d(budget, [&] { dropped += "d"; });
        d.setUnread(90, at(7));
        EXPECT_EQ(dropped, "bac");
    }
    EXPECT_EQ(budget.unreadBytes(), 0U);
}

} // namespace
} // namespace kova
