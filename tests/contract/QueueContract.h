// The contract tests of main queues and work queues: every queue must pass them. Each back end registers a stage, which
// makes the queues and lets time pass.
#pragma once

#include "support/MainQueue.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

namespace kova::contract {

class QueueStage {
  public:
    virtual ~QueueStage() = default;
    virtual MainQueue& queue() = 0;
    /// Runs the main queue for that time.
    virtual void runFor(Seconds time) = 0;
    virtual std::unique_ptr<WorkQueue> makeWorker() = 0;
    /// Call inside a piece of work: lets the time pass before the call returns, so that no other work can run.
    virtual void beBusyFor(Seconds time) = 0;
};

struct QueueBackend {
    std::string name;
    std::function<std::unique_ptr<QueueStage>()> open;
};
inline std::ostream& operator<<(std::ostream& stream, const QueueBackend& backend) {
    return stream << backend.name;
}

class QueueContract : public ::testing::TestWithParam<QueueBackend> {
  protected:
    QueueContract() : stage_(GetParam().open()) {}
    QueueStage& stage() { return *stage_; }
    MainQueue& queue() { return stage_->queue(); }
    /// Runs the main queue until the log has that length, but for at most 20 s.
    void runUntilLength(const std::string& log, std::size_t length) {
        for (int i = 0; i < 400 && log.size() < length; ++i) stage_->runFor(Seconds(0.05));
    }

  private:
    std::unique_ptr<QueueStage> stage_;
};

} // namespace kova::contract
