#include "workspace/LiveWindows.h"

#include <gtest/gtest.h>

using namespace kova;

namespace {

ManagedWindow live(const WindowID& id, pid_t process) {
    ManagedWindow window;
    window.id = id;
    window.processIdentifier = process;
    window.isVisible = true;
    return window;
}

TEST(LiveWindows, HaveTheRequestedStateUntilAPollShowsTheActualOne) {
    LiveWindows windows;
    (void)windows.take({live("a", 1), live("b", 1), live("c", 2)}, Seconds{0});
    EXPECT_FALSE(windows.request("unknown", WindowPresentation::shown, Seconds{1}));
    windows.requestHidden(1, Seconds{1});
    EXPECT_TRUE(windows.request("c", WindowPresentation::minimized, Seconds{1}));
    const auto isAsRequested = [&] {
        return !windows.find("a")->isVisible && !windows.find("b")->isVisible && windows.find("c")->isMinimized;
    };
    EXPECT_TRUE(isAsRequested() && windows.isWaiting());
    (void)windows.take({live("a", 1), live("b", 1), live("c", 2)}, Seconds{0.9});
    EXPECT_TRUE(isAsRequested()) << "the poll began before the request";
    (void)windows.take({live("a", 1), live("c", 2)}, Seconds{9});
    EXPECT_FALSE(isAsRequested() || windows.isWaiting()) << "the windows did not follow the request";
    EXPECT_EQ(windows.find("b"), nullptr);
}

TEST(LiveWindows, ARenamedWindowKeepsItsMinimizedRecordAndItsPlaceInTheFocusOrder) {
    LiveWindows windows;
    windows.noteMinimized("a", Seconds{0});
    windows.noteFocus("a");
    windows.rename("a", "a2");
    EXPECT_EQ(windows.takeMinimized(), std::vector<WindowID>{"a2"});
    EXPECT_EQ(windows.focusOrder().windowIDs(), std::vector<WindowID>{"a2"});
}

} // namespace
