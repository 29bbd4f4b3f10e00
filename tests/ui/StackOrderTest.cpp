#include "ui/x11/StackOrder.h"
#include "ui/x11/ApplicationAreas.h"
#include "ui/x11/RestackBudget.h"

#include <gtest/gtest.h>

namespace kova::ui {

namespace {

constexpr WindowNumber kDesktop = 1, kMenu = 2, kGuard = 3, kBackdrop = 10, kFooter = 11, kEditor = 20, kMail = 21;

StackOrder order(std::vector<WindowNumber> bottomFirst) {
    StackOrder order;
    order.reset(std::move(bottomFirst));
    order.classify(kDesktop, RootChild::desktop);
    order.classify(kGuard, RootChild::guard);
    order.classify(kBackdrop, RootChild::ours);
    order.classify(kFooter, RootChild::ours);
    order.classify(kEditor, RootChild::application);
    order.classify(kMail, RootChild::application);
    return order;
}

const std::vector<WindowNumber> kOurs{kBackdrop, kFooter};

} // namespace

TEST(StackOrder, OverlayBelongsAboveTheDesktopAndBelowEveryApplication) {
    struct Case {
        const char* what;
        std::vector<WindowNumber> bottomFirst;
        bool isKept;
        WindowNumber above;
    };
    const std::vector<Case> cases{
        {"in its place", {kDesktop, kBackdrop, kFooter, kEditor, kMail}, true, kDesktop},
        {"support windows between the overlay's windows do not count",
         {kMenu, kDesktop, kBackdrop, kMenu, kFooter, kEditor},
         true,
         kDesktop},
        {"an application was lowered", {kDesktop, kMail, kBackdrop, kFooter, kEditor}, false, kDesktop},
        {"an application is below the desktop", {kMail, kDesktop, kBackdrop, kFooter, kEditor}, false, 0},
        {"the desktop was raised", {kBackdrop, kFooter, kDesktop, kEditor}, false, kDesktop},
        {"the desktop is between the overlay's windows", {kBackdrop, kDesktop, kFooter, kEditor}, false, kDesktop},
        {"in the wrong order", {kDesktop, kFooter, kBackdrop, kEditor}, false, kDesktop},
        {"no desktop, no application", {kMenu, kBackdrop, kFooter}, true, 0},
        {"an application below the guard does not count",
         {kMail, kGuard, kDesktop, kBackdrop, kFooter, kEditor},
         true,
         kDesktop},
        {"the overlay is below the guard", {kBackdrop, kFooter, kGuard, kEditor}, false, kGuard},
        {"new windows are on top", {kDesktop, kEditor, kBackdrop, kFooter}, false, kDesktop},
    };
    for (const Case& each : cases) {
        const auto place = order(each.bottomFirst).placeFor(kOurs);
        EXPECT_EQ(place.isKept, each.isKept) << each.what;
        EXPECT_EQ(place.above, each.above) << each.what;
    }
}

TEST(StackOrder, FollowsTheServersEvents) {
    StackOrder stack = order({kDesktop, kBackdrop, kFooter, kEditor});
    stack.created(kMail);
    stack.configured(kMail, kDesktop);
    EXPECT_EQ(stack.bottomFirst(), (std::vector<WindowNumber>{kDesktop, kMail, kBackdrop, kFooter, kEditor}));
    stack.configured(kEditor, 0);
    EXPECT_EQ(stack.bottomFirst().front(), kEditor);
    stack.raised(kEditor);
    stack.lowered(kFooter);
    stack.removed(kMail);
    EXPECT_EQ(stack.bottomFirst(), (std::vector<WindowNumber>{kFooter, kDesktop, kBackdrop, kEditor}));
    EXPECT_EQ(stack.kindOf(kMail), RootChild::other);
    stack.configured(99, kEditor);
    EXPECT_EQ(stack.bottomFirst().size(), 4u) << "an unknown window is not added";
}

TEST(RestackBudget, AllowsABurstAndThenOneChangePerPause) {
    using namespace std::chrono_literals;
    RestackBudget budget;
    RestackBudget::Time now{1h};
    const auto takeAll = [&] {
        int taken = 0;
        while (budget.take(now)) ++taken;
        return taken;
    };
    EXPECT_EQ(takeAll(), RestackBudget::kBurst);
    now += RestackBudget::kPause - 1ms;
    EXPECT_EQ(takeAll(), 0);
    now += 1ms;
    EXPECT_EQ(takeAll(), 1);
    now += 3 * RestackBudget::kPause;
    EXPECT_EQ(takeAll(), 3);
    now += 1h;
    EXPECT_EQ(takeAll(), RestackBudget::kBurst) << "no more than a burst is saved up";
}

TEST(ApplicationAreas, CoverTheDrawnPartsOfApplicationsThatNoGuardHides) {
    StackOrder order;
    order.reset({1, 2, 3, 4});
    order.classify(2, RootChild::guard);
    for (const WindowNumber window : {1U, 3U}) order.classify(window, RootChild::application);
    ApplicationAreas areas;
    areas.shown(1, QRect(0, 0, 500, 500), QRect(0, 0, 500, 500));
    areas.shown(3, QRect(90, 90, 220, 120), QRect(100, 100, 200, 100)); // invisible borders of 10 pixels
    areas.shown(4, QRect(0, 0, 50, 50), QRect(0, 0, 50, 50));           // not an application's window
    EXPECT_EQ(areas.covered(order), QRegion(100, 100, 200, 100));
    EXPECT_TRUE(areas.moved(3, QRect(0, 0, 220, 120)));
    EXPECT_EQ(areas.covered(order), QRegion(10, 10, 200, 100));
    EXPECT_FALSE(areas.moved(3, QRect(0, 0, 800, 600))) << "a window that enters full screen loses its borders";
    order.lowered(3);
    EXPECT_TRUE(areas.covered(order).isEmpty()) << "a window at the bottom, below the guard, covers nothing";
}

} // namespace kova::ui
