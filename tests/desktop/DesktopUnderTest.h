// A private server with the desktop under test on it, driven by a small main loop in real time. Polls run on a thread
// of their own, as in the agent, beside the loop.
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
    void turn();
    void dropAll();
    /// While true, no timer fires.
    void holdTimers(bool holds) { holdsTimers_ = holds; }

  private:
    struct Due;
    std::mutex mutex_;
    bool holdsTimers_ = false;
    std::vector<std::function<void()>> posted_;
    std::vector<std::shared_ptr<Due>> timers_;
    std::vector<std::weak_ptr<std::pair<int, std::function<void()>>>> watched_;
};

/// A catalogue in which the window class is the application's name.
class PlainCatalogue final : public ApplicationCatalogue {
  public:
    ApplicationIdentity identify(const ApplicationTraces& traces) override;
};

class DesktopUnderTest {
  public:
    explicit DesktopUnderTest(Manager manager, const std::string& size = "1280x800",
                              ClientProcessNumbers numbers = ClientProcessNumbers::untold);
    ~DesktopUnderTest();

    /// Opens the desktop under test; once, or again after `crash`.
    X11Desktop& openDesktop();
    X11Desktop& desktop() { return *desktop_; }
    AccessibilityWindowService& service() { return *service_; }
    /// Ends the desktop as at the end of the agent.
    void closeDesktop();
    /// Keeps the file of hidden windows as it is, as if the agent had been killed.
    void crash();

    std::unique_ptr<TestClient> client(const std::string& className, std::uint32_t process);
    std::vector<ManagedWindow> poll();
    /// The polled window of that title, once there is one; fails the test and is empty if none comes.
    ManagedWindow window(const std::string& title);
    std::vector<std::string> titles();
    /// Waits until exactly the windows with these titles are listed, all of them visible.
    bool showsExactly(std::vector<std::string> titles);
    bool isMinimized(const std::string& title) { return window(title).isMinimized; }
    bool isHidden(pid_t process);
    void place(const ManagedWindow& window, const CGRect& frame);
    /// Places the window, and again after each verification, as polls do, until `frame` reads as requested.
    bool reachesFrame(const std::string& title, const CGRect& requested, const std::function<CGRect()>& frame);
    bool reachesFrame(const std::string& title, const CGRect& requested, const TestClient& client, xcb_window_t window);

    /// Waits until the polled frame equals the frame that the server reports.
    bool isPolledAs(const std::string& title, const std::function<CGRect()>& frame);

    void runFor(Seconds time);
    /// False if it does not hold within 20 s: machines that run tests can be very busy.
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
