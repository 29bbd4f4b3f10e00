#include "control/LaunchCounts.h"

#include "persistence/PreferenceKeys.h"
#include "persistence/StoredValues.h"
#include "support/JsonDecoding.h"

#include <algorithm>

namespace kova {

namespace {

using Counts = std::map<std::string, int>;

constexpr int kMostLaunches = 1'000'000;
constexpr std::size_t kMostApplications = 500; // so that removed applications do not accumulate

Decoded<Counts> decodeCounts(std::string_view text) {
    return decodeJson(text, [](const JsonCursor& at) {
        Counts counts;
        for (const auto& [identifier, count] : at.members()) {
            const auto number = count.integer();
            if (number < 0) count.fail("must not be negative");
            counts[identifier] = static_cast<int>(std::min<std::int64_t>(number, kMostLaunches));
        }
        return counts;
    });
}

} // namespace

LaunchCounts::LaunchCounts(PreferencesStore& preferences) :
    preferences_(preferences),
    counts_(storedRecord<Counts>(preferences, preferenceKey::launchCounts, decodeCounts).value_or(Counts{})) {}

void LaunchCounts::countLaunch(const std::string& identifier) {
    int& count = counts_[identifier];
    count = std::min(count + 1, kMostLaunches);
    if (counts_.size() > kMostApplications) {
        const auto isJustLaunched = [&](const auto& entry) { return entry.first == identifier; };
        counts_.erase(std::ranges::min_element(
            counts_, {}, [&](const auto& entry) { return isJustLaunched(entry) ? kMostLaunches + 1 : entry.second; }));
    }
    const nlohmann::json record = counts_;
    preferences_.setValue(preferenceKey::launchCounts,
                          PreferenceData{record.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace)});
}

int LaunchCounts::of(const std::string& identifier) const {
    const auto found = counts_.find(identifier);
    return found == counts_.end() ? 0 : found->second;
}

} // namespace kova
