#include "windowing/WindowSizeHints.h"

#include "platform/simulated/SimulatedWindow.h"

#include <gtest/gtest.h>

namespace kova {

namespace {

TEST(WindowSizeHints, TheRequestedFrameIsTheLargestThatTheHintsAllowInsideTheTile) {
    struct Case {
        const char* what;
        WindowSizeHints hints;
        const char* expected;
    };
    const Case cases[] = {
        {"no hints", {}, "10,20 800x600"},
        {"a terminal", {.around = {10, 30}, .base = {4, 4}, .increment = {6, 13}}, "10,20 800x593"},
        {"a terminal of 90 columns of 11 pixels that fit exactly, in points of 1.25 pixels",
         {.base = {10 / 1.25, 0}, .increment = {11 / 1.25, 0}},
         "10,20 800x600"},
        {"a film that is wider than the tile", {.leastAspect = 2, .mostAspect = 2}, "10,120 800x400"},
        {"a film that is narrower than the tile", {.leastAspect = 0.5, .mostAspect = 0.5}, "260,20 300x600"},
        {"a film with a title bar", {.around = {0, 20}, .leastAspect = 2, .mostAspect = 2}, "10,110 800x420"},
        {"a dialog of a fixed size", {.minimum = {300, 200}, .maximum = {300, 200}}, "260,220 300x200"},
        {"a dialog that is too wide for the tile", {.minimum = {900, 200}, .maximum = {900, 200}}, "10,220 800x200"},
        {"a range of aspects that includes the tile's", {.leastAspect = 1, .mostAspect = 2}, "10,20 800x600"},
        {"a decoration that is wider than the tile", {.around = {900, 0}, .increment = {6, 6}}, "10,20 800x600"},
    };
    for (const auto& [what, hints, expected] : cases) {
        EXPECT_EQ(describeFrame(largestFrameWithin(makeRect(10, 20, 800, 600), hints)), expected) << what;
    }
}

} // namespace

} // namespace kova
