// Windows that KOVA hid are shown again: on request, by the user, at the end of the agent, and after a crash.
#include "tests/desktop/DesktopUnderTest.h"

#include <sys/inotify.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>

namespace kova::testing {
namespace {

class Hiding : public ::testing::TestWithParam<Manager> {
  protected:
    void SetUp() override {
        if (!PrivateServer::isInstalled()) GTEST_SKIP() << "Xvfb is not installed";
        desk = std::make_unique<DesktopUnderTest>(GetParam());
        mail = desk->client("Mail", 4001);
        inbox = mail->open({.title = "Inbox"});
        draft = mail->open({.title = "Draft", .frame = makeRect(500, 60, 400, 300)});
        notes = desk->client("Notes", 4002);
        notes->open({.title = "Pad", .frame = makeRect(60, 400, 400, 300)});
        desk->openDesktop();
        ASSERT_TRUE(desk->showsExactly({"Draft", "Inbox", "Pad"}));
    }
    bool areViewable(bool expected) {
        return desk->runUntil(
            [&] { return mail->isViewable(inbox) == expected && mail->isViewable(draft) == expected; });
    }

    std::unique_ptr<DesktopUnderTest> desk;
    std::unique_ptr<TestClient> mail, notes;
    xcb_window_t inbox = 0, draft = 0;
};

TEST_P(Hiding, HidesAllWindowsOfAnApplicationAndShowsExactlyTheseWindowsAgain) {
    desk->service().minimize(desk->window("Draft"));
    ASSERT_TRUE(desk->runUntil([&] { return desk->isMinimized("Draft"); }));
    desk->desktop().hide(4001);
    ASSERT_TRUE(desk->runUntil([&] { return !mail->isViewable(inbox) && desk->isHidden(4001); }));
    desk->runFor(Seconds(0.1));
    // A hidden window does not count as minimized, and minimized windows stay minimized.
    EXPECT_TRUE(desk->isHidden(4001));
    EXPECT_FALSE(desk->isMinimized("Inbox"));
    EXPECT_FALSE(desk->window("Inbox").isVisible);
    EXPECT_TRUE(desk->isMinimized("Draft"));
    EXPECT_FALSE(desk->isHidden(4002));
    EXPECT_TRUE(desk->window("Pad").isVisible);

    desk->desktop().unhide(4001);
    ASSERT_TRUE(desk->runUntil([&] { return desk->window("Inbox").isVisible; }));
    EXPECT_FALSE(desk->isHidden(4001));
    EXPECT_TRUE(desk->isMinimized("Draft"));
    EXPECT_FALSE(mail->isViewable(draft));
}

TEST_P(Hiding, EndsForAWindowThatAnotherProgramShows) {
    desk->desktop().hide(4001);
    ASSERT_TRUE(areViewable(false));
    desk->runFor(Seconds(0.1));
    mail->map(draft);
    ASSERT_TRUE(desk->runUntil([&] { return desk->window("Draft").isVisible; })) << mail->isViewable(draft);
    EXPECT_FALSE(desk->isHidden(4001));
    EXPECT_TRUE(desk->isMinimized("Inbox"));
    desk->desktop().unhide(4001);
    EXPECT_TRUE(areViewable(true));
}

TEST_P(Hiding, IsOverriddenByALaterRequestToShow) {
    desk->desktop().hide(4001);
    desk->desktop().unhide(4001);
    desk->runFor(Seconds(0.4));
    EXPECT_TRUE(areViewable(true));
    EXPECT_FALSE(desk->isHidden(4001));
}

// Window managers are slow: a window can be iconic and still mapped, or unmapped before its iconic state was read.
TEST_P(Hiding, IsUndoneEvenByAnImmediateRequest) {
    const auto window = desk->window("Inbox");
    const AttributeWrite minimized{AccessibilityAttribute::minimized, true},
        back{AccessibilityAttribute::minimized, false};
    for (const double pause : {0.02, 0.1, 0.2, 0.3, 0.45}) {
        desk->desktop().hide(4001);
        desk->runFor(Seconds(pause));
        desk->desktop().unhide(4001);
        desk->runFor(Seconds(0.4));
        EXPECT_TRUE(areViewable(true)) << "hidden for " << pause;
        desk->desktop().writeAttributes(window.element, {&minimized, 1});
        desk->runFor(Seconds(pause));
        desk->desktop().writeAttributes(window.element, {&back, 1});
        desk->runFor(Seconds(0.4));
        EXPECT_TRUE(areViewable(true)) << "minimized for " << pause;
        // Hides the windows again before KOVA has read the effect of the last request.
        desk->desktop().hide(4001);
        desk->runFor(Seconds(pause));
        desk->desktop().unhide(4001);
        desk->desktop().hide(4001);
        desk->runFor(Seconds(0.4));
        EXPECT_TRUE(areViewable(false)) << "hidden again after " << pause;
        desk->desktop().unhide(4001);
        EXPECT_TRUE(areViewable(true));
        EXPECT_TRUE(desk->showsExactly({"Draft", "Inbox", "Pad"}));
    }
    desk->desktop().hide(4001);
    desk->runFor(Seconds(0.3));
    desk->closeDesktop();
    EXPECT_TRUE(areViewable(true));
    EXPECT_FALSE(std::filesystem::exists(desk->hiddenWindowsFile()));
}

TEST_P(Hiding, IsIndependentOfTheMinimizedState) {
    const auto set = [&](const std::string& title, bool isMinimized) {
        const AttributeWrite write{AccessibilityAttribute::minimized, isMinimized};
        desk->desktop().writeAttributes(desk->window(title).element, {&write, 1});
        desk->runFor(Seconds(0.3));
    };
    set("Draft", true);
    ASSERT_TRUE(desk->runUntil([&] { return desk->isMinimized("Draft"); }));
    desk->desktop().hide(4001);
    ASSERT_TRUE(areViewable(false));
    desk->runFor(Seconds(0.3));
    // Restoring a minimized window does not show its hidden application.
    set("Draft", false);
    set("Inbox", false);
    EXPECT_TRUE(areViewable(false));
    EXPECT_TRUE(desk->isHidden(4001));
    EXPECT_FALSE(desk->isMinimized("Draft"));
    set("Inbox", true);
    EXPECT_TRUE(desk->isMinimized("Inbox"));
    desk->desktop().unhide(4001);
    EXPECT_TRUE(desk->runUntil([&] { return mail->isViewable(draft); }));
    desk->runFor(Seconds(0.3));
    EXPECT_FALSE(mail->isViewable(inbox));
    EXPECT_TRUE(desk->isMinimized("Inbox"));
}

TEST_P(Hiding, ManyWindowsAreRecordedInOneWrite) {
    if (GetParam() != Manager::none) GTEST_SKIP() << "a window manager minimizes each window separately";
    constexpr int kWindows = 40;
    std::vector<xcb_window_t> many;
    for (int i = 0; i < kWindows; ++i) many.push_back(notes->open({.title = "Note " + std::to_string(i)}));
    ASSERT_TRUE(desk->runUntil([&] { return desk->titles().size() == kWindows + 3; }));
    const auto windows = desk->poll();
    const int watch = inotify_init1(IN_CLOEXEC | IN_NONBLOCK);
    ASSERT_GE(inotify_add_watch(watch, desk->server().folder().c_str(), IN_MOVED_TO), 0);
    for (const auto& window : windows) desk->service().minimize(window);
    EXPECT_TRUE(desk->runUntil(
        [&] { return std::ranges::none_of(many, [&](auto window) { return notes->isViewable(window); }); }));
    int writes = 0;
    alignas(inotify_event) std::array<char, 4096> events{};
    for (ssize_t length; (length = read(watch, events.data(), events.size())) > 0;) {
        for (ssize_t at = 0; at < length; ++writes)
            at += static_cast<ssize_t>(sizeof(inotify_event) +
                                       reinterpret_cast<inotify_event*>(&events[static_cast<std::size_t>(at)])->len);
    }
    close(watch);
    EXPECT_EQ(writes, 1);
}

TEST_P(Hiding, EndsWithTheAgent) {
    desk->desktop().hide(4001);
    desk->service().minimize(desk->window("Pad"));
    ASSERT_TRUE(areViewable(false));
    EXPECT_TRUE(std::filesystem::exists(desk->hiddenWindowsFile()));
    desk->closeDesktop();
    EXPECT_TRUE(areViewable(true));
    EXPECT_FALSE(std::filesystem::exists(desk->hiddenWindowsFile()));

    // The agent ends before the window manager has handled the request to hide.
    desk->openDesktop();
    desk->desktop().hide(4001);
    desk->closeDesktop();
    desk->runFor(Seconds(0.3));
    EXPECT_TRUE(areViewable(true));
}

TEST_P(Hiding, ByAKilledAgentIsUndoneByTheNextAgent) {
    desk->desktop().hide(4001);
    ASSERT_TRUE(areViewable(false));
    desk->crash();
    EXPECT_TRUE(areViewable(false));
    desk->openDesktop();
    EXPECT_TRUE(areViewable(true));
    EXPECT_TRUE(desk->showsExactly({"Draft", "Inbox", "Pad"}));
    EXPECT_TRUE(desk->runUntil([&] { return !std::filesystem::exists(desk->hiddenWindowsFile()); }));

    // A window that reuses the number of a hidden window stays unmapped, and invalid files are ignored.
    const auto unmapped = notes->create({.title = "Never shown"});
    desk->closeDesktop();
    for (const std::string& content : {R"({"windows":[{"window":)" + std::to_string(unmapped) +
                                           R"(,"process":4002,"how":"unmapped"},7,{"window":-1}]})",
                                       std::string("[1,2"), std::string("{\"windows\":3}")}) {
        std::ofstream(desk->hiddenWindowsFile()) << content;
        desk->openDesktop();
        EXPECT_TRUE(desk->showsExactly({"Draft", "Inbox", "Pad"})) << content;
        EXPECT_FALSE(notes->isViewable(unmapped));
        desk->closeDesktop();
    }
}

INSTANTIATE_TEST_SUITE_P(With, Hiding, ::testing::Values(Manager::none, Manager::openbox), managerName);

TEST(WindowManager, MayStartAndEndWhileTheAgentRuns) {
    if (!PrivateServer::isInstalled()) GTEST_SKIP() << "Xvfb is not installed";
    DesktopUnderTest desk(Manager::none);
    const auto mail = desk.client("Mail", 4001);
    const auto inbox = mail->open({.title = "Inbox", .frame = makeRect(100, 100, 400, 300)});
    const auto draft = mail->open({.title = "Draft"});
    desk.openDesktop();
    ASSERT_TRUE(desk.showsExactly({"Draft", "Inbox"}));
    desk.service().minimize(desk.window("Draft"));
    ASSERT_TRUE(desk.runUntil([&] { return !mail->isViewable(draft); }));

    // A window manager does not know windows that were unmapped before its start, so KOVA maps the minimized window.
    desk.server().startManager();
    ASSERT_TRUE(desk.runUntil([&] { return mail->numbers(inbox, "_NET_FRAME_EXTENTS").size() == 4; }));
    EXPECT_TRUE(desk.showsExactly({"Draft", "Inbox"}));
    EXPECT_TRUE(desk.runUntil([&] { return mail->isViewable(draft); }));
    EXPECT_TRUE(desk.isPolledAs("Inbox", [&] { return mail->outerFrame(inbox); }));
    EXPECT_TRUE(desk.reachesFrame("Inbox", makeRect(10, 20, 600, 500), *mail, inbox));

    desk.desktop().hide(4001);
    ASSERT_TRUE(desk.runUntil([&] { return !mail->isViewable(inbox); }));
    desk.server().endManager();
    EXPECT_TRUE(desk.showsExactly({"Draft", "Inbox"}));
    EXPECT_TRUE(desk.isPolledAs("Inbox", [&] { return mail->area(inbox); }));

    // Properties that the former window manager set are out of date.
    mail->setNumbers(inbox, "_NET_WM_DESKTOP", "CARDINAL", {3});
    mail->setNumbers(inbox, "_NET_WM_STATE", "ATOM", {mail->atom("_NET_WM_STATE_FULLSCREEN")});
    desk.runFor(Seconds(0.1));
    EXPECT_TRUE(desk.showsExactly({"Draft", "Inbox"}));
    EXPECT_FALSE(desk.window("Inbox").isFullScreen);
    EXPECT_TRUE(desk.reachesFrame("Inbox", makeRect(30, 40, 500, 400), [&] { return mail->area(inbox); }));
    // Applications without windows are no longer listed.
    mail->destroy(draft);
    mail->destroy(inbox);
    EXPECT_TRUE(desk.showsExactly({}));
    EXPECT_TRUE(desk.desktop().runningApplications().empty());
}

void replaceTheManager(bool hidesMail) {
    DesktopUnderTest desk(Manager::openbox);
    const auto mail = desk.client("Mail", 4001), notes = desk.client("Notes", 4002);
    const auto inbox = mail->open({.title = "Inbox"});
    mail->open({.title = "Draft", .frame = makeRect(500, 60, 400, 300)});
    notes->open({.title = "Pad"});
    desk.openDesktop();
    ASSERT_TRUE(desk.showsExactly({"Draft", "Inbox", "Pad"}));
    if (hidesMail) {
        desk.desktop().hide(4001);
        ASSERT_TRUE(desk.runUntil([&] { return !mail->isViewable(inbox); }));
        desk.runFor(Seconds(0.3));
    }
    const ChildProcess next = desk.server().start({"openbox", "--sm-disable", "--replace"});
    const Seconds end = desk.loop().uptime() + Seconds(2.5);
    while (desk.loop().uptime() < end) {
        const auto titles = desk.titles();
        // While hidden windows are restored, a poll can miss them. Other windows must be listed all the time.
        for (const char* title : hidesMail ? std::vector{"Pad"} : std::vector{"Draft", "Inbox", "Pad"}) {
            ASSERT_EQ(std::ranges::count(titles, std::string(title)), 1) << title;
        }
    }
    EXPECT_TRUE(desk.showsExactly({"Draft", "Inbox", "Pad"}));
    EXPECT_TRUE(desk.isPolledAs("Inbox", [&] { return mail->outerFrame(inbox); }));
}

TEST(WindowManager, MayBeReplacedWithoutLosingAWindow) {
    if (!PrivateServer::isInstalled()) GTEST_SKIP() << "Xvfb is not installed";
    replaceTheManager(false);
}

TEST(WindowManager, IsKnownAlthoughTheFormerManagerDeletedTheListOfSupportedHints) {
    if (!PrivateServer::isInstalled()) GTEST_SKIP() << "Xvfb is not installed";
    DesktopUnderTest desk(Manager::openbox);
    const auto client = desk.client("Mail", 4001);
    const auto inbox = client->open({.title = "Inbox"});
    desk.openDesktop();
    ASSERT_TRUE(desk.showsExactly({"Inbox"}));
    const auto before = desk.desktop().changeCount();
    client->remove(client->root(), "_NET_SUPPORTED");
    ASSERT_TRUE(desk.runUntil([&] { return desk.desktop().changeCount() != before; }));
    EXPECT_TRUE(desk.showsExactly({"Inbox"}));
    EXPECT_TRUE(desk.reachesFrame("Inbox", makeRect(20, 30, 500, 400), *client, inbox));
}

TEST(WindowManager, MakesSizesOfWindowsUnreliableForTwoSecondsAfterReplacingAnother) {
    if (!PrivateServer::isInstalled()) GTEST_SKIP() << "Xvfb is not installed";
    DesktopUnderTest desk(Manager::openbox);
    const auto mail = desk.client("Mail", 4001);
    mail->open({.title = "Inbox"});
    desk.openDesktop();
    ASSERT_TRUE(desk.showsExactly({"Inbox"}));
    const auto isReliable = [&] { return desk.service().areSizesReliable(desk.window("Inbox")); };
    const auto isReliableAfterPlacement = [&] {
        desk.place(desk.window("Inbox"), makeRect(20, 30, 500, 300));
        desk.runFor(Seconds(0.1));
        return isReliable();
    };
    EXPECT_TRUE(desk.runUntil(isReliableAfterPlacement));
    const ChildProcess next = desk.server().start({"openbox", "--sm-disable", "--replace"});
    ASSERT_TRUE(desk.runUntil([&] { return !isReliable(); }));
    const Seconds begin = desk.loop().uptime();
    EXPECT_TRUE(desk.runUntil(isReliableAfterPlacement));
    EXPECT_GE(desk.loop().uptime() - begin, Seconds(1.9));
}

TEST(WindowManager, MakesSizesOfWindowsUnreliableIfItTilesWindows) {
    if (!PrivateServer::isInstalled()) GTEST_SKIP() << "Xvfb is not installed";
    DesktopUnderTest desk(Manager::openbox);
    const auto mail = desk.client("Mail", 4001);
    mail->open({.title = "Inbox"});
    desk.openDesktop();
    const auto isReliable = [&] { return desk.service().areSizesReliable(desk.window("Inbox")); };
    ASSERT_TRUE(desk.runUntil([&] {
        desk.place(desk.window("Inbox"), makeRect(20, 30, 500, 300));
        desk.runFor(Seconds(0.1));
        return isReliable();
    }));
    const auto check = mail->numbers(mail->root(), "_NET_SUPPORTING_WM_CHECK");
    ASSERT_EQ(check.size(), 1u);
    mail->setText(check.front(), "_NET_WM_NAME", "UTF8_STRING", "i3");
    mail->setNumbers(mail->root(), "_NET_SUPPORTING_WM_CHECK", "WINDOW",
                     check); // makes the desktop read the properties again
    EXPECT_TRUE(desk.runUntil([&] { return !isReliable(); }));
}

TEST(WindowManager, MayBeReplacedWithoutLosingAHiddenWindow) {
    if (!PrivateServer::isInstalled()) GTEST_SKIP() << "Xvfb is not installed";
    replaceTheManager(true);
}

} // namespace
} // namespace kova::testing
