// Keeps preferences in memory only, as long as this object exists.
#pragma once

#include "persistence/PreferencesStore.h"
#include "persistence/UnusableValues.h"

#include <functional>
#include <map>

namespace kova {

class MemoryPreferencesStore : public PreferencesStore {
  public:
    std::optional<PreferenceValue> value(std::string_view key) const override;
    void setValue(std::string_view key, PreferenceValue value) override;
    void removeValue(std::string_view key) override;
    void save(SaveHandler done) override { done(std::nullopt); }
    void synchronize() override {}
    void noteUnusable(std::string_view key, const std::string& reason) override { unusable_.note(key, reason); }
    std::vector<std::string> problems() const override { return unusable_.texts(); }

    const std::map<std::string, PreferenceValue, std::less<>>& values() const { return values_; }

  private:
    std::map<std::string, PreferenceValue, std::less<>> values_;
    UnusableValues unusable_;
};

} // namespace kova
