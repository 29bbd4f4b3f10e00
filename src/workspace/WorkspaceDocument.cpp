// The document of scenes and rules: kept in the preferences, taken out and in as a file.
#include "workspace/WorkspaceController.h"

#include "persistence/PreferenceKeys.h"
#include "persistence/WorkspaceDocumentCoding.h"

#include <algorithm>
#include <set>
#include <utility>

namespace kova {

namespace {

/// What was there wins, and of two newcomers with one identity the first.
template <class Record>
std::vector<Record> joined(std::vector<Record> known, std::vector<Record> imported) {
    std::set<Uuid> ids;
    for (const auto& record : known) ids.insert(record.id);
    for (auto& record : imported) {
        if (ids.insert(record.id).second) known.push_back(std::move(record));
    }
    return known;
}

} // namespace

WorkspaceProductDocument WorkspaceController::workspaceDocument() const {
    return {.version = 1, .scenes = *state_.scenes, .rules = *state_.rules, .activeSceneID = *state_.activeSceneID};
}

void WorkspaceController::saveWorkspaceDocument() {
    services_.preferences.setValue(preferenceKey::workspaceProduct,
                                   PreferenceData{encodeStoredDocument(workspaceDocument())});
}

std::string WorkspaceController::exportWorkspaceDocument() const {
    return encodeExportedDocument(workspaceDocument());
}

Decoded<WorkspaceImportCounts> WorkspaceController::importWorkspaceDocument(std::string_view data) {
    auto decoded = decodeExportedDocument(data);
    if (const auto* error = std::get_if<DecodingError>(&decoded)) return *error;
    auto& imported = std::get<WorkspaceProductDocument>(decoded);
    const WorkspaceImportCounts counts{imported.scenes.size(), imported.rules.size()};
    state_.scenes.set(joined(*state_.scenes, std::move(imported.scenes)));
    state_.rules.set(joined(*state_.rules, std::move(imported.rules)));
    saveWorkspaceDocument();
    showStatusMessage("Imported " + std::to_string(counts.scenes) + " scenes and " + std::to_string(counts.rules) +
                      " rules");
    return counts;
}

} // namespace kova
