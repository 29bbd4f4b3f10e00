// Preferences in the user's defaults, under the domain of the application. The system writes them by and by.
#pragma once

#include "persistence/PreferencesStore.h"

#include <string>

namespace kova::macos {

class UserDefaultsStore final : public PreferencesStore {
  public:
    /// A record is stored as data, a text as a string and a switch as a boolean; of any other type, also a number,
    /// counts as absent.
    std::optional<PreferenceValue> value(std::string_view key) const override;
    void setValue(std::string_view key, PreferenceValue value) override;
    void removeValue(std::string_view key) override;
    void synchronize() override;
    std::string problem() const override { return problem_; }

  private:
    std::string problem_;
};

} // namespace kova::macos
