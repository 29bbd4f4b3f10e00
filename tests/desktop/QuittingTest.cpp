// KOVA ends the applications of real windows on request, and never ends certain processes.
#include "tests/desktop/DesktopUnderTest.h"

#include "platform/x11/LocalProcesses.h"

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <map>

namespace kova::testing {
namespace {

/// A process that does nothing until it is killed; the destructor reaps it.
class IdleProcess {
  public:
    IdleProcess() : process_(fork()) {
        if (process_ != 0) return;
        while (true) pause();
    }
    ~IdleProcess() {
        if (isEnded_) return;
        kill(process_, SIGKILL);
        waitpid(process_, nullptr, 0);
    }
    IdleProcess(const IdleProcess&) = delete;
    IdleProcess& operator=(const IdleProcess&) = delete;

    pid_t process() const { return process_; }
    bool hasEnded() {
        int status = 0;
        if (!isEnded_ && waitpid(process_, &status, WNOHANG) == process_) isEnded_ = true;
        return isEnded_;
    }

  private:
    pid_t process_;
    bool isEnded_ = false;
};

class Quitting : public ::testing::TestWithParam<Manager> {
  protected:
    void SetUp() override {
        if (!PrivateServer::isInstalled()) GTEST_SKIP() << "Xvfb is not installed";
    }
    std::optional<RunningApplication> application(DesktopUnderTest& desk, const std::string& name) {
        desk.poll();
        for (const auto& running : desk.desktop().runningApplications()) {
            if (running.localizedName == name) return running;
        }
        return std::nullopt;
    }
    bool isPartOfDesktop(DesktopUnderTest& desk, const std::string& name) {
        const auto found = application(desk, name);
        EXPECT_TRUE(found) << name;
        return found && found->isPartOfDesktop;
    }
};

TEST_P(Quitting, EachWindowWithTheDeleteProtocolGetsACloseRequest) {
    DesktopUnderTest desk(GetParam());
    const auto withProtocol = desk.client("Protocol", 4001), withoutProtocol = desk.client("NoProtocol", 4002),
               other = desk.client("Other", 4003);
    const auto first = withProtocol->open({.title = "First", .hasDeleteProtocol = true});
    const auto second = withProtocol->open({.title = "Second", .hasDeleteProtocol = true});
    const auto third = withProtocol->open({.title = "Third"});
    const auto fourth = withoutProtocol->open({.title = "Fourth"});
    const auto otherWindow = other->open({.title = "Other", .hasDeleteProtocol = true});
    auto& desktop = desk.openDesktop();
    ASSERT_TRUE(desk.showsExactly({"First", "Second", "Third", "Fourth", "Other"}));

    EXPECT_TRUE(desktop.terminate(4001));
    EXPECT_TRUE(desktop.terminate(4002));
    EXPECT_TRUE(desk.runUntil(
        [&] { return withProtocol->closeRequestCount(first) == 1 && withProtocol->closeRequestCount(second) == 1; }));
    desk.poll();
    EXPECT_EQ(withProtocol->closeRequestCount(third), 0);
    EXPECT_EQ(withoutProtocol->closeRequestCount(fourth), 0);
    EXPECT_EQ(other->closeRequestCount(otherWindow), 0);
    EXPECT_TRUE(desk.showsExactly({"First", "Second", "Third", "Fourth", "Other"})) << "no window is destroyed";

    withProtocol->destroy(second); // the close request reaches a window that is being destroyed
    EXPECT_TRUE(desktop.terminate(4001));
    EXPECT_TRUE(desk.runUntil([&] { return withProtocol->closeRequestCount(first) == 2; }));
    EXPECT_FALSE(desktop.terminate(4999));
    EXPECT_FALSE(desk.isConnectionLost());
}

TEST_P(Quitting, NoProcessIsKilledWithoutTheServersConfirmation) {
    DesktopUnderTest desk(GetParam());
    IdleProcess local, distant, panel;
    const auto number = [](const IdleProcess& idle) { return static_cast<std::uint32_t>(idle.process()); };
    const auto mail = desk.client("Mail", number(local)), remote = desk.client("Remote", number(distant)),
               init = desk.client("Init", 1), ours = desk.client("Ours", static_cast<std::uint32_t>(getpid())),
               parent = desk.client("Parent", static_cast<std::uint32_t>(getppid())),
               unnamed = desk.client("Unnamed", 0), bar = desk.client("Bar", number(panel));
    mail->open({.title = "Mail"});
    const auto far = remote->create({.title = "Remote"});
    remote->setText(far, "WM_CLIENT_MACHINE", "STRING", "another-machine.example");
    remote->map(far);
    init->open({.title = "Init"});
    ours->open({.title = "Ours"});
    parent->open({.title = "Parent"});
    unnamed->open({.title = "Unnamed"});
    bar->open({.title = "Bar", .frame = makeRect(0, 0, 1280, 20), .type = "DOCK"});
    bar->open({.title = "Settings of the bar"});
    auto& desktop = desk.openDesktop();
    ASSERT_TRUE(desk.showsExactly({"Mail", "Remote", "Init", "Parent", "Unnamed", "Settings of the bar"}));

    EXPECT_FALSE(isPartOfDesktop(desk, "Mail"));
    for (const char* name : {"Ours", "Parent", "Bar"}) EXPECT_TRUE(isPartOfDesktop(desk, name)) << name;
    for (const char* name : {"Mail", "Remote", "Init", "Ours", "Parent", "Unnamed", "Bar"}) {
        const auto found = application(desk, name);
        ASSERT_TRUE(found) << name;
        EXPECT_NE(desktop.forceTerminate(found->processIdentifier).value_or(""), "") << name;
    }
    EXPECT_TRUE(desktop.forceTerminate(distant.process()));
    EXPECT_FALSE(local.hasEnded() || distant.hasEnded() || panel.hasEnded());
    for (const pid_t process : {pid_t{0}, pid_t{-1}, pid_t{1}, getpid()}) {
        EXPECT_TRUE(x11::killProcess(process)) << process;
    }
    EXPECT_EQ(x11::killProcess(local.process()), std::nullopt);
    EXPECT_TRUE(desk.runUntil([&] { return local.hasEnded(); }));
    EXPECT_TRUE(x11::killProcess(local.process())) << "there is no such process any more";
}

/// After all windows of a process are closed, the process may end and another process may get its number.
TEST_P(Quitting, AProcessWithoutWindowsIsNotKilled) {
    DesktopUnderTest desk(GetParam());
    IdleProcess local;
    const auto mail = desk.client("Mail", static_cast<std::uint32_t>(local.process()));
    const auto window = mail->open({.title = "Mail"});
    auto& desktop = desk.openDesktop();
    ASSERT_TRUE(desk.showsExactly({"Mail"}));
    mail->destroy(window);
    const auto isRefusedAs = [&](const char* reason) {
        const auto refusal = desktop.forceTerminate(local.process());
        EXPECT_TRUE(refusal);
        return refusal.value_or("") == reason;
    };
    // Without a window manager an event reports a destroyed window at once. With a window manager, the next poll reads
    // the list of windows.
    if (GetParam() == Manager::none) {
        EXPECT_TRUE(desk.runUntil([&] { return isRefusedAs("it has no window any more"); }));
    }
    ASSERT_TRUE(desk.showsExactly({}));
    EXPECT_TRUE(desk.runUntil([&] { return isRefusedAs("it does not run any more"); }))
        << "after its window is destroyed";
    EXPECT_FALSE(local.hasEnded());
}

TEST_P(Quitting, RealApplicationsEnd) {
    DesktopUnderTest desk(GetParam(), "1280x800", ClientProcessNumbers::reported);
    std::vector<ChildProcess> terminals;
    for (const char* title : {"One", "Two"})
        terminals.push_back(desk.server().start({"xterm", "-T", title, "-e", "sleep", "1000"}));
    auto& desktop = desk.openDesktop();
    ASSERT_TRUE(desk.runUntil([&] { return desk.titles().size() == 2; }));
    EXPECT_TRUE(desktop.terminate(desk.window("One").processIdentifier));
    EXPECT_TRUE(desk.showsExactly({"Two"}));
    EXPECT_EQ(desktop.forceTerminate(desk.window("Two").processIdentifier), std::nullopt);
    EXPECT_TRUE(desk.showsExactly({}));
}

/// The server knows the process of each window; the number that a window announces is not used. Here one window
/// announces the number of another process, two windows announce the same number (as programs in process namespaces
/// do), and one window announces no number.
TEST_P(Quitting, AWindowIsAttributedToTheProcessThatTheServerNames) {
    DesktopUnderTest desk(GetParam(), "1280x800", ClientProcessNumbers::reported);
    IdleProcess unrelated;
    std::map<std::string, ChildProcess> terminals;
    for (const char* title : {"Foreign number", "Box 1", "Box 2", "No number"})
        terminals.emplace(title, desk.server().start({"xterm", "-T", title, "-e", "sleep", "1000"}));
    const auto prober = desk.client("Prober", 1);
    const auto falsifyProcessNumber = [&](const std::string& title) {
        return desk.runUntil([&] {
            const auto window = prober->windowTitled(title);
            // The program sets the property a moment after it has created its window.
            if (window == 0 || prober->numbers(window, "_NET_WM_PID").empty()) return false;
            if (title == "No number") {
                prober->remove(window, "_NET_WM_PID");
            } else {
                prober->setNumbers(window, "_NET_WM_PID", "CARDINAL",
                                   {title == "Foreign number" ? static_cast<std::uint32_t>(unrelated.process()) : 1U});
            }
            return true;
        });
    };
    for (const auto& [title, terminal] : terminals) ASSERT_TRUE(falsifyProcessNumber(title)) << title;
    auto& desktop = desk.openDesktop();
    ASSERT_TRUE(desk.showsExactly({"Foreign number", "Box 1", "Box 2", "No number"}));
    for (const auto& [title, terminal] : terminals)
        EXPECT_EQ(desk.window(title).processIdentifier, terminal.process()) << title;

    const pid_t foreign = terminals.at("Foreign number").process();
    EXPECT_EQ(desktop.forceTerminate(foreign), "its window names process " + std::to_string(unrelated.process()) +
                                                   ", but the X server says process " + std::to_string(foreign));
    EXPECT_TRUE(desktop.forceTerminate(unrelated.process()));
    EXPECT_EQ(desktop.forceTerminate(terminals.at("No number").process()), std::nullopt);
    EXPECT_TRUE(desk.showsExactly({"Foreign number", "Box 1", "Box 2"}));
    EXPECT_FALSE(unrelated.hasEnded());
}

TEST(DesktopPrograms, AreKnownByTheirNames) {
    for (const char* program :
         {"openbox", "gnome-shell", "plasmashell", "xfce4-panel", "nautilus", "cinnamon-sessio"}) {
        EXPECT_TRUE(x11::isDesktopProgram(program, "")) << program;
    }
    EXPECT_TRUE(x11::isDesktopProgram("new-wm", "New WM"));
    for (const char* program : {"", "xterm", "firefox", "bash", "new"}) {
        EXPECT_FALSE(x11::isDesktopProgram(program, "New WM")) << program;
        EXPECT_FALSE(x11::isDesktopProgram(program, "")) << program;
    }
}

INSTANTIATE_TEST_SUITE_P(With, Quitting, ::testing::Values(Manager::none, Manager::openbox), managerName);

} // namespace
} // namespace kova::testing
