// Counts how often each application was launched into a tile. A launcher lists the most used applications first. Main
// thread only.
#pragma once

#include "persistence/PreferencesStore.h"

#include <map>
#include <string>

namespace kova {

class LaunchCounts {
  public:
    /// `preferences` outlive the counts.
    explicit LaunchCounts(PreferencesStore& preferences);

    /// Counts one more launch of the application. The preferences are saved soon afterwards.
    void countLaunch(const std::string& identifier);
    /// How often the application was launched; 0 if never.
    int of(const std::string& identifier) const;

  private:
    PreferencesStore& preferences_;
    std::map<std::string, int> counts_;
};

} // namespace kova
