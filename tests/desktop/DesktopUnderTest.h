// The X11 back end under test on a private X server, driven by a small main loop in real time. Each poll runs on
// another thread, as in the agent.
#pragma once

#include "platform/x11/X11Desktop.h"
#include "tests/desktop/PrivateServer.h"
#include "tests/desktop/TestClient.h"
#include "windowing/AccessibilityWindowService.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace kova::testing {

class TestLoop final : public MainQueue {
  public:
    void post(std::function<void()> work) override;
    std::shared_ptr<ScheduledWork> after(Seconds delay, std::function<void()> work) override;
    WallTime now() const override;
    Seconds uptime() const override;

    Subscription watch(int descriptor, std::function<void()> readable);
    /// Runs due timers and reads available input once; sleeps for a moment if there is neither.
    void runOnce();
    void dropPendingWork();
    /// After a call with true no timer fires until a call with false.
    void holdTimers(bool holds) { holdsTimers_ = holds; }

  private:
    struct Timer;
    std::mutex mutex_;
    bool holdsTimers_ = false;
    std::vector<std::function<void()>> posted_;
    std::vector<std::shared_ptr<Timer>> timers_;
    std::vector<std::weak_ptr<std::pair<int, std::function<void()>>>> watched_;
};

/// Uses the window class as the application's name.
class PlainCatalogue final : public ApplicationCatalogue {
  public:
    ApplicationIdentity identify(const ApplicationTraces& traces) override;
};

class DesktopUnderTest {
  public:
    explicit DesktopUnderTest(Manager manager, const std::string& size = "1280x800",
                              ClientProcessNumbers numbers = ClientProcessNumbers::unreported);
    ~DesktopUnderTest();

    /// Connects the desktop under test to the server. Call `closeDesktop` or `crash` before the next `openDesktop`.
    X11Desktop& openDesktop();
    X11Desktop& desktop() { return *desktop_; }
    AccessibilityWindowService& service() { return *service_; }
    /// Disconnects as the agent does when it ends: hidden windows are shown again.
    void closeDesktop();
    /// Disconnects as a killed agent does: hidden windows stay hidden, and the file that lists them is kept.
    void crash();

    std::unique_ptr<TestClient> client(const std::string& className, std::uint32_t process);
    std::vector<ManagedWindow> poll();
    /// Polls until a window with this title is listed. If there is none within 20 s, the test fails and the result is
    /// empty.
    ManagedWindow window(const std::string& title);
    std::vector<std::string> titles();
    /// Waits until exactly the windows with these titles are listed, all of them visible.
    bool showsExactly(std::vector<std::string> titles);
    bool isMinimized(const std::string& title) { return window(title).isMinimized; }
    bool isHidden(pid_t process);
    void place(const ManagedWindow& window, const CGRect& frame);
    /// Places the window, again after each failed verification as polls do, until `frame()` equals `requested`.
    /// False if that takes longer than 20 s.
    bool reachesFrame(const std::string& title, const CGRect& requested, const std::function<CGRect()>& frame);
    bool reachesFrame(const std::string& title, const CGRect& requested, const TestClient& client, xcb_window_t window);

    /// Waits until the polled frame of the window equals `frame()`; false after 20 s.
    bool isPolledAs(const std::string& title, const std::function<CGRect()>& frame);

    void runFor(Seconds time);
    /// Runs the loop until the condition holds; false after 20 s, since machines that run tests can be very busy.
    bool runUntil(const std::function<bool()>& condition);
    PrivateServer& server() { return server_; }
    TestLoop& loop() { return loop_; }
    bool isConnectionLost() const { return isConnectionLost_; }
    const std::vector<CGRect>& reportedMinimums() const { return reportedMinimums_; }
    std::string hiddenWindowsFile() const { return server_.folder() + "/hidden.json"; }

  private:
    const ClientProcessNumbers numbers_;
    PrivateServer server_;
    TestLoop loop_;
    PlainCatalogue catalogue_;
    std::unique_ptr<X11Desktop> desktop_;
    std::unique_ptr<AccessibilityWindowService> service_;
    std::vector<CGRect> reportedMinimums_;
    bool isConnectionLost_ = false;
};

std::string text(const CGRect& r);

} // namespace kova::testing
