// Tests of the platform interfaces that every desktop must pass. A back end implements `ContractDesktop`, which acts as
// the user and the applications, and registers itself with INSTANTIATE_TEST_SUITE_P.
// Frames and points are in window-service space. Windows are called by their titles, applications by their names.
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

// What failures print.
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

struct Opening {
    std::string application;
    std::string title;
    CGRect frame{};
    std::optional<CGSize> minimumSize{};   // announced by the window, and enforced if the desktop does so
    std::optional<std::string> dialogOf{}; // the title of the window that it belongs to
};

inline const Opening kPlan{"Editor", "Plan", makeRect(40, 50, 500, 400), CGSize{300, 200}};
inline const Opening kInbox{"Mail", "Inbox", makeRect(200, 200, 500, 400)};

/// What this back end can do for a test.
enum class Ability {
    minimizingByUser,
    keepingMinimumSizes,
    pluggingInDisplays,
    withdrawingPermission,
    usingTheMouse,
    claimingKeys,
    launching,
    endingByForce, // its windows are known to be their process's
    lettingGo,
    openingDialogs
};

class ContractDesktop {
  public:
    virtual ~ContractDesktop() = default;
    virtual bool can(Ability) const { return true; }

    /// Opens a window and returns its application's process, which begins with its first window.
    virtual pid_t open(const Opening& opening) = 0;
    virtual void retitle(const std::string& title, const std::string& newTitle) = 0;
    virtual void close(const std::string& title) = 0;
    virtual void userMoves(const std::string& title, const CGRect& frame) = 0;
    virtual void userMinimizes(const std::string& title) = 0;
    /// Ends the application and all its windows at once, as a crash does.
    virtual void crash(const std::string& application) = 0;
    /// Where the desktop has the window, decorations included.
    virtual CGRect frame(const std::string& title) = 0;
    /// One more display, which is the primary one from now on.
    virtual void plugInPrimaryDisplay() = 0;
    /// Withdraws the permission to use the desktop.
    virtual void withdrawPermission() = 0;
    /// Destroys the agent's desktop object while the queue continues to run; no interface may be used afterwards.
    virtual void destroyDesktop() = 0;
    virtual void press(CGPoint point) = 0;
    virtual void movePointer(CGPoint point) = 0;
    virtual void releaseButton() = 0;
    /// Presses and releases a key while another application has the focus; H and J with modifiers are enough.
    virtual void pressKey(KeyCombination combination) = 0;
    /// Another program grabs the combination; call before it is registered here.
    virtual void claimForOther(KeyCombination combination) = 0;
    /// Installs an application that opens a window of its name; `uninstall` removes it.
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
    /// Lets time pass until the condition holds; false when it has not within 20 s.
    virtual bool runUntil(const std::function<bool()>& condition) = 0;
    virtual void runFor(Seconds time) = 0;
    /// Errors that the desktop has recorded about calls.
    virtual std::vector<std::string> complaints() const { return {}; }
};

/// A desktop to be compared, by its name in the list of tests.
struct Backend {
    std::string name;
    std::string missing; // why it cannot be tested here; empty if it can
    std::function<std::unique_ptr<ContractDesktop>()> open;
};
std::ostream& operator<<(std::ostream& stream, const Backend& backend);
std::string nameOf(const ::testing::TestParamInfo<Backend>& info);

class DesktopContract : public ::testing::TestWithParam<Backend> {
  protected:
    void SetUp() override;
    void TearDown() override;

    ContractDesktop& stage() { return *stage_; }
    AccessibilityServicing& accessibility() { return stage_->accessibility(); }
    ApplicationServicing& applications() { return stage_->applications(); }
    bool until(const std::function<bool()>& condition) { return stage_->runUntil(condition); }

    /// As a poll does it: the applications first, then the attributes.
    std::vector<AttributeValue> read(const AccessibilityElement& element,
                                     const std::vector<AccessibilityAttribute>& attributes);
    AttributeValue read(const AccessibilityElement& element, AccessibilityAttribute attribute);
    std::optional<CGRect> frameOf(const AccessibilityElement& element);
    bool flag(const AccessibilityElement& element, AccessibilityAttribute attribute);
    /// The applications and their windows, as far as `ChangeAnnouncements` needs them. Polling queue.
    WindowEnumeration enumeration();
    std::vector<RunningApplication> poll();
    std::optional<RunningApplication> polled(pid_t process);
    /// The window of that title, once it is there; the test fails when it does not come.
    AccessibilityElement element(const std::string& title);
    std::optional<AccessibilityElement> find(const std::string& title);
    /// The title of the window under the point, found as the window service does it; empty when there is none.
    std::string titleAt(CGPoint point);
    /// Of the listed applications' ordinary windows on the screen, front to back.
    std::vector<OnScreenWindow> shown();
    void write(const AccessibilityElement& element, const std::vector<AttributeWrite>& writes);

  private:
    std::unique_ptr<ContractDesktop> stage_;
};

std::string text(const CGRect& r);
std::string text(const std::optional<CGRect>& r);

} // namespace kova::contract
