// Windows with minimum sizes do not overlap: a window that does not fit into its tile covers a span or is stacked.
#include "tests/harness/Scenario.h"
#include "tests/workspace/Seeds.h"
#include "workspace/TileRoom.h"

#include <gtest/gtest.h>

#include <random>

namespace kova {

namespace {

using enum WorkspaceDirection;

TEST(RoomStories, AWindowPlacedBesideALargeOneClaimsASpanWithANotice) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.quad-grid");
    desk.opens("Codex", {.minimumSize = {{1702, 300}}}).arrange();
    desk.opens("Mail", {.frame = makeRect(1400, 900, 1010, 400), .minimumSize = {{1002, 300}}}).arrange();
    desk.expectTiles("Codex 15,15 1702x666 | - | - | Mail 1291,731 1254x666");
    desk.desktop.userFocuses("Mail");
    desk.move(up);
    desk.expectTiles("(Mail) | Mail 15,15 2530x666 + Codex | - | -");
    const auto notice = *desk.state().placementNotice;
    ASSERT_TRUE(notice);
    EXPECT_EQ(notice->applicationName, "Mail");
    EXPECT_EQ(notice->additionalTileCount, 1);
}

TEST(RoomStories, TwoWindowsThatRefuseToShrinkInTheFirstArrangementDoNotOverlap) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split");
    desk.opens("Codex", {.unannouncedMinimumSize = {{1702, 300}}})
        .opens("Mail", {.unannouncedMinimumSize = {{1002, 300}}});
    desk.arrange().settleFully();
    desk.expectTiles("Codex 15,15 2530x1382 + Mail | (Codex)");
    EXPECT_TRUE(*desk.state().placementNotice);

    Scenario roomy;
    roomy.display(2560, 1440).layout("jarvis.quad-grid");
    roomy.opens("Codex", {.unannouncedMinimumSize = {{1702, 300}}})
        .opens("Mail", {.unannouncedMinimumSize = {{1002, 300}}});
    roomy.arrange().settleFully();
    roomy.expectTiles("Codex 15,15 1702x666 | - | Mail 15,731 1254x666 | -");
    EXPECT_TRUE(roomy.desktop.isOnScreen(roomy.desktop.window("Mail"))) << "a tile is free";
}

TEST(RoomStories, AWindowWhoseMinimumSizeGrowsClaimsTheNeighboringTile) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split");
    desk.opens("Codex", {.minimumSize = {{1002, 300}}}).opens("Mail", {.minimumSize = {{900, 300}}}).arrange();
    desk.desktop.setMinimumSize("Codex", {1900, 300});
    desk.settle();
    desk.expectTiles("Codex 15,15 2530x1382 + Mail | (Codex)");
    EXPECT_FALSE(desk.desktop.isOnScreen(desk.desktop.window("Mail")));
}

TEST(RoomStories, ALargerInsetLeavesNoWindowBelowItsMinimumSize) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split");
    desk.opens("Codex", {.minimumSize = {{1240, 300}}}).opens("Mail", {.minimumSize = {{1240, 300}}}).arrange();
    desk.controller().perform(action::SetTileInset{20});
    desk.settle();
    desk.expectTiles("Codex 30,30 2500x1352 + Mail | (Codex)");
}

TEST(RoomStories, AWindowThatLosesItsSpanIsStackedBehindTheNewFrontWindow) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.quad-grid");
    desk.opens("Codex", {.minimumSize = {{2300, 400}}}).opens("Mail").arrange();
    desk.desktop.userFocuses("Mail");
    desk.controller().perform(command::Place{desk.desktop.windowIDOf("Mail"), desk.target("A", "secondary-1")});
    desk.settle().expectTiles("- | Mail 1291,15 1254x666 + Codex | - | -");
    desk.cycleStack();
    EXPECT_TRUE(desk.wasCarriedOut());
}

TEST(RoomStories, AnArrangementDoesNotMoveAWindowStackedBehindAFullScreenWindow) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.focus-single").opens("Mail").opens("Codex").arrange();
    (void)desk.controller().perform(command::Place{desk.desktop.windowIDOf("Mail"), desk.target("A", "focus-main")});
    desk.settle().desktop.setFullScreen("Mail", true);
    desk.settle().arrange();
    EXPECT_EQ(desk.controller().assignments().stackTargetOf(desk.desktop.windowIDOf("Codex")),
              desk.target("A", "focus-main"));
    EXPECT_FALSE(desk.desktop.window("Codex").isMinimized);
}

TEST(RoomStories, ASpanIsGivenBackWhenItsWindowNeedsLessRoomAfterFocusMode) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.quad-grid").opens("Mail", {.minimumSize = {{2500, 300}}}).arrange();
    desk.zoom();
    desk.desktop.setMinimumSize("Mail", {600, 300});
    desk.settle().zoom();
    desk.expectTiles("Mail 15,15 1254x666 | - | - | -");
}

TEST(RoomStories, ADragWithAnOutdatedDividerObeysThePresentMinimumSizes) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split");
    desk.opens("Codex", {.minimumSize = {{400, 300}}}).opens("Mail").arrange();
    const auto outdated = desk.controller().dividers().front();
    desk.desktop.setMinimumSize("Codex", {1200, 300});
    desk.settle();
    ASSERT_TRUE(desk.controller().perform(action::BeginDividerDrag{outdated}));
    desk.controller().perform(action::UpdateDividerDrag{outdated, -900});
    desk.controller().perform(action::EndDividerDrag{outdated});
    desk.settle();
    const auto weights = desk.state().profile->weights(desk.displayIDOf("A"), "jarvis.dual-split").splits.at("root");
    EXPECT_EQ(weights.front(), 1210) << "the width that the window needs, and the inset on both sides";
    desk.expectTiles("Codex 15,15 1200x1382 | Mail 1237,15 1308x1382");
}

/// Puts random windows into random slots. A window is cramped if its tiles are smaller than its minimum size.
TEST(TileRoom, APlacementMakesNoOtherWindowCramped) {
    const auto& layouts = builtInLayouts();
    forEachSeed(300, [&](std::uint32_t seed) {
        std::mt19937 random(seed);
        const auto below = [&](unsigned limit) { return random() % limit; };
        const LayoutDefinition& layout = layouts[below(static_cast<unsigned>(layouts.size()))];
        std::vector<TileHolder> holders;
        for (int step = 0; step < 12; ++step) {
            const WindowID id("w" + std::to_string(below(8)));
            const CGSize least = {static_cast<double>(below(2700)), static_cast<double>(below(1500))};
            std::erase_if(holders, [&](const TileHolder& holder) { return holder.windowID == id; });
            const TileRoom room(layout, {2560, 1400}, 5, holders);
            const auto before = room.cramped();
            const auto& slot = layout.slots[below(static_cast<unsigned>(layout.slots.size()))].id;
            const auto tiles = room.tilesFor(id, least, slot);
            ASSERT_EQ(tiles.front(), slot);
            const auto displaced = room.holdersOf(tiles, id);
            std::erase_if(holders, [&](const TileHolder& holder) { return displaced.contains(holder.windowID); });
            // A tile may shrink when a window beside it loses its tile. The placement does not count as the cause.
            const auto afterLoss = TileRoom(layout, {2560, 1400}, 5, holders).cramped();
            holders.push_back({id, tiles, least});
            for (const auto& cramped : TileRoom(layout, {2560, 1400}, 5, holders).cramped()) {
                EXPECT_TRUE(std::ranges::find(before, cramped) != before.end() ||
                            std::ranges::find(afterLoss, cramped) != afterLoss.end())
                    << "seed " << seed << " step " << step;
            }
        }
    });
}

} // namespace

} // namespace kova
