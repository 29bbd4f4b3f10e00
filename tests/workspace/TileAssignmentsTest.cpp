#include "workspace/TileAssignments.h"
#include "workspace/LayoutMigration.h"
#include "workspace/TileMemory.h"
#include "workspace/UndoHistory.h"

#include <gtest/gtest.h>

using namespace kova;

namespace {

using enum TileAssignments::StackPosition;
using IDs = std::vector<WindowID>;
using Targets = std::vector<TileTarget>;

TEST(TileAssignments, ADisplacedWindowMovesToAStackWithAFrontWindow) {
    TileAssignments tiles;
    (void)tiles.assign("wide", {"D::a", "D::b"});
    tiles.insertIntoStack("D::a", "wide", TileAssignments::StackPosition::front);
    tiles.insertIntoStack("D::a", "other", TileAssignments::StackPosition::behind);
    tiles.insertIntoStack("D::b", "newcomer", TileAssignments::StackPosition::front);
    tiles.mergeStacksInto("D::b", {"D::b"}, tiles.assign("newcomer", {"D::b"}));
    EXPECT_EQ(tiles.stackTargetOf("wide"), "D::b");
    EXPECT_EQ(tiles.stackTargetOf("other"), "D::a");
}

TEST(TileAssignments, AssigningDisplacesTheFrontWindowIntoTheStack) {
    TileAssignments tiles;
    EXPECT_TRUE(tiles.assign("mail", {"D::a"}).empty());
    tiles.insertIntoStack("D::a", "notes", front);
    EXPECT_EQ(tiles.stackWindowIDsByTarget.at("D::a"), (IDs{"notes", "mail"}))
        << "a front window without a stack becomes a member of the tile's new stack";
    EXPECT_EQ(tiles.assign("notes", {"D::a"}), IDs{"mail"});
    EXPECT_EQ(tiles.targetOf("mail"), std::nullopt);
    EXPECT_EQ(tiles.stackTargetOf("mail"), "D::a");
}

TEST(TileAssignments, ASpanningWindowHasOneAnchorAndDisplacedWindowsLoseAllTheirTiles) {
    TileAssignments tiles;
    EXPECT_TRUE(tiles.assign("wide", {"D::b", "D::a"}).empty());
    EXPECT_EQ(tiles.targetOf("wide"), "D::b");
    EXPECT_EQ(tiles.targetsOf("wide"), (Targets{"D::a", "D::b"}));
    EXPECT_EQ(tiles.assign("new", {"D::a"}), IDs{"wide"});
    EXPECT_TRUE(tiles.targetsOf("wide").empty());
    EXPECT_TRUE(tiles.anchorsByWindowID.empty());
}

TEST(TileAssignments, TheStacksOfTheTilesOfASpanAreMerged) {
    TileAssignments tiles;
    (void)tiles.assign("left", {"D::a"});
    (void)tiles.assign("right", {"D::b"});
    tiles.insertIntoStack("D::b", "behind", behind);
    tiles.insertIntoStack("D::a", "wide", front);
    const auto displaced = tiles.assign("wide", {"D::a", "D::b"});
    EXPECT_EQ(displaced, (IDs{"left", "right"}));
    tiles.mergeStacksInto("D::a", {"D::a", "D::b"}, displaced);
    EXPECT_EQ(tiles.stackWindowIDsByTarget, (std::map<TileTarget, IDs>{{"D::a", {"wide", "left", "right", "behind"}}}));
}

TEST(TileAssignments, ClosedWindowsAreRemovedFromTilesAndStacks) {
    TileAssignments tiles;
    (void)tiles.assign("wide", {"D::a", "D::b"});
    tiles.insertIntoStack("D::c", "alone", front);
    tiles.keepOnly({"another"});
    EXPECT_EQ(tiles, TileAssignments{});
}

TEST(UndoHistory, TheThirtyFirstStepDropsTheOldest) {
    UndoHistory history;
    for (int i = 0; i <= 30; ++i) {
        history.push({{}, {std::to_string(i), {}}, {}});
    }
    for (int i = 30; i >= 1; --i) EXPECT_EQ(history.takeNewest()->label.action, std::to_string(i));
    EXPECT_FALSE(history.takeNewest());
}

/// Cells in a row, each 100 wide.
DisplayTiles row(std::vector<SlotID> ids) {
    DisplayTiles tiles{std::move(ids), {}};
    for (std::size_t i = 0; i < tiles.slotIDs.size(); ++i) {
        tiles.frames.push_back(makeRect(100 * static_cast<double>(i), 0, 100, 100));
    }
    return tiles;
}

TEST(LayoutMigration, WindowsPreferTheirSlotThenASlotWithTheSameCanonicalIDThenTheFirstFreeSlot) {
    TileAssignments before;
    (void)before.assign("editor", {"D::focus-main"});
    (void)before.assign("mail", {"D::focus-right-top"}); // has the canonical id secondary-1
    (void)before.assign("notes", {"D::odd"});
    (void)before.assign("other display", {"E::focus-main"});
    before.stackWindowIDsByTarget["D::focus-right-top"] = {"mail", "chat"};

    const auto result = migrateAssignments(before, "D", row({"focus-main", "odd", "focus-right-top"}),
                                           row({"secondary-1", "focus-main", "secondary-2"}));
    EXPECT_EQ(result.assignments.assignedWindowIDs,
              (std::map<TileTarget, WindowID>{{"D::focus-main", "editor"},
                                              {"D::secondary-1", "mail"},
                                              {"D::secondary-2", "notes"},
                                              {"E::focus-main", "other display"}}));
    EXPECT_EQ(result.assignments.stackWindowIDsByTarget.at("D::secondary-1"), (IDs{"mail", "chat"}));
    EXPECT_TRUE(result.displacedWindowIDs.empty());
}

TEST(LayoutMigration, AWindowWithoutATileIsStackedInTheNearestTileAndASpanShrinksToItsAnchor) {
    TileAssignments before;
    (void)before.assign("first", {"D::a"});
    (void)before.assign("wide", {"D::b", "D::c"});
    (void)before.assign("last", {"D::d"});
    before.stackWindowIDsByTarget["D::d"] = {"last", "stacked"};
    const auto result = migrateAssignments(before, "D", row({"a", "b", "c", "d"}), row({"a", "b"}));
    EXPECT_EQ(result.assignments.assignedWindowIDs,
              (std::map<TileTarget, WindowID>{{"D::a", "first"}, {"D::b", "wide"}}));
    EXPECT_EQ(result.assignments.stackWindowIDsByTarget.at("D::b"), (IDs{"wide", "last", "stacked"}));
    EXPECT_TRUE(result.assignments.anchorsByWindowID.empty());
    EXPECT_EQ(result.displacedWindowIDs, IDs{"last"});
}

TEST(LayoutMigration, AWindowWhoseNearestTileBelongsToASpanIsStackedInTheSpansAnchor) {
    const ShownLayout next{"three", row({"a", "b", "c"})};
    TileAssignments wide;
    (void)wide.assign("wide", {"D::a", "D::b", "D::c"});
    TileAssignments other;
    (void)other.assign("other", {"D::c"});
    TileAssignments before;
    (void)before.assign("wide", {"D::only"});
    before.stackWindowIDsByTarget["D::only"] = {"wide", "other"};
    const auto result =
        migrateRemembered(before, "D", {{next, wide}, {{"another three", row({"d", "e", "c"})}, other}}, next)
            .assignments;
    EXPECT_EQ(result.targetsAnchorFirst("wide"), (Targets{"D::a", "D::b", "D::c"}));
    EXPECT_EQ(result.stackWindowIDsByTarget, (std::map<TileTarget, IDs>{{"D::a", {"wide", "other"}}}));
}

TEST(TileMemory, WindowsHandledByRulesAreForgottenOnceTheyAreClosed) {
    TileMemory memory;
    memory.noteHandledByRules("mail");
    memory.noteHandledByRules("notes");
    memory.rename("notes", "notes2");
    memory.keepHandledByRules([](const WindowID& id) { return id == "notes2"; });
    EXPECT_TRUE(memory.isHandledByRules("notes2"));
    EXPECT_FALSE(memory.isHandledByRules("mail"));
}

} // namespace
