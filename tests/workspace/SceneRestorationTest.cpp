#include "workspace/SceneRestoration.h"

#include <gtest/gtest.h>

using namespace kova;

namespace {

TileSlot slot(const std::string& id, double x, double y, double width, double height) {
    return {decltype(TileSlot::id)(id), "", makeRect(x, y, width, height)};
}

TEST(SceneRestoration, ASpanUsesItsSlotsOnlyIfTheyFormARectangleWithoutOtherSlots) {
    const std::vector slots{slot("a", 0, 0, .5, .5), slot("b", .5, 0, .5, .5), slot("c", 0, .5, .5, .5),
                            slot("d", .5, .5, .5, .5)};
    using IDs = decltype(slotsTaken(slots, "a", std::nullopt));
    const struct {
        const char* name;
        std::optional<IDs> claimed;
        IDs taken;
    } cases[] = {
        {"no span", std::nullopt, {"b"}},
        {"a row", IDs{"a", "b"}, {"b", "a"}},
        {"all", IDs{"a", "b", "c", "d"}, {"b", "a", "c", "d"}},
        {"a corner is left out", IDs{"a", "b", "c"}, {"b"}},
        {"a slot that the layout lacks", IDs{"b", "z"}, {"b"}},
    };
    for (const auto& each : cases) EXPECT_EQ(slotsTaken(slots, "b", each.claimed), each.taken) << each.name;
    EXPECT_TRUE(slotsTaken(slots, "z", IDs{"a"}).empty()) << "the layout lacks the slot of the placement";
}

TEST(SceneRestoration, TheOrderOfAStackDoesNotDependOnTheOrderInWhichWindowsAppear) {
    const auto restored = [](TileAssignments before, const std::vector<RestoredPlacement>& placements) {
        return withRestored(std::move(before), placements, {{"first", 0}, {"second", 1}, {"third", 2}});
    };
    const RestoredPlacement first{"first", {"D::a"}, 0, true};
    const RestoredPlacement second{"second", {"D::a"}, 1, false};
    const RestoredPlacement third{"third", {"D::a"}, 2, false};
    const TileAssignments whole = restored({}, {first, second, third});
    const auto& stack = whole.stackWindowIDsByTarget.at("D::a");
    EXPECT_EQ(stack, (std::remove_cvref_t<decltype(stack)>{"first", "second", "third"}));
    EXPECT_EQ(whole.targetOf("first"), "D::a");
    EXPECT_EQ(restored(restored({}, {third}), {second, first}), whole) << "the windows appeared in another order";
    EXPECT_TRUE(restored({}, {third}).isAssigned("third")) << "no tile stays empty for a window that may never appear";
}

TEST(SceneRestoration, AReturningSpanTakesOverTheStacksOfItsTiles) {
    TileAssignments before;
    (void)before.assign("notes", {"D::b"});
    const auto after = withRestored(before, {{"mail", {"D::a", "D::b"}, 0, true}}, {{"mail", 0}});
    EXPECT_TRUE(after.isSound());
    EXPECT_EQ(after.targetsOf("mail").size(), 2u);
    EXPECT_EQ(after.stackTargetOf("notes"), "D::a");
    const auto behind = withRestored(after, {{"codex", {"D::b"}, 1, false}}, {});
    EXPECT_EQ(behind.stackTargetOf("codex"), "D::a") << "a window behind a span is in the stack of the anchor";
}

TEST(SceneRestoration, PlacementsAreRestoredByDisplayTileAndStack) {
    const auto placement = [](std::int64_t display, SlotID slotID, std::int64_t index) {
        WorkspaceScenePlacement made;
        made.displayOrdinal = display;
        made.slotID = std::move(slotID);
        made.stackIndex = index;
        return made;
    };
    std::string order;
    for (const auto& each : inRestoringOrder({placement(1, "a", 0), placement(0, "b", 1), placement(0, "b", 0)})) {
        order += std::to_string(each.displayOrdinal) + std::to_string(each.stackIndex) + " ";
    }
    EXPECT_EQ(order, "00 01 10 ");
    EXPECT_TRUE(frontsItsTile(0, std::nullopt) && frontsItsTile(3, true));
    EXPECT_FALSE(frontsItsTile(1, std::nullopt) || frontsItsTile(0, false));
}

} // namespace
