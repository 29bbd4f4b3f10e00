// Names of slots for places that concern every layout, as rules do. The same slot may have another name in another
// layout, and the same name may denote another slot there. Plain values.
#pragma once

#include "layout/LayoutCatalogue.h"

#include <string>
#include <vector>

namespace kova {

struct SlotName {
    SlotID id;
    std::string name; // unique among the slots
    bool operator==(const SlotName&) const = default;
};

/// The slots of all layouts, in the order of their first occurrence in the catalogue. Each has the longest of its
/// names; if other slots have that name, too, the layouts that use it for this slot are appended.
std::vector<SlotName> slotNames(const std::vector<LayoutDefinition>& catalogue);
/// The name of the slot; the id itself if no layout has it.
std::string slotName(const std::vector<LayoutDefinition>& catalogue, const SlotID& slotID);

} // namespace kova
