// The document in its two encodings, compared with files in the repository, and invalid input.
#include "persistence/WorkspaceDocumentCoding.h"

#include <nlohmann/json.hpp>

#include <gtest/gtest.h>
#ifdef KOVA_HAS_RAPIDCHECK
#include <rapidcheck/gtest.h>
#endif

#include <cstdlib>
#include <fstream>
#include <limits>
#include <new>
#include <sstream>

namespace kova {

namespace {

using nlohmann::json;

std::string fileText(const std::string& name) {
    const std::string path = KOVA_DOCUMENTS "/" + name;
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file) << path;
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
}

WorkspaceProductDocument decoded(const Decoded<WorkspaceProductDocument>& result) {
    if (const auto* error = std::get_if<DecodingError>(&result)) throw std::runtime_error(error->what());
    return std::get<WorkspaceProductDocument>(result);
}

std::string exportOf(const WorkspaceProductDocument& document) {
    const auto text = encodeExportedDocument(document);
    if (const auto* error = std::get_if<DecodingError>(&text)) throw std::runtime_error(error->what());
    return std::get<std::string>(text);
}

std::string importError(const std::string& text) {
    const auto result = decodeExportedDocument(text);
    const auto* error = std::get_if<DecodingError>(&result);
    return error ? error->what() : "no error";
}

/// The exported file with the value at a JSON pointer changed; null removes the value.
std::string changed(const std::string& pointer, const json& value) {
    json document = json::parse(fileText("exported.json"));
    const json::json_pointer place(pointer);
    if (value.is_null()) {
        document.at(place.parent_pointer()).erase(place.back());
    } else {
        document[place] = value;
    }
    return document.dump();
}

TEST(WorkspaceDocument, ReadsAndWritesBothEncodingsExactly) {
    const std::string exported = fileText("exported.json");
    const WorkspaceProductDocument document = decoded(decodeExportedDocument(exported));
    EXPECT_EQ(exportOf(document), exported);
    ASSERT_EQ(document.scenes.size(), 1u);
    const WorkspaceScene& scene = document.scenes.front();
    EXPECT_EQ(document.activeSceneID, scene.id);
    EXPECT_EQ(scene.name, "Büro 🖥");
    EXPECT_EQ(scene.tileInset, 7.5);
    EXPECT_EQ(scene.displays.front().layoutWeights.splits.at("root"), (std::vector<double>{1180, 1320.5}));
    EXPECT_EQ(scene.placements.front().claimedSlotIDs, (std::vector<SlotID>{"quad-primary", "quad-secondary"}));
    EXPECT_EQ(scene.placements.back().isActive, std::nullopt);
    EXPECT_EQ(scene.placements.back().window, (WorkspaceWindowReference{std::nullopt, "xterm", std::nullopt}));
    ASSERT_EQ(document.rules.size(), 3u);
    EXPECT_EQ(document.rules[0].disposition, WorkspaceRuleDisposition(disposition::Tile{"focus-main"}));
    EXPECT_EQ(document.rules[1].disposition, WorkspaceRuleDisposition(disposition::Float{}));
    EXPECT_EQ(document.rules[2].titleContains, "Welcome");

    const std::string stored = fileText("stored.json");
    WorkspaceProductDocument withFraction = decoded(decodeStoredDocument(stored));
    EXPECT_EQ(encodeStoredDocument(withFraction) + "\n", stored);
    EXPECT_EQ(exportOf(withFraction), exported) << "the fraction of a second is dropped";
    withFraction.scenes.front().createdAt -= std::chrono::milliseconds(250);
    EXPECT_EQ(withFraction, document);
}

TEST(WorkspaceDocument, EachEncodingIsRefusedByTheOtherReader) {
    EXPECT_EQ(importError(fileText("stored.json")), "scenes[0].createdAt: expected a string");
    EXPECT_TRUE(std::holds_alternative<DecodingError>(decodeStoredDocument(fileText("exported.json"))));
}

TEST(WorkspaceDocument, IgnoresUnknownMembersAndFillsInOptionalOnes) {
    EXPECT_EQ(decoded(decodeExportedDocument(changed("/version", 7))).version, 7);
    EXPECT_EQ(decoded(decodeExportedDocument(changed("/activeSceneID", nullptr))).activeSceneID, std::nullopt);
    const WorkspaceProductDocument plain = decoded(decodeExportedDocument(fileText("exported.json")));
    for (const char* place : {"/future", "/scenes/0/future", "/scenes/0/displays/0/future", "/rules/0/future",
                              "/scenes/0/placements/0/window/future"}) {
        const json future = {{"scenes", {1, {{"a", json::array({json::object()})}}}}, {"rules", 1}};
        EXPECT_EQ(decoded(decodeExportedDocument(changed(place, future))), plain) << place;
    }
}

TEST(WorkspaceDocument, AnErrorNamesThePlaceAndTheReason) {
    const struct {
        const char* place;
        json value;
        const char* error;
    } cases[] = {
        {"/version", nullptr, "version: is missing"},
        {"/version", "1", "version: expected an integer"},
        {"/version", 1e300, "version: integer out of range"},
        {"/scenes", nullptr, "scenes: is missing"},
        {"/scenes", 1000000000, "scenes: expected an array"},
        {"/rules", json::object(), "rules: expected an array"},
        {"/scenes/0", 5, "scenes[0]: expected an object"},
        {"/scenes/0/id", "3F2504E0", "scenes[0].id: expected a UUID"},
        {"/scenes/0/name", std::string("a\0b", 3), "scenes[0].name: must not contain NUL"},
        {"/scenes/0/createdAt", "2026-02-29T10:00:00Z", "scenes[0].createdAt: expected a date like "},
        {"/scenes/0/placements", nullptr, "scenes[0].placements: is missing"},
        {"/scenes/0/displays/1/layoutID", 4, "scenes[0].displays[1].layoutID: expected a string"},
        {"/scenes/0/displays/0/layoutWeights/splits/root/1", "2",
         "scenes[0].displays[0].layoutWeights.splits.root[1]: expected a number"},
        {"/scenes/0/placements/1/displayOrdinal", 9.3e18, "scenes[0].placements[1].displayOrdinal: integer out of"},
        {"/scenes/0/placements/1/displayOrdinal", UINT64_MAX, "scenes[0].placements[1].displayOrdinal: integer out of"},
        {"/scenes/0/placements/0/window", json::array(), "scenes[0].placements[0].window: expected an object"},
        {"/scenes/0/placements/0/window/applicationName", nullptr,
         "scenes[0].placements[0].window.applicationName: is missing"},
        {"/scenes/0/placements/0/claimedSlotIDs/1", true, "scenes[0].placements[0].claimedSlotIDs[1]: expected a str"},
        {"/rules/1/isEnabled", 1, "rules[1].isEnabled: expected true or false"},
        {"/rules/1/disposition", json::object(), "rules[1].disposition: Invalid number of keys found, expected one."},
        {"/rules/1/disposition/ignore", json::object(),
         "rules[1].disposition: Invalid number of keys found, expected one."},
        {"/rules/2/disposition", {{"close", json::object()}}, "rules[2].disposition: unknown case “close”"},
        {"/rules/2/disposition", {{"float", 1}}, "rules[2].disposition.float: expected an object"},
        {"/rules/0/disposition/tile/slotID", nullptr, "rules[0].disposition.tile.slotID: is missing"},
    };
    for (const auto& wrong : cases) {
        const std::string error = importError(changed(wrong.place, wrong.value));
        EXPECT_EQ(error.substr(0, std::string(wrong.error).size()), wrong.error) << wrong.place;
    }
    for (const char* text : {"", "[]", "7", "{", "{\"version\":1,\"scenes\":[", "{\"version\":1e400}", "\xff"}) {
        EXPECT_NE(importError(text), "no error") << text;
    }
}

TEST(WorkspaceDocument, WrittenDocumentsCanBeRead) {
    const std::string withNul("a\0b", 3);
    WorkspaceProductDocument document;
    document.scenes.emplace_back().name = withNul;
    document.scenes.back().placements.emplace_back().claimedSlotIDs = {SlotID(withNul)};
    document.rules.emplace_back().disposition = disposition::Tile{SlotID(withNul)};
    for (const auto& read : {decoded(decodeStoredDocument(encodeStoredDocument(document))),
                             decoded(decodeExportedDocument(exportOf(document)))}) {
        EXPECT_EQ(read.scenes.front().name, "ab");
        EXPECT_EQ(read.scenes.front().placements.front().claimedSlotIDs->front(), "ab");
        EXPECT_EQ(read.rules.front().disposition, WorkspaceRuleDisposition(disposition::Tile{"ab"}));
    }
}

TEST(WorkspaceDocument, IfTwoMembersHaveTheSameNameTheSecondIsRead) {
    const std::string exported = fileText("exported.json");
    const std::string end = exported.substr(0, exported.rfind('}'));
    EXPECT_TRUE(decoded(decodeExportedDocument(end + R"(,"scenes":[],"version":2})")).scenes.empty());
    const std::string rule = R"({"version":1,"scenes":[],"rules":[{"id":"6BA7B812-9DAD-41D1-80B4-00C04FD430C8",
        "name":"a","name":"b","isEnabled":true,"disposition":{"float":[1],"float":{}}}]})";
    EXPECT_EQ(decoded(decodeExportedDocument(rule)).rules.front().name, "b");
}

// The operators new and delete at the end of this file count the allocations of the test program.

std::size_t liveBytes = 0;
std::size_t peakBytes = 0;

std::string repeated(const std::string& text, std::size_t bytes) {
    std::string out;
    out.reserve(bytes + text.size());
    while (out.size() < bytes) out += text;
    return out;
}

TEST(WorkspaceDocument, ReadingTakesAtMostASmallMultipleOfTheSizeOfAnyTextInMemory) {
    constexpr std::size_t kBytes = std::size_t{1} << 20;
    constexpr std::size_t kMultiple = 10; // mostly for the library's error message about text that ends too early
    const std::string start = R"({"version":1,"rules":[],"scenes":[)";
    const std::string scene =
        R"({"id":"3F2504E0-4F89-41D3-9A0C-0305E82C3301","name":"","createdAt":"2026-11-14T18:12:26Z",)"
        R"("updatedAt":"2026-11-14T18:12:26Z","themeID":"","accentColorID":"","tileInset":0,)";
    const std::string placement = R"({"id":"7D444841-9DC0-41D1-B245-5FFDCE74FAD2","displayOrdinal":1,"slotID":"",)"
                                  R"("stackIndex":0,"window":{"applicationName":""}},)";
    const std::string hostile[] = {
        repeated("[", kBytes),
        R"({"future":)" + repeated("[", kBytes),
        R"({"future":[)" + repeated("0,", kBytes),
        R"({"future":{)" + repeated(R"("a":[],)", kBytes),
        start + repeated("{},", kBytes),
        start + repeated(scene + R"("displays":[],"placements":[]},)", kBytes),
        start + scene + R"("displays":[],"placements":[)" + repeated(placement, kBytes),
        start + scene + R"("displays":[{"layoutWeights":{"splits":{"a":[)" + repeated("1,", kBytes),
        start + scene + R"("displays":[{"layoutWeights":{"splits":{)" + repeated(R"("a":[],)", kBytes),
        start + scene +
            R"("displays":[{"ordinal":0,"name":"","aspectRatio":1,"layoutID":"","layoutWeights":{"splits":{")" +
            repeated("a", kBytes) + R"(":[)" + repeated("1,", 200) + "1]}}}",
        R"({"version":1,"scenes":[],"rules":[{"id":"3F2504E0-4F89-41D3-9A0C-0305E82C3301","name":"","isEnabled":true,)"
        R"("disposition":{")" +
            repeated("a", kBytes) + R"(":{}}}]})",
        start + R"({"name":")" + repeated("a", kBytes),
        start + R"({"name":[)" + repeated("{},", kBytes),
        repeated(R"({"a":)", kBytes),
        start + R"({"name":")" + repeated("\\u0001", kBytes) + "\n",
    };
    for (const auto& text : hostile) {
        const std::size_t before = liveBytes;
        peakBytes = liveBytes;
        EXPECT_TRUE(std::holds_alternative<DecodingError>(decodeExportedDocument(text)));
        EXPECT_LT(peakBytes - before, kMultiple * text.size()) << text.substr(0, 300);
    }
    EXPECT_EQ(importError(std::string(kMaximumImportBytes + 1, ' ')), "larger than 64 MiB");
}

#ifdef KOVA_HAS_RAPIDCHECK
// Generators of random documents, which are written and read again.

rc::Gen<std::string> anyText() {
    return rc::gen::element<std::string>("", "Mail", "Büro “1”", "a\tb\n", "\U0001F5A5", "jarvis.quad-grid", "\x7f/\\");
}

template <class T>
std::optional<T> maybe(const rc::Gen<T>& gen) {
    return *rc::gen::arbitrary<bool>() ? std::optional<T>(*gen) : std::nullopt;
}

double anyNumber() {
    return *rc::gen::element(0.0, -1.5, 1e300, 1.0 / 3, std::numeric_limits<double>::denorm_min(), 1180.0);
}

Date anyDate() {
    constexpr std::int64_t kDecade = 315'576'000'000'000; // microseconds
    return Date(std::chrono::microseconds(*rc::gen::inRange<std::int64_t>(-3 * kDecade, 9 * kDecade)));
}

template <class ID>
rc::Gen<ID> anyID() {
    return rc::gen::map(anyText(), [](std::string text) { return ID(std::move(text)); });
}

WorkspaceScenePlacement anyPlacement() {
    WorkspaceScenePlacement out;
    out.window = {maybe(anyID<BundleID>()), *anyText(), maybe(anyText())};
    out.displayOrdinal = *rc::gen::arbitrary<std::int64_t>();
    out.slotID = SlotID(*anyText());
    out.stackIndex = *rc::gen::arbitrary<std::int64_t>();
    out.claimedSlotIDs = maybe(rc::gen::container<std::vector<SlotID>>(anyID<SlotID>()));
    out.isActive = maybe(rc::gen::arbitrary<bool>());
    return out;
}

WorkspaceScene anyScene() {
    WorkspaceScene out;
    out.name = *anyText();
    out.createdAt = anyDate();
    out.updatedAt = anyDate();
    out.themeID = *anyText();
    out.accentColorID = *anyText();
    out.tileInset = anyNumber();
    for (int i = *rc::gen::inRange(0, 3); i > 0; --i) {
        LayoutWeightOverrides weights{{{*anyText(), {anyNumber(), anyNumber()}}}};
        out.displays.push_back({*rc::gen::arbitrary<std::int64_t>(), *anyText(), anyNumber(), *anyText(), weights});
    }
    for (int i = *rc::gen::inRange(0, 3); i > 0; --i) out.placements.push_back(anyPlacement());
    return out;
}

WorkspaceRule anyRule() {
    const WorkspaceRuleDisposition disposition = *rc::gen::element<WorkspaceRuleDisposition>(
        disposition::Tile{SlotID(*anyText())}, disposition::Float{}, disposition::Ignore{});
    return {Uuid::random(),   *anyText(), *rc::gen::arbitrary<bool>(), maybe(anyID<BundleID>()), maybe(anyText()),
            maybe(anyText()), disposition};
}

RC_GTEST_PROP(WorkspaceDocumentProperty, SurvivesBothEncodings, ()) {
    WorkspaceProductDocument document;
    for (int i = *rc::gen::inRange(0, 3); i > 0; --i) document.scenes.push_back(anyScene());
    for (int i = *rc::gen::inRange(0, 3); i > 0; --i) document.rules.push_back(anyRule());
    if (*rc::gen::arbitrary<bool>()) document.activeSceneID = Uuid::random();
    RC_ASSERT(decoded(decodeStoredDocument(encodeStoredDocument(document))) == document);
    for (auto& scene : document.scenes) {
        scene.createdAt = std::chrono::floor<std::chrono::seconds>(scene.createdAt);
        scene.updatedAt = std::chrono::floor<std::chrono::seconds>(scene.updatedAt);
    }
    RC_ASSERT(decoded(decodeExportedDocument(exportOf(document))) == document);
}

RC_GTEST_PROP(WorkspaceDocumentProperty, WhyUnreadableReportsExactlyTheDocumentsThatCannotBeRead, ()) {
    WorkspaceProductDocument document;
    document.scenes.push_back(anyScene());
    auto& scene = document.scenes.front();
    scene.displays.push_back({0, "", 1, "", {}});
    scene.placements.push_back(anyPlacement());
    // A record gets about as many values as it may have, in one list or in several.
    const auto countNearLimit = [] {
        return *rc::gen::inRange<std::size_t>(kMaximumValuesPerRecord - 20, kMaximumValuesPerRecord);
    };
    auto& splits = scene.displays.back().layoutWeights.splits;
    if (*rc::gen::arbitrary<bool>()) splits["root"].assign(countNearLimit(), anyNumber());
    if (*rc::gen::arbitrary<bool>()) splits["root.1"].assign(*rc::gen::inRange<std::size_t>(0, 30), 1);
    if (*rc::gen::arbitrary<bool>())
        scene.placements.back().claimedSlotIDs.emplace(countNearLimit(), SlotID(*anyText()));
    const std::string stored = encodeStoredDocument(document);
    const bool isReadable = std::holds_alternative<WorkspaceProductDocument>(decodeStoredDocument(stored));
    RC_ASSERT(!whyUnreadable(document, stored.size()) == isReadable);
    RC_ASSERT(std::holds_alternative<WorkspaceProductDocument>(decodeExportedDocument(exportOf(document))) ==
              isReadable);
}

TEST(WorkspaceDocument, ExportsThatAreTooLargeToImportAreRefused) {
    WorkspaceProductDocument document;
    WorkspaceScene scene;
    scene.displays.push_back({0, "", 1, "", {{{"root", std::vector<double>(4000, 1)}}}});
    document.scenes.assign(950, scene);
    const std::string stored = encodeStoredDocument(document);
    ASSERT_LT(stored.size(), kMaximumImportBytes / 4) << "without indentation the document is small";
    EXPECT_STREQ(whyUnreadable(document, stored.size())->what(), "larger than 64 MiB");
    EXPECT_STREQ(std::get<DecodingError>(encodeExportedDocument(document)).what(), "larger than 64 MiB");
    document.scenes.resize(700);
    EXPECT_FALSE(whyUnreadable(document, encodeStoredDocument(document).size()));
}
#endif

} // namespace

} // namespace kova

namespace {
constexpr std::size_t kSizeRoom = alignof(std::max_align_t); // bytes before each block, in which its size is stored
}

void* operator new(std::size_t size) {
    auto* memory = static_cast<char*>(std::malloc(size + kSizeRoom));
    if (!memory) throw std::bad_alloc();
    *reinterpret_cast<std::size_t*>(memory) = size;
    kova::liveBytes += size;
    kova::peakBytes = std::max(kova::peakBytes, kova::liveBytes);
    return memory + kSizeRoom;
}

void operator delete(void* memory) noexcept {
    if (!memory) return;
    char* const start = static_cast<char*>(memory) - kSizeRoom;
    kova::liveBytes -= *reinterpret_cast<std::size_t*>(start);
    std::free(start);
}

void operator delete(void* memory, std::size_t) noexcept {
    operator delete(memory);
}
