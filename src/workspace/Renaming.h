// Names that change: a window that is known under another id, a display that has another one.
#pragma once

#include <set>
#include <string>
#include <utility>

namespace kova {

/// Nothing happens when the key is not there; an entry under the new key is replaced.
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
