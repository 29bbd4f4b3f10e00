// Stores the preferences in the user's defaults, in the domain of the application. The system writes them to disk
// later.
#pragma once

#include "persistence/PreferencesStore.h"
#include "persistence/UnusableValues.h"
#include "support/Lifetime.h"

#include <string>
#include <vector>

namespace kova::macos {

class UserDefaultsStore final : public PreferencesStore {
  public:
    /// Reads data as a record, a string as a text, and a boolean as a bool. A value of another type counts as absent,
    /// for example a number.
    std::optional<PreferenceValue> value(std::string_view key) const override;
    bool contains(std::string_view key) const override;
    void setValue(std::string_view key, PreferenceValue value) override;
    void removeValue(std::string_view key) override;
    void save(SaveHandler done) override;
    void synchronize() override;
    /// The copy of the value is stored in the same domain. Its key is the original key followed by ".damaged-" and the
    /// date.
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
