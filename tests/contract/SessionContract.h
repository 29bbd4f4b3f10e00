// Tests that every login session must pass. A back end registers a stage that can cause events.
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
    /// False for events that cannot be caused or are not reported here.
    virtual bool canUndergo(SystemActivityEvent) const { return true; }
    /// Causes the event.
    virtual void simulate(SystemActivityEvent event) = 0;
    virtual bool runUntil(const std::function<bool()>& condition) = 0;
    virtual void runFor(Seconds time) = 0;
};

struct SessionBackend {
    std::string name;
    std::string missing; // why it cannot be tried here; empty when it can
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
