// Tests of the platform interfaces that every desktop must pass. Each back end implements `ContractDesktop`, with which
// a test acts as the user and as the applications, and registers it with INSTANTIATE_TEST_SUITE_P.
// Frames and points are in window-service space. Tests name a window by its title and an application by its name.
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

// How googletest prints these types in failures.
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
    enforcingMinimumSizes,
    pluggingInDisplays,
    withdrawingPermission,
    usingTheMouse,
    grabbingKeys,
    launching,
    forcingToEnd, // `forceTerminate` works: each application has a process of its own
    destroyingDesktop,
    openingDialogs
};

class ContractDesktop {
  public:
    virtual ~ContractDesktop() = default;
    virtual bool can(Ability) const { return true; }

    /// Opens a window and returns the process of its application. The first window of an application starts it.
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
    virtual void press(CGPoint point) = 0;
    virtual void movePointer(CGPoint point) = 0;
    virtual void releaseButton() = 0;
    /// Presses and releases a key while another application has the focus. Only the keys H and J must be supported.
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

    /// Runs the job on the polling queue and returns when it is done; the main queue runs meanwhile.
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
    bool flag(const AccessibilityElement& element, AccessibilityAttribute attribute);
    /// The applications and their windows, with the members that `ChangeAnnouncements` needs. Polling queue.
    WindowEnumeration enumeration();
    /// Lists the running applications, on the polling queue.
    std::vector<RunningApplication> poll();
    std::optional<RunningApplication> polled(pid_t process);
    /// Waits for the window with that title; the test fails if it does not appear.
    AccessibilityElement element(const std::string& title);
    std::optional<AccessibilityElement> find(const std::string& title);
    /// The title of the window under the point, found by the calls that the window service makes; empty if there is no
    /// window.
    std::string titleAt(CGPoint point);
    /// The ordinary windows of the listed applications that are on the screen, front to back.
    std::vector<OnScreenWindow> windowsOnScreen();
    void write(const AccessibilityElement& element, const std::vector<AttributeWrite>& writes);

  private:
    std::unique_ptr<ContractDesktop> desktop_;
};

std::string text(const CGRect& r);
std::string text(const std::optional<CGRect>& r);

} // namespace kova::contract
