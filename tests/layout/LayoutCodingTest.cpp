#include "layout/LayoutCoding.h"
#include "layout/AutoArrangeLearning.h"
#include "tests/layout/Numbers.h"

#include <gtest/gtest.h>

using namespace kova;
using nlohmann::json;

namespace {

const char* const kProfile = R"({
    "id": "0c8a2f6e-6f0d-4c39-9a52-3a0b6f5d1e77", "name": "Desk", "themeID": "jarvis.neon-cyan",
    "layoutID": "jarvis.quad-grid", "tileInset": 7.5, "autoArrangeOnLaunch": true,
    "preferredApplications": {"editor": "org.gnu.emacs"},
    "layoutSelectionsByDisplay": {"display-A": {"layout": {"id": "jarvis.six-grid"}}, "display-B": {"automatic": {}}},
    "applicationMinimumSizes": {"org.gnu.emacs": [480, 320.5]},
    "layoutWeightsByDisplay": {"display-A": {"jarvis.six-grid": {"splits": {"root": [1180, 1320], "root.1": [0.5, 0.5]}}}}
})";

/// `kProfile` with some keys replaced, or removed if their value is null.
std::string profileWith(const json& changes) {
    json document = json::parse(kProfile);
    for (const auto& [key, value] : changes.items()) {
        if (value.is_null()) {
            document.erase(key);
        } else {
            document[key] = value;
        }
    }
    return document.dump();
}

std::string errorOf(const std::string& text) {
    const auto decoded = decodeWorkspaceProfile(text);
    return std::holds_alternative<DecodingError>(decoded) ? std::get<DecodingError>(decoded).what() : "no error";
}

WorkspaceProfile decoded(const std::string& text) {
    return std::get<WorkspaceProfile>(decodeWorkspaceProfile(text));
}

} // namespace

TEST(WorkspaceProfile, ReadsAndWritesEveryKey) {
    const WorkspaceProfile profile = decoded(kProfile);
    EXPECT_EQ(profile.id.string(), "0C8A2F6E-6F0D-4C39-9A52-3A0B6F5D1E77");
    EXPECT_EQ(profile.tileInset, 7.5);
    EXPECT_EQ(profile.layoutSelectionsByDisplay.at("display-A"), DisplayLayoutSelection::layout("jarvis.six-grid"));
    EXPECT_EQ(profile.layoutSelectionsByDisplay.at("display-B"), DisplayLayoutSelection::automatic());
    EXPECT_EQ(profile.applicationMinimumSizes.at("org.gnu.emacs"), (CGSize{480, 320.5}));
    EXPECT_EQ(profile.weights("display-A", "jarvis.six-grid").splits.at("root"), (std::vector<double>{1180, 1320}));
    EXPECT_EQ(profile.weights("display-B", "jarvis.six-grid"), LayoutWeightOverrides{});

    json expected = json::parse(kProfile);
    expected["id"] = profile.id.string();
    EXPECT_EQ(json::parse(encodeWorkspaceProfile(profile)), expected);
    EXPECT_EQ(json::parse(encodeWorkspaceProfile(WorkspaceProfile{})).size(), 10U) << "empty maps are written too";
}

TEST(WorkspaceProfile, ThreeKeysAreOptional) {
    const auto profile = decoded(profileWith({{"layoutSelectionsByDisplay", nullptr},
                                              {"applicationMinimumSizes", nullptr},
                                              {"layoutWeightsByDisplay", nullptr},
                                              {"unknown", 1}}));
    EXPECT_TRUE(profile.layoutSelectionsByDisplay.empty());
    EXPECT_TRUE(profile.applicationMinimumSizes.empty());
    EXPECT_TRUE(profile.layoutWeightsByDisplay.empty());
    for (const char* key :
         {"id", "name", "themeID", "layoutID", "tileInset", "autoArrangeOnLaunch", "preferredApplications"}) {
        EXPECT_EQ(errorOf(profileWith({{key, nullptr}})), std::string(key) + ": is missing");
    }
}

TEST(WorkspaceProfile, ErrorsNameThePathOfTheValue) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {profileWith({{"id", "me"}}), "id: expected a UUID"},
        {profileWith({{"tileInset", "5"}}), "tileInset: expected a number"},
        {profileWith({{"applicationMinimumSizes", {{"a", {1, 2, 3}}}}}),
         "applicationMinimumSizes.a: expected [width, height]"},
        {profileWith({{"applicationMinimumSizes", {{"a", {1, "2"}}}}}),
         "applicationMinimumSizes.a[1]: expected a number"},
        {profileWith(
             {{"layoutSelectionsByDisplay", {{"d", {{"automatic", json::object()}, {"layout", {{"id", "x"}}}}}}}}),
         "layoutSelectionsByDisplay.d: Invalid number of keys found, expected one."},
        {profileWith({{"layoutSelectionsByDisplay", {{"d", json::object()}}}}),
         "layoutSelectionsByDisplay.d: Invalid number of keys found, expected one."},
        {profileWith({{"layoutSelectionsByDisplay", {{"d", {{"manual", json::object()}}}}}}),
         "layoutSelectionsByDisplay.d: unknown case “manual”, expected “automatic” or “layout”"},
        {profileWith({{"layoutSelectionsByDisplay", {{"d", {{"layout", json::object()}}}}}}),
         "layoutSelectionsByDisplay.d.layout.id: is missing"},
        {profileWith({{"layoutSelectionsByDisplay", {{"d", {{"automatic", 1}}}}}}),
         "layoutSelectionsByDisplay.d.automatic: expected an object"},
        {profileWith({{"layoutWeightsByDisplay", {{"d", {{"l", json::object()}}}}}}),
         "layoutWeightsByDisplay.d.l.splits: is missing"},
        {profileWith({{"layoutWeightsByDisplay", {{"d", {{"l", {{"splits", {{"root", {1, nullptr}}}}}}}}}}}),
         "layoutWeightsByDisplay.d.l.splits.root[1]: expected a number"},
        {"[]", "expected an object"},
    };
    for (const auto& [text, expected] : cases) EXPECT_EQ(errorOf(text), expected) << text;
}

TEST(WorkspaceProfile, ValuesThatJsonCannotExpressAreReplaced) {
    WorkspaceProfile profile;
    profile.tileInset = kNaN;
    profile.name = "\xff";
    profile.applicationMinimumSizes["a"] = {kNaN, 300};
    profile.layoutWeightsByDisplay["d"]["l"].splits = {{"root", {1, kNaN}}, {"root.0", {1, 2}}};
    const auto back = decoded(encodeWorkspaceProfile(profile));
    EXPECT_EQ(back.tileInset, 5);
    EXPECT_EQ(back.applicationMinimumSizes.at("a"), (CGSize{0, 300}));
    EXPECT_EQ(back.weights("d", "l"), (LayoutWeightOverrides{{{"root.0", {1, 2}}}}));
}

TEST(LayoutDefinition, IsStoredAndRestoredWithoutItsTree) {
    const auto& builtIn = *findLayout(builtInLayouts(), "jarvis.dual-split");
    const json document = encode(builtIn);
    EXPECT_EQ(document.size(), 4U);
    EXPECT_EQ(document["slots"][1]["normalizedFrame"],
              json::parse("[[0.50234375, 0.006944444444444444], [0.49375, 0.9666666666666667]]"));
    auto expected = builtIn;
    expected.tree.reset();
    EXPECT_EQ(decodeLayoutDefinition(JsonCursor(document, "")), expected);

    const auto errorWith = [&document](const char* pointer, const json& value) -> std::string {
        json changed = document;
        changed[json::json_pointer(pointer)] = value;
        try {
            decodeLayoutDefinition(JsonCursor(changed, "layouts[3]"));
        } catch (const DecodingError& error) {
            return error.what();
        }
        return "no error";
    };
    EXPECT_EQ(errorWith("/displayClass", "huge"), "layouts[3].displayClass: unknown display class “huge”");
    EXPECT_EQ(errorWith("/slots/1/name", nullptr), "layouts[3].slots[1].name: must not be null");
    EXPECT_EQ(errorWith("/slots/1/normalizedFrame", {0, 0, 1, 1}),
              "layouts[3].slots[1].normalizedFrame: expected [[x, y], [width, height]]");
    EXPECT_EQ(errorWith("/slots/0/normalizedFrame/0", {0}), "layouts[3].slots[0].normalizedFrame[0]: expected [x, y]");
}

TEST(AutoArrangeLearning, ReadsAndWritesLearnedWeights) {
    const std::string text = R"({"layouts":{"jarvis.quad-grid":{"applications":{"name:my tool":{"slotWeights":)"
                             R"({"focus-main":2.5},"placementCount":4}}}}})";
    const auto model = std::get<AutoArrangeLearningModel>(decodeLearningModel(text));
    const auto& learning = model.layouts.at("jarvis.quad-grid").applications.at("name:my tool");
    EXPECT_EQ(learning.slotWeights.at("focus-main"), 2.5);
    EXPECT_EQ(learning.placementCount, 4);
    EXPECT_EQ(json::parse(encodeLearningModel(model)), json::parse(text));
    const auto broken =
        decodeLearningModel(R"({"layouts":{"l":{"applications":{"a":{"slotWeights":{},"placementCount":1.5}}}}})");
    EXPECT_STREQ(std::get<DecodingError>(broken).what(),
                 "layouts.l.applications.a.placementCount: expected an integer");
}
