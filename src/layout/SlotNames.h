// Names of slots for places that concern every layout, as rules do. The same slot may have another name in another
// layout, and the same name may denote another slot there. Plain values.
#pragma once

#include "layout/LayoutCatalogue.h"

#include <string>
#include <vector>

namespace kova {

struct SlotName {
    SlotID id;
    std::string name; // of no other slot
    bool operator==(const SlotName&) const = default;
};

/// The slots of all layouts, in the order in which the catalogue first has them. Each has the longest of its names,
/// with the layouts in which it is called so where other slots have that name, too.
std::vector<SlotName> slotNames(const std::vector<LayoutDefinition>& catalogue);
/// The name of one of them; the id itself if no layout has it.
std::string slotName(const std::vector<LayoutDefinition>& catalogue, const SlotID& slotID);

} // namespace kova
