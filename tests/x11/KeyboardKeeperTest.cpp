#include "platform/x11/KeyboardKeeper.h"

#include "platform/x11/TilingManagers.h"

#include <gtest/gtest.h>

namespace kova::x11 {
namespace {

constexpr xcb_window_t kEditor = 10, kMail = 20, kPlayer = 30, kQuestion = 31;

class Keeping : public ::testing::Test {
  protected:
    /// The window that is activated in answer; kNoWindow for none.
    xcb_window_t after(xcb_window_t active, double uptime, xcb_window_t owner = kNoWindow) {
        return keeper.toGiveBack(active, owner, Seconds(uptime)).value_or(kNoWindow);
    }
    KeyboardKeeper keeper;
};

TEST_F(Keeping, FocusesTheFormerWindowAgainWhenARestoredOneTakesTheFocus) {
    EXPECT_EQ(after(kMail, 0), kNoWindow) << "nothing comes back";
    keeper.noteReturning(kMail, kEditor, Seconds(1));
    keeper.noteReturning(kPlayer, kMail, Seconds(1.1)); // which has taken it by now
    EXPECT_EQ(after(kMail, 1.2), kEditor);
    EXPECT_EQ(after(kEditor, 1.3), kNoWindow);
    EXPECT_EQ(after(kNoWindow, 1.3), kNoWindow) << "between two windows";
    EXPECT_EQ(after(kQuestion, 1.4, kPlayer), kEditor) << "a dialog that came with its window";
    EXPECT_EQ(keeper.kept(Seconds(1.4)), kEditor);
    EXPECT_EQ(after(kMail, 2.2), kNoWindow) << "by now it is the user's choice";
    EXPECT_EQ(keeper.kept(Seconds(2.2)), std::nullopt);
}

TEST_F(Keeping, CountsTheFormerWindowAsFocusedUntilItIs) {
    keeper.noteReturning(kMail, kEditor, Seconds(1));
    EXPECT_EQ(keeper.focused(kMail, Seconds(1.1)), kMail) << "before the focus is returned";
    ASSERT_EQ(after(kMail, 1.2), kEditor);
    keeper.noteGivenBack(kEditor, kMail, Seconds(1.2));
    keeper.noteGiven(kEditor, Seconds(1.2)); // the request is sent
    EXPECT_EQ(keeper.focused(kMail, Seconds(1.3)), kEditor);
    EXPECT_EQ(keeper.focused(kNoWindow, Seconds(1.3)), kEditor);
    EXPECT_EQ(keeper.focused(kPlayer, Seconds(1.3)), kPlayer) << "chosen by the user meanwhile";
    EXPECT_EQ(keeper.focused(kMail, Seconds(2.3)), kMail) << "the request had no effect";
    keeper.noteGivenBack(kEditor, kMail, Seconds(3));
    EXPECT_EQ(keeper.focused(kEditor, Seconds(3.1)), kEditor);
    EXPECT_EQ(keeper.focused(kMail, Seconds(3.2)), kMail) << "focused once more, by the user";
    keeper.noteGivenBack(kEditor, kMail, Seconds(4));
    keeper.noteGiven(kPlayer, Seconds(4.1)); // another action of KOVA
    EXPECT_EQ(keeper.focused(kMail, Seconds(4.2)), kPlayer);
}

TEST_F(Keeping, EndsWithAnotherFocusedWindowAndAProgramThatInsists) {
    keeper.noteReturning(kMail, kEditor, Seconds(1));
    EXPECT_EQ(after(kPlayer, 1.1), kNoWindow);
    EXPECT_EQ(after(kMail, 1.2), kNoWindow) << "the user has chosen meanwhile";

    keeper.noteReturning(kMail, kEditor, Seconds(5));
    keeper.noteGiven(kPlayer, Seconds(5)); // by KOVA itself, in the same action
    int given = 0;
    for (double uptime = 5.1; uptime < 5.9; uptime += 0.05) given += after(kMail, uptime) == kPlayer ? 1 : 0;
    EXPECT_EQ(given, 6);
    keeper.noteReturning(kQuestion, kMail, Seconds(5.9));
    EXPECT_EQ(after(kQuestion, 5.95), kPlayer) << "another window is not the one that insists";

    keeper.noteReturning(kMail, kNoWindow, Seconds(9));
    EXPECT_EQ(after(kMail, 9.1), kNoWindow) << "no window had it before";
}

TEST_F(Keeping, AWindowThatIsBeingFocusedCountsAsFocusedUntilAnotherThanTheFormerIsReported) {
    EXPECT_EQ(keeper.focused(kEditor, Seconds(0.9)), kEditor);
    keeper.noteGiven(kMail, Seconds(1));
    EXPECT_EQ(keeper.focused(kEditor, Seconds(1.1)), kMail) << "the former one, still";
    EXPECT_EQ(keeper.focused(kNoWindow, Seconds(1.2)), kMail);
    EXPECT_EQ(keeper.focused(kPlayer, Seconds(1.2)), kPlayer) << "chosen by the user meanwhile";
    EXPECT_EQ(keeper.focused(kMail, Seconds(1.3)), kMail);
    EXPECT_EQ(keeper.focused(kNoWindow, Seconds(1.4)), kNoWindow) << "the window has had the focus";
    keeper.noteGiven(kMail, Seconds(2));
    EXPECT_EQ(keeper.focused(kNoWindow, Seconds(2.5)), kNoWindow) << "the window was refused the focus";
    EXPECT_EQ(keeper.focused(kEditor, Seconds(2.6)), kEditor);

    // Three windows in turn, faster than the window manager.
    keeper.noteGiven(kMail, Seconds(3));
    keeper.noteGiven(kPlayer, Seconds(3.1));
    keeper.noteGiven(kEditor, Seconds(3.2));
    for (const auto reported : {kEditor, kMail, kPlayer, kEditor}) {
        EXPECT_EQ(keeper.focused(reported, Seconds(3.3)), kEditor) << reported;
    }
    EXPECT_EQ(keeper.focused(kMail, Seconds(3.4)), kMail) << "by the user";
}

TEST(TilingManagers, AreKnownByTheirWholeName) {
    for (const char* name : {"i3", "bspwm", "Qtile", "wlroots wm"}) EXPECT_TRUE(isTilingManager(name)) << name;
    for (const char* name : {"", "Openbox", "i3 or so", "Mutter"}) EXPECT_FALSE(isTilingManager(name)) << name;
}

} // namespace
} // namespace kova::x11
