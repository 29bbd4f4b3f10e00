#include "layout/SlotNames.h"

#include <gtest/gtest.h>

namespace kova {

TEST(SlotNames, EachNameDenotesOneSlot) {
    std::string names;
    for (const SlotName& slot : slotNames(builtInLayouts())) names += slot.id.text() + ": " + slot.name + "\n";
    EXPECT_EQ(names, "focus-main: Primary\n"
                     "focus-utility: Utility\n"
                     "focus-right-top: Reference\n"
                     "focus-right-bottom: Secondary (Focus + Utility, Compact Focus)\n"
                     "secondary-1: Secondary 1\n"
                     "secondary-2: Secondary 2\n"
                     "secondary-3: Secondary 3\n"
                     "secondary-4: Secondary 4\n"
                     "secondary-5: Secondary 5\n");
    EXPECT_EQ(slotName(builtInLayouts(), "no-such-slot"), "no-such-slot");
}

} // namespace kova
