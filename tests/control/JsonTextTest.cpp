// JSON that `JsonText` writes is parsed again and compared with the values that were written.
#include "control/JsonText.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace kova {

namespace {

using nlohmann::json;

TEST(JsonText, IsParsedToTheValuesThatWereWritten) {
    const std::vector<std::pair<std::string, json>> texts = {
        {"", ""},
        {"Mail", "Mail"},
        {"a \"quoted\" \\ path,[{:", "a \"quoted\" \\ path,[{:"},
        {"line\nbreak\ttab\x01\x7f", "line\nbreak\ttab\x01\x7f"},
        {"Über 2×3 🙂", "Über 2×3 🙂"},
        {"cut \xe2\x82", "cut \xef\xbf\xbd"}, // not UTF-8
    };
    const std::vector<std::pair<double, json>> numbers = {
        {0, 0},         {-0.0, 0},
        {-1280, -1280}, {0.1, 0.1},
        {1e-7, 1e-7},   {9007199254740991, 9007199254740991},
        {1e300, 1e300}, {std::numeric_limits<double>::infinity(), nullptr},
    };
    JsonText out;
    json expected = json::object();
    out.beginObject();
    for (const auto& [text, value] : texts) {
        out.name(text);
        out.text(text);
        expected[value.get<std::string>()] = value;
    }
    out.name("numbers");
    out.beginArray();
    for (const auto& [number, value] : numbers) {
        out.number(number);
        expected["numbers"].push_back(value);
    }
    out.endArray();
    out.name("nested");
    out.beginArray();
    out.beginObject();
    out.endObject();
    out.beginArray();
    out.boolean(true);
    out.null();
    out.tree({{"id", 1}});
    out.endArray();
    out.beginObject();
    const std::size_t empty = out.length();
    out.name("dropped");
    out.integer(1);
    out.cutTo(empty);
    out.name("kept");
    out.boolean(false);
    out.endObject();
    out.endArray();
    out.endObject();
    expected["nested"] = json::parse(R"([{}, [true, null, {"id": 1}], {"kept": false}])");
    EXPECT_EQ(json::parse(out.take()), expected);
}

} // namespace

} // namespace kova
