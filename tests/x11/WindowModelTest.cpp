// Events and replies can arrive in any order: the newest information counts.
#include "platform/x11/WindowModel.h"
#include "tests/x11/NumberedAtoms.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace kova::x11 {
namespace {

constexpr xcb_window_t kRoot = 1, kFrame = 20, kWindow = 30;

class Model : public ::testing::Test {
  protected:
    Model() {
        WindowManager manager;
        manager.isPresent = true;
        model.setWindowManager(manager, Seconds(0));
        model.setStacking({kFrame});
        model.setClientList({kWindow}, Seconds(0));
        model.takeTopLevel(
            kFrame, {.rect = {0, 0, 402, 325}, .isMapped = true, .rectEventSequence = {}, .mappingEventSequence = {}},
            10);
        model.setTopLevelOf(window(), kFrame);
    }
    ClientWindow& window() { return *model.client(kWindow); }
    void configure(int x, int width, int height, std::uint32_t sequence, xcb_window_t window = kFrame) {
        xcb_generic_event_t whole{};
        auto& event = reinterpret_cast<xcb_configure_notify_event_t&>(whole);
        event.response_type = XCB_CONFIGURE_NOTIFY;
        event.event = kRoot;
        event.window = window;
        event.x = static_cast<std::int16_t>(x);
        event.width = static_cast<std::uint16_t>(width);
        event.height = static_cast<std::uint16_t>(height);
        whole.full_sequence = sequence;
        model.apply(whole);
    }
    void announceDecorations(const std::vector<std::uint32_t>& edges, std::uint32_t request) {
        const PropertyView view{XCB_ATOM_CARDINAL, 32, {reinterpret_cast<const std::uint8_t*>(edges.data()), 16}};
        model.takeDecorations(window(), view, request);
    }
    bool takeState(const std::vector<std::uint32_t>& states, std::uint32_t request) {
        const auto rule = std::ranges::find(model.rules(), atoms[Atom::netWmState], &PropertyRule::property);
        const PropertyView view{
            XCB_ATOM_ATOM, 32, {reinterpret_cast<const std::uint8_t*>(states.data()), states.size() * 4}};
        model.takeState(window(), *rule, view, request);
        return model.isFullScreen(window());
    }

    const Atoms atoms = numberedAtoms();
    WindowModel model{atoms, kRoot};
};

/// Any client can send any event. The server marks such events, and the model must ignore them.
TEST_F(Model, EventsThatClientsSendDoNotRemoveWindows) {
    model.setWindowManager({}, Seconds(0));
    model.setStacking({kWindow});
    model.takeTopLevel(
        kWindow, {.rect = {0, 0, 400, 300}, .isMapped = true, .rectEventSequence = {}, .mappingEventSequence = {}}, 10);
    model.setTopLevelOf(window(), kWindow);
    const auto send = [&](int type, bool isSentByClient) {
        xcb_generic_event_t whole{};
        auto& event = reinterpret_cast<xcb_destroy_notify_event_t&>(whole); // all these events begin with these fields
        event.response_type = static_cast<std::uint8_t>(type | (isSentByClient ? 0x80 : 0));
        event.event = kRoot;
        event.window = kWindow;
        model.apply(whole);
    };
    for (const int type : {XCB_DESTROY_NOTIFY, XCB_UNMAP_NOTIFY, XCB_REPARENT_NOTIFY, XCB_MAP_NOTIFY}) {
        send(type, true);
        EXPECT_TRUE(model.client(kWindow)) << type;
    }
    send(XCB_DESTROY_NOTIFY, false);
    EXPECT_FALSE(model.client(kWindow));
}

// When all outputs go off and on again, the window manager announces the new work area a moment after the new root
// size.
TEST_F(Model, AWorkAreaIsDroppedWhenTheSizeOfTheRootChanges) {
    model.rootSize = {1920, 1080};
    const std::vector<PixelRect> areas = {{0, 30, 1920, 1050}};
    model.workareas = areas;
    configure(0, 1920, 1080, 20, kRoot);
    EXPECT_EQ(model.workareas, areas);
    configure(0, 64, 64, 21, kRoot);
    EXPECT_TRUE(model.workareas.empty());
}

TEST_F(Model, MinimizedIsReadFromTheStateThatTheWindowManagerSets) {
    struct Case {
        const char* what;
        bool announcesHidden, isIconic, isHidden, isShaded, isMapped, isOnAnotherDesktop;
        bool expected;
    };
    const Case cases[] = {
        {"minimized", true, true, true, false, false, false, true},
        {"minimized and still mapped", true, true, true, false, true, false, true},
        {"iconic on another desktop, which is not minimized", true, true, false, false, false, true, false},
        {"minimized on another desktop", true, true, true, false, false, true, true},
        {"shaded, iconic", true, true, false, true, true, false, false},
        {"shaded, hidden", true, false, true, true, true, false, false},
        {"shaded, hidden and iconic", true, true, true, true, true, false, false},
        {"shaded, hidden and iconic on another desktop", true, true, true, true, false, true, false},
        {"shaded and minimized", true, true, true, true, false, false, true},
        {"iconic", false, true, false, false, false, false, true},
        {"iconic on another desktop", false, true, false, false, false, true, false},
        {"iconic because it is shaded", false, true, false, true, true, false, false},
    };
    for (const Case& each : cases) {
        WindowManager manager;
        manager.isPresent = true;
        manager.announcesHidden = each.announcesHidden;
        model.setWindowManager(manager, Seconds(0));
        const TopLevel top{
            .rect = {0, 0, 402, 325}, .isMapped = each.isMapped, .rectEventSequence = {}, .mappingEventSequence = {}};
        model.takeTopLevel(kFrame, top, 30);
        window().isIconic = each.isIconic;
        window().isHiddenState = each.isHidden;
        window().isShaded = each.isShaded;
        window().desktop = each.isOnAnotherDesktop ? 1U : 0U;
        EXPECT_EQ(model.isMinimized(window()), each.expected) << each.what;
    }
}

TEST_F(Model, KeepsTheValuesOfEventsThatAreNewerThanAReply) {
    const TopLevel reply{.rect = {5, 5, 50, 50}, .isMapped = true, .rectEventSequence = {}, .mappingEventSequence = {}};
    configure(100, 402, 325, 21);
    model.takeTopLevel(kFrame, reply, 20);
    EXPECT_EQ(model.topLevel(kFrame)->rect.x, 100);
    // Numbers wrap around.
    model.takeTopLevel(kFrame, reply, 22);
    EXPECT_EQ(model.topLevel(kFrame)->rect.x, 5);
    configure(100, 402, 325, 2);
    model.takeTopLevel(kFrame, reply, 0xFFFFFFF0U);
    EXPECT_EQ(model.topLevel(kFrame)->rect.x, 100);

    // A reply for a window that was destroyed meanwhile.
    xcb_generic_event_t whole{};
    auto& destroyed = reinterpret_cast<xcb_destroy_notify_event_t&>(whole);
    destroyed.response_type = XCB_DESTROY_NOTIFY;
    destroyed.window = kFrame;
    model.apply(whole);
    model.takeTopLevel(kFrame, reply, 3);
    EXPECT_EQ(model.topLevel(kFrame), nullptr);
}

TEST_F(Model, KeepsTheReplyToTheLatestRequest) {
    const std::vector<std::uint32_t> fullScreen = {atoms[Atom::netWmStateFullscreen]};
    EXPECT_TRUE(takeState(fullScreen, 20));
    EXPECT_TRUE(takeState({}, 19));
    EXPECT_FALSE(takeState({}, 21));
    announceDecorations({1, 1, 20, 5}, 30);
    announceDecorations({0, 0, 19, 0}, 29);
    EXPECT_EQ(window().decorations, (PixelEdges{1, 1, 20, 5}));
}

TEST_F(Model, AWindowThatFillsADisplayCountsAsFullScreenUntilItsStateIsKnown) {
    model.displayRects = {{0, 0, 1280, 800}};
    model.takeMeasuredFrame(window(), {0, 0, 0, 0}, 11);
    takeState({}, 20);
    model.takeStale(window());
    configure(0, 1280, 800, 21);
    EXPECT_FALSE(model.isFullScreen(window()));
    model.markStale(window(), stale::state);
    EXPECT_TRUE(model.isFullScreen(window()));
    configure(0, 1280, 790, 22);
    EXPECT_FALSE(model.isFullScreen(window()));
}

TEST_F(Model, AReusedWindowNumberCountsAsANewWindow) {
    window().netName = "Old";
    model.takeStale(window());
    model.staleClientList = false;
    xcb_generic_event_t whole{};
    auto& created = reinterpret_cast<xcb_create_notify_event_t&>(whole);
    created.response_type = XCB_CREATE_NOTIFY;
    created.parent = kRoot;
    created.window = kWindow;
    EXPECT_TRUE(model.apply(whole).changed);
    EXPECT_TRUE(model.staleClientList);
    model.setClientList({kWindow}, Seconds(0));
    EXPECT_EQ(window().title(), "");
    EXPECT_EQ(window().stale, std::uint32_t{stale::all});
}

TEST_F(Model, UsesTheActiveWindowOfTheWindowManagerWhileOneIsPresent) {
    const auto focus = [&](std::uint8_t type, std::uint32_t sequence) {
        xcb_generic_event_t whole{};
        auto& event = reinterpret_cast<xcb_focus_in_event_t&>(whole);
        event.response_type = type;
        event.event = kWindow;
        whole.full_sequence = sequence;
        model.apply(whole);
        return model.activeWindow;
    };
    // The window manager announces a change of the focus later than the server.
    model.activeWindow = kFrame;
    EXPECT_EQ(focus(XCB_FOCUS_IN, 20), kFrame);
    model.activeWindow = kWindow;
    EXPECT_EQ(focus(XCB_FOCUS_OUT, 30), kWindow);

    model.setWindowManager({}, Seconds(1));
    EXPECT_EQ(focus(XCB_FOCUS_OUT, 40), kNoWindow);
    EXPECT_EQ(focus(XCB_FOCUS_IN, 50), kWindow);
}

TEST_F(Model, MeasuresNoDecorationsWhileTheFrameIsSmallerThanItsWindow) {
    announceDecorations({1, 1, 20, 5}, 12);
    model.takeMeasuredFrame(window(), {1, 1, 20, 5}, 13);
    EXPECT_EQ(model.outerFrame(window()), (PixelRect{0, 0, 402, 325}));
    // The window manager has made the frame smaller, but not yet the window inside.
    configure(20, 402, 325, 14);
    model.takeMeasuredFrame(window(), {1, -879, 20, -476}, 15);
    EXPECT_EQ(model.outerFrame(window()), (PixelRect{20, 0, 402, 325}));
    // A shaded window keeps a small frame. The frame before the shading counts, since the window will have it again.
    takeState({atoms[Atom::netWmStateShaded]}, 16);
    configure(20, 402, 20, 17);
    model.takeMeasuredFrame(window(), {1, 1, 20, -300}, 18);
    EXPECT_EQ(model.outerFrame(window()), (PixelRect{20, 0, 402, 325}));
}

TEST_F(Model, AnAnimatedFrameDoesNotCountWhileAWindowManagerEnds) {
    announceDecorations({1, 1, 20, 5}, 12);
    model.takeMeasuredFrame(window(), {1, 1, 20, 5}, 13);
    (void)model.takeStale(window()); // nothing about the window is stale
    model.setClientList({kWindow, 40}, Seconds(1));
    model.setClientList({kWindow}, Seconds(1));
    ASSERT_TRUE(model.isSettling());
    EXPECT_EQ(model.outerFrame(window()), (PixelRect{0, 0, 402, 325}));
    configure(20, 200, 20, 14);
    EXPECT_EQ(model.outerFrame(window()), std::nullopt) << "an animated frame as small as a title bar";
    configure(0, 402, 325, 15);
    EXPECT_EQ(model.outerFrame(window()), (PixelRect{0, 0, 402, 325}));
}

TEST_F(Model, FindsTheWindowThatADialogBelongsTo) {
    constexpr xcb_window_t kDialog = 40, kOther = 50, kForeign = 60, kLeader = 70;
    model.setStacking({kOther, kWindow, kDialog, kForeign});
    model.setClientList({kWindow, kDialog, kOther, kForeign}, Seconds(0));
    for (const xcb_window_t window : {kWindow, kDialog, kOther, kForeign}) {
        ClientWindow& client = *model.client(window);
        model.setOwner(client, window == kForeign ? 2 : 1);
        client.group = window == kOther ? kNoWindow : kLeader;
        model.setTopLevelOf(client, window);
    }
    struct Case {
        const char* what;
        std::optional<xcb_window_t> transientFor;
        bool isModal;
        xcb_window_t parent;
    };
    const Case cases[] = {
        {"not a dialog", std::nullopt, false, kNoWindow},
        {"a dialog that names its window", kOther, false, kOther},
        {"a dialog that names a window of another application", kForeign, true, kNoWindow},
        {"a dialog that names itself", kDialog, false, kNoWindow},
        {"modal for its group", kRoot, true, kWindow},
        {"modal for the group of a leader that is not on the screen", kLeader, true, kWindow},
        {"modal, without WM_TRANSIENT_FOR", std::nullopt, true, kWindow},
        {"with a group, but not modal", kRoot, false, kNoWindow},
    };
    for (const auto& c : cases) {
        ClientWindow& dialog = *model.client(kDialog);
        dialog.transientFor = c.transientFor;
        dialog.isModal = c.isModal;
        const ClientWindow* parent = model.parentOf(dialog);
        EXPECT_EQ(parent ? parent->window : kNoWindow, c.parent) << c.what;
    }
    model.client(kDialog)->transientFor = kOther;
    model.client(kOther)->transientFor = kWindow;
    EXPECT_EQ(model.dialogsOf(window()), (std::vector{kOther, kDialog}));
    window().transientFor = kDialog; // a cycle
    EXPECT_EQ(model.dialogsOf(window()), (std::vector{kOther, kDialog}));
}

} // namespace
} // namespace kova::x11
