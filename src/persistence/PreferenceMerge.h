// Merges this agent's changes of a stored value (“ours”) with the changes that the user or another agent has made in
// the file (“theirs”).
#pragma once

#include <nlohmann/json.hpp>

#include <optional>
#include <string>
#include <vector>

namespace kova {

/// A value, or none.
using JsonOrAbsent = std::optional<nlohmann::json>;

enum class MergeWinner { ours, theirs };

struct MergeSides {
    JsonOrAbsent base;                      // our last write, or the value at the start
    JsonOrAbsent ours;                      // our new value
    JsonOrAbsent theirs;                    // the value in the file now
    JsonOrAbsent seen;                      // the value in the file at our last reading
    MergeWinner winner = MergeWinner::ours; // the side whose value is taken if both sides changed it
};

struct Merged {
    JsonOrAbsent value;
    /// Places such as "KOVA.workspaceProfile.v1.tileInset" at which our value replaced a change of theirs that is new
    /// since our last reading.
    std::vector<std::string> disputed;
};

/// Merges objects member by member, and lists of records that have an "id" record by record. Any other value is taken
/// as a whole from one side. `place` is the name of the value in `disputed`.
Merged merge(const std::string& place, const MergeSides& sides);

} // namespace kova
