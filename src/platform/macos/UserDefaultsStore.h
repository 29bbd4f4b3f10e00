// Preferences in the user's defaults, in the application's domain. The system writes them with a delay.
#pragma once

#include "persistence/PreferencesStore.h"
#include "persistence/UnusableValues.h"
#include "support/Lifetime.h"

#include <string>
#include <vector>

namespace kova::macos {

class UserDefaultsStore final : public PreferencesStore {
  public:
    /// A record is stored as data, a text as a string and a switch as a boolean; a value of any other type, also a
    /// number, counts as absent.
    std::optional<PreferenceValue> value(std::string_view key) const override;
    bool contains(std::string_view key) const override;
    void setValue(std::string_view key, PreferenceValue value) override;
    void removeValue(std::string_view key) override;
    void save(SaveHandler done) override;
    void synchronize() override;
    /// The copy is kept in the same domain, under the key followed by ".damaged-" and the date.
    void noteUnusable(std::string_view key, const std::string& reason) override;
    std::vector<std::string> problems() const override;

  private:
    void keepCopy(std::string_view key);
    void noteWritten(bool isWritten);

    UnusableValues unusable_;
    std::string writeProblem_;
    Lifetime lifetime_;
};

} // namespace kova::macos
