// Unambiguous names of slots, for settings that concern every layout, such as rules. The names within layouts are
// ambiguous: two layouts may give one slot different names, or two slots the same name.
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
