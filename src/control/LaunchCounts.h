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

    /// One more launch of the application with that identifier; stored soon after.
    void note(const std::string& identifier);
    /// 0 for one that never was.
    int of(const std::string& identifier) const;

  private:
    PreferencesStore& preferences_;
    std::map<std::string, int> counts_;
};

} // namespace kova
