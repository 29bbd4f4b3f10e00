// Tests that every preferences store must pass. A back end registers a stage that opens it.
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
    /// As the next start of the agent finds it; where nothing is kept, the same store.
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
    void restart() {
        store().synchronize();
        stage_->reopen();
    }

  private:
    std::unique_ptr<PreferencesStage> stage_;
};

} // namespace kova::contract
