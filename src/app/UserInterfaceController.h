// Keeps kova-ui, the program that draws the overlay, running while it is switched on, and reports its state. Main
// thread only.
#pragma once

#include "app/CrashBackoff.h"
#include "app/UserInterfaceServicing.h"
#include "control/ControlHandling.h"
#include "control/UserInterfaceControl.h"
#include "persistence/PreferencesStore.h"
#include "support/Lifetime.h"
#include "support/MainQueue.h"
#include "windowing/DiagnosticsServicing.h"

#include <cstdint>

namespace kova {

class UserInterfaceController final : public UserInterfaceControl, public DiagnosticsServicing {
  public:
    /// All arguments outlive the controller.
    UserInterfaceController(UserInterfaceServicing& service, PreferencesStore& preferences, MainQueue& queue);
    ~UserInterfaceController() override;
    UserInterfaceController(const UserInterfaceController&) = delete;
    UserInterfaceController& operator=(const UserInterfaceController&) = delete;

    /// Call when the workspace starts and stops. kova-ui runs in between if it is switched on.
    void start();
    void stop();

    std::optional<std::string> unavailableReason() const override { return service_.unavailableReason(); }
    UserInterfaceStatus status() const override;
    void setOn(bool isOn) override;
    bool restart() override;
    void reportProblem(const std::string& problem, std::weak_ptr<ControlPeer> reporter) override;
    std::vector<DiagnosticLine> diagnose() const override;

  private:
    std::optional<std::string> problem() const;
    void run();
    void end();
    void ended(UserInterfaceEnd how);

    UserInterfaceServicing& service_;
    PreferencesStore& preferences_;
    MainQueue& queue_;
    bool isOn_;
    bool isStarted_ = false; // the workspace
    CrashBackoff backoff_;
    std::optional<std::string> problem_; // why kova-ui does not run; reset at each start
    struct Report {
        std::string problem;
        std::weak_ptr<ControlPeer> reporter;
    };
    std::optional<Report> report_; // why the running kova-ui shows nothing; reset at each start
    std::uint64_t run_ = 0;        // counts starts and ends; callbacks of earlier runs are ignored
    Lifetime lifetime_;
};

} // namespace kova
