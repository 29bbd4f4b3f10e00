#include "persistence/PreferenceMerge.h"

#include <gtest/gtest.h>

namespace kova {
namespace {

using nlohmann::json;

/// An empty text stands for no value.
JsonOrAbsent parsed(const char* text) {
    if (!*text) return std::nullopt;
    return json::parse(text);
}

TEST(PreferenceMerge, MergesTheChangesOfBothSides) {
    struct Case {
        const char* base;
        const char* ours;
        const char* theirs;
        const char* merged;
        std::string disputed = "";
    };
    const Case cases[] = {
        {"1", "1", "2", "2"},
        {"1", "2", "1", "2"},
        {"1", "2", "2", "2"},
        {"1", "", "1", ""},
        {"1", "1", "", ""},
        {"", "1", "2", "1", "k"},
        {"1", "", "2", "", "k"},
        {R"({"a":1,"b":1,"c":1})", R"({"a":2,"b":1,"d":1})", R"({"a":1,"b":3,"c":1})", R"({"a":2,"b":3,"d":1})"},
        {R"({"a":{"x":1,"y":1}})", R"({"a":{"x":2,"y":1}})", R"({"a":{"x":3,"y":4}})", R"({"a":{"x":2,"y":4}})",
         "k.a.x"},
        {"", R"({"a":1,"c":1})", R"({"b":1,"c":1})", R"({"a":1,"b":1,"c":1})"},
        {"{}", R"({"a":1})", R"({"b":1})", R"({"a":1,"b":1})"},
        // Different cases of an enumeration are not merged into one value.
        {R"({"float":{}})", R"({"tile":{"slotID":"a"}})", R"({"ignore":{}})", R"({"tile":{"slotID":"a"}})", "k"},
        // Records of a list: one added by each side, one removed, one edited.
        {R"([{"id":"1","n":1},{"id":"2"}])", R"([{"id":"1","n":2},{"id":"2"},{"id":"3"}])",
         R"([{"id":"1","n":1},{"id":"4"}])", R"([{"id":"1","n":2},{"id":"4"},{"id":"3"}])"},
        {R"([{"id":"1","n":1,"m":1}])", R"([{"id":"1","n":2,"m":1}])", R"([{"id":"1","n":3,"m":3}])",
         R"([{"id":"1","n":2,"m":3}])", "k[1].n"},
        {R"([{"id":"1"},{"id":"2"}])", R"([{"id":"2"},{"id":"1"}])", R"([{"id":"1"},{"id":"3"},{"id":"2"}])",
         R"([{"id":"2"},{"id":"1"},{"id":"3"}])"},
        {R"([{"id":"1","n":1}])", "[]", R"([{"id":"1","n":2}])", "[]", "k[1]"},
        // Any other list is one value.
        {"[1,2]", "[1,2,3]", "[0,1,2]", "[1,2,3]", "k"},
        {R"([{"id":"1"},{"id":"1"}])", R"([{"id":"1"}])", R"([{"id":"2"}])", R"([{"id":"1"}])", "k"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.base) + " → " + c.ours + " and " + c.theirs);
        MergeSides sides{parsed(c.base), parsed(c.ours), parsed(c.theirs), parsed(c.base)};
        const auto merged = merge("k", sides);
        EXPECT_EQ(merged.value, parsed(c.merged)) << (merged.value ? merged.value->dump() : "none");
        std::string disputed;
        for (const auto& place : merged.disputed) disputed += place;
        EXPECT_EQ(disputed, c.disputed);
        sides.seen = sides.theirs; // our side had read the other change, so no change is disputed
        EXPECT_EQ(merge("k", sides).value, parsed(c.merged));
        EXPECT_TRUE(merge("k", sides).disputed.empty());
        sides.winner = MergeWinner::theirs;
        if (c.disputed == "k") {
            EXPECT_EQ(merge("k", sides).value, sides.theirs);
        }
    }
}

} // namespace
} // namespace kova
