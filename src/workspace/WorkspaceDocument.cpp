// The document of scenes and rules: kept in the preferences, taken out and in as a file.
#include "workspace/WorkspaceController.h"

#include "persistence/PreferenceKeys.h"
#include "persistence/WorkspaceDocumentCoding.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <utility>

namespace kova {

namespace {

/// What was there wins, and of two newcomers with one identity the first.
template <class Record>
std::vector<Record> newAmong(std::vector<Record> imported, const std::vector<Record>& known) {
    std::set<Uuid> ids;
    for (const auto& record : known) ids.insert(record.id);
    std::erase_if(imported, [&](const Record& record) { return !ids.insert(record.id).second; });
    return imported;
}

template <class Record>
std::vector<std::string> namesOf(const std::vector<Record>& records) {
    std::vector<std::string> names;
    for (const auto& record : records) names.push_back(record.name);
    return names;
}

template <class Record>
std::vector<Record> joined(std::vector<Record> known, std::vector<Record> added) {
    std::ranges::move(added, std::back_inserter(known));
    return known;
}

struct Newcomers {
    WorkspaceImportCounts counts;
    std::vector<WorkspaceScene> scenes;
    std::vector<WorkspaceRule> rules;
};

Decoded<Newcomers> newcomersIn(std::string_view data, const WorkspaceState& known) {
    auto decoded = decodeExportedDocument(data);
    if (const auto* error = std::get_if<DecodingError>(&decoded)) return *error;
    auto& imported = std::get<WorkspaceProductDocument>(decoded);
    Newcomers found;
    found.counts.scenes = imported.scenes.size();
    found.counts.rules = imported.rules.size();
    found.scenes = newAmong(std::move(imported.scenes), *known.scenes);
    found.rules = newAmong(std::move(imported.rules), *known.rules);
    found.counts.newScenes = namesOf(found.scenes);
    found.counts.newRules = namesOf(found.rules);
    return found;
}

std::string counted(std::size_t count, const std::string& one) {
    return std::to_string(count) + " " + one + (count == 1 ? "" : "s");
}

} // namespace

WorkspaceProductDocument WorkspaceController::workspaceDocument() const {
    return {.version = 1, .scenes = *state_.scenes, .rules = *state_.rules, .activeSceneID = *state_.activeSceneID};
}

void WorkspaceController::saveWorkspaceDocument() {
    services_.preferences.setValue(preferenceKey::workspaceProduct,
                                   PreferenceData{encodeStoredDocument(workspaceDocument())});
}

/// Takes over a document that can be read back, and stores it; else gives the reason, and nothing changes. A document
/// that was too large before, as only an edited preference file makes it, may still be changed, so that it can shrink.
std::optional<DecodingError> WorkspaceController::takeDocument(WorkspaceProductDocument next) {
    std::string stored = encodeStoredDocument(next);
    if (auto reason = whyUnreadable(next, stored.size())) {
        const auto present = workspaceDocument();
        if (!whyUnreadable(present, encodeStoredDocument(present).size())) return reason;
    }
    state_.scenes.set(std::move(next.scenes));
    state_.rules.set(std::move(next.rules));
    state_.activeSceneID.set(next.activeSceneID);
    services_.preferences.setValue(preferenceKey::workspaceProduct, PreferenceData{std::move(stored)});
    return std::nullopt;
}

Outcome WorkspaceController::changeDocument(WorkspaceProductDocument next) {
    const auto reason = takeDocument(std::move(next));
    if (!reason) return Outcome::done();
    const auto sentence = std::string("Not changed, because it could not be stored: ") + reason->what();
    showStatusMessage(sentence);
    return Outcome::refused(sentence);
}

Decoded<std::string> WorkspaceController::exportWorkspaceDocument() const {
    return encodeExportedDocument(workspaceDocument());
}

Outcome WorkspaceController::importWorkspaceDocument(std::string_view data) {
    auto found = newcomersIn(data, state_);
    if (const auto* error = std::get_if<DecodingError>(&found)) return Outcome::refused(error->what());
    auto& newcomers = std::get<Newcomers>(found);
    WorkspaceImportCounts counts = std::move(newcomers.counts);
    WorkspaceProductDocument next{.version = 1,
                                  .scenes = joined(*state_.scenes, std::move(newcomers.scenes)),
                                  .rules = joined(*state_.rules, std::move(newcomers.rules)),
                                  .activeSceneID = *state_.activeSceneID};
    if (const auto reason = takeDocument(std::move(next))) {
        return Outcome::refused(std::string("scenes and rules together could not be stored: ") + reason->what());
    }
    counts.message =
        "Imported " + std::to_string(counts.scenes) + " scenes and " + std::to_string(counts.rules) + " rules";
    const std::string message = counts.message;
    return done(message).with(std::move(counts));
}

Decoded<WorkspaceImportCounts> WorkspaceController::previewImport(std::string_view data) const {
    auto found = newcomersIn(data, state_);
    if (const auto* error = std::get_if<DecodingError>(&found)) return *error;
    WorkspaceImportCounts counts = std::get<Newcomers>(std::move(found)).counts;
    counts.message = "The file would add " + counted(counts.newScenes.size(), "scene") + " and " +
                     counted(counts.newRules.size(), "rule");
    return counts;
}

} // namespace kova
