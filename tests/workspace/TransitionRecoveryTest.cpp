#include "workspace/TransitionRecovery.h"

#include <gtest/gtest.h>

using namespace kova;

namespace {

ManagedWindow windowOf(const std::string& id, const std::string& title) {
    ManagedWindow window;
    window.id = decltype(window.id)(id);
    window.processIdentifier = 7;
    window.title = title;
    window.frame = makeRect(10, 10, 400, 300);
    return window;
}

/// Mail is the front window of a tile, Notes is stacked behind it, and Codex has no tile.
struct TransitionRecoveryTest : testing::Test {
    TransitionRecoveryTest() {
        tiles.insertIntoStack("D::a", "notes", TileAssignments::StackPosition::front);
        tiles.insertIntoStack("D::a", "mail", TileAssignments::StackPosition::front);
        (void)tiles.assign("mail", {"D::a"});
        recovery.remember({mail, notes, codex}, tiles);
        recovery.begin(Seconds{100});
    }
    ManagedWindow mail = windowOf("mail", "Inbox");
    ManagedWindow notes = windowOf("notes", "Note");
    ManagedWindow codex = windowOf("codex", "Page");
    TileAssignments tiles;
    TransitionRecovery recovery;
};

TEST_F(TransitionRecoveryTest, LastsTenSeconds) {
    EXPECT_TRUE(recovery.isActive(Seconds{109.9}) && recovery.isWaiting());
    EXPECT_FALSE(recovery.isActive(Seconds{110}));
    recovery.clear();
    EXPECT_FALSE(recovery.isWaiting());
}

TEST_F(TransitionRecoveryTest, EachFrontWindowIsPutBackOnce) {
    EXPECT_EQ(recovery.takeRecovered({mail, notes, codex}, tiles).size(), 1u);
    EXPECT_TRUE(recovery.takeRecovered({mail, notes, codex}, tiles).empty());
    EXPECT_FALSE(recovery.isComplete(tiles)) << "the stacked window is still awaited";
    EXPECT_TRUE(recovery.takeSuccessors({mail, notes}, tiles).empty());
    EXPECT_TRUE(recovery.isComplete(tiles));
}

TEST_F(TransitionRecoveryTest, AReturningWindowWithANewIdIsRecognizedButAnotherOldWindowIsNotMistakenForIt) {
    const auto another = windowOf("mail2", "Inbox");
    const auto successors = recovery.takeSuccessors({another, notes}, tiles);
    ASSERT_EQ(successors.size(), 1u);
    EXPECT_EQ(successors[0], (WindowSuccessor{mail.id, another.id}));
    tiles.rename("mail", "mail2");
    EXPECT_TRUE(recovery.awaitedWindowIDs().empty());

    recovery.remember({another, notes, codex}, tiles);
    recovery.begin(Seconds{200});
    codex.title = "Inbox";
    EXPECT_TRUE(recovery.takeSuccessors({notes, codex}, tiles).empty()) << "Codex existed before the transition";
    EXPECT_EQ(recovery.awaitedWindowIDs().size(), 1u);
}

TEST_F(TransitionRecoveryTest, WindowsThatAreStillMissingAtTheNextSleepRemainAwaited) {
    EXPECT_TRUE(recovery.takeSuccessors({mail}, tiles).empty());
    recovery.remember({mail}, tiles);
    recovery.begin(Seconds{200});
    EXPECT_EQ(recovery.awaitedWindowIDs().size(), 2u);
    tiles.remove("notes");
    recovery.remember({mail}, tiles);
    recovery.begin(Seconds{300});
    EXPECT_EQ(recovery.awaitedWindowIDs().size(), 1u) << "Notes has lost its tile";
}

} // namespace
