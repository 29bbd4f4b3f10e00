#include "persistence/PreferenceMerge.h"

#include <map>
#include <set>
#include <string_view>

namespace kova {

namespace {

using nlohmann::json;

/// The values at one place of the four records in `MergeSides`; null where a record has no value.
struct Sides {
    const json* base = nullptr;
    const json* ours = nullptr;
    const json* theirs = nullptr;
    const json* seen = nullptr;
};

bool same(const json* a, const json* b) {
    return a && b ? *a == *b : a == b;
}

const json* member(const json* object, const std::string& key) {
    if (!object || !object->is_object()) return nullptr;
    const auto found = object->find(key);
    return found == object->end() ? nullptr : &*found;
}

/// Whether both sides changed an enumeration with a payload to different cases. It is stored as an object with one key,
/// the name of the case, and two cases must not be merged into one object.
bool areDifferentCases(const Sides& sides) {
    return sides.base && sides.base->size() == 1 && sides.ours->size() == 1 && sides.theirs->size() == 1 &&
           sides.ours->begin().key() != sides.theirs->begin().key();
}

using Records = std::map<std::string, const json*>;

/// The records of a list by their ids; empty if the list is absent. No result if the value is not a list of records
/// with unique ids.
std::optional<Records> recordsOf(const json* list) {
    if (!list) return Records();
    if (!list->is_array()) return std::nullopt;
    Records records;
    for (const json& entry : *list) {
        const json* id = member(&entry, "id");
        if (!id || !id->is_string() || !records.emplace(id->get<std::string>(), &entry).second) return std::nullopt;
    }
    return records;
}

/// The ids of the list's records in their order, but only ids that are also in `among`.
std::vector<std::string> order(const json* list, const Records& among) {
    std::vector<std::string> ids;
    if (!list) return ids;
    for (const json& entry : *list) {
        std::string id = entry["id"].get<std::string>();
        if (among.contains(id)) ids.push_back(std::move(id));
    }
    return ids;
}

class Merger {
  public:
    explicit Merger(MergeWinner winner) : winner_(winner) {}

    std::vector<std::string> disputed;

    JsonOrAbsent at(const std::string& place, const Sides& sides) {
        const auto value = [](const json* chosen) { return chosen ? JsonOrAbsent(*chosen) : std::nullopt; };
        if (same(sides.ours, sides.base) || same(sides.ours, sides.theirs)) return value(sides.theirs);
        if (same(sides.theirs, sides.base)) return value(sides.ours);
        if (sides.ours && sides.theirs) {
            if (sides.ours->is_object() && sides.theirs->is_object() && !areDifferentCases(sides)) {
                return membersOf(place, sides);
            }
            if (auto list = listOf(place, sides)) return list;
        }
        if (!same(sides.theirs, sides.seen) && winner_ == MergeWinner::ours) disputed.push_back(place);
        return value(winner_ == MergeWinner::ours ? sides.ours : sides.theirs);
    }

  private:
    json membersOf(const std::string& place, const Sides& sides) {
        std::set<std::string> keys;
        for (const json* side : {sides.ours, sides.theirs}) {
            for (const auto& entry : side->items()) keys.insert(entry.key());
        }
        json merged = json::object();
        for (const auto& key : keys) {
            auto value = at(place + "." + key, {member(sides.base, key), member(sides.ours, key),
                                                member(sides.theirs, key), member(sides.seen, key)});
            if (value) merged[key] = *std::move(value);
        }
        return merged;
    }

    /// The merged list of records; absent if the values are not such lists.
    JsonOrAbsent listOf(const std::string& place, const Sides& sides) {
        const auto base = recordsOf(sides.base), ours = recordsOf(sides.ours), theirs = recordsOf(sides.theirs);
        if (!base || !ours || !theirs || !sides.ours->is_array() || !sides.theirs->is_array()) return std::nullopt;
        const auto seen = recordsOf(sides.seen).value_or(Records());
        const auto find = [](const Records& records, const std::string& id) {
            const auto found = records.find(id);
            return found == records.end() ? nullptr : found->second;
        };
        // If our side rearranged the records, the result has our order, else their order. New records of the other side
        // come last.
        const bool isOrderOurs = order(sides.ours, *base) != order(sides.base, *ours);
        auto ids = order(isOrderOurs ? sides.ours : sides.theirs, isOrderOurs ? *ours : *theirs);
        const std::set<std::string> ordered(ids.begin(), ids.end());
        for (auto& id : order(isOrderOurs ? sides.theirs : sides.ours, isOrderOurs ? *theirs : *ours)) {
            if (!ordered.contains(id)) ids.push_back(std::move(id));
        }
        json merged = json::array();
        for (const auto& id : ids) {
            auto record =
                at(place + "[" + id + "]", {find(*base, id), find(*ours, id), find(*theirs, id), find(seen, id)});
            if (record) merged.push_back(*std::move(record));
        }
        return merged;
    }

    const MergeWinner winner_;
};

const json* pointer(const JsonOrAbsent& value) {
    return value ? &*value : nullptr;
}

} // namespace

Merged merge(const std::string& place, const MergeSides& sides) {
    Merger merger(sides.winner);
    auto value =
        merger.at(place, {pointer(sides.base), pointer(sides.ours), pointer(sides.theirs), pointer(sides.seen)});
    return {std::move(value), std::move(merger.disputed)};
}

} // namespace kova
