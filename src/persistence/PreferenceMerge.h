// Merges the agent's changes of a stored value with the changes that the user or another agent made in the file.
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
    MergeWinner winner = MergeWinner::ours; // where both sides changed one value
};

struct Merged {
    JsonOrAbsent value;
    /// Places where a change of the other side was overruled for the first time: "KOVA.workspaceProfile.v1.tileInset".
    std::vector<std::string> disputed;
};

/// Merges objects member by member, and lists of records with an "id" record by record. Any other value is taken as a
/// whole from one side.
Merged merge(const std::string& place, const MergeSides& sides);

} // namespace kova
