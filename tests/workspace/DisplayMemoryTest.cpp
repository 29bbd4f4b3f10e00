#include "workspace/DisplayMemory.h"

#include "layout/WorkspaceProfile.h"
#include "platform/simulated/VirtualTime.h"

#include <gtest/gtest.h>

using namespace kova;

namespace {

using Names = std::set<WindowID>;

struct DisplayMemoryTest : testing::Test {
    VirtualMainQueue queue;
    int settled = 0;
    DisplayMemory memory{queue, [this] { ++settled; }};
    TileAssignments tiles;
};

TEST_F(DisplayMemoryTest, AReturningDisplayGetsItsWindowsBackInFrontOfOthers) {
    (void)tiles.assign("mail", {"D::a"});
    EXPECT_TRUE(memory.noteConnected({"C", "D"}, {"C"}, tiles).empty());
    EXPECT_TRUE(memory.belongsToDisconnectedDisplay("mail"));
    tiles.remove("mail");
    (void)tiles.assign("mail", {"C::a"});
    (void)tiles.assign("notes", {"D::a"});
    EXPECT_TRUE(memory.noteConnected({"C"}, {"C", "D"}, tiles).empty());
    EXPECT_EQ(tiles.targetOf("mail"), "D::a");
    EXPECT_FALSE(memory.belongsToDisconnectedDisplay("mail"));
    const auto returned = memory.takeWindowsToPresent();
    EXPECT_EQ(returned.toShow, Names{"mail"});
    EXPECT_EQ(returned.toHide, Names{"notes"});
    EXPECT_FALSE(memory.hasWindowsToPresent());
}

TEST_F(DisplayMemoryTest, WindowsPlacedInTheTilesOfAReturningSpanAreStackedBehindIt) {
    (void)tiles.assign("mail", {"D::a", "D::b"});
    (void)memory.noteConnected({"C", "D"}, {"C"}, tiles);
    tiles = {};
    tiles.insertIntoStack("D::b", "codex", TileAssignments::StackPosition::front);
    tiles.insertIntoStack("D::b", "notes", TileAssignments::StackPosition::front);
    (void)tiles.assign("notes", {"D::b"});
    (void)memory.noteConnected({"C"}, {"C", "D"}, tiles);
    EXPECT_TRUE(tiles.isSound());
    EXPECT_EQ(tiles.stackWindowIDsByTarget.at("D::a"), (std::vector<WindowID>{"mail", "notes", "codex"}));
}

TEST_F(DisplayMemoryTest, WindowsThatTheUserMovedStayWhereTheyAre) {
    (void)tiles.assign("mail", {"D::a"});
    (void)memory.noteConnected({"D"}, {}, tiles);
    tiles = {};
    (void)tiles.assign("mail", {"C::a"});
    memory.forget("mail");
    (void)memory.noteConnected({"C"}, {"C", "D"}, tiles);
    EXPECT_EQ(tiles.targetOf("mail"), "C::a");
}

TEST_F(DisplayMemoryTest, RecordsAreKeptUnderTheNewIdsOfWindowsAndDisplays) {
    (void)tiles.assign("mail", {"D::a"});
    memory.rememberLayout("D", "quad", tiles);
    EXPECT_FALSE(memory.noteShown("D", "quad", {})) << "the first layout moves nothing";
    memory.noteWindowsToPresent({"mail"}, {"notes"});
    memory.rename("mail", "mail2");
    memory.rename("notes", "notes2");
    memory.renameDisplay("D", "E");
    EXPECT_EQ(memory.shown("D"), nullptr);
    EXPECT_EQ(memory.shown("E")->layoutID, "quad");
    const auto returned = memory.takeWindowsToPresent();
    EXPECT_EQ(returned.toShow, Names{"mail2"});
    EXPECT_EQ(returned.toHide, Names{"notes2"});
    TileAssignments now;
    memory.returnWindowsToLayout("E", "quad", now);
    EXPECT_EQ(now.targetOf("mail2"), "E::a");
}

TEST_F(DisplayMemoryTest, SettlingEndsTwoSecondsAfterTheLastChangeOfDisplays) {
    memory.beginSettling();
    queue.advance(Seconds{1});
    memory.beginSettling();
    queue.advance(Seconds{1.5});
    EXPECT_TRUE(memory.isSettling());
    EXPECT_EQ(settled, 0);
    queue.advance(Seconds{0.5});
    EXPECT_FALSE(memory.isSettling());
    EXPECT_EQ(settled, 1);
}

TEST_F(DisplayMemoryTest, OnlyTheFirstIdOfADisplayKeepsTheLayoutThatWasChosenForIt) {
    WorkspaceProfile profile;
    profile.layoutSelectionsByDisplay["800"] = DisplayLayoutSelection::layout("quad");
    memory.carryLayout(profile, "800", "1024");
    memory.carryLayout(profile, "1024", "1280");
    std::set<DisplayID> names;
    for (const auto& [id, selection] : profile.layoutSelectionsByDisplay) names.insert(id);
    EXPECT_EQ(names, (std::set<DisplayID>{"800", "1280"}));
}

} // namespace
