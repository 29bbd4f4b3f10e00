#include "workspace/FocusMode.h"

#include <gtest/gtest.h>

using namespace kova;

namespace {

WorkspaceUndoSnapshot snapshotWith(const WindowID& windowID, const TileTarget& target) {
    WorkspaceUndoSnapshot snapshot;
    (void)snapshot.tiles.assign(windowID, {target});
    snapshot.windowFrames[windowID] = makeRect(0, 0, 10, 10);
    return snapshot;
}

TEST(FocusMode, LeavingReturnsTheSnapshotFromEnteringAndLeavingAgainReturnsNone) {
    FocusMode::PublishedMode published;
    FocusMode mode(published);
    EXPECT_FALSE(mode.leave());
    mode.enter({"D", "D::a", "mail"}, {snapshotWith("mail", "D::a"), {{{}, {"arrange", {}}, {}}}});
    ASSERT_TRUE(*published);
    EXPECT_TRUE(mode.isZoomed("mail"));
    EXPECT_TRUE(mode.ownsDisplay("D"));
    EXPECT_FALSE(mode.displayOf("notes"));
    const auto before = mode.leave();
    ASSERT_TRUE(before);
    EXPECT_EQ(before->snapshot.tiles.targetOf("mail"), "D::a");
    EXPECT_EQ(before->history.size(), 1U);
    EXPECT_FALSE(*published);
    EXPECT_FALSE(mode.isOn() || mode.snapshot() || mode.leave());
}

TEST(FocusMode, NewIdsOfItsWindowAndDisplayReplaceTheOldOnes) {
    FocusMode::PublishedMode published;
    FocusMode mode(published);
    mode.enter({"D", "D::a", "mail"}, {snapshotWith("mail", "D::a"), {{snapshotWith("mail", "D::b"), {}, {}}}});
    mode.rename("notes", "other");
    mode.rename("mail", "mail2");
    mode.renameDisplay("E", "F");
    mode.renameDisplay("D", "D2");
    EXPECT_EQ(**published, (WorkspaceFocusMode{"D2", "D2::a", "mail2"}));
    EXPECT_EQ(mode.snapshot()->tiles.targetOf("mail2"), "D2::a");
    EXPECT_TRUE(mode.snapshot()->windowFrames.contains("mail2"));
    EXPECT_EQ(mode.leave()->history.front().snapshot.tiles.targetOf("mail2"), "D2::b");
}

} // namespace
