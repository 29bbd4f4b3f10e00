#include "layout/SlotNames.h"

#include <algorithm>
#include <map>
#include <set>

namespace kova {

namespace {

std::string layoutsIn(const std::vector<LayoutDefinition>& catalogue, const SlotName& slot) {
    std::string names;
    for (const LayoutDefinition& layout : catalogue) {
        const auto found = std::ranges::find(layout.slots, slot.id, &TileSlot::id);
        if (found != layout.slots.end() && found->name == slot.name) names += (names.empty() ? "" : ", ") + layout.name;
    }
    return names;
}

} // namespace

std::vector<SlotName> slotNames(const std::vector<LayoutDefinition>& catalogue) {
    std::vector<SlotName> slots;
    std::map<std::string, std::set<SlotID>> slotsByName;
    for (const LayoutDefinition& layout : catalogue) {
        for (const TileSlot& slot : layout.slots) {
            slotsByName[slot.name].insert(slot.id);
            const auto known = std::ranges::find(slots, slot.id, &SlotName::id);
            if (known == slots.end()) {
                slots.push_back({slot.id, slot.name});
            } else if (slot.name.size() > known->name.size()) {
                known->name = slot.name;
            }
        }
    }
    for (SlotName& slot : slots) {
        if (slotsByName[slot.name].size() > 1) slot.name += " (" + layoutsIn(catalogue, slot) + ")";
    }
    return slots;
}

std::string slotName(const std::vector<LayoutDefinition>& catalogue, const SlotID& slotID) {
    const auto slots = slotNames(catalogue);
    const auto found = std::ranges::find(slots, slotID, &SlotName::id);
    return found == slots.end() ? slotID.text() : found->name;
}

} // namespace kova
