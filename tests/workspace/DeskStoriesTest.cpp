// Days at the desk, from the poll to the last verification pass.
#include "tests/harness/Desk.h"

#include <gtest/gtest.h>

namespace kova {

namespace {

const CGRect kLeftHalf = makeRect(50, 50, 900, 700);
const CGRect kRightHalf = makeRect(1600, 50, 900, 700);

TEST(DeskStories, TwoWindowsShareADisplayAndComeBack) {
    Desk desk;
    desk.display(2560, 1440).layout("jarvis.dual-split");
    desk.opens("Mail", {.frame = kLeftHalf}).opens("Notes", {.frame = kRightHalf});
    const std::string before = desk.desktop.picture();
    desk.arrange();
    desk.expectTiles("Mail 15,15 1254x1382 | Notes 1291,15 1254x1382");
    desk.expectMessage("Windows arranged into zones — Undo is available");
    EXPECT_EQ(desk.framesWrittenWithin(Seconds(60)), 0) << "a window in place is not written again";
    desk.undo();
    EXPECT_EQ(desk.desktop.picture(), before);
    desk.expectMessage("Last window action undone");
}

} // namespace

} // namespace kova
