// Tests that every main queue and work queue must pass. A back end registers a stage that lets time pass.
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
    /// Runs the queue for that time.
    virtual void runFor(Seconds time) = 0;
    /// A worker beside the queue.
    virtual std::unique_ptr<WorkQueue> worker() = 0;
    /// Lets so much time pass inside a piece of work, while nothing else can run.
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
    /// Lets time pass until the story is long enough, or it is too late.
    void runUntilToldAtLeast(const std::string& story, std::size_t length) {
        for (int i = 0; i < 400 && story.size() < length; ++i) stage_->runFor(Seconds(0.05));
    }

  private:
    std::unique_ptr<QueueStage> stage_;
};

} // namespace kova::contract
