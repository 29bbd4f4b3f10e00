#include "workspace/DocumentStore.h"

#include "persistence/PreferenceKeys.h"
#include "persistence/WorkspaceDocumentCoding.h"
#include "support/Quoted.h"
#include "support/text/Text.h"
#include "workspace/RuleMatching.h"
#include "workspace/WindowNames.h"
#include "workspace/WorkspaceParts.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <utility>

namespace kova {

namespace {

/// The imported records whose id is not among the known records. Of several imported records with the same id, only the
/// first is returned.
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

struct NewRecords {
    WorkspaceImportCounts counts;
    std::vector<WorkspaceScene> scenes;
    std::vector<WorkspaceRule> rules;
};

Decoded<NewRecords> newRecordsIn(std::string_view data, const WorkspaceState& known) {
    auto decoded = decodeExportedDocument(data);
    if (const auto* error = std::get_if<DecodingError>(&decoded)) return *error;
    auto& imported = std::get<WorkspaceProductDocument>(decoded);
    NewRecords found;
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

DocumentStore::DocumentStore(WorkspaceParts& parts) :
    services_(parts.services), state_(parts.state), messages_(parts.messages) {}

WorkspaceProductDocument DocumentStore::workspaceDocument() const {
    return {.version = 1, .scenes = *state_.scenes, .rules = *state_.rules, .activeSceneID = *state_.activeSceneID};
}

void DocumentStore::saveWorkspaceDocument() {
    services_.preferences.setValue(preferenceKey::workspaceProduct,
                                   PreferenceData{encodeStoredDocument(workspaceDocument())});
}

/// Stores the document. If the stored text could not be read again, for example because it is too large, this changes
/// nothing and returns the reason. Exception: if the present document cannot be read again either, because the
/// preference file was edited, every change is stored, so that the user can make the document smaller.
std::optional<DecodingError> DocumentStore::storeDocument(WorkspaceProductDocument next) {
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

Outcome DocumentStore::changeDocument(WorkspaceProductDocument next) {
    const auto reason = storeDocument(std::move(next));
    if (!reason) return Outcome::done();
    const auto sentence = std::string("Not changed, because it could not be stored: ") + reason->what();
    messages_.show(sentence);
    return Outcome::refused(sentence);
}

Decoded<std::string> DocumentStore::exportWorkspaceDocument() const {
    return encodeExportedDocument(workspaceDocument());
}

Outcome DocumentStore::importWorkspaceDocument(std::string_view data) {
    auto found = newRecordsIn(data, state_);
    if (const auto* error = std::get_if<DecodingError>(&found)) return Outcome::refused(error->what());
    auto& newRecords = std::get<NewRecords>(found);
    WorkspaceImportCounts counts = std::move(newRecords.counts);
    WorkspaceProductDocument next{.version = 1,
                                  .scenes = joined(*state_.scenes, std::move(newRecords.scenes)),
                                  .rules = joined(*state_.rules, std::move(newRecords.rules)),
                                  .activeSceneID = *state_.activeSceneID};
    if (const auto reason = storeDocument(std::move(next))) {
        return Outcome::refused(std::string("scenes and rules together could not be stored: ") + reason->what());
    }
    counts.message =
        "Imported " + std::to_string(counts.scenes) + " scenes and " + std::to_string(counts.rules) + " rules";
    const std::string message = counts.message;
    return Outcome::done(message).with(std::move(counts));
}

Decoded<WorkspaceImportCounts> DocumentStore::previewImport(std::string_view data) const {
    auto found = newRecordsIn(data, state_);
    if (const auto* error = std::get_if<DecodingError>(&found)) return *error;
    WorkspaceImportCounts counts = std::get<NewRecords>(std::move(found)).counts;
    counts.message = "The file would add " + counted(counts.newScenes.size(), "scene") + " and " +
                     counted(counts.newRules.size(), "rule");
    return counts;
}

Outcome DocumentStore::addRule(WorkspaceRule rule) {
    rule.titleContains = trimmed(rule.titleContains.value_or(""));
    if (rule.titleContains->empty()) rule.titleContains.reset();
    if (!rule.bundleIdentifier && !rule.applicationName && !rule.titleContains) {
        const std::string reason = "A rule needs an application or a part of a title";
        messages_.show(reason);
        return Outcome::refused(reason);
    }
    const std::string subject = rule.applicationName.value_or(rule.bundleIdentifier ? rule.bundleIdentifier->text()
                                                                                    : rule.titleContains.value_or(""));
    if (rule.name.empty()) rule.name = ruleName(subject, rule.disposition);
    return appendRule(std::move(rule), subject);
}

/// Adds the rule after the other rules, so it has the lowest precedence.
Outcome DocumentStore::appendRule(WorkspaceRule rule, const std::string& subject) {
    const std::string message = "Rule added for " + subject;
    auto document = workspaceDocument();
    document.rules.push_back(std::move(rule));
    const auto changed = changeDocument(std::move(document));
    return changed ? Outcome::done(message) : changed;
}

Outcome DocumentStore::editRule(const Uuid& id, const RuleEdit& edit) {
    auto document = workspaceDocument();
    const auto rule = std::ranges::find(document.rules, id, &WorkspaceRule::id);
    if (rule == document.rules.end()) return Outcome::refused("There is no such rule");
    edit(document.rules, rule);
    return changeDocument(std::move(document));
}

Outcome DocumentStore::changeRule(const action::ChangeRule& change) {
    const auto present = std::ranges::find(*state_.rules, change.id, &WorkspaceRule::id);
    const bool endsTitle = change.titleContains && trimmed(*change.titleContains).empty();
    if (endsTitle && present != state_.rules->end() && !present->bundleIdentifier && !present->applicationName)
        return Outcome::refused("A rule needs an application or a part of a title");
    return editRule(change.id, [&](auto&, auto rule) {
        if (change.isEnabled) rule->isEnabled = *change.isEnabled;
        if (change.disposition) rule->disposition = *change.disposition;
        if (!change.titleContains) return;
        rule->titleContains = trimmed(*change.titleContains);
        if (rule->titleContains->empty()) rule->titleContains.reset();
    });
}

Outcome DocumentStore::deleteRule(const Uuid& id) {
    return editRule(id, [](auto& rules, auto rule) { rules.erase(rule); });
}

Outcome DocumentStore::moveRule(const Uuid& id, std::size_t index) {
    return editRule(id, [&](auto& rules, auto rule) {
        const auto to = rules.begin() + static_cast<std::ptrdiff_t>(std::min(index, rules.size() - 1));
        if (to < rule) {
            std::rotate(to, rule, rule + 1);
        } else {
            std::rotate(rule, rule + 1, to + 1);
        }
    });
}

std::optional<WorkspaceScene> DocumentStore::sceneWithID(const Uuid& id) const {
    const auto& scenes = *state_.scenes;
    const auto found = std::find_if(scenes.begin(), scenes.end(), [&](const auto& scene) { return scene.id == id; });
    if (found == scenes.end()) return std::nullopt;
    return *found;
}

std::optional<Uuid> DocumentStore::findScene(const std::string& name) const {
    std::optional<Uuid> differingInCase;
    for (const auto& scene : *state_.scenes) {
        if (scene.name == name) return scene.id;
        if (!differingInCase && localizedCaseInsensitiveCompare(scene.name, name) == 0) differingInCase = scene.id;
    }
    return differingInCase;
}

Outcome DocumentStore::renameScene(const Uuid& id, const std::string& name) {
    const std::string newName = trimmed(name);
    auto document = workspaceDocument();
    const auto scene = std::ranges::find(document.scenes, id, &WorkspaceScene::id);
    if (scene == document.scenes.end()) return Outcome::refused("The scene was not renamed");
    if (newName.empty()) {
        messages_.show("A scene needs a name");
        return Outcome::refused("A scene needs a name");
    }
    const std::string message = "Scene " + quoted(scene->name) + " renamed to " + quoted(newName);
    scene->name = newName;
    scene->updatedAt = std::chrono::floor<std::chrono::microseconds>(services_.queue.now());
    const auto changed = changeDocument(std::move(document));
    return changed ? Outcome::done(message) : changed;
}

Outcome DocumentStore::deleteScene(const Uuid& id) {
    const auto scene = sceneWithID(id);
    if (!scene) return Outcome::refused("The scene was not deleted");
    auto document = workspaceDocument();
    std::erase_if(document.scenes, [&](const auto& each) { return each.id == id; });
    if (document.activeSceneID == id) document.activeSceneID.reset();
    const auto changed = changeDocument(std::move(document));
    return changed ? Outcome::done("Scene " + quoted(scene->name) + " deleted") : changed;
}

Outcome DocumentStore::insertScene(WorkspaceScene scene, std::size_t index) {
    const std::string message = "Scene " + quoted(scene.name) + " restored to the list";
    auto document = workspaceDocument();
    const auto place = std::min(index, document.scenes.size());
    document.scenes.insert(document.scenes.begin() + static_cast<std::ptrdiff_t>(place), std::move(scene));
    const auto changed = changeDocument(std::move(document));
    return changed ? Outcome::done(message) : changed;
}

void DocumentStore::restoreActiveScene(const std::optional<Uuid>& id) {
    const auto existing = id && sceneWithID(*id) ? id : std::nullopt; // the scene may have been deleted since
    if (existing == *state_.activeSceneID) return;
    state_.activeSceneID.set(existing);
    saveWorkspaceDocument();
}

} // namespace kova
