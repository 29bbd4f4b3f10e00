// The contract tests of the platform interfaces: every desktop must pass them. Each back end implements
// `ContractDesktop` and registers its class with INSTANTIATE_TEST_SUITE_P. A test calls `ContractDesktop` to act as the
// user and as the applications. Frames and points are in window-service space. Tests name a window by its title and an
// application by its name.
#pragma once

#include "support/MainQueue.h"
#include "windowing/AccessibilityServicing.h"
#include "windowing/ApplicationServicing.h"
#include "windowing/ChangeAnnouncements.h"
#include "windowing/KeyMonitorServicing.h"
#include "windowing/PointerServicing.h"
#include "windowing/ScreenServicing.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

// These functions print values in the messages of failed tests.
inline void PrintTo(const CGPoint& point, std::ostream* stream) {
    *stream << point.x << "," << point.y;
}
inline void PrintTo(const CGSize& size, std::ostream* stream) {
    *stream << size.width << "x" << size.height;
}
namespace kova {
inline void PrintTo(const AccessibilityElement& element, std::ostream* stream) {
    *stream << "element " << element.processIdentifier << ":" << element.hash;
}
} // namespace kova

namespace kova::contract {

/// A window that `ContractDesktop::open` opens.
struct NewWindow {
    std::string application;
    std::string title;
    CGRect frame{};
    std::optional<CGSize> minimumSize{};   // announced by the window; some desktops enforce it
    std::optional<std::string> dialogOf{}; // for a dialog: the title of the window to which it belongs
};

inline const NewWindow kPlan{"Editor", "Plan", makeRect(40, 50, 500, 400), CGSize{300, 200}};
inline const NewWindow kInbox{"Mail", "Inbox", makeRect(200, 200, 500, 400)};

/// Abilities that a back end may lack. A test leaves out the steps that need a missing ability.
enum class Ability {
    minimizingByUser,
    enforcingMinimumSizes, // no window becomes smaller than its announced minimum size
    pluggingInDisplays,
    withdrawingPermission,
    usingTheMouse,
    grabbingKeys,
    launching,
    forceTerminating,  // each application has its own process, so that `forceTerminate` can kill it
    destroyingDesktop, // the desktop can be destroyed before its queue
    openingDialogs
};

class ContractDesktop {
  public:
    virtual ~ContractDesktop() = default;
    /// Whether the back end has the ability.
    virtual bool can(Ability) const { return true; }

    /// Opens a window and returns the process of its application. Opening its first window starts an application.
    virtual pid_t open(const NewWindow& newWindow) = 0;
    virtual void retitle(const std::string& title, const std::string& newTitle) = 0;
    virtual void close(const std::string& title) = 0;
    virtual void userMoves(const std::string& title, const CGRect& frame) = 0;
    virtual void userMinimizes(const std::string& title) = 0;
    /// Ends the application and all its windows at once, as a crash does.
    virtual void crash(const std::string& application) = 0;
    /// The actual frame of the window, decorations included.
    virtual CGRect frame(const std::string& title) = 0;
    /// Connects another display, which becomes the primary display.
    virtual void plugInPrimaryDisplay() = 0;
    /// Withdraws KOVA's permission to use the desktop.
    virtual void withdrawPermission() = 0;
    /// Destroys the implementations of the platform interfaces while the queue continues to run. Tests must not use the
    /// interfaces afterwards.
    virtual void destroyDesktop() = 0;
    /// Presses the main button of the mouse.
    virtual void press(CGPoint point) = 0;
    virtual void movePointer(CGPoint point) = 0;
    virtual void releaseButton() = 0;
    /// Presses and releases a key while an application other than KOVA has the focus. Back ends need to support only
    /// the keys H and J.
    virtual void pressKey(KeyCombination combination) = 0;
    /// Lets another program grab the combination. Call this before `KeyMonitorServicing::claim`.
    virtual void claimForOther(KeyCombination combination) = 0;
    /// Installs an application that opens a window with its name as the title; `uninstall` removes the application.
    virtual LaunchableApplication install(const std::string& name) = 0;
    virtual void uninstall(const std::string& name) = 0;

    virtual AccessibilityServicing& accessibility() = 0;
    virtual ApplicationServicing& applications() = 0;
    virtual ScreenServicing& screens() = 0;
    virtual DesktopChangeServicing& changes() = 0;
    virtual PointerMonitorServicing& pointer() = 0;
    virtual DividerHandleServicing& handles() = 0;
    virtual KeyMonitorServicing& keys() = 0;

    /// Runs the job on the polling queue and returns when the job is done. The main queue runs during the job.
    virtual void onPollingQueue(const std::function<void()>& job) = 0;
    /// Lets time pass until the condition holds; false if it does not hold within 20 s.
    virtual bool runUntil(const std::function<bool()>& condition) = 0;
    virtual void runFor(Seconds time) = 0;
    /// Invalid calls that the desktop has recorded.
    virtual std::vector<std::string> recordedErrors() const { return {}; }
};

/// A back end on which the tests run.
struct Backend {
    std::string name;    // part of the tests' names
    std::string missing; // why the back end cannot be tested here; empty if it can
    std::function<std::unique_ptr<ContractDesktop>()> open;
};
std::ostream& operator<<(std::ostream& stream, const Backend& backend);
std::string nameOf(const ::testing::TestParamInfo<Backend>& info);

class DesktopContract : public ::testing::TestWithParam<Backend> {
  protected:
    void SetUp() override;
    void TearDown() override;

    ContractDesktop& desktop() { return *desktop_; }
    AccessibilityServicing& accessibility() { return desktop_->accessibility(); }
    ApplicationServicing& applications() { return desktop_->applications(); }
    bool until(const std::function<bool()>& condition) { return desktop_->runUntil(condition); }

    /// Reads as a poll does: lists the applications first, and then reads the attributes.
    std::vector<AttributeValue> read(const AccessibilityElement& element,
                                     const std::vector<AccessibilityAttribute>& attributes);
    AttributeValue read(const AccessibilityElement& element, AccessibilityAttribute attribute);
    std::optional<CGRect> frameOf(const AccessibilityElement& element);
    /// Whether the attribute can be read and is true.
    bool isTrue(const AccessibilityElement& element, AccessibilityAttribute attribute);
    /// The applications and their windows. Only the members that `ChangeAnnouncements` needs are set. Polling queue.
    WindowEnumeration enumeration();
    /// Lists the running applications, on the polling queue.
    std::vector<RunningApplication> poll();
    /// Lists the running applications on the polling queue, and returns the one with that process; absent if there is
    /// none.
    std::optional<RunningApplication> polled(pid_t process);
    /// Waits for the window with that title. The test fails if the window does not appear.
    AccessibilityElement element(const std::string& title);
    /// The window with that title; absent if no application lists it. Does not wait.
    std::optional<AccessibilityElement> find(const std::string& title);
    /// The title of the window under the point; empty if there is no window. Makes the same calls as the window
    /// service.
    std::string titleAt(CGPoint point);
    /// The ordinary windows on the screen that belong to listed applications, front to back.
    std::vector<OnScreenWindow> windowsOnScreen();
    /// Writes the attributes and flushes.
    void write(const AccessibilityElement& element, const std::vector<AttributeWrite>& writes);

  private:
    std::unique_ptr<ContractDesktop> desktop_;
};

std::string text(const CGRect& r);
std::string text(const std::optional<CGRect>& r);

} // namespace kova::contract
