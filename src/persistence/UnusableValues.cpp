#include "persistence/UnusableValues.h"

#include <algorithm>

namespace kova {

bool UnusableValues::note(std::string_view key, const std::string& reason) {
    const bool isKnown =
        std::ranges::any_of(entries_, [&](const Entry& entry) { return entry.key == key && entry.reason == reason; });
    if (!isKnown) entries_.push_back({std::string(key), reason, {}});
    return !isKnown;
}

std::set<std::string, std::less<>> UnusableValues::notKept() const {
    std::set<std::string, std::less<>> keys;
    for (const Entry& entry : entries_) {
        if (entry.place.empty()) keys.insert(entry.key);
    }
    return keys;
}

void UnusableValues::keptAt(const std::set<std::string, std::less<>>& keys, const std::string& place) {
    for (Entry& entry : entries_) {
        if (keys.contains(entry.key)) entry.place = place;
    }
}

std::vector<std::string> UnusableValues::texts() const {
    std::vector<std::string> texts;
    for (const Entry& entry : entries_) {
        texts.push_back(entry.key + " is not used as stored: " + entry.reason +
                        (entry.place.empty() ? ". A copy will be kept before it is overwritten"
                                             : ". What was stored is kept as " + entry.place));
    }
    return texts;
}

} // namespace kova
