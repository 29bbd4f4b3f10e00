#include "persistence/MemoryPreferencesStore.h"

#include <utility>

namespace kova {

std::optional<PreferenceValue> MemoryPreferencesStore::value(std::string_view key) const {
    const auto found = values_.find(key);
    if (found == values_.end()) return std::nullopt;
    return found->second;
}

void MemoryPreferencesStore::setValue(std::string_view key, PreferenceValue value) {
    values_.insert_or_assign(std::string(key), std::move(value));
}

void MemoryPreferencesStore::removeValue(std::string_view key) {
    if (const auto found = values_.find(key); found != values_.end()) values_.erase(found);
}

} // namespace kova
