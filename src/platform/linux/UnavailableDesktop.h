// A session without access to its windows: no permission, no applications, no displays. The agent keeps running, so
// that clients can show why KOVA moves no windows and what to do.
#pragma once

#include "support/MainQueue.h"
#include "windowing/AccessibilityServicing.h"
#include "windowing/ApplicationServicing.h"
#include "windowing/DiagnosticsServicing.h"
#include "windowing/ScreenServicing.h"

#include <string>

namespace kova {

class UnavailableDesktop final : public AccessibilityServicing,
                                 public ApplicationServicing,
                                 public ScreenServicing,
                                 public DesktopChangeServicing,
                                 public DiagnosticsServicing {
  public:
    /// `reason` is the message for the user: why there is no desktop and what to do.
    UnavailableDesktop(std::string reason, MainQueue& queue) : reason_(std::move(reason)), queue_(queue) {}

    bool isProcessTrusted() const override { return false; }
    bool requestTrust(bool) override { return false; }
    std::optional<std::string> unavailableReason() const override { return reason_; }
    AccessibilityElement applicationElement(pid_t processIdentifier) const override;
    std::vector<AttributeValue> readAttributes(const AccessibilityElement& element,
                                               std::span<const AccessibilityAttribute> attributes) const override;
    WindowPresence presenceOf(const AccessibilityElement&) const override { return WindowPresence::noResponse; }
    void writeAttributes(const AccessibilityElement&, std::span<const AttributeWrite>) override {}
    void performAction(const AccessibilityElement&, AccessibilityAction) override {}
    std::optional<AccessibilityElement> elementAtPosition(CGPoint) const override { return std::nullopt; }
    std::vector<OnScreenWindow> onScreenWindows() const override { return {}; }
    void flush() override {}

    pid_t ownProcessIdentifier() const override;
    std::vector<RunningApplication> runningApplications() const override { return {}; }
    std::optional<RunningApplication> runningApplication(pid_t) const override { return std::nullopt; }
    std::optional<pid_t> frontmostApplication() const override { return std::nullopt; }
    ApplicationIcon iconForFile(const std::string&) const override { return {}; }
    ApplicationIcon systemSymbolIcon(const std::string&) const override { return {}; }
    void hide(pid_t) override {}
    void unhide(pid_t) override {}
    void activate(pid_t) override {}
    std::vector<LaunchableApplication> launchableApplications() const override { return {}; }
    std::optional<LaunchableApplication> launchableApplication(const BundleID&) const override { return std::nullopt; }
    void launch(const LaunchableApplication& application, LaunchActivation activation,
                LaunchCompletion completion) override;
    bool terminate(pid_t) override { return false; }
    std::optional<std::string> forceTerminate(pid_t) override { return "there is no desktop"; }

    std::vector<Screen> screens() const override { return {}; }
    Subscription observeScreens(std::function<void()>) override { return {}; }
    std::optional<CGPoint> pointerLocation() const override { return std::nullopt; }

    /// Nothing ever changes here, so one poll is enough.
    std::optional<std::uint64_t> changeCount() const override { return 0; }
    void notifyWhenChanged(std::uint64_t, std::function<void()>) override {}

    std::vector<DiagnosticLine> diagnose() const override;

  private:
    std::string reason_;
    MainQueue& queue_;
};

} // namespace kova
