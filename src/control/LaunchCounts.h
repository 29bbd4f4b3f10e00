// How often each application was launched into a tile: a launcher lists the most used ones first. Main thread only.
#pragma once

#include "persistence/PreferencesStore.h"

#include <map>
#include <string>

namespace kova {

class LaunchCounts {
  public:
    /// The store outlives the counts.
    explicit LaunchCounts(PreferencesStore& preferences);

    /// Counts one more launch of the application; stored soon after.
    void countLaunch(const std::string& identifier);
    /// How often the application was launched; 0 if never.
    int of(const std::string& identifier) const;

  private:
    PreferencesStore& preferences_;
    std::map<std::string, int> counts_;
};

} // namespace kova
