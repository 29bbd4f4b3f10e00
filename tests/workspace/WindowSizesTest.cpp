#include "workspace/WindowSizes.h"

#include <gtest/gtest.h>

namespace kova {

namespace {

using enum WindowSizes::Refusal;

ManagedWindow windowCalled(const WindowID& id, std::optional<CGSize> announced = std::nullopt) {
    ManagedWindow window;
    window.id = id;
    window.minimumSize = announced;
    return window;
}

struct Bench {
    WindowSizes sizes;
    WindowSizes::Refusal refuses(const ManagedWindow& window, CGSize actual, double uptime = 100) {
        const auto refusal = sizes.noteRefusal(window, {1254, 676}, actual, Seconds(uptime));
        isConfirmed = refusal == changed && sizes.applyChange(window.id);
        return refusal;
    }
    bool isConfirmed = false;
};

TEST(WindowSizes, AMinimumSizeIsObservedForEachDirectionAndForgottenOnceTheWindowIsSmaller) {
    Bench bench;
    const auto window = windowCalled("a");
    EXPECT_EQ(bench.refuses(window, {1500, 600}), changed);
    EXPECT_TRUE(bench.isConfirmed) << "the window announces no other minimum size";
    EXPECT_EQ(bench.sizes.minimumOf(window, {}), (CGSize{1500, 0}));
    EXPECT_EQ(bench.refuses(window, {1500, 600}), known);
    EXPECT_FALSE(bench.sizes.noteSeen(window, {1499, 300}, {}).ofWindow);
    EXPECT_TRUE(bench.sizes.noteSeen(window, {1490, 300}, {}).ofWindow);
    EXPECT_EQ(bench.sizes.minimumOf(window, {}), CGSize{});
}

TEST(WindowSizes, ASizeThatContradictsTheAnnouncementIsConfirmedByTheSecondArrangement) {
    Bench bench;
    const auto window = windowCalled("xterm", CGSize{10, 17});
    bench.sizes.beginArrangement();
    EXPECT_EQ(bench.refuses(window, {1500, 900}), changed);
    EXPECT_FALSE(bench.isConfirmed);
    EXPECT_EQ(bench.sizes.minimumOf(window, {}), (CGSize{1500, 900})) << "the size counts until the next arrangement";
    EXPECT_TRUE(bench.sizes.confirmed().empty());
    EXPECT_EQ(bench.sizes.minimumOf(window, {}, WindowSizes::Purpose::nextArrangement), (CGSize{10, 17}));
    bench.sizes.beginArrangement();
    EXPECT_EQ(bench.sizes.minimumOf(window, {}), (CGSize{10, 17}))
        << "the arrangement requests the frame of the tile once more";
    EXPECT_EQ(bench.refuses(window, {1500, 900}), changed);
    EXPECT_TRUE(bench.isConfirmed);
    bench.sizes.beginArrangement();
    EXPECT_EQ(bench.sizes.minimumOf(window, {}), (CGSize{1500, 900}));
}

TEST(WindowSizes, NoMinimumSizeIsLearnedWithinASecondAfterThePointerIsReleased) {
    Bench bench;
    bench.sizes.notePointer(Seconds(99.1));
    EXPECT_EQ(bench.refuses(windowCalled("a"), {1500, 600}), unreliable);
    EXPECT_EQ(bench.refuses(windowCalled("a"), {1500, 600}, 100.2), changed);
}

TEST(WindowSizes, TheApplicationsLearnedSizeIsOnlyAFirstGuess) {
    Bench bench;
    const CGSize guess = {1500, 400};
    const auto window = windowCalled("a");
    EXPECT_EQ(bench.sizes.minimumOf(window, guess), guess);
    EXPECT_EQ(bench.sizes.minimumOf(windowCalled("b", CGSize{300, 200}), guess), (CGSize{300, 200}));
    EXPECT_FALSE(bench.sizes.noteSeen(window, {800, 900}, guess).ofApplication)
        << "other windows of the application may need more room";
    EXPECT_EQ(bench.sizes.minimumOf(window, guess), (CGSize{800, 400}));

    const auto retried = windowCalled("c");
    EXPECT_TRUE(bench.sizes.isRetryDue(retried, guess, Seconds(100)));
    bench.sizes.beginRetry("c");
    EXPECT_FALSE(bench.sizes.isRetryDue(retried, guess, Seconds(100))) << "a size is retried once for each arrangement";
    EXPECT_TRUE(bench.sizes.noteSeen(retried, {1254, 676}, guess).ofApplication);
}

TEST(WindowSizes, RememberedSizesAreRetriedOncePerArrangementAfterADelay) {
    Bench bench;
    const auto window = windowCalled("a");
    bench.refuses(window, {1500, 600}, 100);
    EXPECT_FALSE(bench.sizes.isRetryDue(window, {}, Seconds(105)));
    EXPECT_TRUE(bench.sizes.isRetryDue(window, {}, Seconds(111)));
    bench.sizes.beginRetry("a");
    bench.sizes.endRetry("a");
    EXPECT_FALSE(bench.sizes.isRetryDue(window, {}, Seconds(200)));
    bench.sizes.beginArrangement();
    EXPECT_TRUE(bench.sizes.isRetryDue(window, {}, Seconds(200)));
}

} // namespace

} // namespace kova
