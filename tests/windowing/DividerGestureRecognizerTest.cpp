#include "windowing/DividerGestureRecognizer.h"

#include <gtest/gtest.h>

#include <array>
#include <utility>

namespace kova {

namespace {

using Kind = DividerHandleEvent::Kind;

TEST(DividerGestureRecognizer, TheGapFrameIncludesTheInsetsAndIsAtLeastEightPointsThick) {
    const auto gapFrameOf = [](const CGRect& frame, LayoutAxis axis, double inset) {
        return gapFrame({.id = "a", .frame = frame, .axis = axis, .insetPoints = inset});
    };
    EXPECT_EQ(gapFrameOf(makeRect(100, 0, 12, 500), LayoutAxis::horizontal, 5), makeRect(95, 0, 22, 500));
    EXPECT_EQ(gapFrameOf(makeRect(0, 100, 500, 40), LayoutAxis::vertical, 5), makeRect(0, 95, 500, 50));
    EXPECT_EQ(gapFrameOf(makeRect(100, 0, 2, 500), LayoutAxis::horizontal, 0), makeRect(97, 0, 8, 500));
}

TEST(DividerGestureRecognizer, RecognizesPressDragAndRelease) {
    DividerGestureRecognizer recognizer;
    std::string events;
    const auto record = [&](const std::optional<DividerHandleEvent>& event) {
        constexpr std::array kWords = {"pressed", "moved", "released", "canceled", "doubleClicked"};
        if (!event) {
            events += "- ";
            return;
        }
        events += std::string(kWords.at(static_cast<std::size_t>(event->kind))) + ":" + event->handleID + "@" +
                  std::to_string(static_cast<int>(event->location.x)) + " ";
    };
    const auto expect = [&](std::string_view expected) { EXPECT_EQ(std::exchange(events, {}), expected); };

    record(recognizer.move({1, 0}));
    record(recognizer.press("a", 1, {2, 0}));
    record(recognizer.move({3, 0}));
    record(recognizer.release({4, 0}));
    record(recognizer.release({5, 0}));
    expect("- pressed:a@2 moved:a@3 released:a@4 - ");

    // After Escape nothing is reported, although the button is still pressed.
    record(recognizer.press("a", 1, {1, 0}));
    record(recognizer.cancel({2, 0}));
    record(recognizer.move({3, 0}));
    record(recognizer.release({4, 0}));
    expect("pressed:a@1 canceled:a@2 - - ");

    record(recognizer.press("a", 2, {1, 0}));
    record(recognizer.move({2, 0}));
    record(recognizer.release({2, 0}));
    record(recognizer.press("a", 3, {2, 0}));
    expect("doubleClicked:a@1 - - pressed:a@2 ");

    const std::array both = {DividerHandle{.id = "a"}, DividerHandle{.id = "b"}};
    record(recognizer.keepOnly(both, {3, 0}));
    record(recognizer.keepOnly(std::span(both).last(1), {3, 0}));
    record(recognizer.keepOnly({}, {3, 0}));
    EXPECT_FALSE(recognizer.isHeld());
    expect("- canceled:a@3 - ");
}

TEST(DividerGestureRecognizer, ThePressFrameOfAThinHandleIsEightPointsThickAroundItsMiddle) {
    const CGRect gap = makeRect(100, 0, 4, 500);
    EXPECT_EQ(pressFrame({"a", gap, LayoutAxis::horizontal}), makeRect(98, 0, 8, 500));
    EXPECT_EQ(pressFrame({"a", makeRect(0, 100, 500, 4), LayoutAxis::vertical}), makeRect(0, 98, 500, 8));
    EXPECT_EQ(pressFrame({"a", makeRect(100, 0, 16, 500), LayoutAxis::horizontal}), makeRect(100, 0, 16, 500));
}

} // namespace

} // namespace kova
