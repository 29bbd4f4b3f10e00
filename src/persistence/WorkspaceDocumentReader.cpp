#include "persistence/WorkspaceDocumentReader.h"

#include "layout/LayoutCoding.h"
#include "persistence/WorkspaceDocumentCoding.h"
#include "support/Quoted.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace kova {

namespace {

std::string text(const JsonCursor& at) {
    std::string value = at.string();
    if (value.find('\0') != std::string::npos) at.fail("must not contain NUL");
    return value;
}

template <class Text = std::string>
std::optional<Text> optionalText(const std::optional<JsonCursor>& at) {
    if (!at) return std::nullopt;
    return Text(text(*at));
}

WorkspaceRuleDisposition decodeDisposition(const JsonCursor& at) {
    const auto [name, payload] = at.soleCase();
    if (name == "tile") return disposition::Tile{SlotID(text(payload.required("slotID")))};
    if (name != "float" && name != "ignore") {
        at.fail("unknown case " + quoted(shownKey(name)) + ", expected “tile”, “float” or “ignore”");
    }
    (void)payload.members(); // fails unless it is an object
    if (name == "float") return disposition::Float{};
    return disposition::Ignore{};
}

WorkspaceWindowReference decodeReference(const JsonCursor& at) {
    return {.bundleIdentifier = optionalText<BundleID>(at.optional("bundleIdentifier")),
            .applicationName = text(at.required("applicationName")),
            .titleHint = optionalText(at.optional("titleHint"))};
}

} // namespace

DecodingError tooManyValues(const std::string& path) {
    return {path, "holds more than " + std::to_string(kMaximumValuesPerRecord) + " values"};
}

WorkspaceDocumentReader::Kind WorkspaceDocumentReader::entryKind(const std::string& list) {
    if (list == "scenes") return Kind::scene;
    if (list == "rules") return Kind::rule;
    return list == "displays" ? Kind::display : Kind::placement;
}

bool WorkspaceDocumentReader::isList(Kind kind, const std::string& key) {
    if (kind == Kind::document) return key == "scenes" || key == "rules";
    return kind == Kind::scene && (key == "displays" || key == "placements");
}

bool WorkspaceDocumentReader::isKnown(Kind kind, const std::string& key) {
    using Keys = std::vector<std::string_view>;
    static const std::array<Keys, 5> known = {
        Keys{"version", "scenes", "rules", "activeSceneID"},
        Keys{"id", "name", "createdAt", "updatedAt", "themeID", "accentColorID", "tileInset", "displays", "placements"},
        Keys{"ordinal", "name", "aspectRatio", "layoutID", "layoutWeights"},
        Keys{"id", "window", "displayOrdinal", "slotID", "stackIndex", "claimedSlotIDs", "isActive"},
        Keys{"id", "name", "isEnabled", "bundleIdentifier", "applicationName", "titleContains", "disposition"}};
    const Keys& keys = known[static_cast<std::size_t>(kind)];
    return std::find(keys.begin(), keys.end(), key) != keys.end();
}

/// The path of the next value.
std::string WorkspaceDocumentReader::placeIn(const Record& record) const {
    const std::string member = record.list.empty() ? record.key : record.list;
    const std::string path = record.path.empty() || member.empty() ? record.path + member : record.path + "." + member;
    return record.list.empty() ? path : path + "[" + std::to_string(record.entries) + "]";
}

bool WorkspaceDocumentReader::key(std::string& name) {
    if (skipped_ > 0) return true;
    Record& record = records_.back();
    if (!record.containers.empty()) {
        json& member = (*record.containers.back())[name];
        member = nullptr; // if two members have the same name, the second one is used
        record.containers.push_back(&member);
        return true;
    }
    record.key = std::move(name);
    return true;
}

bool WorkspaceDocumentReader::string(std::string& value) {
    return scalar(std::move(value));
}

bool WorkspaceDocumentReader::scalar(json value) {
    if (skipped_ > 0) return true;
    if (records_.empty()) throw DecodingError("", "expected an object");
    Record& record = records_.back();
    if (!record.list.empty()) throw DecodingError(placeIn(record), "expected an object");
    if (record.containers.empty() && !isKnown(record.kind, record.key)) return true;
    if (record.containers.empty() && isList(record.kind, record.key)) {
        throw DecodingError(placeIn(record), value.is_null() ? "must not be null" : "expected an array");
    }
    insert(record, std::move(value));
    return true;
}

WorkspaceDocumentReader::json* WorkspaceDocumentReader::insert(Record& record, json value) {
    if (++record.values > kMaximumValuesPerRecord) throw tooManyValues(record.path);
    if (record.containers.empty()) return &(record.members[record.key] = std::move(value));
    json& container = *record.containers.back();
    if (container.is_array()) return &container.emplace_back(std::move(value));
    record.containers.pop_back(); // the member that `key` made
    return &(container = std::move(value));
}

bool WorkspaceDocumentReader::open(json container) {
    if (++depth_ > kMaximumJsonDepth) {
        throw DecodingError(records_.empty() ? "" : records_.back().path,
                            "nested deeper than " + std::to_string(kMaximumJsonDepth) + " levels");
    }
    if (skipped_ > 0) {
        ++skipped_;
        return true;
    }
    if (records_.empty()) {
        if (!container.is_object()) throw DecodingError("", "expected an object");
        records_.emplace_back(Kind::document, "");
        return true;
    }
    Record& record = records_.back();
    if (!record.list.empty()) {
        if (!container.is_object()) throw DecodingError(placeIn(record), "expected an object");
        records_.emplace_back(entryKind(record.list), placeIn(record));
        return true;
    }
    if (record.containers.empty() && !isKnown(record.kind, record.key)) {
        ++skipped_;
        return true;
    }
    if (record.containers.empty() && isList(record.kind, record.key)) {
        if (!container.is_array()) throw DecodingError(placeIn(record), "expected an array");
        openList(record);
        return true;
    }
    json* inserted = insert(record, std::move(container));
    record.containers.push_back(inserted);
    return true;
}

/// If two lists have the same name, the second one is used, as for any other member.
void WorkspaceDocumentReader::openList(Record& record) {
    record.list = record.key;
    record.entries = 0;
    record.members[record.list] = json::array(); // marks the list as present; its entries are stored elsewhere
    switch (entryKind(record.list)) {
    case Kind::scene:
        document_.scenes.clear();
        break;
    case Kind::rule:
        document_.rules.clear();
        break;
    case Kind::display:
        displays_.clear();
        break;
    case Kind::placement:
        placements_.clear();
        break;
    case Kind::document:
        break;
    }
}

bool WorkspaceDocumentReader::close() {
    --depth_;
    if (skipped_ > 0) {
        --skipped_;
        return true;
    }
    Record& record = records_.back();
    if (!record.list.empty()) {
        record.list.clear();
    } else if (!record.containers.empty()) {
        record.containers.pop_back();
    } else {
        finish(record);
        records_.pop_back();
        if (!records_.empty()) ++records_.back().entries;
    }
    return true;
}

void WorkspaceDocumentReader::finish(Record& record) {
    const JsonCursor at(record.members, record.path);
    switch (record.kind) {
    case Kind::document:
        document_.version = at.required("version").integer();
        (void)at.required("scenes");
        (void)at.required("rules");
        if (const auto active = at.optional("activeSceneID")) document_.activeSceneID = active->uuid();
        break;
    case Kind::scene:
        document_.scenes.push_back(scene(at));
        break;
    case Kind::display:
        displays_.push_back(display(at));
        break;
    case Kind::placement:
        placements_.push_back(placement(at));
        break;
    case Kind::rule:
        document_.rules.push_back(rule(at));
        break;
    }
}

Date WorkspaceDocumentReader::date(const JsonCursor& at) const {
    if (dates_ == DateCoding::secondsSince2001) {
        const auto date = dateFromSecondsSince2001(at.number());
        if (!date) at.fail("date out of range");
        return *date;
    }
    const auto date = dateFromIso8601(at.string());
    if (!date) at.fail("expected a date like 2026-11-14T18:12:26Z");
    return *date;
}

WorkspaceScene WorkspaceDocumentReader::scene(const JsonCursor& at) {
    WorkspaceScene scene{.id = at.required("id").uuid(),
                         .name = text(at.required("name")),
                         .createdAt = date(at.required("createdAt")),
                         .updatedAt = date(at.required("updatedAt")),
                         .themeID = text(at.required("themeID")),
                         .accentColorID = text(at.required("accentColorID")),
                         .tileInset = at.required("tileInset").number(),
                         .displays = {},
                         .placements = {}};
    (void)at.required("displays");
    (void)at.required("placements");
    scene.displays = std::exchange(displays_, {});
    scene.placements = std::exchange(placements_, {});
    return scene;
}

WorkspaceSceneDisplay WorkspaceDocumentReader::display(const JsonCursor& at) {
    return {.ordinal = at.required("ordinal").integer(),
            .name = text(at.required("name")),
            .aspectRatio = at.required("aspectRatio").number(),
            .layoutID = text(at.required("layoutID")),
            .layoutWeights = decodeWeightOverrides(at.required("layoutWeights"))};
}

WorkspaceScenePlacement WorkspaceDocumentReader::placement(const JsonCursor& at) {
    WorkspaceScenePlacement placement{.id = at.required("id").uuid(),
                                      .window = decodeReference(at.required("window")),
                                      .displayOrdinal = at.required("displayOrdinal").integer(),
                                      .slotID = SlotID(text(at.required("slotID"))),
                                      .stackIndex = at.required("stackIndex").integer(),
                                      .claimedSlotIDs = std::nullopt,
                                      .isActive = std::nullopt};
    if (const auto claimed = at.optional("claimedSlotIDs")) {
        placement.claimedSlotIDs.emplace();
        for (const auto& slot : claimed->elements()) placement.claimedSlotIDs->emplace_back(text(slot));
    }
    if (const auto active = at.optional("isActive")) placement.isActive = active->boolean();
    return placement;
}

WorkspaceRule WorkspaceDocumentReader::rule(const JsonCursor& at) {
    return {.id = at.required("id").uuid(),
            .name = text(at.required("name")),
            .isEnabled = at.required("isEnabled").boolean(),
            .bundleIdentifier = optionalText<BundleID>(at.optional("bundleIdentifier")),
            .applicationName = optionalText(at.optional("applicationName")),
            .titleContains = optionalText(at.optional("titleContains")),
            .disposition = decodeDisposition(at.required("disposition"))};
}

} // namespace kova
