// Renames windows and displays in containers keyed by their ids.
#pragma once

#include <set>
#include <utility>

namespace kova {

/// Does nothing if the former key does not exist. An entry that the new key already has is replaced.
template <class Map>
void renameKey(Map& map, const typename Map::key_type& formerKey, const typename Map::key_type& newKey) {
    auto entry = map.extract(formerKey);
    if (entry.empty()) return;
    map.insert_or_assign(newKey, std::move(entry.mapped()));
}

template <class Name>
void renameIn(std::set<Name>& names, const Name& formerName, const Name& newName) {
    if (names.erase(formerName) > 0) names.insert(newName);
}

} // namespace kova
