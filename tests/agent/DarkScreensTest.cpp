// Screens that the X server switches off. Xvfb cannot do that, so these tests run Xorg with a dummy driver.
#include "tests/agent/Session.h"
#include "tests/desktop/TestClient.h"
#include "tests/linux/TemporaryFolder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#ifndef KOVA_XORG_MODULES
#define KOVA_XORG_MODULES "" // the driver module was not built, so the tests are skipped
#endif

namespace kova::testing {
namespace {

class SwitchableServer {
  public:
    SwitchableServer() {
        const auto configuration = folder_.write("xorg.conf", R"(
Section "Files"
  ModulePath ")" KOVA_XORG_MODULES R"(,/usr/lib/xorg/modules"
EndSection
Section "Module"
  Load "darkscreen"
EndSection
Section "ServerFlags"
  Option "AutoAddDevices" "false"
  Option "AutoAddGPU" "false"
  Option "BlankTime" "0"
  Option "StandbyTime" "0"
  Option "SuspendTime" "0"
  Option "OffTime" "0"
EndSection
Section "Device"
  Identifier "device"
  Driver "dummy"
EndSection
Section "Monitor"
  Identifier "monitor"
  HorizSync 5-1000
  VertRefresh 5-200
EndSection
Section "Screen"
  Identifier "screen"
  Device "device"
  Monitor "monitor"
  DefaultDepth 24
  SubSection "Display"
    Depth 24
    Modes "1280x800"
    Virtual 1280 800
  EndSubSection
EndSection
)");
        std::array<int, 2> ends{};
        if (pipe2(ends.data(), O_CLOEXEC) != 0) return;
        server_ = ChildProcess({kServer, "-displayfd", std::to_string(ends[1]), "-config", configuration.string(),
                                "-logfile", log().string(), "-nolisten", "tcp", "-noreset", "-novtswitch", "-sharevts"},
                               {"HOME=" + folder(), "PATH=/usr/bin:/bin"}, ends[1]);
        close(ends[1]);
        std::string number;
        pollfd readable{ends[0], POLLIN, 0};
        for (char digit = 0; poll(&readable, 1, 20'000) > 0 && read(ends[0], &digit, 1) == 1 && digit != '\n';) {
            number += digit;
        }
        close(ends[0]);
        if (!number.empty()) displayName_ = ":" + number;
    }

    static bool isInstalled() {
        return access(KOVA_XORG_MODULES "/drivers/darkscreen_drv.so", R_OK) == 0 && access(kServer, X_OK) == 0 &&
               access("/usr/lib/xorg/modules/drivers/dummy_drv.so", R_OK) == 0;
    }
    const std::string& displayName() const { return displayName_; }
    std::string folder() const { return folder_.path().string(); }
    std::filesystem::path log() const { return folder_.path() / "server.log"; }

  private:
    static constexpr const char* kServer = "/usr/lib/xorg/Xorg";
    TemporaryFolder folder_;
    std::string displayName_;
    ChildProcess server_;
};

class DarkScreens : public ::testing::Test {
  protected:
    void SetUp() override {
        if (!SwitchableServer::isInstalled()) GTEST_SKIP() << "Xorg, its dummy driver or its headers are not installed";
        server_.emplace();
        if (server_->displayName().empty()) GTEST_SKIP() << "Xorg does not start here: " << contentsOf(server_->log());
        session_.emplace(server_->folder(), server_->displayName());
        drawing_.emplace(server_->displayName(), "Drawing", static_cast<std::uint32_t>(getpid()));
        plugIn("left", "640/170x800/210+0+0", "DUMMY0");
        plugIn("right", "640/170x800/210+640+0");
        for (const double x : {20, 660}) {
            windows_.push_back(drawing_->open({.title = std::to_string(x), .frame = makeRect(x, 60, 300, 200)}));
        }
        startAgent();
        ASSERT_TRUE(eventually([&] { return session_->query("windows").size() == 2; }));
        ASSERT_EQ(session_->kova({"arrange"}).exitCode, 0);
        settle();
    }
    void startAgent() {
        session_->startAgent();
        ASSERT_TRUE(session_->agentResponds());
    }
    void plugIn(const char* name, const char* place, const char* output = "none") {
        ASSERT_EQ(session_->run({"xrandr", "--setmonitor", name, place, output}).exitCode, 0);
    }
    void power(const std::string& level) {
        const auto finished = session_->run({"xset", "dpms", "force", level});
        ASSERT_EQ(finished.exitCode, 0) << finished.output;
    }
    /// How often the text occurs in the agent's log.
    int count(const std::string& text) const {
        const std::string log = contentsOf(server_->folder() + "/state/kova/agent.log");
        int count = 0;
        for (std::size_t at = 0; (at = log.find(text, at)) != std::string::npos; at += text.size()) ++count;
        return count;
    }
    bool wasSuspended(int times) const {
        return eventually([&] { return count("workspace suspended") == times; });
    }
    bool wasResumed(int times) const {
        return eventually([&] { return count("workspace resumed") == times; });
    }
    /// The frames of all windows.
    std::string picture() {
        std::string all;
        for (const auto window : windows_) {
            const CGRect frame = drawing_->outerFrame(window);
            all += std::to_string(minX(frame)) + "," + std::to_string(minY(frame)) + " " +
                   std::to_string(frame.size.width) + "x" + std::to_string(frame.size.height) + "\n";
        }
        return all;
    }
    void settle() {
        EXPECT_TRUE(
            movementEnds([this] { return drawing_->takeConfigureCount(windows_); }, std::chrono::milliseconds(1500)));
    }

    std::optional<SwitchableServer> server_;
    std::optional<Session> session_;
    std::optional<TestClient> drawing_;
    std::vector<xcb_window_t> windows_;
};

TEST_F(DarkScreens, SuspendTheWorkspaceUntilTheyAreOnAgain) {
    EXPECT_NE(session_->kova({"doctor"}).output.find("Dark screens are noticed"), std::string::npos);
    const std::string before = picture();
    power("standby");
    ASSERT_TRUE(wasSuspended(1));
    EXPECT_EQ(session_->kova({"arrange"}).exitCode, 1);
    power("off"); // the screens are dark already, so this change is ignored
    session_->run({"xdotool", "mousemove", "9", "9"});
    ASSERT_TRUE(wasResumed(1));
    EXPECT_EQ(session_->kova({"arrange"}).exitCode, 0);
    settle();
    EXPECT_EQ(picture(), before);

    // While the screen saver is active, no event reports that the screens are switched on.
    session_->run({"xset", "s", "activate"});
    power("off");
    ASSERT_TRUE(wasSuspended(2));
    power("on");
    ASSERT_TRUE(wasResumed(2));

    // An agent starts while the screens are off.
    power("off");
    ASSERT_TRUE(wasSuspended(3));
    session_->signalAgent(SIGKILL);
    ASSERT_TRUE(session_->waitForAgent());
    startAgent();
    ASSERT_TRUE(wasSuspended(4));
    power("on");
    ASSERT_TRUE(wasResumed(3));
    settle();
    EXPECT_EQ(picture(), before);
    EXPECT_EQ(count("workspace suspended"), 4);
}

TEST_F(DarkScreens, MayDisconnectAndReturnLateWithoutMovingWindows) {
    const std::string before = picture();
    drawing_->takeConfigureCount(windows_);
    power("off");
    ASSERT_TRUE(wasSuspended(1));
    session_->run({"xrandr", "--delmonitor", "right"});
    // Without a suspension, the workspace waits much less than this for a disconnected display to return.
    sleep(3);
    EXPECT_EQ(drawing_->takeConfigureCount(windows_), 0);
    power("on");
    ASSERT_TRUE(wasResumed(1));
    ASSERT_TRUE(eventually([&] { return session_->query("displays").size() == 1; }));
    plugIn("right", "640/170x800/210+640+0");
    ASSERT_TRUE(eventually([&] { return session_->query("displays").size() == 2; }));
    settle();
    EXPECT_EQ(picture(), before);
}

} // namespace
} // namespace kova::testing
