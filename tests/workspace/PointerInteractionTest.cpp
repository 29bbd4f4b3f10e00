#include "workspace/PointerInteraction.h"

#include "platform/simulated/VirtualTime.h"

#include <gtest/gtest.h>

using namespace kova;

namespace {

struct PointerInteractionTest : testing::Test {
    VirtualMainQueue queue;
    int resumed = 0;
    PointerInteraction pointer{queue, [] {}, [this] { ++resumed; }};
};

TEST_F(PointerInteractionTest, HasOneStateAtATime) {
    pointer.press("mail", std::nullopt);
    EXPECT_TRUE(pointer.isPressing("mail") && pointer.isHolding("mail") && pointer.isOnWindow());
    EXPECT_FALSE(pointer.isDragging() || pointer.isPausingPolls());
    pointer.beginWindowDrag("mail", {});
    pointer.press("notes", std::nullopt);
    EXPECT_TRUE(pointer.isDragging("mail") && pointer.isHolding("mail") && pointer.isPausingPolls());
    EXPECT_FALSE(pointer.isHolding("notes")) << "a press during a drag is ignored";
    EXPECT_FALSE(pointer.release());
    pointer.beginDividerDrag({"D", "layout", {}}, {}, {}, {});
    EXPECT_TRUE(pointer.isDragging() && pointer.dividerDrag());
    EXPECT_FALSE(pointer.isHolding("mail") || pointer.endWindowDrag());
    EXPECT_TRUE(pointer.endDividerDrag());
    EXPECT_FALSE(pointer.isDragging() || pointer.dividerDrag() || pointer.endDividerDrag());
}

TEST_F(PointerInteractionTest, ADragPausesPollsUntilShortlyAfterItsEnd) {
    pointer.beginWindowDrag("mail", {});
    ASSERT_TRUE(pointer.endWindowDrag());
    EXPECT_TRUE(pointer.isPausingPolls());
    pointer.resumePollsAfter(Seconds{0.1});
    queue.advance(Seconds{0.2});
    EXPECT_FALSE(pointer.isPausingPolls());
    EXPECT_EQ(resumed, 1);
    EXPECT_FALSE(pointer.abandon()) << "polls were not paused";
    pointer.beginWindowDrag("mail", {});
    EXPECT_TRUE(pointer.abandon());
    EXPECT_FALSE(pointer.isPausingPolls());
    queue.advance(Seconds{2});
    EXPECT_EQ(resumed, 1) << "abandoning a drag ends the pause without the callback";
}

TEST_F(PointerInteractionTest, NewWindowAndDisplayIdsReplaceTheOldOnesInEveryState) {
    pointer.press("mail", std::nullopt);
    pointer.rename("mail", "mail2");
    EXPECT_EQ(pointer.release()->windowID, "mail2");
    WorkspaceUndoSnapshot before;
    (void)before.tiles.assign("mail", {"D::a"});
    pointer.beginWindowDrag("mail", before);
    pointer.rename("mail", "mail2");
    const auto drag = pointer.endWindowDrag();
    EXPECT_EQ(drag->windowID, "mail2");
    EXPECT_EQ(drag->before.tiles.targetOf("mail2"), "D::a");
    const CGRect frame = makeRect(0, 0, 10, 10);
    pointer.beginDividerDrag({"D", "layout", {}}, {}, before, {{"mail", frame}});
    pointer.rename("mail", "mail2");
    EXPECT_FALSE(pointer.noteDividerFrame("mail2", frame)) << "this frame is already noted for the window";
    EXPECT_TRUE(pointer.noteDividerFrame("mail2", makeRect(0, 0, 20, 10)));
    pointer.renameDisplay("D", "E");
    const auto move = pointer.endDividerDrag();
    EXPECT_EQ(move->before.tiles.targetOf("mail2"), "E::a");
    EXPECT_EQ(move->drag.target.displayID, "E");
    pointer.beginWindowDrag("mail", before);
    pointer.renameDisplay("D", "E");
    EXPECT_EQ(pointer.endWindowDrag()->before.tiles.targetOf("mail"), "E::a");
}

} // namespace
