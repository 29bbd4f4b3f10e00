#include "windowing/DividerGestureRecognizer.h"

#include <gtest/gtest.h>

#include <array>
#include <utility>

namespace kova {

namespace {

using Kind = DividerHandleEvent::Kind;

TEST(DividerGestureRecognizer, TheHandleIsWiderThanTheGapByTheInsets) {
    const auto bare = [](const CGRect& frame, LayoutAxis axis, double inset) {
        return gapFrame({.id = "a", .frame = frame, .axis = axis, .insetPoints = inset});
    };
    EXPECT_EQ(bare(makeRect(100, 0, 12, 500), LayoutAxis::horizontal, 5), makeRect(95, 0, 22, 500));
    EXPECT_EQ(bare(makeRect(0, 100, 500, 40), LayoutAxis::vertical, 5), makeRect(0, 95, 500, 50));
    EXPECT_EQ(bare(makeRect(100, 0, 2, 500), LayoutAxis::horizontal, 0), makeRect(97, 0, 8, 500));
}

TEST(DividerGestureRecognizer, RecognizesPressDragAndRelease) {
    DividerGestureRecognizer grip;
    std::string story;
    const auto tell = [&](const std::optional<DividerHandleEvent>& event) {
        constexpr std::array kWords = {"pressed", "moved", "released", "cancelled", "doubleClicked"};
        if (!event) {
            story += "- ";
            return;
        }
        story += std::string(kWords.at(static_cast<std::size_t>(event->kind))) + ":" + event->handleID + "@" +
                 std::to_string(static_cast<int>(event->location.x)) + " ";
    };
    const auto expect = [&](std::string_view expected) { EXPECT_EQ(std::exchange(story, {}), expected); };

    tell(grip.move({1, 0}));
    tell(grip.press("a", 1, {2, 0}));
    tell(grip.move({3, 0}));
    tell(grip.release({4, 0}));
    tell(grip.release({5, 0}));
    expect("- pressed:a@2 moved:a@3 released:a@4 - ");

    // Let go by Escape, the handle stays where it was although the button is still down.
    tell(grip.press("a", 1, {1, 0}));
    tell(grip.cancel({2, 0}));
    tell(grip.move({3, 0}));
    tell(grip.release({4, 0}));
    expect("pressed:a@1 cancelled:a@2 - - ");

    tell(grip.press("a", 2, {1, 0}));
    tell(grip.move({2, 0}));
    tell(grip.release({2, 0}));
    tell(grip.press("a", 3, {2, 0}));
    expect("doubleClicked:a@1 - - pressed:a@2 ");

    const std::array both = {DividerHandle{.id = "a"}, DividerHandle{.id = "b"}};
    tell(grip.keepOnly(both, {3, 0}));
    tell(grip.keepOnly(std::span(both).last(1), {3, 0}));
    tell(grip.keepOnly({}, {3, 0}));
    EXPECT_FALSE(grip.isHeld());
    expect("- cancelled:a@3 - ");
}

TEST(DividerGestureRecognizer, AThinHandleIsMadeThickEnoughAroundItsMiddle) {
    const CGRect gap = makeRect(100, 0, 4, 500);
    EXPECT_EQ(pressFrame({"a", gap, LayoutAxis::horizontal}), makeRect(98, 0, 8, 500));
    EXPECT_EQ(pressFrame({"a", makeRect(0, 100, 500, 4), LayoutAxis::vertical}), makeRect(0, 98, 500, 8));
    EXPECT_EQ(pressFrame({"a", makeRect(100, 0, 16, 500), LayoutAxis::horizontal}), makeRect(100, 0, 16, 500));
}

} // namespace

} // namespace kova
