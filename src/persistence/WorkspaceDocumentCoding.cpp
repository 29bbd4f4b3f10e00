#include "persistence/WorkspaceDocumentCoding.h"

#include "layout/LayoutCoding.h"
#include "persistence/WorkspaceDocumentReader.h"
#include "support/Overloaded.h"

#include <cmath>

namespace kova {

namespace {

using nlohmann::json;

json encode(Date date, DateCoding dates) {
    return dates == DateCoding::iso8601 ? json(iso8601(date)) : json(secondsSince2001(date));
}

/// The number if it is finite, else `other`: JSON has only finite numbers.
double writable(double number, double other) {
    return std::isfinite(number) ? number : other;
}

template <class T>
void setIfPresent(json& object, const char* key, const std::optional<T>& value) {
    if (value) object[key] = *value;
}

json encode(const WorkspaceSceneDisplay& display) {
    return {{"ordinal", display.ordinal},
            {"name", display.name},
            {"aspectRatio", writable(display.aspectRatio, 1)},
            {"layoutID", display.layoutID},
            {"layoutWeights", kova::encode(display.layoutWeights)}};
}

json encode(const WorkspaceScenePlacement& placement) {
    json window = {{"applicationName", placement.window.applicationName}};
    setIfPresent(window, "bundleIdentifier", placement.window.bundleIdentifier);
    setIfPresent(window, "titleHint", placement.window.titleHint);
    json out = {{"id", placement.id.string()},
                {"window", std::move(window)},
                {"displayOrdinal", placement.displayOrdinal},
                {"slotID", placement.slotID},
                {"stackIndex", placement.stackIndex}};
    setIfPresent(out, "claimedSlotIDs", placement.claimedSlotIDs);
    setIfPresent(out, "isActive", placement.isActive);
    return out;
}

json encode(const WorkspaceRuleDisposition& chosen) {
    return std::visit(Overloaded{[](const disposition::Tile& tile) {
                                     return json{{"tile", {{"slotID", tile.slotID}}}};
                                 },
                                 [](const disposition::Float&) {
                                     return json{{"float", json::object()}};
                                 },
                                 [](const disposition::Ignore&) {
                                     return json{{"ignore", json::object()}};
                                 }},
                      chosen);
}

json encode(const WorkspaceRule& rule) {
    json out = {{"id", rule.id.string()},
                {"name", rule.name},
                {"isEnabled", rule.isEnabled},
                {"disposition", encode(rule.disposition)}};
    setIfPresent(out, "bundleIdentifier", rule.bundleIdentifier);
    setIfPresent(out, "applicationName", rule.applicationName);
    setIfPresent(out, "titleContains", rule.titleContains);
    return out;
}

template <class Record>
json encodeAll(const std::vector<Record>& records) {
    json out = json::array();
    for (const auto& record : records) out.push_back(encode(record));
    return out;
}

json encode(const WorkspaceScene& scene, DateCoding dates) {
    return {{"id", scene.id.string()},
            {"name", scene.name},
            {"createdAt", encode(scene.createdAt, dates)},
            {"updatedAt", encode(scene.updatedAt, dates)},
            {"themeID", scene.themeID},
            {"accentColorID", scene.accentColorID},
            {"tileInset", writable(scene.tileInset, kSlotInset)},
            {"displays", encodeAll(scene.displays)},
            {"placements", encodeAll(scene.placements)}};
}

/// Removes NUL from all texts: reading refuses a text with NUL, and every written document must be readable.
void dropNul(json& value) {
    if (auto* text = value.get_ptr<json::string_t*>()) {
        std::erase(*text, '\0');
    } else if (value.is_structured()) {
        for (auto& element : value) dropNul(element);
    }
}

std::string write(const WorkspaceProductDocument& document, DateCoding dates, int indent) {
    json scenes = json::array();
    for (const auto& scene : document.scenes) scenes.push_back(encode(scene, dates));
    json out = {{"version", 1}, {"scenes", std::move(scenes)}, {"rules", encodeAll(document.rules)}};
    if (document.activeSceneID) out["activeSceneID"] = document.activeSceneID->string();
    dropNul(out);
    return out.dump(indent, ' ', false, json::error_handler_t::replace);
}

/// The number of JSON values in the record, as the reader counts them.
std::size_t valuesIn(const WorkspaceSceneDisplay& display) {
    constexpr std::size_t kScalars = 4, kWeights = 2; // "layoutWeights" and its "splits"
    std::size_t count = kScalars + kWeights;
    for (const auto& [split, weights] : display.layoutWeights.splits) count += 1 + weights.size();
    return count;
}

std::size_t valuesIn(const WorkspaceScenePlacement& placement) {
    const auto& window = placement.window;
    constexpr std::size_t kScalars = 4, kWindow = 2; // "window" and its "applicationName"
    return kScalars + kWindow + (window.bundleIdentifier ? 1 : 0) + (window.titleHint ? 1 : 0) +
           (placement.isActive ? 1 : 0) + (placement.claimedSlotIDs ? 1 + placement.claimedSlotIDs->size() : 0);
}

template <class Record>
std::optional<DecodingError> whyUnreadable(const std::vector<Record>& records, const std::string& path) {
    for (std::size_t i = 0; i < records.size(); ++i) {
        if (valuesIn(records[i]) > kMaximumValuesPerRecord) {
            return tooManyValues(path + "[" + std::to_string(i) + "]");
        }
    }
    return std::nullopt;
}

DecodingError tooLarge() {
    return {"", "larger than " + std::to_string(kMaximumImportBytes >> 20) + " MiB"};
}

std::string exported(const WorkspaceProductDocument& document) {
    constexpr int kIndent = 2;
    return write(document, DateCoding::iso8601, kIndent) + "\n";
}

Decoded<WorkspaceProductDocument> read(std::string_view text, DateCoding dates) {
    try {
        WorkspaceDocumentReader reader(dates);
        json::sax_parse(text, &reader);
        return reader.take();
    } catch (const DecodingError& error) {
        return error;
    }
}

} // namespace

std::string encodeStoredDocument(const WorkspaceProductDocument& document) {
    return write(document, DateCoding::secondsSince2001, -1);
}

Decoded<WorkspaceProductDocument> decodeStoredDocument(std::string_view json) {
    return read(json, DateCoding::secondsSince2001);
}

std::optional<DecodingError> whyUnreadable(const WorkspaceProductDocument& document, std::size_t storedBytes) {
    for (std::size_t i = 0; i < document.scenes.size(); ++i) {
        const std::string path = "scenes[" + std::to_string(i) + "]";
        if (auto error = whyUnreadable(document.scenes[i].displays, path + ".displays")) return error;
        if (auto error = whyUnreadable(document.scenes[i].placements, path + ".placements")) return error;
    }
    // Indentation makes the exported text longer than the stored text. A list of one-digit numbers becomes 9.5 times as
    // long; everything else grows less.
    constexpr std::size_t kLargestGrowth = 12;
    if (storedBytes <= kMaximumImportBytes / kLargestGrowth) return std::nullopt;
    if (exported(document).size() > kMaximumImportBytes) return tooLarge();
    return std::nullopt;
}

Decoded<std::string> encodeExportedDocument(const WorkspaceProductDocument& document) {
    std::string text = exported(document);
    if (text.size() > kMaximumImportBytes) return tooLarge();
    return text;
}

Decoded<WorkspaceProductDocument> decodeExportedDocument(std::string_view json) {
    if (json.size() > kMaximumImportBytes) return tooLarge();
    return read(json, DateCoding::iso8601);
}

} // namespace kova
