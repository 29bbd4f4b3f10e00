// Remembers whether the user has completed the onboarding. Main thread only.
#pragma once

#include "persistence/PreferenceKeys.h"
#include "persistence/PreferencesStore.h"
#include "persistence/StoredValues.h"
#include "support/Published.h"

namespace kova {

class KovaOnboardingState {
  public:
    /// The store outlives the state.
    explicit KovaOnboardingState(PreferencesStore& defaults) :
        defaults_(defaults), isCompleted_(storedBoolean(defaults, preferenceKey::onboardingCompleted).value_or(false)) {
    }

    const Published<bool>& isCompleted() const { return isCompleted_; }
    void complete() {
        if (*isCompleted_) return;
        defaults_.setValue(preferenceKey::onboardingCompleted, true);
        isCompleted_.set(true);
    }

  private:
    PreferencesStore& defaults_;
    Published<bool> isCompleted_;
};

} // namespace kova
