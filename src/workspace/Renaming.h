// Renames windows and displays in containers keyed by their ids.
#pragma once

#include <set>
#include <string>
#include <utility>

namespace kova {

/// Does nothing if the key does not exist; replaces an entry under the new key.
template <class Map>
void renameKey(Map& map, const std::string& formerKey, const std::string& newKey) {
    auto entry = map.extract(formerKey);
    if (entry.empty()) return;
    map.insert_or_assign(newKey, std::move(entry.mapped()));
}

inline void renameIn(std::set<std::string>& names, const std::string& formerName, const std::string& newName) {
    if (names.erase(formerName) > 0) names.insert(newName);
}

} // namespace kova
