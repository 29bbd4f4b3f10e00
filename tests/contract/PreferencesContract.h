// The contract tests of preferences stores: every store must pass them. Each back end registers a stage, which opens
// the store for a test.
#pragma once

#include "persistence/PreferencesStore.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <ostream>
#include <string>

namespace kova::contract {

class PreferencesStage {
  public:
    virtual ~PreferencesStage() = default;
    virtual PreferencesStore& store() = 0;
    /// Opens the store again, as the next start of the agent does. No effect on a store in memory.
    virtual void reopen() = 0;
};

struct PreferencesBackend {
    std::string name;
    std::function<std::unique_ptr<PreferencesStage>()> open;
};
inline std::ostream& operator<<(std::ostream& stream, const PreferencesBackend& backend) {
    return stream << backend.name;
}

class PreferencesContract : public ::testing::TestWithParam<PreferencesBackend> {
  protected:
    PreferencesContract() : stage_(GetParam().open()) {}
    PreferencesStore& store() { return stage_->store(); }
    /// Saves the values and opens the store again.
    void restart() {
        store().synchronize();
        stage_->reopen();
    }

  private:
    std::unique_ptr<PreferencesStage> stage_;
};

} // namespace kova::contract
