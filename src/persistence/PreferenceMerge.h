// Brings together what the agent changed in a stored value and what a person, or another agent, changed in it
// meanwhile.
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
    JsonOrAbsent base;                      // what we wrote last, or found at the start
    JsonOrAbsent ours;                      // what we want to write
    JsonOrAbsent theirs;                    // what is stored now
    JsonOrAbsent seen;                      // what was stored when we last looked
    MergeWinner winner = MergeWinner::ours; // where both sides changed one value
};

struct Merged {
    JsonOrAbsent value;
    /// Places where a change that was never seen before gave way: "KOVA.workspaceProfile.v1.tileInset".
    std::vector<std::string> disputed;
};

/// Objects are merged by member, lists of records with an "id" by record, everything else as a whole.
Merged merge(const std::string& place, const MergeSides& sides);

} // namespace kova
