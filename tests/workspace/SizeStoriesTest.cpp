// Which minimum sizes are learned from refusals, which are not, and when learned sizes are forgotten.
#include "tests/harness/Scenario.h"

#include <gtest/gtest.h>

namespace kova {

namespace {

std::size_t learnedSizeCount(Scenario& desk) {
    return desk.state().profile->applicationMinimumSizes.size();
}

TEST(SizeStories, ASmallSecondWindowOfAnApplicationGetsOnlyOneTile) {
    Scenario desk;
    desk.display(2560, 1440)
        .layout("jarvis.dual-split")
        .opens("Mail", {.unannouncedMinimumSize = {{1500, 300}}})
        .arrange();
    EXPECT_EQ(learnedSizeCount(desk), 1u);
    desk.opens("Mail", {.frame = makeRect(100, 100, 600, 400), .title = "Small"}).arrange();
    desk.expectTiles("Mail 15,15 1500x1382 | Mail 2 1537,15 1008x1382");
}

TEST(SizeStories, AWrongMinimumIsDroppedByTheNextArrangement) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Codex");
    desk.opens("Mail", {.frame = makeRect(900, 100, 1500, 400)});
    desk.desktop.stallResizing(Seconds(1.4));
    desk.arrange();
    desk.expectTiles("Codex 15,15 1008x1382 | Mail 1045,15 1500x1382");
    EXPECT_EQ(learnedSizeCount(desk), 1u);
    desk.advance(WindowSizes::kRetryAfter).arrange();
    desk.expectTiles("Codex 15,15 1254x1382 | Mail 1291,15 1254x1382");
    EXPECT_EQ(learnedSizeCount(desk), 0u);

    // A minimum size that the window confirms is kept, and no further frame is written.
    Scenario real;
    real.display(2560, 1440)
        .layout("jarvis.quad-grid")
        .opens("Mail", {.unannouncedMinimumSize = {{2400, 300}}})
        .arrange();
    real.settleFully().arrange();
    real.expectTiles("Mail 15,15 2530x666 | (Mail) | - | -");
    EXPECT_EQ(real.framesWrittenWithin(Seconds(60)), 0);
}

TEST(SizeStories, ASizeThatContradictsTheAnnouncedMinimumCountsUntilTheNextArrangement) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Codex");
    desk.opens("Terminal", {.frame = makeRect(900, 100, 1500, 400), .minimumSize = {{10, 17}}});
    desk.desktop.stallResizing(Seconds(1.4));
    desk.arrange();
    desk.expectTiles("Codex 15,15 1008x1382 | Terminal 1045,15 1500x1382");
    EXPECT_EQ(learnedSizeCount(desk), 0u);
    desk.arrange();
    desk.expectTiles("Codex 15,15 1254x1382 | Terminal 1291,15 1254x1382");
}

TEST(SizeStories, NoMinimumSizeIsLearnedWhileTheWindowManagerIsReplaced) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Codex");
    desk.opens("Mail", {.frame = makeRect(900, 100, 1500, 400)});
    desk.start().desktop.replaceWindowManager(Seconds(2));
    desk.arrange();
    EXPECT_TRUE(desk.state().observedMinimumSizes->empty());
    desk.settleFully();
    desk.expectTiles("Codex 15,15 1254x1382 | Mail 1291,15 1254x1382");
}

TEST(SizeStories, NoMinimumSizeIsLearnedWithinASecondAfterADividerIsReleased) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Codex").opens("Mail").arrange();
    auto& controller = desk.controller();
    const auto divider = controller.dividers().front();
    ASSERT_TRUE(controller.perform(action::BeginDividerDrag{divider}));
    desk.desktop.stallResizing(Seconds(0.9)); // longer than the verification of the last frames
    controller.perform(action::UpdateDividerDrag{divider, -400});
    controller.perform(action::EndDividerDrag{divider});
    desk.settleFully();
    EXPECT_EQ(learnedSizeCount(desk), 0u);
    desk.expectTiles("Codex 15,15 854x1382 | Mail 891,15 1654x1382");
}

TEST(SizeStories, AWindowThatCannotFillItsTileIsCenteredInIt) {
    Scenario desk;
    desk.display(1920, 1080).layout("jarvis.triple-stack");
    desk.opens("Viewer", {.aspect = 16.0 / 9, .tellsSizeHints = true});
    desk.opens("Question", {.minimumSize = {{400, 200}}, .maximumSize = {{400, 200}}, .tellsSizeHints = true});
    desk.opens("Terminal", {.tellsSizeHints = true, .sizeIncrement = {17, 31}}).arrange();
    desk.expectTiles("Terminal 15,15 1887x279 | Question 760,426 400x200 | Viewer 687,730 545x307");
    EXPECT_EQ(desk.framesWrittenWithin(Seconds(60)), 0);
    desk.desktop.userFocuses("Viewer");
    desk.zoom();
    EXPECT_EQ(desk.desktop.describeWindow(desk.desktop.window("Viewer")), "Viewer 52,15 1816x1022");
}

TEST(SizeStories, LearnedSizesOfAnApplicationCanBeForgotten) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Codex");
    desk.opens("Mail", {.unannouncedMinimumSize = {{1500, 300}}}).arrange();
    EXPECT_FALSE(desk.controller().perform(action::ForgetApplication{"Notes"}));
    const auto forgotten = desk.controller().perform(action::ForgetApplication{"mail"});
    ASSERT_TRUE(forgotten.details<ForgottenApplications>());
    EXPECT_EQ(forgotten.details<ForgottenApplications>()->names, std::vector<std::string>{"Mail"});
    EXPECT_EQ(learnedSizeCount(desk), 0u);
    desk.settleFully();
    desk.expectTiles("Codex 15,15 1008x1382 | Mail 1045,15 1500x1382");
    EXPECT_EQ(learnedSizeCount(desk), 1u) << "the window refused the smaller size again";
    for (const WorkspaceAction& restoring :
         {WorkspaceAction(action::ToggleFocusZoom{}), WorkspaceAction(action::Undo{})}) {
        desk.settleFully();
        std::holds_alternative<action::Undo>(restoring) ? desk.arrange() : desk.zoom();
        ASSERT_EQ(learnedSizeCount(desk), 1u);
        (void)desk.controller().perform(action::ForgetApplication{"mail"});
        desk.controller().perform(restoring);
        EXPECT_EQ(learnedSizeCount(desk), 0u) << "neither undo nor the end of focus mode restores the sizes";
    }
}

} // namespace

} // namespace kova
