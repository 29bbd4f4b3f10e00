#include "support/Geometry.h"
#include "support/JsonDecoding.h"
#include "support/Lifetime.h"
#include "support/Published.h"
#include "support/Uuid.h"
#include "support/text/Text.h"

#include <gtest/gtest.h>

#include <functional>
#include <set>

using namespace kova;

TEST(Geometry, ConvertsBetweenTheCoordinateSpaces) {
    // The visible frame of a second screen, to the right of a first screen that is 1440 points high. The second screen
    // extends below the first one.
    const CGRect visibleOnScreen = makeRect(2560, -200, 1920, 1050);
    const CGRect onScreen = tileFrameOnScreen(makeRect(10, 10, 600, 400), visibleOnScreen);
    EXPECT_EQ(onScreen, makeRect(2570, 440, 600, 400));
    const CGRect forWindowService = flipped(onScreen, 1440);
    EXPECT_EQ(forWindowService, makeRect(2570, 600, 600, 400));
    EXPECT_EQ(flipped(forWindowService, 1440), onScreen);
    EXPECT_EQ(flipped(CGPoint{3, 1440}, 1440), (CGPoint{3, 0}));
}

TEST(Geometry, RectanglesAreJoinedIntersectedAndCompared) {
    const CGRect a = makeRect(0, 0, 10, 10);
    EXPECT_EQ(unionOf(a, makeRect(20, -5, 1, 1)), makeRect(0, -5, 21, 15));
    EXPECT_EQ(intersectionArea(a, makeRect(8, 5, 10, 10)), 10);
    EXPECT_EQ(intersectionArea(a, makeRect(10, 0, 10, 10)), 0);
    EXPECT_EQ(intersectionArea(a, makeRect(20, 20, 5, 5)), 0);
    EXPECT_TRUE(containsPoint(a, {0, 0}));
    EXPECT_FALSE(containsPoint(a, {10, 5}));
    EXPECT_FALSE(containsPoint(a, {5, 10}));
    EXPECT_TRUE(containsWithin(a, makeRect(-2, 0, 12, 12), 2));
    EXPECT_FALSE(containsWithin(a, makeRect(-2, 0, 12, 12.1), 2));
    EXPECT_EQ(insetBy(a, 3), makeRect(3, 3, 4, 4));
    EXPECT_EQ(insetBy(makeRect(0, 0, 10, 4), 3), makeRect(3, 2, 4, 0));
    EXPECT_TRUE(nearlyEqual(a, makeRect(2, -2, 12, 8), 2));
    EXPECT_FALSE(nearlyEqual(a, makeRect(0, 0, 10, 12.1), 2));
}

TEST(Text, IgnoresCaseAndTrimsSpacesInEveryScript) {
    EXPECT_EQ(lowercased("ÄRGER"), lowercased("A\u0308rger"));
    EXPECT_EQ(lowercased("ΑΘΉΝΑ"), "αθήνα");
    EXPECT_EQ(trimmed("\u00A0\u2003 Mail \u3000\r\n"), "Mail");
    EXPECT_EQ(trimmed(" \t"), "");
    EXPECT_EQ(localizedCaseInsensitiveCompare("Élan", "e\u0301lan"), 0);
    EXPECT_LT(localizedCaseInsensitiveCompare("apple", "Zebra"), 0);
    EXPECT_GT(localizedCaseInsensitiveCompare("Éclair", "apple"), 0);
    EXPECT_NE(localizedCaseInsensitiveCompare("resume", "résumé"), 0);
    EXPECT_EQ(validUtf8("a\xff\xc3"
                        "b"),
              "a\uFFFD\uFFFD"
              "b");
    EXPECT_EQ(validUtf8(std::string_view("a\0b", 3)), "ab");
}

TEST(Uuid, IsParsedInEitherCaseAndARandomOneHasVersion4) {
    EXPECT_EQ(Uuid::parse("0c8a2f6e-6f0d-4c39-9a52-3a0b6f5d1e77")->string(), "0C8A2F6E-6F0D-4C39-9A52-3A0B6F5D1E77");
    for (const char* wrong : {"", "0c8a2f6e-6f0d-4c39-9a52-3a0b6f5d1e7", "0c8a2f6e-6f0d-4c39-9a52-3a0b6f5d1e7g",
                              "0c8a2f6e-6f0d-4c39-9a5203a0b6f5d1e77", "{c8a2f6e-6f0d-4c39-9a52-3a0b6f5d1e7}"}) {
        EXPECT_FALSE(Uuid::parse(wrong)) << wrong;
    }
    std::set<Uuid> seen;
    for (int i = 0; i < 100; ++i) {
        const Uuid made = Uuid::random();
        EXPECT_EQ(Uuid::parse(made.string()), made);
        EXPECT_EQ(made.string()[14], '4');
        EXPECT_NE(std::string("89AB").find(made.string()[19]), std::string::npos);
        seen.insert(made);
    }
    EXPECT_EQ(seen.size(), 100U);
}

TEST(JsonDecoding, ErrorsNameThePlaceAndTheReason) {
    using Read = std::function<void(const JsonCursor&)>;
    struct Case {
        const char* text;
        Read read;
        std::string expected;
    };
    const Read member = [](const JsonCursor& at) { at.required("a").elements().at(1).required("b").string(); };
    const Read integer = [](const JsonCursor& at) { at.integer(); };
    const Case cases[] = {
        {R"({"a": [0, {"b": "x"}]})", member, ""},
        {R"({"a": [0, {"b": 5}]})", member, "a[1].b: expected a string"},
        {R"({"a": [0, {"b": null}]})", member, "a[1].b: must not be null"},
        {R"({"a": [0, {}]})", member, "a[1].b: is missing"},
        {R"({"a": [0, 1]})", member, "a[1]: expected an object"},
        {R"({"a": {}})", member, "a: expected an array"},
        {"1.0", integer, ""},
        {"1.5", integer, "expected an integer"},
        {"1e300", integer, "integer out of range"},
        {"9223372036854775807", integer, ""},
        {"9223372036854775808", integer, "integer out of range"},
        {"-9223372036854775808", integer, ""},
        {"-9223372036854775809", integer, "integer out of range"},
        {"true", integer, "expected an integer"},
        {"true", [](const JsonCursor& at) { at.number(); }, "expected a number"},
        {"1", [](const JsonCursor& at) { at.boolean(); }, "expected true or false"},
        {"{}", [](const JsonCursor& at) { at.soleCase(); }, "Invalid number of keys found, expected one."},
    };
    for (const auto& c : cases) {
        std::string error;
        try {
            c.read(JsonCursor(parseJson(c.text), ""));
        } catch (const DecodingError& caught) {
            error = caught.what();
        }
        EXPECT_EQ(error, c.expected) << c.text;
    }
    EXPECT_EQ(JsonCursor(parseJson("1.0"), "").integer(), 1);
    EXPECT_FALSE(JsonCursor(parseJson(R"({"a": null})"), "").optional("a"));
    EXPECT_NO_THROW(parseJson(std::string(60, '[') + std::string(60, ']')));
    EXPECT_NO_THROW(parseJson("\"\\\"" + std::string(100, '[') + "\"")) << "brackets within a text";
}

/// With a time that grows with the square of the length, this test would exceed the time limit of every test.
TEST(JsonDecoding, TakesTimeInProportionToTheLengthOfTheText) {
    std::string text = "[{}";
    for (int i = 0; i < 1'000'000; ++i) text += ",{}";
    EXPECT_EQ(parseJson(text + "]").size(), 1'000'001U);
}

TEST(JsonDecoding, InvalidTextIsReportedWithItsPosition) {
    const std::string tooDeep = "nested deeper than 64 levels";
    const std::pair<std::string, std::string> cases[] = {
        {std::string(100000, '['), tooDeep},
        {std::string(80, '[') + std::string(80, ']'), tooDeep},
        {"", "not JSON at byte 1: "},
        {"{", "not JSON at byte 2: "},
        {"{\n\"a\": tru}", "not JSON at byte 11: "},
        {"\"\xff\"", "not JSON at byte 2: "},
        {"[1e999]", "number out of range: '1e999'"},
    };
    for (const auto& [text, expected] : cases) {
        std::string error = "none";
        try {
            parseJson(text);
        } catch (const DecodingError& caught) {
            error = caught.what();
        }
        EXPECT_EQ(error.substr(0, expected.size()), expected) << text.substr(0, 20);
        EXPECT_EQ(error.find("json.exception"), std::string::npos) << error;
        EXPECT_EQ(error.find("column"), std::string::npos) << error;
        EXPECT_NE(error, expected.ends_with(": ") ? expected : "") << "an error without a reason";
    }
}

TEST(Published, NotifiesOfChangesOnly) {
    Published<int> value(1);
    std::string notified;
    auto first = value.observe([&](const int& now) { notified += "a" + std::to_string(now) + " "; });
    Subscription late;
    {
        auto second = value.observe([&](const int& now) {
            notified += "b" + std::to_string(now) + " ";
            if (now == 2)
                late = value.observe([&](const int& later) { notified += "c" + std::to_string(later) + " "; });
        });
        value.set(1);
        value.set(2);
        value.set(3);
    }
    first = {};
    value.set(4);
    EXPECT_EQ(notified, "a2 b2 a3 b3 c3 c4 ");
}

TEST(Published, IfAnObserverSetsAnotherValueLaterObserversGetOnlyThatValue) {
    Published<std::string> value("calm");
    std::string notified;
    const auto before = value.observe([&](const std::string& now) { notified += "a:" + now + " "; });
    const auto setting = value.observe([&](const std::string& now) {
        if (now == "wanted") value.set("corrected, and too long for the buffer of a short string");
        notified += "b:" + now.substr(0, 9) + " ";
    });
    const auto after = value.observe([&](const std::string& now) { notified += "c:" + now.substr(0, 9) + " "; });
    value.set("wanted");
    EXPECT_EQ(notified,
              "a:wanted a:corrected, and too long for the buffer of a short string b:corrected c:corrected b:wanted ");
    notified.clear();
    value.set("calm");
    EXPECT_EQ(notified, "a:calm b:calm c:calm ");
}

TEST(Lifetime, CallbacksAfterItsEndAreDropped) {
    int calls = 0;
    std::function<void(int)> callback;
    {
        Lifetime lifetime;
        callback = lifetime.guard([&](int by) { calls += by; });
        callback(2);
    }
    callback(5);
    EXPECT_EQ(calls, 2);
}
