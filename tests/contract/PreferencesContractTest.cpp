#include "tests/contract/PreferencesContract.h"

namespace kova::contract {
namespace {

constexpr const char* kKey = "KOVA.showBrain.v1";

TEST_P(PreferencesContract, ValuesKeepTheirTypeAndAWrongTypeCountsAsAbsent) {
    EXPECT_EQ(store().value(kKey), std::nullopt);
    const PreferenceData record{R"({"a":[1,2.5,{"b":null}],"c":"é \" \\ \n"})"};
    const std::pair<const char*, PreferenceValue> kept[] = {
        {"KOVA.off.v1", false},
        {"KOVA.on.v1", true},
        {"KOVA.empty.v1", std::string()},
        {"KOVA.text.v1", std::string("caf\xc3\xa9 \"quoted\" \\ \n true")},
        {"KOVA.looksLikeABoolean.v1", std::string("true")},
        {"KOVA.looksLikeARecord.v1", std::string("{\"a\":1}")},
        {"KOVA.record.v1", record},
        {"KOVA.list.v1", PreferenceData{"[]"}},
        {"KOVA.odd name / with . and ünicode", true},
    };
    for (const auto& [key, value] : kept) store().setValue(key, value);
    for (const bool isRestarted : {false, true}) {
        if (isRestarted) restart();
        for (const auto& [key, value] : kept) {
            const auto read = store().value(key);
            ASSERT_TRUE(read) << key;
            EXPECT_EQ(read->index(), value.index()) << key << (isRestarted ? " after a restart" : "");
            EXPECT_EQ(*read, value) << key << (isRestarted ? " after a restart" : "");
            EXPECT_EQ(store().boolean(key).has_value(), std::holds_alternative<bool>(value)) << key;
            EXPECT_EQ(store().string(key).has_value(), std::holds_alternative<std::string>(value)) << key;
            EXPECT_EQ(store().data(key).has_value(), std::holds_alternative<PreferenceData>(value)) << key;
            EXPECT_TRUE(store().contains(key)) << key;
        }
    }
    EXPECT_TRUE(store().problems().empty());
    for (int i = 0; i < 2; ++i) store().noteUnusable("KOVA.record.v1", "a: expected a number");
    ASSERT_EQ(store().problems().size(), 1U);
    EXPECT_TRUE(store().problems()[0].starts_with("KOVA.record.v1 is not used as stored: a: expected a number"));
    store().setValue("KOVA.record.v1", PreferenceData{"{}"}); // a store on disk first copies the unusable value
    EXPECT_EQ(store().data("KOVA.record.v1"), PreferenceData{"{}"});
}

TEST_P(PreferencesContract, TheLastValueOfAKeyIsKeptAndRemovedKeysAreAbsent) {
    store().setValue(kKey, std::string("first"));
    store().setValue(kKey, true);
    store().setValue("KOVA.removed.v1", true);
    restart();
    EXPECT_EQ(store().boolean(kKey), true);
    EXPECT_EQ(store().string(kKey), std::nullopt);
    store().removeValue("KOVA.removed.v1");
    store().removeValue("KOVA.neverThere.v1");
    EXPECT_FALSE(store().contains("KOVA.removed.v1"));
    restart();
    EXPECT_FALSE(store().contains("KOVA.removed.v1"));
    EXPECT_TRUE(store().contains(kKey));
    store().setValue("KOVA.removed.v1", false);
    EXPECT_EQ(store().boolean("KOVA.removed.v1"), false);
}

TEST_P(PreferencesContract, ADeferredValueIsMadeBeforeItIsReadOrStored) {
    int made = 0;
    const auto setLater = [&](const char* key, PreferenceValue value) {
        store().setValueLater(key, [&made, value] {
            ++made;
            return value;
        });
    };
    setLater(kKey, true);
    EXPECT_EQ(store().boolean(kKey), true);
    EXPECT_TRUE(store().contains(kKey));
    setLater(kKey, std::string("newer"));
    EXPECT_EQ(store().string(kKey), "newer");
    store().setValue(kKey, false); // replaces the value that was set last
    EXPECT_EQ(store().boolean(kKey), false);
    setLater("KOVA.removed.v1", true);
    store().removeValue("KOVA.removed.v1");
    EXPECT_FALSE(store().contains("KOVA.removed.v1"));
    setLater("KOVA.later.v1", PreferenceData{"{\"a\":1}"});
    restart();
    EXPECT_EQ(store().boolean(kKey), false);
    EXPECT_FALSE(store().contains("KOVA.removed.v1"));
    EXPECT_EQ(store().data("KOVA.later.v1"), PreferenceData{"{\"a\":1}"});
    EXPECT_GT(made, 0);
}

} // namespace
} // namespace kova::contract
