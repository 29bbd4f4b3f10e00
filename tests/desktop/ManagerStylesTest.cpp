// Special behavior of certain window managers, simulated by a fake window manager.
#include "tests/desktop/DesktopUnderTest.h"

#include <algorithm>
#include <cstdlib>
#include <set>

namespace kova::testing {
namespace {

/// Sets the properties by which a window manager announces itself and the open windows. Each test simulates everything
/// else that the window manager does.
class FakeManager {
  public:
    FakeManager(DesktopUnderTest& desk, const std::string& name, const std::vector<std::uint32_t>& windows) :
        client_(desk.client("Manager", 4009)),
        checkWindow_(client_->create({.title = name, .isOverrideRedirect = true})) {
        const std::uint32_t redirect = XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT;
        xcb_change_window_attributes(client_->connection(), root(), XCB_CW_EVENT_MASK, &redirect);
        client_->setNumbers(root(), "_NET_SUPPORTED", "ATOM",
                            {client_->atom("_NET_CLIENT_LIST"), client_->atom("_NET_WM_STATE_HIDDEN")});
        client_->setNumbers(root(), "_NET_CLIENT_LIST", "WINDOW", windows);
        for (const auto window : {root(), checkWindow_}) {
            client_->setNumbers(window, "_NET_SUPPORTING_WM_CHECK", "WINDOW", {checkWindow_});
        }
    }
    void setMinimized(xcb_window_t window, bool isMinimized) {
        client_->setNumbers(window, "WM_STATE", "WM_STATE", {isMinimized ? 3U : 1U, 0U});
        const std::vector<std::uint32_t> hidden = {client_->atom("_NET_WM_STATE_HIDDEN")};
        client_->setNumbers(window, "_NET_WM_STATE", "ATOM", isMinimized ? hidden : std::vector<std::uint32_t>{});
    }
    void setActive(xcb_window_t window) { client_->setNumbers(root(), "_NET_ACTIVE_WINDOW", "WINDOW", {window}); }
    /// Whether the manager has ever received this client message about the window.
    bool hasReceived(const std::string& message, xcb_window_t window) {
        client_->sync();
        while (auto* event = xcb_poll_for_event(client_->connection())) {
            const auto* received = reinterpret_cast<const xcb_client_message_event_t*>(event);
            if ((event->response_type & 0x7F) == XCB_CLIENT_MESSAGE)
                received_.emplace(received->type, received->window);
            std::free(event);
        }
        return received_.contains({client_->atom(message), window});
    }
    TestClient& client() { return *client_; }
    xcb_window_t root() const { return client_->root(); }
    xcb_window_t checkWindow() const { return checkWindow_; }

  private:
    std::unique_ptr<TestClient> client_;
    xcb_window_t checkWindow_;
    std::set<std::pair<xcb_atom_t, xcb_window_t>> received_;
};

class ManagerStyles : public ::testing::Test {
  protected:
    void SetUp() override {
        if (!PrivateServer::isInstalled()) GTEST_SKIP() << "Xvfb is not installed";
    }
};

// A busy window manager reports the new focus long after the request was sent.
TEST_F(ManagerStyles, ARequestedFocusCountsUntilTheRequestIsKnownToHaveFailed) {
    for (const bool isManaged : {true, false}) {
        SCOPED_TRACE(isManaged ? "managed" : "unmanaged");
        DesktopUnderTest desk(Manager::none);
        const auto editor = desk.client("Editor", 4001), player = desk.client("Player", 4002);
        const auto code = editor->open({.title = "Code"}), film = player->open({.title = "Film"});
        const auto notes = player->open({.title = "Notes"});
        std::optional<FakeManager> manager;
        if (isManaged) manager.emplace(desk, "Busy", std::vector{code, film, notes});
        if (isManaged) {
            manager->setActive(code);
        } else {
            xcb_set_input_focus(editor->connection(), XCB_INPUT_FOCUS_POINTER_ROOT, code, XCB_CURRENT_TIME);
            editor->sync();
        }
        desk.openDesktop();
        ASSERT_TRUE(desk.showsExactly({"Code", "Film", "Notes"}));
        const auto focused = [&] { return desk.service().focusedWindowID(); };
        ASSERT_TRUE(desk.runUntil([&] { return focused() == desk.window("Code").id; }));
        for (const char* title : {"Film", "Notes"}) {
            const ManagedWindow window = desk.window(title);
            EXPECT_TRUE(desk.service().restoreAndFocus(window));
            desk.service().flush();
            EXPECT_EQ(focused(), window.id) << title; // before anything was read from the server
        }
        if (!isManaged) continue;
        EXPECT_TRUE(desk.runUntil([&] { return focused() == desk.window("Code").id; }));
    }
}

// Simulates Mutter, which keeps minimized windows mapped.
TEST_F(ManagerStyles, AWindowThatIsRestoredByActivatingItDoesNotCountAsFocused) {
    DesktopUnderTest desk(Manager::none);
    const auto editor = desk.client("Editor", 4001), player = desk.client("Player", 4002);
    const auto code = editor->open({.title = "Code"}), film = player->open({.title = "Film"});
    FakeManager manager(desk, "Mutter", {code, film});
    manager.setMinimized(film, true);
    manager.setActive(code);
    desk.openDesktop();
    const WindowID codeID = desk.window("Code").id;
    ASSERT_TRUE(desk.runUntil([&] { return desk.isMinimized("Film") && desk.service().focusedWindowID() == codeID; }));

    desk.service().unminimize(desk.window("Film"));
    desk.service().flush();
    ASSERT_TRUE(desk.runUntil([&] { return manager.hasReceived("_NET_ACTIVE_WINDOW", film); }));
    manager.setMinimized(film, false);
    manager.setActive(film);
    std::set<WindowID> focused;
    const auto note = [&] { focused.insert(desk.service().focusedWindowID().value_or("none")); };
    ASSERT_TRUE(desk.runUntil([&] {
        note();
        return manager.hasReceived("_NET_ACTIVE_WINDOW", code);
    }));
    for (int polls = 0; polls < 3; ++polls) { // the manager has not handled the last request
        EXPECT_TRUE(desk.window("Film").isVisible);
        note();
    }
    manager.setActive(code);
    desk.poll();
    note();
    EXPECT_EQ(focused, std::set{codeID});
}

TEST_F(ManagerStyles, OnlyUnderKWinKovaMinimizesModalDialogsItself) {
    for (const bool isKWin : {true, false}) {
        DesktopUnderTest desk(Manager::none);
        const auto editor = desk.client("Editor", 4001);
        const auto plan = editor->open({.title = "Plan"}), other = editor->open({.title = "Other"});
        const auto saveDialog = editor->open({.title = "Save?", .transientFor = plan});
        const auto colorDialog = editor->open({.title = "Colors", .transientFor = plan});
        FakeManager manager(desk, isKWin ? "KWin" : "Openbox", {plan, other, saveDialog, colorDialog});
        editor->setNumbers(saveDialog, "_NET_WM_STATE", "ATOM", {editor->atom("_NET_WM_STATE_MODAL")});
        desk.openDesktop();
        ASSERT_TRUE(desk.showsExactly({"Colors", "Other", "Plan", "Save?"}));
        for (const char* title : {"Plan", "Other"}) {
            desk.service().minimize(desk.window(title));
            desk.service().flush();
        }
        ASSERT_TRUE(desk.runUntil([&] { return manager.hasReceived("WM_CHANGE_STATE", other); }));
        EXPECT_TRUE(manager.hasReceived("WM_CHANGE_STATE", plan));
        EXPECT_EQ(manager.hasReceived("WM_CHANGE_STATE", saveDialog), isKWin);
        EXPECT_FALSE(manager.hasReceived("WM_CHANGE_STATE", colorDialog));
    }
}

// Simulates Metacity when it is replaced.
TEST_F(ManagerStyles, AManagerIsKnownAlthoughTheFormerManagerDeletedThePropertyThatNamesIt) {
    DesktopUnderTest desk(Manager::none);
    const auto editor = desk.client("Editor", 4001);
    const auto code = editor->open({.title = "Code"});
    FakeManager manager(desk, "Mutter", {code});
    const auto named = [&] {
        for (const DiagnosticLine& line : desk.desktop().diagnose()) {
            if (line.subject == "window manager") return line.text;
        }
        return std::string();
    };
    const auto becomes = [&](const std::string& begin) {
        return desk.runUntil([&] {
            desk.poll();
            return named().starts_with(begin);
        });
    };
    const auto owner = manager.client().create({.title = "Owner", .isOverrideRedirect = true});
    const auto own = [&](TestClient& client, xcb_window_t window) {
        xcb_set_selection_owner(client.connection(), window, client.atom("WM_S0"), XCB_CURRENT_TIME);
        client.sync();
    };
    own(manager.client(), owner);
    desk.openDesktop();
    EXPECT_TRUE(becomes("Mutter")) << named();
    const auto announce = [&] {
        manager.client().setNumbers(manager.root(), "_NET_SUPPORTING_WM_CHECK", "WINDOW", {manager.checkWindow()});
    };
    // While another program owns the selection WM_S0, properties may be those of a window manager that has ended.
    own(*editor, code);
    editor->remove(manager.root(), "_NET_SUPPORTING_WM_CHECK");
    EXPECT_TRUE(becomes("One that does not speak EWMH")) << named();
    announce();
    EXPECT_TRUE(becomes("Mutter")) << named();
    own(manager.client(), owner);
    editor->remove(manager.root(), "_NET_SUPPORTING_WM_CHECK");
    desk.runFor(Seconds(0.1));
    EXPECT_TRUE(becomes("Mutter")) << named();
    desk.closeDesktop();
    desk.openDesktop();
    EXPECT_TRUE(becomes("Mutter")) << named();
    EXPECT_TRUE(desk.showsExactly({"Code"}));
}

} // namespace
} // namespace kova::testing
