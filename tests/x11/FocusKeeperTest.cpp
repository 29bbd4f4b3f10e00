#include "platform/x11/FocusKeeper.h"

#include "platform/x11/TilingManagers.h"

#include <gtest/gtest.h>

namespace kova::x11 {
namespace {

constexpr xcb_window_t kEditor = 10, kMail = 20, kPlayer = 30, kDialogWindow = 31;

class FocusKeeping : public ::testing::Test {
  protected:
    /// The window that KOVA focuses after the report that `active` is focused; kNoWindow for none.
    xcb_window_t refocusedAfter(xcb_window_t active, double uptime, xcb_window_t owner = kNoWindow) {
        return keeper.windowToRefocus(active, owner, Seconds(uptime)).value_or(kNoWindow);
    }
    FocusKeeper keeper;
};

TEST_F(FocusKeeping, FocusesTheFormerWindowAgainWhenARestoredOneTakesTheFocus) {
    EXPECT_EQ(refocusedAfter(kMail, 0), kNoWindow) << "no window is being restored";
    keeper.noteRestoreRequested(kMail, kEditor, Seconds(1));
    keeper.noteRestoreRequested(kPlayer, kMail, Seconds(1.1)); // kMail has taken the focus by now
    EXPECT_EQ(refocusedAfter(kMail, 1.2), kEditor);
    EXPECT_EQ(refocusedAfter(kEditor, 1.3), kNoWindow);
    EXPECT_EQ(refocusedAfter(kNoWindow, 1.3), kNoWindow) << "no window has the focus for a moment";
    EXPECT_EQ(refocusedAfter(kDialogWindow, 1.4, kPlayer), kEditor) << "a dialog of the restored window";
    EXPECT_EQ(keeper.kept(Seconds(1.4)), kEditor);
    EXPECT_EQ(refocusedAfter(kMail, 2.2), kNoWindow) << "after this time the change of focus is the user's choice";
    EXPECT_EQ(keeper.kept(Seconds(2.2)), std::nullopt);
}

TEST_F(FocusKeeping, CountsTheFormerWindowAsFocusedAsSoonAsItIsRefocused) {
    keeper.noteRestoreRequested(kMail, kEditor, Seconds(1));
    EXPECT_EQ(keeper.effectiveFocus(kMail, Seconds(1.1)), kMail)
        << "the focus was not requested for another window yet";
    ASSERT_EQ(refocusedAfter(kMail, 1.2), kEditor);
    keeper.noteRefocused(kEditor, kMail, Seconds(1.2));
    keeper.noteFocusRequested(kEditor, Seconds(1.2)); // the request is sent
    EXPECT_EQ(keeper.effectiveFocus(kMail, Seconds(1.3)), kEditor);
    EXPECT_EQ(keeper.effectiveFocus(kNoWindow, Seconds(1.3)), kEditor);
    EXPECT_EQ(keeper.effectiveFocus(kPlayer, Seconds(1.3)), kPlayer) << "the user has focused this window meanwhile";
    EXPECT_EQ(keeper.effectiveFocus(kMail, Seconds(2.3)), kMail) << "the request had no effect";
    keeper.noteRefocused(kEditor, kMail, Seconds(3));
    EXPECT_EQ(keeper.effectiveFocus(kEditor, Seconds(3.1)), kEditor);
    EXPECT_EQ(keeper.effectiveFocus(kMail, Seconds(3.2)), kMail) << "focused again by the user";
    keeper.noteRefocused(kEditor, kMail, Seconds(4));
    keeper.noteFocusRequested(kPlayer, Seconds(4.1)); // another action of KOVA
    EXPECT_EQ(keeper.effectiveFocus(kMail, Seconds(4.2)), kPlayer);
}

TEST_F(FocusKeeping, EndsWhenAnotherWindowIsFocusedOrAProgramTakesTheFocusRepeatedly) {
    keeper.noteRestoreRequested(kMail, kEditor, Seconds(1));
    EXPECT_EQ(refocusedAfter(kPlayer, 1.1), kNoWindow);
    EXPECT_EQ(refocusedAfter(kMail, 1.2), kNoWindow) << "the user has focused another window meanwhile";

    keeper.noteRestoreRequested(kMail, kEditor, Seconds(5));
    keeper.noteFocusRequested(kPlayer, Seconds(5)); // KOVA focuses it in the same action
    int refocused = 0;
    for (double uptime = 5.1; uptime < 5.9; uptime += 0.05)
        refocused += refocusedAfter(kMail, uptime) == kPlayer ? 1 : 0;
    EXPECT_EQ(refocused, 6);
    keeper.noteRestoreRequested(kDialogWindow, kMail, Seconds(5.9));
    EXPECT_EQ(refocusedAfter(kDialogWindow, 5.95), kPlayer) << "the limit is per window";

    keeper.noteRestoreRequested(kMail, kNoWindow, Seconds(9));
    EXPECT_EQ(refocusedAfter(kMail, 9.1), kNoWindow) << "no window had the focus before";
}

TEST_F(FocusKeeping, ARestoredWindowKeepsTheFocusThatAnotherProgramRequestsForIt) {
    keeper.noteRestoreRequested(kMail, kEditor, Seconds(1));
    ASSERT_EQ(refocusedAfter(kMail, 1.1), kEditor);
    keeper.noteRefocused(kEditor, kMail, Seconds(1.1));
    keeper.noteRequestOfAnotherProgram(kMail);
    EXPECT_EQ(keeper.effectiveFocus(kMail, Seconds(1.2)), kMail);
    EXPECT_EQ(refocusedAfter(kMail, 1.2), kNoWindow);
    keeper.noteRestoreRequested(kPlayer, kMail, Seconds(1.3));
    EXPECT_EQ(refocusedAfter(kPlayer, 1.4), kMail) << "the other restored windows return the focus to the window";
    keeper.noteRequestOfAnotherProgram(kDialogWindow);
    keeper.noteRestoreRequested(kDialogWindow, kMail, Seconds(3));
    EXPECT_EQ(refocusedAfter(kDialogWindow, 3.1), kMail) << "restored after the request";
}

TEST_F(FocusKeeping, AWindowWhoseFocusIsRequestedCountsAsFocusedUntilAnUnexpectedWindowIsReported) {
    EXPECT_EQ(keeper.effectiveFocus(kEditor, Seconds(0.9)), kEditor);
    keeper.noteFocusRequested(kMail, Seconds(1));
    EXPECT_EQ(keeper.effectiveFocus(kEditor, Seconds(1.1)), kMail) << "the report still names the former window";
    EXPECT_EQ(keeper.effectiveFocus(kNoWindow, Seconds(1.2)), kMail);
    EXPECT_EQ(keeper.effectiveFocus(kPlayer, Seconds(1.2)), kPlayer) << "the user has focused this window meanwhile";
    EXPECT_EQ(keeper.effectiveFocus(kMail, Seconds(1.3)), kMail);
    EXPECT_EQ(keeper.effectiveFocus(kNoWindow, Seconds(1.4)), kNoWindow) << "the request was fulfilled before";
    keeper.noteFocusRequested(kMail, Seconds(2));
    EXPECT_EQ(keeper.effectiveFocus(kNoWindow, Seconds(2.5)), kNoWindow) << "the request was refused";
    EXPECT_EQ(keeper.effectiveFocus(kEditor, Seconds(2.6)), kEditor);

    // Three windows one after the other, faster than the window manager reports them.
    keeper.noteFocusRequested(kMail, Seconds(3));
    keeper.noteFocusRequested(kPlayer, Seconds(3.1));
    keeper.noteFocusRequested(kEditor, Seconds(3.2));
    for (const auto reported : {kEditor, kMail, kPlayer, kEditor}) {
        EXPECT_EQ(keeper.effectiveFocus(reported, Seconds(3.3)), kEditor) << reported;
    }
    EXPECT_EQ(keeper.effectiveFocus(kMail, Seconds(3.4)), kMail) << "focused by the user";
}

TEST(TilingManagers, AreRecognizedByTheirWholeName) {
    for (const char* name : {"i3", "bspwm", "Qtile", "wlroots wm"}) EXPECT_TRUE(isTilingManager(name)) << name;
    for (const char* name : {"", "Openbox", "i3 or so", "Mutter"}) EXPECT_FALSE(isTilingManager(name)) << name;
}

} // namespace
} // namespace kova::x11
