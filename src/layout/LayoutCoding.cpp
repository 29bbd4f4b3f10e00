#include "layout/LayoutCoding.h"

#include "support/Quoted.h"

#include <algorithm>
#include <cmath>

namespace kova {

namespace {

using nlohmann::json;

/// JSON cannot express numbers that are not finite. They would be written as null, and then the whole record could not
/// be decoded.
double writable(double number) {
    return std::isfinite(number) ? number : 0;
}

std::pair<double, double> decodePair(const JsonCursor& at, const char* expected) {
    const auto elements = at.elements();
    if (elements.size() != 2) at.fail(expected);
    return {elements[0].number(), elements[1].number()};
}

CGPoint decodePoint(const JsonCursor& at) {
    const auto [x, y] = decodePair(at, "expected [x, y]");
    return {x, y};
}

template <class T, class Key = std::string, class Decode>
std::map<Key, T> decodeMap(const JsonCursor& at, Decode decodeMember) {
    std::map<Key, T> out;
    for (const auto& [key, member] : at.members()) out.emplace(key, decodeMember(member));
    return out;
}

template <class T, class Key = std::string, class Decode>
std::map<Key, T> decodeOptionalMap(const std::optional<JsonCursor>& at, Decode decodeMember) {
    return at ? decodeMap<T, Key>(*at, decodeMember) : std::map<Key, T>{};
}

const std::string& text(const std::string& key) {
    return key;
}
template <class Tag>
const std::string& text(const Identifier<Tag>& key) {
    return key.text();
}

template <class Map, class Encode>
json encodeMap(const Map& map, Encode encodeMember) {
    json out = json::object();
    for (const auto& [key, member] : map) out[text(key)] = encodeMember(member);
    return out;
}

std::vector<double> decodeWeights(const JsonCursor& at) {
    std::vector<double> weights;
    for (const auto& element : at.elements()) weights.push_back(element.number());
    return weights;
}

} // namespace

json encode(CGPoint point) {
    return json::array({writable(point.x), writable(point.y)});
}

json encode(CGSize size) {
    return json::array({writable(size.width), writable(size.height)});
}

json encode(const CGRect& rect) {
    return json::array({encode(rect.origin), encode(rect.size)});
}

json encode(const LayoutWeightOverrides& overrides) {
    json splits = json::object();
    for (const auto& [id, weights] : overrides.splits) {
        // Weights that are not finite would be ignored when they are applied.
        if (std::all_of(weights.begin(), weights.end(), [](double w) { return std::isfinite(w); })) {
            splits[id] = weights;
        }
    }
    return {{"splits", splits}};
}

json encode(const DisplayLayoutSelection& selection) {
    if (!selection.layoutID) return {{"automatic", json::object()}};
    return {{"layout", {{"id", *selection.layoutID}}}};
}

json encode(const TileSlot& slot) {
    return {{"id", slot.id}, {"name", slot.name}, {"normalizedFrame", encode(slot.normalizedFrame)}};
}

json encode(const LayoutDefinition& definition) {
    json slots = json::array();
    for (const auto& slot : definition.slots) slots.push_back(encode(slot));
    return {{"id", definition.id},
            {"name", definition.name},
            {"slots", slots},
            {"displayClass", rawValue(definition.displayClass)}};
}

json encode(const WorkspaceProfile& profile) {
    const auto encodeValue = [](const auto& value) { return encode(value); };
    const auto encodeWeights = [&](const auto& weightsByLayout) { return encodeMap(weightsByLayout, encodeValue); };
    return {{"id", profile.id.string()},
            {"name", profile.name},
            {"themeID", profile.themeID},
            {"layoutID", profile.layoutID},
            {"layoutSelectionsByDisplay", encodeMap(profile.layoutSelectionsByDisplay, encodeValue)},
            {"tileInset", std::isfinite(profile.tileInset) ? profile.tileInset : kSlotInset},
            {"autoArrangeOnLaunch", profile.autoArrangeOnLaunch},
            {"preferredApplications", encodeMap(profile.preferredApplications, std::identity{})},
            {"applicationMinimumSizes", encodeMap(profile.applicationMinimumSizes, encodeValue)},
            {"layoutWeightsByDisplay", encodeMap(profile.layoutWeightsByDisplay, encodeWeights)}};
}

CGSize decodeSize(const JsonCursor& at) {
    const auto [width, height] = decodePair(at, "expected [width, height]");
    return {width, height};
}

CGRect decodeRect(const JsonCursor& at) {
    const auto elements = at.elements();
    if (elements.size() != 2) at.fail("expected [[x, y], [width, height]]");
    return {decodePoint(elements[0]), decodeSize(elements[1])};
}

LayoutWeightOverrides decodeWeightOverrides(const JsonCursor& at) {
    return {decodeMap<std::vector<double>>(at.required("splits"), decodeWeights)};
}

DisplayLayoutSelection decodeLayoutSelection(const JsonCursor& at) {
    const auto [name, payload] = at.soleCase();
    if (name == "layout") return DisplayLayoutSelection::layout(payload.required("id").string());
    if (name != "automatic") at.fail("unknown case “" + name + "”, expected “automatic” or “layout”");
    (void)payload.members(); // fails unless the payload is an object
    return DisplayLayoutSelection::automatic();
}

TileSlot decodeTileSlot(const JsonCursor& at) {
    return {SlotID(at.required("id").string()), at.required("name").string(),
            decodeRect(at.required("normalizedFrame"))};
}

LayoutDefinition decodeLayoutDefinition(const JsonCursor& at) {
    LayoutDefinition definition;
    definition.id = at.required("id").string();
    definition.name = at.required("name").string();
    for (const auto& slot : at.required("slots").elements()) definition.slots.push_back(decodeTileSlot(slot));
    const JsonCursor displayClass = at.required("displayClass");
    const auto known = layoutDisplayClassFromRawValue(displayClass.string());
    if (!known) displayClass.fail("unknown display class " + quoted(displayClass.string()));
    definition.displayClass = *known;
    return definition;
}

WorkspaceProfile decodeWorkspaceProfile(const JsonCursor& at) {
    const auto decodeString = [](const JsonCursor& value) { return value.string(); };
    const auto decodeLayoutWeights = [](const JsonCursor& value) {
        return decodeMap<LayoutWeightOverrides>(value, decodeWeightOverrides);
    };
    return {
        .id = at.required("id").uuid(),
        .name = at.required("name").string(),
        .themeID = at.required("themeID").string(),
        .layoutID = at.required("layoutID").string(),
        .layoutSelectionsByDisplay = decodeOptionalMap<DisplayLayoutSelection, DisplayID>(
            at.optional("layoutSelectionsByDisplay"), decodeLayoutSelection),
        .tileInset = at.required("tileInset").number(),
        .autoArrangeOnLaunch = at.required("autoArrangeOnLaunch").boolean(),
        .preferredApplications = decodeMap<std::string, SlotID>(at.required("preferredApplications"), decodeString),
        .applicationMinimumSizes = decodeOptionalMap<CGSize>(at.optional("applicationMinimumSizes"), decodeSize),
        .layoutWeightsByDisplay = decodeOptionalMap<std::map<std::string, LayoutWeightOverrides>, DisplayID>(
            at.optional("layoutWeightsByDisplay"), decodeLayoutWeights),
    };
}

} // namespace kova
