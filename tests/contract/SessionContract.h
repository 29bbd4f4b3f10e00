// The contract tests of login sessions: every back end must pass them. Each back end registers a stage, which opens the
// session and simulates the events of the system.
#pragma once

#include "support/MainQueue.h"
#include "windowing/ScreenServicing.h"
#include "windowing/SystemActivityServicing.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <ostream>
#include <string>

namespace kova::contract {

class SessionStage {
  public:
    virtual ~SessionStage() = default;
    virtual SystemActivityServicing& activity() = 0;
    virtual SessionServicing& session() = 0;
    /// False for events that cannot be simulated here, or that this session does not report.
    virtual bool canSimulate(SystemActivityEvent) const { return true; }
    virtual void simulate(SystemActivityEvent event) = 0;
    /// Lets time pass until the condition holds; false if it does not hold in time.
    virtual bool runUntil(const std::function<bool()>& condition) = 0;
    virtual void runFor(Seconds time) = 0;
};

struct SessionBackend {
    std::string name;
    std::string missing; // why the back end cannot be tested here; empty if it can
    std::function<std::unique_ptr<SessionStage>()> open;
};
inline std::ostream& operator<<(std::ostream& stream, const SessionBackend& backend) {
    return stream << backend.name;
}

class SessionContract : public ::testing::TestWithParam<SessionBackend> {
  protected:
    void SetUp() override {
        if (!GetParam().missing.empty()) GTEST_SKIP() << GetParam().missing;
        stage_ = GetParam().open();
    }
    SessionStage& stage() { return *stage_; }

  private:
    std::unique_ptr<SessionStage> stage_;
};

} // namespace kova::contract
