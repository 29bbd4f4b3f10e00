#include "layout/LayoutFit.h"

#include <gtest/gtest.h>

namespace kova {
namespace {

TEST(LayoutFit, ReportsByHowMuchTilesAreTooSmallAfterTheyHaveGrown) {
    struct Case {
        const char* layout;
        std::vector<CGSize> windows;
        std::vector<CGSize> lacking;
    };
    // The area has 2000 by 1000 points; there are no insets, but each tile of a column has a footer.
    const std::vector<Case> cases{
        {"jarvis.dual-split", {}, {}},
        {"jarvis.dual-split", {{900, 500}, {900, 500}}, {{}, {}}},
        {"jarvis.dual-split", {{500, 500}, {1300, 500}}, {{}, {}}}, // one tile grows at the cost of the other
        {"jarvis.dual-stack", {{1900, 300}, {1900, 600}}, {{}, {}}},
        {"jarvis.dual-stack", {{2600, 300}}, {{600, 0}}},
        {"jarvis.focus-single", {{500, 500}, {2100, 500}}, {{}, {100, 0}}}, // one window is stacked
        {"jarvis.focus-single", {{2100, 500}, {2100, 500}}, {{100, 0}, {100, 0}}},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.layout);
        const LayoutDefinition* layout = findLayout(builtInLayouts(), each.layout);
        ASSERT_TRUE(layout);
        const auto found = shortfalls(*layout, each.windows, {2000, 1000}, 0);
        ASSERT_EQ(found.size(), each.windows.size());
        for (std::size_t i = 0; i < found.size(); ++i) {
            EXPECT_NEAR(found[i].width, each.lacking[i].width, 40) << i; // the margins take some points
            EXPECT_NEAR(found[i].height, each.lacking[i].height, 1) << i;
        }
    }
    const LayoutDefinition* split = findLayout(builtInLayouts(), "jarvis.dual-split");
    const auto tooWide = shortfalls(*split, {{1300, 500}, {1300, 500}}, {2000, 1000}, 0);
    EXPECT_GT(tooWide[0].width + tooWide[1].width, 550) << "both windows need 2600 points together";
}

} // namespace
} // namespace kova
